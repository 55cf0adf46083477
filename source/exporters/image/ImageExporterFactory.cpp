#include "ImageExporterFactory.h"

#include "ImageExporterPng.h"
#include "ImageExporterPvr.h"
#include "ImageExporterUniversal.h"

std::unique_ptr<ImageExporter> makeImageExporter(SettingsBase::TextureFormat format,
                                                 uint pngOptimizationLevel) {
    using Format = SettingsBase::TextureFormat;
    switch (format) {
    case Format::png:
        if (pngOptimizationLevel == 0)
            return std::make_unique<ImageExporterPng>();
        break;
    case Format::jpg:
    case Format::bmp:
    case Format::tiff:
        return std::make_unique<ImageExporterPng>();
    case Format::pvr2:
    case Format::pvr2gz:
    case Format::pvr2ccz:
        return std::make_unique<ImageExporterPvr>();
    case Format::tga:
    case Format::pkm:
    case Format::ppm_ascii:
    case Format::ppm_binary:
        break;
    }
    return std::make_unique<ImageExporterUniversal>();
}
