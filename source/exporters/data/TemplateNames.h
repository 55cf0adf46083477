#pragma once

#include <QVariantList>

/// What templates can tell from sprites' names: which of them are frames of one animation.
namespace TemplateNames {

/// "hero/run_01" is frame 1 of "hero/run".
struct Frame {
    /// The name without the number at its end, and without the blanks and the characters / _ - . before that.
    QString stem;
    /// Digits 0 to 9, one to nine of them, without zeros at the front; empty if the name ends in no number,
    /// or in a longer one, or has nothing in front of it: the stem is the whole name then.
    QString number;
};

Frame frame(const QString& name);

/// What a file's name says of its density: 2 for "sheet@2x", and 1 if it says nothing.
double pixelRatio(const QString& fileName);

/// Those of the objects whose property trimmedName ends in a number; in the given order.
QVariantList numbered(const QVariantList& sprites);

/// Groups objects by the stem of their property trimmedName: a list of maps with "name", the stem, and
/// "frames", the objects, ascending by stem. Frames are in the order of their numbers, those without one
/// first; of equal numbers the given order stays.
QVariantList animations(const QVariantList& sprites);

} // namespace TemplateNames
