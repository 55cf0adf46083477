#include "TiffDevice.h"

#include "ImageLimits.h"

#include <tiffio.h>

#include <cstdio>

namespace {

QIODevice& deviceOf(thandle_t handle) { return *static_cast<QIODevice*>(handle); }

tmsize_t readBytes(thandle_t handle, void* target, tmsize_t size) {
    return deviceOf(handle).read(static_cast<char*>(target), size);
}

tmsize_t writeBytes(thandle_t handle, void* bytes, tmsize_t size) {
    return deviceOf(handle).write(static_cast<const char*>(bytes), size);
}

toff_t seekTo(thandle_t handle, toff_t offset, int origin) {
    QIODevice& device = deviceOf(handle);
    auto position = static_cast<qint64>(offset);
    if (origin == SEEK_CUR)
        position += device.pos();
    else if (origin == SEEK_END)
        position += device.size();
    // A file may point beyond its end; only a writer goes there.
    const bool inside = device.isWritable() || position <= device.size();
    return position >= 0 && inside && device.seek(position) ? static_cast<toff_t>(position)
                                                            : static_cast<toff_t>(-1);
}

int leaveOpen(thandle_t) { return 0; }

toff_t sizeOf(thandle_t handle) { return static_cast<toff_t>(deviceOf(handle).size()); }

int sayNothing(TIFF*, void*, const char*, const char*, va_list) { return 1; }

struct FreeOptions {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

} // namespace

void TiffClose::operator()(tiff* file) const { TIFFClose(file); }

TiffHandle openTiff(QIODevice& device, const char* mode) {
    const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
    if (!options)
        return nullptr;
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), 4 * ImageLimits::maximumPixels);
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), sayNothing, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), sayNothing, nullptr);
    return TiffHandle(TIFFClientOpenExt("", mode, &device, readBytes, writeBytes, seekTo, leaveOpen, sizeOf,
                                        nullptr, nullptr, options.get()));
}
