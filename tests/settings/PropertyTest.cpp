// Every property of every settings class, found through the toolkit's reflection, so that a new row of the
// table is tested without a new line here.

#include "GSerializableFactory.h"
#include "GSerializableReader.h"
#include "GSerializableWriter.h"
#include "Settings.h"

#include <QBuffer>
#include <QMetaProperty>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

const char* const classNames[] = {"AlgorithmBasicSettings",
                                  "AlgorithmMaxRectsSettings",
                                  "AlgorithmSettings",
                                  "AndEngineWrap",
                                  "AndEngine",
                                  "LibGDXFiltering",
                                  "LibGDX",
                                  "AutoSDSettings",
                                  "SpriteSettings",
                                  "SettingsBase",
                                  "Settings"};

/// Old keys, read for migration and never written; `verbose` of a Settings is a flag outside the stored
/// properties.
const QStringList notStored = {QStringLiteral("trim"), QStringLiteral("crop"),
                               QStringLiteral("allowFreeSize"), QStringLiteral("verbose")};

/// A value of the property's type that differs from `old`; invalid for nested objects and for name halves of
/// enums.
QVariant otherValue(const QMetaProperty& property, const QVariant& old) {
    if (property.isEnumType())
        return property.enumerator().value(old.toInt() == 0 ? 1 : 0);
    switch (property.userType()) {
    case QMetaType::Bool:
        return !old.toBool();
    case QMetaType::Int:
        return old.toInt() + 3;
    case QMetaType::UInt:
        return old.toUInt() + 5;
    case QMetaType::Double:
        return 0.25;
    case QMetaType::QSize:
        return QSize(321, 123);
    case QMetaType::QStringList:
        return QStringList{QStringLiteral("a & b"), QStringLiteral("<c>")};
    case QMetaType::QString:
        if (QByteArray(property.name()).endsWith("Name"))
            return {};
        return QStringLiteral("täxt <&> \"'");
    default:
        break;
    }
    if (property.userType() == qMetaTypeId<GFileName>())
        return QVariant::fromValue(GFileName(QStringLiteral("/base/sub/file.png")));
    if (property.userType() == qMetaTypeId<GFileNameList>())
        return QVariant::fromValue(
            GFileNameList{QStringLiteral("/base/a.png"), QStringLiteral("/other/b c.png")});
    if (property.userType() == qMetaTypeId<ScaleMode>())
        return QVariant::fromValue(ScaleMode::Eagle);
    return {};
}

QByteArray xmlOf(const GSerializable& object) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    GSerializableWriter writer(&buffer, QDir(QStringLiteral("/base")));
    writer.beginDocument();
    writer.writeObject(object);
    writer.endDocument();
    return bytes;
}

std::unique_ptr<GSerializable> readBack(QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const GSerializableReader reader(buffer, QDir(QStringLiteral("/base")));
    std::unique_ptr<QObject> object = reader.readObject();
    auto* serializable = qobject_cast<GSerializable*>(object.get());
    if (serializable)
        object.release();
    return std::unique_ptr<GSerializable>(serializable);
}

std::unique_ptr<GSerializable> make(const char* className) {
    return std::unique_ptr<GSerializable>(
        qobject_cast<GSerializable*>(GSerializableFactory::create(QLatin1String(className))));
}

/// A file name that isn't set reads back as the base folder, which is written as ".".
QByteArray withoutUnsetNames(QByteArray xml) {
    return xml.replace("<filename>.</filename>", "<filename></filename>");
}

} // namespace

class EveryClass : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(settings, EveryClass, testing::ValuesIn(classNames));

TEST_P(EveryClass, setsSignalsAndStoresEachProperty) {
    const std::unique_ptr<GSerializable> object = make(GetParam());
    ASSERT_TRUE(object);
    const QByteArray defaults = xmlOf(*object);
    const QMetaObject& meta = *object->metaObject();
    int tried = 0;
    for (int i = GSerializable::staticMetaObject.propertyCount(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        const QVariant old = property.read(object.get());
        const QVariant other = otherValue(property, old);
        const bool isStored = !notStored.contains(QLatin1String(property.name()));
        if (!other.isValid() || !isStored)
            continue;
        SCOPED_TRACE(property.name());
        ++tried;
        object->setDirty(false);
        QSignalSpy changed(object.get(), property.notifySignal().methodSignature().prepend('2').constData());
        QSignalSpy anything(object.get(), &GSerializable::propertyChanged);

        ASSERT_TRUE(property.write(object.get(), old));
        EXPECT_EQ(changed.size() + anything.size(), 0) << "an equal value is no change";
        EXPECT_FALSE(object->isDirty());

        ASSERT_TRUE(property.write(object.get(), other));
        EXPECT_EQ(changed.size(), 1);
        EXPECT_EQ(anything.size(), 1);
        EXPECT_TRUE(object->isDirty());

        const QByteArray bytes = xmlOf(*object);
        EXPECT_NE(bytes, defaults);
        const std::unique_ptr<GSerializable> again = readBack(bytes);
        ASSERT_TRUE(again);
        EXPECT_EQ(withoutUnsetNames(xmlOf(*again)).toStdString(), bytes.toStdString());
        EXPECT_FALSE(again->isDirty());
        const std::unique_ptr<GSerializable> copy(object->clone());
        EXPECT_EQ(xmlOf(*copy), bytes);
        EXPECT_STREQ(copy->metaObject()->className(), GetParam());

        object->setDefaults();
        EXPECT_EQ(xmlOf(*object), defaults);
    }
    // LibGDX holds nothing but a nested object.
    EXPECT_GT(tried, qstrcmp(GetParam(), "LibGDX") == 0 ? -1 : 0);
}

TEST_P(EveryClass, nestedObjectsMakeTheirOwnerDirty) {
    const std::unique_ptr<GSerializable> object = make(GetParam());
    for (auto* nested : object->findChildren<GSerializable*>()) {
        SCOPED_TRACE(nested->metaObject()->className());
        object->setDirty(false);
        ASSERT_FALSE(nested->isDirty());
        QSignalSpy changed(object.get(), &GSerializable::propertyChanged);
        nested->setDirty(true);
        EXPECT_TRUE(object->isDirty());
        EXPECT_EQ(changed.size(), 1);
        object->setDirty(false);
        EXPECT_FALSE(nested->isDirty()) << "clearing reaches everything below";
    }
}
