#pragma once

#include <QIODevice>

#include <memory>

struct tiff;

struct TiffClose {
    void operator()(tiff* file) const;
};
using TiffHandle = std::unique_ptr<tiff, TiffClose>;

/// A TIFF file in an open device, for libtiff; `mode` is "r" or "w". Its errors and warnings stay unsaid, and
/// it takes no more memory at once than a picture needs. Null if there is no such file in the device. What a
/// writer holds back it writes when the handle goes.
TiffHandle openTiff(QIODevice& device, const char* mode);
