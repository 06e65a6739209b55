// A walk over the faces of grid cells on bit rows along k: a row's seed bits grow at once into
// the whole runs of open cells that hold them, and the rows beside take those runs as seeds.
// Reachability through open cells does not depend on the order, so the walk reaches exactly the
// cells that a cell-by-cell walk reaches, and meets the same closed cells: those beside a reached
// cell, and closed seeds. Three bits a cell stay in cache where the 8-byte cells would not;
// the cells are read and written in parallel slabs before and after.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "intersector/GridCell.h"
#include "intersector/Parallel.h"

class CellWalk {
  public:
    // No cell open yet.
    explicit CellWalk(const GridCellArray& cells);
    int Count(int axis) const { return m_aintCount[axis]; }

    // Opens every cell, then closes one by its linear index.
    void OpenAll();
    void Close(std::size_t id) { m_vecOpen[Word(id)] &= ~Bit(id); }
    // Opens the cells for which open(linear index) holds, in slabs on the given threads.
    template <class Open>
    void SetOpen(int threads, const Open& open) {
        EachRow(threads, [&](std::size_t row) {
            const std::size_t first = row * std::size_t(m_aintCount[2]);
            for (int w = 0; w < m_intWords; ++w) {
                std::uint64_t bits = 0;
                const int n = std::min(64, m_aintCount[2] - 64 * w);
                for (int b = 0; b < n; ++b)
                    bits |= std::uint64_t(open(first + std::size_t(64 * w + b)) ? 1 : 0) << b;
                m_vecOpen[row * m_intWords + w] = bits;
            }
        });
    }

    // Visits cell (i, j, k) first.
    void Seed(int i, int j, int k) { m_vecSeeds.push_back(Linear(i, j, k)); }

    // Reaches every open cell that open cells join to a seed.
    void Run();

    // Calls visit(linear index, open) for each cell the walk took: the reached open cells, and
    // the closed cells where it halted. In slabs on the given threads; returns how many were
    // closed.
    template <class Visit>
    std::size_t EachVisited(int threads, const Visit& visit) {
        std::vector<std::size_t> stopped(Slabs(threads), 0);
        const std::size_t nj = std::size_t(m_aintCount[1]), ni = std::size_t(m_aintCount[0]);
        const int W = m_intWords;
        RunPieces(int(stopped.size()), threads, [&](int slab) {
            std::vector<std::uint64_t> near(W);
            for (std::size_t row = SlabRow(slab, stopped.size());
                 row < SlabRow(slab + 1, stopped.size()); ++row) {
                const std::size_t i = row / nj, j = row % nj;
                const std::uint64_t* r = &m_vecReached[row * W];
                const std::uint64_t* o = &m_vecOpen[row * W];
                for (int w = 0; w < W; ++w) {
                    std::uint64_t a = (r[w] << 1) | (r[w] >> 1);
                    if (w > 0) a |= r[w - 1] >> 63;
                    if (w + 1 < W) a |= r[w + 1] << 63;
                    if (i > 0) a |= r[w - std::ptrdiff_t(nj) * W];
                    if (i + 1 < ni) a |= r[w + std::ptrdiff_t(nj) * W];
                    if (j > 0) a |= r[w - W];
                    if (j + 1 < nj) a |= r[w + W];
                    near[w] = (a | m_vecPending[row * W + w]) & ~o[w] & Valid(w);
                }
                const std::size_t first = row * std::size_t(m_aintCount[2]);
                for (int w = 0; w < W; ++w) {
                    stopped[slab] += std::size_t(__builtin_popcountll(near[w]));
                    for (std::uint64_t bits = r[w] | near[w]; bits; bits &= bits - 1) {
                        const int b = __builtin_ctzll(bits);
                        visit(first + std::size_t(64 * w + b), ((r[w] >> b) & 1) != 0);
                    }
                }
            }
        });
        std::size_t total = 0;
        for (std::size_t s : stopped) total += s;
        return total;
    }

  private:
    std::size_t Linear(int i, int j, int k) const {
        return (std::size_t(i) * std::size_t(m_aintCount[1]) + std::size_t(j)) *
                   std::size_t(m_aintCount[2]) +
               std::size_t(k);
    }
    // Bit of a linear cell index in the row-padded bit arrays.
    std::size_t Word(std::size_t id) const {
        const std::size_t nk = std::size_t(m_aintCount[2]);
        return id / nk * std::size_t(m_intWords) + id % nk / 64;
    }
    std::uint64_t Bit(std::size_t id) const {
        return std::uint64_t(1) << (id % std::size_t(m_aintCount[2]) % 64);
    }
    // The bits of word w of a row that stand for cells.
    std::uint64_t Valid(int w) const {
        const int n = m_aintCount[2] - 64 * w;
        return n >= 64 ? ~std::uint64_t(0) : (std::uint64_t(1) << n) - 1;
    }
    std::size_t Rows() const { return std::size_t(m_aintCount[0]) * std::size_t(m_aintCount[1]); }
    std::size_t Slabs(int threads) const {
        return std::min<std::size_t>(Rows(), std::size_t(16) * std::size_t(std::max(1, threads)));
    }
    std::size_t SlabRow(int slab, std::size_t slabs) const {
        return Rows() * std::size_t(slab) / slabs;
    }
    template <class Work>
    void EachRow(int threads, const Work& work) {
        const std::size_t slabs = Slabs(threads);
        RunPieces(int(slabs), threads, [&](int slab) {
            for (std::size_t row = SlabRow(slab, slabs); row < SlabRow(slab + 1, slabs); ++row)
                work(row);
        });
    }
    // Adds seed bits to a row, queueing it when they are new.
    void Offer(std::size_t row, const std::uint64_t* seeds);

    int m_aintCount[3];
    int m_intWords;
    // Bit rows of m_intWords words, k fastest: open cells, reached cells, seeds not yet taken
    // (after the walk: closed seeds).
    std::vector<std::uint64_t> m_vecOpen, m_vecReached, m_vecPending;
    std::vector<std::uint8_t> m_vecQueued;
    std::vector<std::uint32_t> m_vecQueue;
    std::vector<std::size_t> m_vecSeeds;
};
