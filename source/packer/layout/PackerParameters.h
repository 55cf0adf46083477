#pragma once

#include "SpriteShapes.h"

#include <QSharedDataPointer>
#include <QSize>

class AlgorithmSettings;

/// What one packing attempt gets. An implicitly shared value: setters copy the record first if it is shared.
class PackerParameters {
public:
    PackerParameters();
    PackerParameters(const PackerParameters& other);
    PackerParameters(PackerParameters&& other) noexcept;
    PackerParameters& operator=(const PackerParameters& other);
    PackerParameters& operator=(PackerParameters&& other) noexcept;
    ~PackerParameters();

    const QList<Sprite>& sprites() const;
    /// Takes the sprites, and their padded sizes as they are now.
    void setSprites(const QList<Sprite>& sprites);
    /// Names and padded sizes of sprites(), in their order.
    const std::vector<SpriteShape>& shapes() const;
    const SharedShapes& sharedShapes() const;

    bool allowRotation() const;
    void setAllowRotation(bool allow);

    bool forceSquared() const;
    void setForceSquared(bool force);

    bool forceWordAligned() const;
    void setForceWordAligned(bool force);

    /// An AlgorithmSettings::SizeConstraints; POT for formats that take nothing else, whatever the settings
    /// say.
    int sizeConstraints() const;
    void setSizeConstraints(int constraints);

    /// The first way of placing that takes all sprites ends the attempt.
    bool firstFitWins() const;
    void setFirstFitWins(bool wins);

    /// Not owned; null at first.
    const AlgorithmSettings* algorithmSettings() const;
    void setAlgorithmSettings(const AlgorithmSettings* settings);

    /// Pixels between sprites.
    int shapePadding() const;
    void setShapePadding(int padding);

    /// Pixels between sprites and the sheet's border.
    int borderPadding() const;
    void setBorderPadding(int padding);

    /// Size of the sheet in pixels, (-1, -1) at first.
    QSize size() const;
    void setSize(QSize size);

private:
    struct Data;
    QSharedDataPointer<Data> m_data;
};
