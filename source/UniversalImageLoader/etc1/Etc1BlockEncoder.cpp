#include "Etc1BlockEncoder.h"
#include "Etc1BlockSearch.h"

namespace {

void encodeWithBaseline(const Etc1Block& block, std::uint8_t* target) {
    Etc1BlockSearch<4>(block).store(target);
}

// The search is compiled for these instructions as far as it is inlined here, and "flatten" inlines all of
// it. Clang's doesn't: calls would be left that caller and callee handle in different ways.
#if defined(__x86_64__) && !defined(__clang__)
[[gnu::flatten, gnu::target("avx2,fma")]] void encodeWithAvx2(const Etc1Block& block, std::uint8_t* target) {
    Etc1BlockSearch<8>(block).store(target);
}

std::vector<Etc1BlockEncoder> usableEncoders() {
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"))
        return {encodeWithBaseline, encodeWithAvx2};
    return {encodeWithBaseline};
}
#else
std::vector<Etc1BlockEncoder> usableEncoders() { return {encodeWithBaseline}; }
#endif

} // namespace

const std::vector<Etc1BlockEncoder>& etc1BlockEncoders() {
    static const std::vector<Etc1BlockEncoder> encoders = usableEncoders();
    return encoders;
}
