#include "LegacyValues.h"

namespace {

// "textureFormat" is stored, but the texture's name decides.
const QVariantHash& defaults() {
    static const QVariantHash table = {
        {"andengine-minfilter", "linear"},
        {"andengine-magfilter", "linear"},
        {"libGdxFilteringX", "Linear"},
        {"libGdxFilteringY", "Linear"},
        {"andengine-wrapt", "clamp"},
        {"andengine-wraps", "clamp"},
        {"flipPVR", false},
        {"autoAliasEnabled", true},
        {"algorithm", "MaxRects"},
        {"dataFormat", "cocos2d"},
        {"dataFileName", ""},
        {"andengine-java", ""},
        {"textureFileName", ""},
        {"trimSpriteNames", false},
        {"allowRotation", true},
        {"backgroundColor", 0u},
        {"shapeDebug", false},
        {"scale", 1.0f},
        {"dpi", 72},
        {"jpgQuality", 80},
        {"extrude", 0u},
        {"andengine-packagename", "Texture"},
        {"trim", true},
        {"crop", false},
        {"trimThreshold", 1u},
        {"textureSubPath", ""},
        {"autoSD", false},
        {"heuristicMask", false},
        {"allowFreeSize", false},
        {"premultiplyAlpha", false},
        {"reduceBorderArtifacts", false},
        {"innerPadding", 0u},
        {"shapePadding", 2u},
        {"borderPadding", 2u},
        {"forcedTextureSize", QSize(-1, -1)},
        {"maxTextureSize", QSize(2048, 2048)},
        {"outputFormat", "RGBA8888"},
        {"ditherType", "NearestNeighbour"},
        {"scaleMode", "smooth"},
        {"basic-sort-by", "best"},
        {"basic-order", "ascending"},
        {"maxrects-heuristics", "best"},
        {"textureFormat", "png"},
        {"fileList", QStringList()},
        {"ignoreFilesList", QStringList()},
        {"replaceList", QStringList()},
    };
    return table;
}

} // namespace

LegacyValues::LegacyValues() : m_values(defaults()) {}

void LegacyValues::take(const QString& key, const QVariant& value) {
    const auto known = defaults().constFind(key);
    if (known != defaults().constEnd())
        m_values.insert(key, value.isNull() ? *known : value);
}

QVariant LegacyValues::value(const char* key) const {
    const auto found = m_values.constFind(QLatin1String(key));
    Q_ASSERT(found != m_values.constEnd());
    return *found;
}
