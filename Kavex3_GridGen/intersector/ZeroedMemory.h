// Large zero-filled arrays straight from the system: their pages are zeroed when first touched,
// in huge pages where the system offers them, so a sparse touch costs little and a full one few
// page faults.
#pragma once

#include <cstddef>

// Throws std::bad_alloc when the system has no room.
void* AllocateZeroed(std::size_t bytes);
void FreeZeroed(void* block, std::size_t bytes);
