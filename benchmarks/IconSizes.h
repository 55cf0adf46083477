#pragma once

#include <QSize>

#include <random>
#include <vector>

/// Padded sizes distributed as those of a real set, the trimmed images of benchmarks/icons.sh (made by
/// `benchmarks/layout --sizes`): evenly from the whole set, or the set more than once, and in an order of no
/// meaning. Equal counts give equal lists.
inline std::vector<QSize> iconSizes(int count) {
    constexpr struct {
        int width;
        int height;
        int number;
    } set[] = {
#include "IconSizes.inc"
    };
    constexpr int shapePadding = 2;
    std::vector<QSize> all;
    for (const auto& [width, height, number] : set)
        all.insert(all.end(), static_cast<size_t>(number),
                   QSize(width + shapePadding, height + shapePadding));
    const auto total = static_cast<size_t>(count);
    std::vector<QSize> sizes;
    while (total - sizes.size() >= all.size())
        sizes.insert(sizes.end(), all.begin(), all.end());
    const size_t rest = total - sizes.size();
    for (size_t i = 0; i < rest; ++i)
        sizes.push_back(all[i * all.size() / rest]);
    std::mt19937 random(20130214);
    for (size_t i = sizes.size(); i > 1; --i)
        std::swap(sizes[i - 1], sizes[random() % i]);
    return sizes;
}
