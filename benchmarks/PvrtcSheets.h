#pragma once

#include <QImage>
#include <QString>

/// Sheets of 1024 x 1024 pixels that texture compression is measured on, in Format_RGBA8888.

/// The PNG files of a folder and those below it, by path, side by side on a transparent ground, over and over
/// until the sheet is full. `skip`: so many files are left out after each one that is taken. Empty if there
/// are none.
QImage sheetOfFolder(const QString& folder, int skip);

/// Four painted portraits: gradients of skin, strands of hair, noise as of canvas.
QImage paintedSheet(unsigned seed);
