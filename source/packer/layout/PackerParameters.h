#pragma once

#include "PackedResult.h"
#include "SpriteShapes.h"

#include <QSharedDataPointer>
#include <QSize>

#include <optional>

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

    /// Only a layout that holds all sprites is of use: an attempt that can't give one ends as soon as it
    /// knows, with an empty result.
    bool completeOnly() const;
    void setCompleteOnly(bool completeOnly);

    /// The attempt is made before its turn and perhaps in vain: its result isn't stored.
    bool ahead() const;
    void setAhead(bool ahead);

    /// The result of an attempt that was made ahead with equal parameters, if there was one.
    const std::optional<PackedResult>& resultAhead() const;
    void setResultAhead(const std::optional<PackedResult>& result);

    /// Whether cores are free to try ways of placing side by side, those too that may turn out to be in vain.
    /// True at first.
    bool sideBySide() const;
    void setSideBySide(bool sideBySide);

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
