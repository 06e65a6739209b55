// Large zero-filled arrays straight from the system: their pages are zeroed when first touched,
// so a sparse touch costs little.
#pragma once

#include <cstddef>

// Throws std::bad_alloc when the system has no room.
void* AllocateZeroed(std::size_t bytes);
void FreeZeroed(void* block, std::size_t bytes);
