#pragma once

#include "PlainMaxRects.h"
#include "PlainSizeSearch.h"

#include <map>

/// A layout made by plain steps and plain attempts, one after the other, each attempt once. Throws as
/// PlainSizeSearch.
struct PlainLayout {
    explicit PlainLayout(const SizeSearchInput& input,
                         PlainMaxRects::Contact contact = PlainMaxRects::Contact::AllPlaced);

    QList<QSize> sizes;                                   ///< of the steps
    QList<bool> firstFits;                                ///< of the steps
    PackerParameters parameters;                          ///< of the last attempt
    std::map<std::pair<int, int>, PackedResult> attempts; ///< by width and height
    PackedResult result;
};
