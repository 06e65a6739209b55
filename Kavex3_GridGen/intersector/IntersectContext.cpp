// The intersector's run context: thread count and visit marks.
#include "intersector/IntersectContext.h"

#include "intersector/Parallel.h"

int IntersectContext::Threads() const {
    if (m_options.m_pReference) return 1;
    int n = m_options.m_intThreads;
    return n > 0 ? n : AvailableCores();
}

std::uint16_t IntersectContext::NewVisitMark() {
    if (++m_ushtVisitMark == 0) {
        GridCell* cells = m_gridCells.Data();
        for (std::size_t n = 0; n < m_gridCells.Size(); ++n) cells[n].m_ushtCounter = 0;
        m_ushtVisitMark = 1;
    }
    return m_ushtVisitMark;
}
