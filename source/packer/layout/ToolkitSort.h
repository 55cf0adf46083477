#pragma once

// The order in which the toolkit's unstable sort leaves equal keys is part of the packed layout. The toolkit
// has given the function up: what a later one drops is this one file.

#include <QtAlgorithms>

/// Sorts a random access range. Equal elements end in an order of the algorithm's own, which depends on
/// nothing but their number and the answers of `lessThan`.
template <typename Iterator, typename LessThan>
void toolkitSort(Iterator begin, Iterator end, LessThan lessThan) {
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    qSort(begin, end, lessThan);
    QT_WARNING_POP
}
