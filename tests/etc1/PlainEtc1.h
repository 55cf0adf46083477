#pragma once

#include <array>
#include <cstdint>
#include <vector>

/// The search of the encoder as it reads in words: one table, one pixel, one modifier after the other. What
/// the encoder has to give, and what its speed is measured by.
struct PlainEtc1Block {
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    int error = 0; ///< weighted, of all pixels that count

    std::array<std::uint8_t, 8> bytes() const;
};

/// `pixels` and `mask` are those of etc1EncodeBlock().
PlainEtc1Block plainEtc1Block(const std::uint8_t* pixels, unsigned mask);

/// A picture of red, green, blue, without a gap between its rows.
std::vector<std::uint8_t> plainEtc1Image(const std::uint8_t* pixels, int width, int height);
