#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

class Settings;
class Sprite;

/// Everything that a layout depends on. Two jobs with equal inputs have the same layout.
struct LayoutInputs {
    QStringList spriteKeys; ///< sorted: padded size and file line of each sprite
    QSize maxSize{-1, -1};
    QSize fixedSize{-1, -1};
    int borderPadding = 0;
    int shapePadding = 0;
    int outputFormat = 0;
    bool forceWordAligned = false;
    bool autoAlias = false;
    int sizeConstraints = 0;   ///< in effect: POT for the PVRTC formats
    bool forceSquared = false; ///< in effect: true for the PVRTC formats
    bool allowRotation = false;
    QString algorithmText; ///< the algorithm settings, serialised
    int baseFactor = 1;    ///< both sides of the sheet are multiples of it

    LayoutInputs() = default;
    LayoutInputs(const Settings& settings, const QList<Sprite>& sprites, int baseFactor);

    bool operator==(const LayoutInputs&) const = default;
};
