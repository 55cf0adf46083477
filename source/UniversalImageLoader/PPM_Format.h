#pragma once

#include <QMetaType>

namespace UniversalImageLoader {

/// Flavour of a PPM file, the value of the option "format".
enum PPM_Format : int { binary = 0, ascii = 1 };

} // namespace UniversalImageLoader

Q_DECLARE_METATYPE(UniversalImageLoader::PPM_Format)
