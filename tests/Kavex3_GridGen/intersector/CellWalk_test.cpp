// The bit-row walk against a cell-by-cell flood on random open and closed cells: the same cells
// taken, each with the same openness, and the same count of closed ones, on any thread count.
#include "intersector/CellWalk.h"

#include <gtest/gtest.h>

#include <random>

namespace {
// For each cell: 0 not taken, 1 taken and open, 2 taken and closed.
std::vector<int> Literal(const int n[3], const std::vector<char>& open,
                         const std::vector<std::size_t>& seeds) {
    std::vector<int> taken(open.size(), 0);
    std::vector<std::size_t> stack(seeds.rbegin(), seeds.rend());
    const std::size_t step[3] = {std::size_t(n[1]) * n[2], std::size_t(n[2]), 1};
    while (!stack.empty()) {
        std::size_t c = stack.back();
        stack.pop_back();
        if (taken[c]) continue;
        taken[c] = open[c] ? 1 : 2;
        if (!open[c]) continue;
        for (int a = 0; a < 3; ++a) {
            int at = int(c / step[a] % std::size_t(n[a]));
            if (at > 0) stack.push_back(c - step[a]);
            if (at + 1 < n[a]) stack.push_back(c + step[a]);
        }
    }
    return taken;
}

TEST(CellWalk, SameCellsAsACellByCellFlood) {
    // Rows along k shorter than, equal to and longer than a word, and across words; all open and
    // seeded at the last cell only, a lone row must be filled down across its words.
    const int shapes[][3] = {{5, 4, 1},   {3, 6, 63}, {4, 3, 64}, {3, 4, 65},
                             {2, 3, 130}, {6, 5, 9},  {1, 1, 130}};
    std::mt19937 rng(7);
    for (const auto& n : shapes)
        for (double closed : {0.0, 0.2, 0.5, 0.7}) {
            std::vector<float> axes[3];
            for (int a = 0; a < 3; ++a)
                for (int c = 0; c <= n[a]; ++c) axes[a].push_back(float(c));
            GridCellArray cells;
            cells.Reset(axes);
            std::vector<char> open(cells.Size());
            for (char& o : open) o = std::uniform_real_distribution<double>(0, 1)(rng) >= closed;
            std::vector<std::size_t> seeds;
            for (int s = 0; s < (closed > 0 ? 3 : 1); ++s)
                seeds.push_back(
                    closed > 0 ? std::uniform_int_distribution<std::size_t>(0, open.size() - 1)(rng)
                               : open.size() - 1);
            std::vector<int> expect = Literal(n, open, seeds);
            long closedTaken = 0;
            for (int t : expect) closedTaken += t == 2;
            for (int threads : {1, 3}) {
                CellWalk walk(cells);
                walk.SetOpen(threads, [&](std::size_t id) { return open[id] != 0; });
                for (std::size_t id : seeds) {
                    FEL_vector3<int> p = cells.Index(id);
                    walk.Seed(p.x, p.y, p.z);
                }
                walk.Run();
                std::vector<int> got(open.size(), 0);
                long count = long(walk.EachVisited(
                    threads, [&](std::size_t id, bool isOpen) { got[id] += isOpen ? 1 : 2; }));
                EXPECT_EQ(got, expect) << n[0] << "x" << n[1] << "x" << n[2] << " " << closed;
                EXPECT_EQ(count, closedTaken);
            }
        }
}
}  // namespace
