#pragma once

#include "DataExporter.h"

#include <QVariantMap>

/// Property lists of cocos2d, in three generations of the format.
class DataExporterCocos2d : public DataExporter {
public:
    /// The number is the file's own "format".
    enum Variant : int {
        Original = 0, ///< bare numbers
        Upright = 1,  ///< rectangles as texts
        Rotating = 2  ///< the same, and sprites may lie rotated
    };

    DataExporterCocos2d(const DataExporterInfo& info, Variant variant);

    void write() const override;

private:
    QVariantMap frame(const PackedSprite& sprite) const;
    QVariantMap metadata() const;

    Variant m_variant;
};
