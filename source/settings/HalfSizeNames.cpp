#include "HalfSizeNames.h"

std::optional<HalfSizeNames> halfSizeNames(const QString& textureFileName) {
    // The first that the name holds counts: "@2x." holds "2x.", too.
    constexpr const char* names[][2] = {{"-hd.", "."}, {"-ipadhd.", "-ipad."}, {"@2x.", "."}, {"2x.", "."}};
    for (const auto& [main, replacement] : names) {
        if (textureFileName.contains(QLatin1String(main)))
            return HalfSizeNames{QLatin1String(main), QLatin1String(replacement)};
    }
    return std::nullopt;
}
