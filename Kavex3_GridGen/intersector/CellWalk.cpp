// The bit-row walk: setting up the rows and growing runs from their seeds.
#include "intersector/CellWalk.h"

namespace {
// Occluded fills within one word: the seed bits g spread through the open bits p towards
// higher bits (Up) or lower bits (Down), in six doubling steps.
std::uint64_t Up(std::uint64_t g, std::uint64_t p) {
    for (int s = 1; s < 64; s *= 2) {
        g |= p & (g << s);
        p &= p << s;
    }
    return g;
}

std::uint64_t Down(std::uint64_t g, std::uint64_t p) {
    for (int s = 1; s < 64; s *= 2) {
        g |= p & (g >> s);
        p &= p >> s;
    }
    return g;
}

// Grows the seed bits x of a row of W words into the whole runs of the open bits o holding them.
void FillRuns(const std::uint64_t* o, std::uint64_t* x, int W) {
    std::uint64_t carry = 0;
    for (int w = 0; w < W; ++w) {
        x[w] = Up(x[w] | (carry & o[w]), o[w]);
        carry = x[w] >> 63;
    }
    carry = 0;
    for (int w = W - 1; w >= 0; --w) {
        x[w] = Down(x[w] | ((carry << 63) & o[w]), o[w]);
        carry = x[w] & 1;
    }
}
}  // namespace

CellWalk::CellWalk(const GridCellArray& cells) {
    for (int a = 0; a < 3; ++a) m_aintCount[a] = cells.Count(a);
    m_intWords = (m_aintCount[2] + 63) / 64;
    const std::size_t words = Rows() * std::size_t(m_intWords);
    m_vecOpen.assign(words, 0);
    m_vecReached.assign(words, 0);
    m_vecPending.assign(words, 0);
    m_vecQueued.assign(Rows(), 0);
}

void CellWalk::OpenAll() {
    for (std::size_t row = 0; row < Rows(); ++row)
        for (int w = 0; w < m_intWords; ++w) m_vecOpen[row * m_intWords + w] = Valid(w);
}

void CellWalk::Offer(std::size_t row, const std::uint64_t* seeds) {
    const std::size_t at = row * std::size_t(m_intWords);
    bool added = false;
    for (int w = 0; w < m_intWords; ++w) {
        std::uint64_t fresh =
            seeds[w] & m_vecOpen[at + w] & ~m_vecReached[at + w] & ~m_vecPending[at + w];
        m_vecPending[at + w] |= fresh;
        added = added || fresh != 0;
    }
    if (added && !m_vecQueued[row]) {
        m_vecQueued[row] = 1;
        m_vecQueue.push_back(std::uint32_t(row));
    }
}

void CellWalk::Run() {
    const int W = m_intWords;
    const std::size_t nj = std::size_t(m_aintCount[1]), ni = std::size_t(m_aintCount[0]);
    std::vector<std::uint64_t> x(W);
    std::vector<std::size_t> closedSeeds;
    for (std::size_t id : m_vecSeeds) {
        const std::size_t row = Word(id) / std::size_t(W);
        if (!(m_vecOpen[Word(id)] & Bit(id))) {
            closedSeeds.push_back(id);
            continue;
        }
        std::fill(x.begin(), x.end(), 0);
        x[Word(id) % std::size_t(W)] = Bit(id);
        Offer(row, x.data());
    }
    while (!m_vecQueue.empty()) {
        const std::size_t row = m_vecQueue.back();
        m_vecQueue.pop_back();
        m_vecQueued[row] = 0;
        std::uint64_t* pending = &m_vecPending[row * W];
        std::uint64_t* reached = &m_vecReached[row * W];
        for (int w = 0; w < W; ++w) {
            x[w] = pending[w];
            pending[w] = 0;
        }
        FillRuns(&m_vecOpen[row * W], x.data(), W);
        for (int w = 0; w < W; ++w) reached[w] |= x[w];
        const std::size_t i = row / nj, j = row % nj;
        if (i > 0) Offer(row - nj, x.data());
        if (i + 1 < ni) Offer(row + nj, x.data());
        if (j > 0) Offer(row - 1, x.data());
        if (j + 1 < nj) Offer(row + 1, x.data());
    }
    m_vecQueue = {};
    m_vecSeeds.clear();
    // Closed seeds are met where they stand.
    for (std::size_t id : closedSeeds) m_vecPending[Word(id)] |= Bit(id);
}
