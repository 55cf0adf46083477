#pragma once

#include "LegacyProject.h"

#include "DataFormats.h"
#include "Error.h"
#include "Settings.h"

#include <QDataStream>
#include <QVariant>

#include <gtest/gtest.h>

// Streams are made with the toolkit's own writer, in the version that the first generation used.

inline const QString projectName = QStringLiteral("/base/game/project.svs");

struct LegacyFormats : DataFormats {
    std::optional<DataFormat> findFormat(const QString& name) const override {
        if (name == QLatin1String("cocos2d"))
            return DataFormat{name, true, true, true, true};
        if (name == QLatin1String("css"))
            return DataFormat{name, false, false, false, true};
        return std::nullopt;
    }
    QStringList formatIds() const override { return {QStringLiteral("cocos2d"), QStringLiteral("css")}; }
};

class LegacyProject : public testing::Test {
protected:
    void SetUp() override { DataFormats::setInstance(&m_formats); }
    void TearDown() override { DataFormats::setInstance(nullptr); }

private:
    LegacyFormats m_formats;
};

struct LegacyHeader {
    QString magic = QStringLiteral("Sorvane");
    QString version = QStringLiteral("1.2.3");
    qint32 major = 1;
    qint32 minor = 0;
    qint32 third = 7;
};

inline QByteArray headerBytes(const LegacyHeader& header = {}) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_4_8);
    stream << header.magic << header.version << header.major << header.minor << header.third;
    return bytes;
}

template <typename T>
QByteArray streamed(const T& value) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_4_8);
    stream << value;
    return bytes;
}

inline QByteArray projectBytes(const QHash<QString, QVariant>& values) {
    return headerBytes() + streamed(values);
}

/// The loaded settings as text; an error as its code and text.
inline QString outcome(const QByteArray& bytes) {
    try {
        return parseLegacyProject(bytes, projectName)->toXml();
    } catch (const Error& error) {
        return QStringLiteral("%1 %2").arg(error.code()).arg(error.message());
    }
}

inline QString outcome(const char* key, const QVariant& value) {
    return outcome(projectBytes({{QLatin1String(key), value}}));
}
