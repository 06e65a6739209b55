// A walk over the faces of grid cells by runs along k: a popped seed grows into the longest run
// of open cells not yet visited, every cell met is marked with the visit counter, and the rows
// beside the run get a seed per stretch of open cells. Each cell is taken once whatever the
// order, so the walk reaches exactly the cells that a cell-by-cell walk reaches.
#pragma once

#include <cstdint>
#include <vector>

#include "intersector/GridCell.h"

class CellWalk {
  public:
    explicit CellWalk(GridCellArray& cells) : m_cells(cells) {
        for (int a = 0; a < 3; ++a) m_aintCount[a] = cells.Count(a);
    }
    int Count(int axis) const { return m_aintCount[axis]; }

    // Visits cell (i, j, k) first. Each cell reached is handed once to enter when open(cell)
    // holds, and the walk goes on through it; otherwise once to stop, and the walk halts there.
    void Seed(int i, int j, int k) { m_vecStack.push_back(std::uint32_t(m_cells.Linear(i, j, k))); }

    template <class Open, class Enter, class Stop>
    void Run(const Open& open, const Enter& enter, const Stop& stop) {
        const std::uint16_t mark = GridCell::s_ushtNewCounter;
        const int nk = m_aintCount[2];
        while (!m_vecStack.empty()) {
            const FEL_vector3<int> s = m_cells.Index(m_vecStack.back());
            m_vecStack.pop_back();
            GridCell* row = &m_cells(s.x, s.y, 0);
            if (row[s.z].m_ushtCounter == mark) continue;
            row[s.z].m_ushtCounter = mark;
            if (!open(row[s.z])) {
                stop(row[s.z]);
                continue;
            }
            enter(row[s.z]);
            int k0 = s.z, k1 = s.z;
            while (k0 > 0 && Take(row[k0 - 1], mark, open, enter, stop)) --k0;
            while (k1 + 1 < nk && Take(row[k1 + 1], mark, open, enter, stop)) ++k1;
            if (s.x > 0) Beside(s.x - 1, s.y, k0, k1, mark, open, stop);
            if (s.x + 1 < m_aintCount[0]) Beside(s.x + 1, s.y, k0, k1, mark, open, stop);
            if (s.y > 0) Beside(s.x, s.y - 1, k0, k1, mark, open, stop);
            if (s.y + 1 < m_aintCount[1]) Beside(s.x, s.y + 1, k0, k1, mark, open, stop);
        }
        m_vecStack = {};
    }

  private:
    // Marks an unvisited cell; true when the run may grow into it.
    template <class Open, class Enter, class Stop>
    static bool Take(GridCell& c, std::uint16_t mark, const Open& open, const Enter& enter,
                     const Stop& stop) {
        if (c.m_ushtCounter == mark) return false;
        c.m_ushtCounter = mark;
        if (open(c)) {
            enter(c);
            return true;
        }
        stop(c);
        return false;
    }

    // Cells k0..k1 of a neighbouring row: closed ones are visited at once, each stretch of open
    // ones gets one seed.
    template <class Open, class Stop>
    void Beside(int i, int j, int k0, int k1, std::uint16_t mark, const Open& open,
                const Stop& stop) {
        GridCell* row = &m_cells(i, j, 0);
        bool inStretch = false;
        for (int k = k0; k <= k1; ++k) {
            GridCell& c = row[k];
            if (c.m_ushtCounter == mark) {
                inStretch = false;
                continue;
            }
            if (!open(c)) {
                c.m_ushtCounter = mark;
                stop(c);
                inStretch = false;
                continue;
            }
            if (!inStretch) m_vecStack.push_back(std::uint32_t(m_cells.Linear(i, j, k)));
            inStretch = true;
        }
    }

    GridCellArray& m_cells;
    int m_aintCount[3];
    // Cell numbers; a cell is pushed at most once from each of its four neighbouring rows.
    std::vector<std::uint32_t> m_vecStack;
};
