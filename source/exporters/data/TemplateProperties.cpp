#include "TemplateProperties.h"

#include "GFileName.h"
#include "PackedSprite.h"

#include <QDateTime>
#include <QFileInfo>
#include <QPointF>
#include <QSizeF>
#include <QVariant>

#include <grantlee/metatype.h>
#include <grantlee/typeaccessor.h>

#include <mutex>

Q_DECLARE_METATYPE(FileData)

namespace {

template <class Value>
struct Property {
    const char* name;
    QVariant (*read)(const Value&);
};

QVariant aliasesOf(const PackedSprite& sprite) {
    QVariantList list;
    for (const PackedSprite& alias : sprite.aliasList())
        list.append(QVariant::fromValue(alias));
    return list;
}

const Property<PackedSprite> spriteProperties[] = {
    {"fullName", [](const PackedSprite& s) { return QVariant(s.fullName()); }},
    {"trimmedName", [](const PackedSprite& s) { return QVariant(s.trimmedName()); }},
    {"frameRect", [](const PackedSprite& s) { return QVariant(s.frameRect()); }},
    {"frameRectWithoutRotation",
     [](const PackedSprite& s) { return QVariant(s.frameRectWithoutRotation()); }},
    {"frameRectRel", [](const PackedSprite& s) { return QVariant(s.frameRectRel()); }},
    {"sourceRect", [](const PackedSprite& s) { return QVariant(s.sourceRect()); }},
    {"size", [](const PackedSprite& s) { return QVariant(s.size()); }},
    {"untrimmedSize", [](const PackedSprite& s) { return QVariant(s.untrimmedSize()); }},
    {"cornerOffset", [](const PackedSprite& s) { return QVariant(s.cornerOffset()); }},
    {"rotated", [](const PackedSprite& s) { return QVariant(s.rotated()); }},
    {"trimmed", [](const PackedSprite& s) { return QVariant(s.trimmed()); }},
    {"aliasList", aliasesOf},
    {"fileData", [](const PackedSprite& s) { return QVariant::fromValue(s.fileData()); }},
};

const Property<FileData> fileProperties[] = {
    {"absoluteFileName", [](const FileData& f) { return QVariant(f.path()); }},
    {"lastModified", [](const FileData& f) { return QVariant(QFileInfo(f.path()).lastModified()); }},
    {"created", [](const FileData& f) { return QVariant(QFileInfo(f.path()).birthTime()); }},
    {"fileSize", [](const FileData& f) { return QVariant(QFileInfo(f.path()).size()); }},
};

template <class Size>
const Property<Size> sizeProperties[] = {
    {"width", [](const Size& s) { return QVariant(s.width()); }},
    {"height", [](const Size& s) { return QVariant(s.height()); }},
};

template <class Rect>
const Property<Rect> rectProperties[] = {
    {"x", [](const Rect& r) { return QVariant(r.x()); }},
    {"y", [](const Rect& r) { return QVariant(r.y()); }},
    {"width", [](const Rect& r) { return QVariant(r.width()); }},
    {"height", [](const Rect& r) { return QVariant(r.height()); }},
};

template <class Point>
const Property<Point> pointProperties[] = {
    {"x", [](const Point& p) { return QVariant(p.x()); }},
    {"y", [](const Point& p) { return QVariant(p.y()); }},
};

/// Invalid, which prints as nothing, for a name that isn't in the table.
template <class Value, std::size_t count>
QVariant lookUpIn(const Property<Value> (&table)[count], const Value& value, const QString& name) {
    for (const Property<Value>& property : table) {
        if (name == QLatin1String(property.name))
            return property.read(value);
    }
    return {};
}

} // namespace

namespace Grantlee {

template <>
QVariant TypeAccessor<PackedSprite&>::lookUp(const PackedSprite& object, const QString& property) {
    return lookUpIn(spriteProperties, object, property);
}

template <>
QVariant TypeAccessor<FileData&>::lookUp(const FileData& object, const QString& property) {
    return lookUpIn(fileProperties, object, property);
}

template <>
QVariant TypeAccessor<QSize&>::lookUp(const QSize& object, const QString& property) {
    return lookUpIn(sizeProperties<QSize>, object, property);
}

template <>
QVariant TypeAccessor<QRect&>::lookUp(const QRect& object, const QString& property) {
    return lookUpIn(rectProperties<QRect>, object, property);
}

template <>
QVariant TypeAccessor<QRectF&>::lookUp(const QRectF& object, const QString& property) {
    return lookUpIn(rectProperties<QRectF>, object, property);
}

template <>
QVariant TypeAccessor<QPoint&>::lookUp(const QPoint& object, const QString& property) {
    return lookUpIn(pointProperties<QPoint>, object, property);
}

template <>
QVariant TypeAccessor<QPointF&>::lookUp(const QPointF& object, const QString& property) {
    return lookUpIn(pointProperties<QPointF>, object, property);
}

} // namespace Grantlee

void registerTemplateProperties() {
    static std::once_flag once;
    std::call_once(once, [] {
        Grantlee::registerMetaType<PackedSprite>();
        Grantlee::registerMetaType<FileData>();
        Grantlee::registerMetaType<QSize>();
        Grantlee::registerMetaType<QRect>();
        Grantlee::registerMetaType<QRectF>();
        Grantlee::registerMetaType<QPoint>();
        Grantlee::registerMetaType<QPointF>();
        // The file names of the settings print as what they are.
        QMetaType::registerConverter<GFileName, QString>([](const GFileName& name) { return name.path(); });
    });
}
