#include "DeflateBlocks.h"

#include <algorithm>

DeflateBlocks::DeflateBlocks(int memory) : m_capacity((std::size_t{1} << (memory + 6)) - 1) {
    m_literals[deflateFormat::endOfBlock] = 1;
}

void DeflateBlocks::close(std::size_t bytes, bool isStorable, bool isLast) {
    const DeflateTree literals = buildDeflateTree(deflateFormat::literalAlphabet, m_literals.data());
    const DeflateTree distances = buildDeflateTree(deflateFormat::distanceAlphabet, m_distances.data());
    const std::uint64_t own = deflateFormat::ownBits(literals, distances);
    const std::uint64_t fixed = deflateFormat::fixedBits(m_literals.data(), m_distances.data());

    const std::uint64_t fixedBytes = (fixed + 3 + 7) / 8;
    const std::uint64_t smaller = std::min((own + 3 + 7) / 8, fixedBytes);
    if (bytes + 4 <= smaller && isStorable)
        m_bits = (m_bits + 3 + 7) / 8 * 8 + 32 + 8 * std::uint64_t{bytes};
    else
        m_bits += 3 + (fixedBytes == smaller ? fixed : own);
    if (isLast)
        m_bits = (m_bits + 7) / 8 * 8;
    m_literals.fill(0);
    m_literals[deflateFormat::endOfBlock] = 1;
    m_distances.fill(0);
    m_symbols = 0;
}
