#pragma once

#include <QVariant>

class QIODevice;

/// Reads an XML property list (Apple's PLIST 1.0): string, real, integer, true, false, array, dict. Numbers
/// convert without a test: bad text reads as 0.
class PlistReader {
public:
    /// The top dictionary of an open device: QString, double, int, bool, QVariantList and QVariantHash. Of
    /// pairs with one key the last counts. Throws Error 39 for what isn't XML, isn't a property list,
    /// holds declarations, has an unusual encoding or nests too deep (see parseXml()).
    static QVariantHash read(QIODevice& device);
};
