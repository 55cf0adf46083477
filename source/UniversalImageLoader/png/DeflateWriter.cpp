#include "DeflateWriter.h"

#include "DeflateFormat.h"

#include <algorithm>

namespace {

enum BlockType { Stored = 0, FixedTrees = 1, OwnTrees = 2 };

struct Frequencies {
    std::array<std::uint32_t, deflateFormat::literalCodes> literals = {};
    std::array<std::uint32_t, deflateFormat::distanceCodes> distances = {};
};

Frequencies frequenciesOf(const DeflateSymbols& block) {
    Frequencies counts;
    counts.literals[deflateFormat::endOfBlock] = 1;
    for (const DeflateSymbol& symbol : block.symbols) {
        if (symbol.length == 0) {
            ++counts.literals[symbol.value];
        } else {
            ++counts.literals[deflateFormat::lengthCodes[symbol.length]];
            ++counts.distances[deflateFormat::distanceCode(symbol.value + std::size_t{1})];
        }
    }
    return counts;
}

std::vector<std::uint8_t> fixedLiteralLengths() {
    std::vector<std::uint8_t> lengths(288);
    for (std::size_t code = 0; code < lengths.size(); ++code)
        lengths[code] = static_cast<std::uint8_t>(deflateFormat::fixedLength(code));
    return lengths;
}

constexpr std::size_t largestStored = 65535;

/// Bits of a block that is stored, wherever in a byte it begins.
std::uint64_t storedBits(std::size_t bytes) {
    const std::size_t pieces = std::max<std::size_t>((bytes + largestStored - 1) / largestStored, 1);
    return 8 * (5 * std::uint64_t{pieces} + bytes);
}

} // namespace

DeflateWriter::Codes DeflateWriter::codesOf(const std::vector<std::uint8_t>& lengths) {
    std::array<std::uint32_t, 17> next = {};
    for (const std::uint8_t length : lengths)
        ++next[length + std::size_t{1}];
    next[1] = 0; // no code has no bits
    for (std::size_t length = 1; length < next.size(); ++length)
        next[length] = (next[length] + next[length - 1]) << 1;
    Codes codes(lengths.size());
    for (std::size_t code = 0; code < codes.size(); ++code) {
        if (lengths[code] == 0)
            continue;
        // Codes are told from their highest bit on.
        std::uint32_t bits = next[lengths[code]]++;
        for (int i = 0; i < lengths[code]; ++i, bits >>= 1)
            codes[code].bits = static_cast<std::uint16_t>(codes[code].bits << 1 | (bits & 1));
        codes[code].length = lengths[code];
    }
    return codes;
}

void DeflateWriter::put(std::uint64_t bits, int count) {
    m_bits |= bits << m_count;
    for (m_count += count; m_count >= 8; m_count -= 8, m_bits >>= 8)
        m_out.push_back(static_cast<std::uint8_t>(m_bits));
}

void DeflateWriter::writeSymbols(const DeflateSymbols& block, const Codes& literals, const Codes& distances) {
    // Most of a file goes through here, so that symbols are gathered into words, and the room for them is
    // there before.
    constexpr std::size_t longestSymbol = 6;
    std::size_t at = m_out.size();
    m_out.resize(at + (block.symbols.size() + 1) * longestSymbol + sizeof m_bits);
    std::uint8_t* const out = m_out.data();
    const auto gather = [this](std::uint64_t bits, int count) {
        m_bits |= bits << m_count;
        m_count += count;
    };
    const auto flush = [&] {
        for (std::size_t i = 0; i < sizeof m_bits; ++i)
            out[at + i] = static_cast<std::uint8_t>(m_bits >> 8 * i);
        at += static_cast<std::size_t>(m_count / 8);
        m_bits = m_count < 64 ? m_bits >> m_count / 8 * 8 : 0;
        m_count %= 8;
    };
    for (const DeflateSymbol& symbol : block.symbols) {
        if (symbol.length == 0) {
            gather(literals[symbol.value].bits, literals[symbol.value].length);
            if (m_count > 48)
                flush();
            continue;
        }
        flush();
        const std::size_t length = deflateFormat::lengthCodes[symbol.length];
        gather(literals[length].bits, literals[length].length);
        gather(symbol.length - std::uint64_t{deflateFormat::shortestLengths[length - 257]},
               deflateFormat::literalAlphabet.extraBits[length]);
        const std::uint64_t distance = symbol.value + std::uint64_t{1};
        const std::size_t code = deflateFormat::distanceCode(distance);
        gather(distances[code].bits, distances[code].length);
        gather(distance - deflateFormat::shortestDistances[code],
               deflateFormat::distanceAlphabet.extraBits[code]);
        if (m_count > 48)
            flush();
    }
    gather(literals[deflateFormat::endOfBlock].bits, literals[deflateFormat::endOfBlock].length);
    flush();
    m_out.resize(at);
}

void DeflateWriter::writeStored(const DeflateSymbols& block, bool isLast) {
    std::size_t begin = block.begin;
    do {
        const std::size_t size = std::min(block.end - begin, largestStored);
        put(isLast && begin + size == block.end, 1);
        put(Stored, 2);
        put(0, (8 - m_count) % 8);
        put(size, 16);
        put(~size & 0xffff, 16);
        m_out.insert(m_out.end(), m_bytes + begin, m_bytes + begin + size);
        begin += size;
    } while (begin < block.end);
}

void DeflateWriter::write(const DeflateSymbols& block, bool isLast) {
    const Frequencies counts = frequenciesOf(block);
    const DeflateTree literals = buildDeflateTree(deflateFormat::literalAlphabet, counts.literals.data());
    const DeflateTree distances = buildDeflateTree(deflateFormat::distanceAlphabet, counts.distances.data());
    const deflateFormat::TreesHeader header = deflateFormat::treesHeader(literals, distances);
    const std::uint64_t own = header.bits() + literals.bits + distances.bits;
    const std::uint64_t fixed = deflateFormat::fixedBits(counts.literals.data(), counts.distances.data());
    if (storedBits(block.end - block.begin) < std::min(own, fixed)) {
        writeStored(block, isLast);
        return;
    }
    put(isLast, 1);
    if (fixed <= own) {
        static const Codes fixedLiterals = codesOf(fixedLiteralLengths());
        static const Codes fixedDistances =
            codesOf(std::vector<std::uint8_t>(deflateFormat::distanceCodes, 5));
        put(FixedTrees, 2);
        writeSymbols(block, fixedLiterals, fixedDistances);
        return;
    }
    put(OwnTrees, 2);
    put(literals.lengths.size() - 257, 5);
    put(distances.lengths.size() - 1, 5);
    put(header.told - 4, 4);
    for (std::size_t i = 0; i < header.told; ++i) {
        const std::size_t code = deflateFormat::lengthOrder[i];
        put(code < header.tree.lengths.size() ? header.tree.lengths[code] : 0, 3);
    }
    const Codes runCodes = codesOf(header.tree.lengths);
    for (const deflateFormat::LengthRun& run : header.runs) {
        put(runCodes[run.code].bits, runCodes[run.code].length);
        put(run.extra, deflateFormat::lengthAlphabet.extraBits[run.code]);
    }
    writeSymbols(block, codesOf(literals.lengths), codesOf(distances.lengths));
}

void DeflateWriter::align() {
    if (m_count > 0)
        writeStored({}, false);
}

std::vector<std::uint8_t> DeflateWriter::take() {
    put(0, (8 - m_count) % 8);
    return std::move(m_out);
}
