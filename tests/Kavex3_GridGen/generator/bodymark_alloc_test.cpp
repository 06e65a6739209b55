// Checks that marking a body allocates nothing once the working records have grown.
#include <cstddef>

#include "gdtest_util.h"
#include "generator/bodycells.h"
#include "generator/bodymark.h"
#include "generator/cutbody.h"

// Counting replacements of the C allocator for this test program; they forward to the C
// library's own allocator. The sanitizer builds bring their own allocator and skip the check.
#if !defined(__SANITIZE_ADDRESS__)
#define KAVEX_COUNT_ALLOCATIONS 1
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t n, size_t size);
void* __libc_realloc(void* p, size_t size);
}
namespace {
long allocations = 0;
}
extern "C" void* malloc(size_t size) {
    ++allocations;
    return __libc_malloc(size);
}
extern "C" void* calloc(size_t n, size_t size) {
    ++allocations;
    return __libc_calloc(n, size);
}
extern "C" void* realloc(void* p, size_t size) {
    ++allocations;
    return __libc_realloc(p, size);
}
#endif

namespace {

using BodyMarkingAllocation = GenTest;

TEST_F(BodyMarkingAllocation, SecondMarkingOfABodyAllocatesNothing) {
#ifndef KAVEX_COUNT_ALLOCATIONS
    GTEST_SKIP() << "allocator replaced by the sanitizer";
#else
    // A 24-sided polygon, larger than the records' first size, tapering along Z over 3 x 3 x 3
    // cells of width 1: every cell of the box is clipped.
    for (GridLine* line : {&Xgdln, &Ygdln, &Zgdln}) set_line(line, {0, 1, 2, 3});
    BodyBuilder::Polygon wide, narrow;
    for (int p = 0; p < 24; ++p) {
        const double x = p < 12 ? p * 0.25 : 3 - (p - 12) * 0.25;
        const double y = p < 12 ? 0 : 3;
        wide.emplace_back(x, y);
        narrow.emplace_back(x * 0.5, y * 0.5);
    }
    BodyBuilder build;
    *new_body_struct() = build.cut_body(2, {{0, wide}, {3, narrow}}, {0, 0, 0}, {3, 3, 3});

    allocations = 0;
    mark_all_body_cells();
    EXPECT_GT(allocations, 0);  // the cell store grows on the first marking: the counter works
    const long long first = nBodyCells;
    ASSERT_GT(first, 0);
    EXPECT_GE(intrpltd_cut.capacity, 30);

    allocations = 0;
    mark_all_body_cells();  // the cell count stays far from the next step of 1000
    EXPECT_EQ(allocations, 0);
    EXPECT_EQ(nBodyCells, 2 * first);
#endif
}

}  // namespace
