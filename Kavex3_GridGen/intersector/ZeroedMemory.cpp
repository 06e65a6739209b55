// Large zero-filled arrays from anonymous mappings, aligned to and advised for huge pages.
#include "intersector/ZeroedMemory.h"

#include <sys/mman.h>

#include <cstdint>
#include <new>

namespace {
const std::size_t kHuge = std::size_t(2) << 20;

std::size_t Rounded(std::size_t bytes) {
    return (bytes + kHuge - 1) / kHuge * kHuge;
}
}  // namespace

void* AllocateZeroed(std::size_t bytes) {
    if (bytes == 0) return nullptr;
    std::size_t size = Rounded(bytes);
    void* raw =
        mmap(nullptr, size + kHuge, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (raw == MAP_FAILED) throw std::bad_alloc();
    std::uintptr_t start = std::uintptr_t(raw), aligned = (start + kHuge - 1) / kHuge * kHuge;
    if (aligned > start) munmap(raw, aligned - start);
    std::uintptr_t end = start + size + kHuge;
    if (end > aligned + size) munmap(reinterpret_cast<void*>(aligned + size), end - aligned - size);
    // Advice only: without huge pages the block works the same.
    madvise(reinterpret_cast<void*>(aligned), size, MADV_HUGEPAGE);
    return reinterpret_cast<void*>(aligned);
}

void FreeZeroed(void* block, std::size_t bytes) {
    if (block) munmap(block, Rounded(bytes));
}
