#pragma once

#include <QImage>

#include <set>

/// hq2x written down case by case as it was published, for colours without alpha: slow and without any
/// symmetry made use of. Adds the patterns that it meets to `patterns`.
QImage plainHq2x(const QImage& image, std::set<int>& patterns);
