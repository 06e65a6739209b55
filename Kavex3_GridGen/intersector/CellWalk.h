// A walk over the faces of grid cells with a flat stack of cell numbers; a cell is marked with the
// visit counter when pushed, so each is taken once whatever the order.
#pragma once

#include <cstdint>
#include <vector>

#include "intersector/GridCell.h"

struct CellWalk {
    GridCellArray& m_cells;
    int m_aintCount[3];
    std::vector<std::uint32_t> m_vecStack;

    explicit CellWalk(GridCellArray& cells) : m_cells(cells) {
        for (int a = 0; a < 3; ++a) m_aintCount[a] = cells.Count(a);
    }
    void Push(int i, int j, int k) {
        GridCell& c = m_cells(i, j, k);
        if (c.m_ushtCounter == GridCell::s_ushtNewCounter) return;
        c.m_ushtCounter = GridCell::s_ushtNewCounter;
        m_vecStack.push_back(std::uint32_t(m_cells.Linear(i, j, k)));
    }
    // Takes cells until the stack is empty, spreading to the face neighbours of each cell for
    // which spread(cell) is true.
    template <class Spread>
    void Run(const Spread& spread) {
        const std::uint32_t nk = std::uint32_t(m_aintCount[2]), nj = std::uint32_t(m_aintCount[1]);
        while (!m_vecStack.empty()) {
            std::uint32_t id = m_vecStack.back();
            m_vecStack.pop_back();
            if (!spread(m_cells.Data()[id])) continue;
            int k = int(id % nk), j = int((id / nk) % nj), i = int(id / nk / nj);
            if (i > 0) Push(i - 1, j, k);
            if (i + 1 < m_aintCount[0]) Push(i + 1, j, k);
            if (j > 0) Push(i, j - 1, k);
            if (j + 1 < m_aintCount[1]) Push(i, j + 1, k);
            if (k > 0) Push(i, j, k - 1);
            if (k + 1 < m_aintCount[2]) Push(i, j, k + 1);
        }
        m_vecStack = {};
    }
};
