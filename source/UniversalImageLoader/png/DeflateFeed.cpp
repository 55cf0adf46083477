#include "DeflateFeed.h"

#include <algorithm>

DeflateFeed::DeflateFeed(const PngFilteredRows& rows, int windowBits)
    : m_rows(rows), m_windowSize(std::size_t{1} << windowBits) {}

void DeflateFeed::read(std::size_t position, std::size_t wanted) {
    fillWindow(position);
    // One call of deflate for each row, and a last one to finish.
    while (m_end - position < wanted && !m_finishing) {
        if (m_rowLeft == 0)
            nextRow();
        fillWindow(position);
    }
}

void DeflateFeed::fillWindow(std::size_t position) {
    do {
        // The buffer holds two windows. The older one goes as soon as nothing in it can be reached any more.
        if (position - m_begin >= m_windowSize + maximumDistance())
            m_begin += m_windowSize;
        const std::size_t room = 2 * m_windowSize - (m_end - m_begin);
        const std::size_t taken = std::min(room, m_rowLeft);
        m_end += taken;
        m_rowLeft -= taken;
    } while (m_end - position < minimumLookahead && m_rowLeft > 0);
}

void DeflateFeed::nextRow() {
    while (m_pass < m_rows.passes.size() && m_row == m_rows.passes[m_pass].rows) {
        m_row = 0;
        ++m_pass;
    }
    if (m_pass == m_rows.passes.size()) {
        m_finishing = true;
        return;
    }
    ++m_row;
    m_rowLeft = m_rows.passes[m_pass].rowBytes;
}
