#include "DeflateTree.h"

#include <algorithm>
#include <array>

namespace {

constexpr int maximumCodes = 286;
constexpr int maximumNodes = 2 * maximumCodes;

/// zlib's way to a tree: a heap by frequency and depth, joined from the rarest on. Every step is zlib's own,
/// since which of two equal nodes comes first decides the lengths.
class TreeBuilder {
public:
    TreeBuilder(const DeflateAlphabet& alphabet, const std::uint32_t* frequencies) : m_alphabet(alphabet) {
        for (int code = 0; code < alphabet.codes; ++code) {
            m_frequency[code] = frequencies[code];
            m_depth[code] = 0;
            m_length[code] = 0;
            if (frequencies[code] > 0)
                m_heap[++m_heapSize] = m_last = code;
        }
    }

    DeflateTree build() {
        // A tree has two codes at least; those that nothing uses cost nothing.
        while (m_heapSize < 2) {
            const int code = m_last < 2 ? ++m_last : 0;
            m_heap[++m_heapSize] = code;
            m_frequency[code] = 1;
            m_unused += 1;
            m_unusedCodes[m_unused - 1] = code;
        }
        join();
        assignLengths();
        if (m_overflow > 0)
            shorten();
        return tree();
    }

private:
    bool comesFirst(int a, int b) const {
        return m_frequency[a] < m_frequency[b] ||
               (m_frequency[a] == m_frequency[b] && m_depth[a] <= m_depth[b]);
    }

    void sink(int place) {
        const int node = m_heap[place];
        for (int child = 2 * place; child <= m_heapSize; child *= 2) {
            if (child < m_heapSize && comesFirst(m_heap[child + 1], m_heap[child]))
                ++child;
            if (comesFirst(node, m_heap[child]))
                break;
            m_heap[place] = m_heap[child];
            place = child;
        }
        m_heap[place] = node;
    }

    void join() {
        for (int place = m_heapSize / 2; place >= 1; --place)
            sink(place);
        int node = m_alphabet.codes;
        do {
            const int rarest = m_heap[1];
            m_heap[1] = m_heap[m_heapSize--];
            sink(1);
            const int next = m_heap[1];
            m_order[m_ordered++] = rarest;
            m_order[m_ordered++] = next;
            m_frequency[node] = m_frequency[rarest] + m_frequency[next];
            m_depth[node] = std::max(m_depth[rarest], m_depth[next]) + 1;
            m_parent[rarest] = m_parent[next] = node;
            m_heap[1] = node++;
            sink(1);
        } while (m_heapSize >= 2);
        m_order[m_ordered++] = m_heap[1];
    }

    bool isLeaf(int node) const { return node <= m_last; }

    void assignLengths() {
        m_length[m_order[m_ordered - 1]] = 0;
        for (int i = m_ordered - 2; i >= 0; --i) {
            const int node = m_order[i];
            int length = m_length[m_parent[node]] + 1;
            if (length > m_alphabet.maximumLength) {
                length = m_alphabet.maximumLength;
                ++m_overflow;
            }
            m_length[node] = length;
            if (isLeaf(node))
                ++m_ofLength[length];
        }
    }

    /// Moves codes that are too long to the places that shorter ones give up.
    void shorten() {
        const int maximum = m_alphabet.maximumLength;
        for (; m_overflow > 0; m_overflow -= 2) {
            int length = maximum - 1;
            while (m_ofLength[length] == 0)
                --length;
            --m_ofLength[length];
            m_ofLength[length + 1] += 2;
            --m_ofLength[maximum];
        }
        int i = 0;
        for (int length = maximum; length > 0; --length)
            for (int left = m_ofLength[length]; left > 0; ++i)
                if (isLeaf(m_order[i])) {
                    m_length[m_order[i]] = length;
                    --left;
                }
    }

    DeflateTree tree() const {
        DeflateTree tree;
        tree.lengths.reserve(static_cast<std::size_t>(m_last) + 1);
        for (int code = 0; code <= m_last; ++code) {
            tree.lengths.push_back(static_cast<std::uint8_t>(m_length[code]));
            tree.bits += std::uint64_t{m_frequency[code]} * (m_length[code] + m_alphabet.extraBits[code]);
        }
        // Codes that are there for the tree's sake alone.
        for (int i = 0; i < m_unused; ++i)
            tree.bits -= m_length[m_unusedCodes[i]] + m_alphabet.extraBits[m_unusedCodes[i]];
        return tree;
    }

    const DeflateAlphabet& m_alphabet;
    std::array<std::uint32_t, maximumNodes> m_frequency;
    std::array<int, maximumNodes> m_depth;
    std::array<int, maximumNodes> m_parent;
    std::array<int, maximumNodes> m_length;
    std::array<int, maximumNodes> m_heap;
    std::array<int, maximumNodes> m_order; // joined nodes, the rarest first
    std::array<int, 16> m_ofLength = {};
    std::array<int, 2> m_unusedCodes = {};
    int m_heapSize = 0;
    int m_ordered = 0;
    int m_last = -1;
    int m_unused = 0;
    int m_overflow = 0;
};

} // namespace

DeflateTree buildDeflateTree(const DeflateAlphabet& alphabet, const std::uint32_t* frequencies) {
    return TreeBuilder(alphabet, frequencies).build();
}
