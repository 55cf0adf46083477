#pragma once

#include <QList>
#include <QString>
#include <QVariant>

namespace QtUniversalImageLoader {

/// One choice of an option of type Enumeration.
struct ImageLoaderOptionValue {
    QString key;
    QString name;        ///< short label, translated
    QString description; ///< translated
    QVariant value;
};

/// Describes one key of the option hash that a plug-in understands.
struct ImageLoaderOption {
    enum Type : int { Integer = 2, Enumeration = 3, Boolean = 4 };

    QString key;
    QString name;        ///< short label, translated
    QString description; ///< translated
    int type = Integer;
    QVariant defaultValue;
    QList<ImageLoaderOptionValue> values; ///< the choices of an Enumeration
};

} // namespace QtUniversalImageLoader
