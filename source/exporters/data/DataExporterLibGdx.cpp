#include "DataExporterLibGdx.h"

#include "DataFile.h"
#include "DataText.h"
#include "Error.h"
#include "Settings.h"

#include <algorithm>

namespace {

struct IndexedName {
    QString name;
    int index = -1; ///< -1: none
};

/// Splits "walk_01" into "walk" and 1.
IndexedName indexedName(const PackedSprite& sprite) {
    const QString name = sprite.trimmedName();
    const int underscore = name.lastIndexOf(QLatin1Char('_'));
    const QString number = name.mid(underscore + 1);
    const bool digits = std::all_of(number.begin(), number.end(),
                                    [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); });
    if (underscore < 0 || number.isEmpty() || !digits)
        return {name};
    // A number beyond 32 bits counts as 0; the framework couldn't read it.
    return {name.left(underscore), number.toInt()};
}

QString pixelFormatWord(SettingsBase::OutputFormat format) {
    switch (format) {
    case SettingsBase::OutputFormat::RGBA8888:
        return QStringLiteral("RGBA8888");
    case SettingsBase::OutputFormat::RGBA4444:
        return QStringLiteral("RGBA4444");
    case SettingsBase::OutputFormat::RGB888:
        return QStringLiteral("RGB888");
    case SettingsBase::OutputFormat::RGB565:
        return QStringLiteral("RGB565");
    case SettingsBase::OutputFormat::ALPHA:
        return QStringLiteral("Alpha");
    case SettingsBase::OutputFormat::ALPHA_INTENSITY:
        return QStringLiteral("Alpha + Intensity");
    default:
        throw Error(Error::DataFile, QStringLiteral("Can't export in that pixel format for libgdx"));
    }
}

void writeEntry(QTextStream& stream, const PackedSprite& sprite) {
    const IndexedName name = indexedName(sprite);
    const QPoint place = sprite.frameRect().topLeft();
    const QSize size = sprite.frameRectWithoutRotation().size();
    const QSize whole = sprite.untrimmedSize();
    const QPoint offset = sprite.cornerOffset();
    stream << name.name << '\n'
           << "  rotate: " << DataText::boolean(sprite.rotated()) << '\n'
           << "  xy: " << place.x() << ", " << place.y() << '\n'
           << "  size: " << size.width() << ", " << size.height() << '\n'
           << "  orig: " << whole.width() << ", " << whole.height()
           << '\n'
           // The framework's y points up.
           << "  offset: " << offset.x() << ", " << whole.height() - offset.y() - size.height() << '\n'
           << "  index: " << name.index << '\n';
}

} // namespace

DataExporterLibGdx::DataExporterLibGdx(const DataExporterInfo& info) : DataExporter(info) {}

QString DataExporterLibGdx::nameInFile(const PackedSprite& sprite) const {
    const IndexedName name = indexedName(sprite);
    return name.index < 0 ? name.name : name.name + QLatin1Char('_') + QString::number(name.index);
}

void DataExporterLibGdx::writeHead(QTextStream& stream) const {
    const QString pixelFormat = pixelFormatWord(settings()->outputFormat());
    const LibGDXFiltering& filtering = *settings()->libGdx()->filtering();
    stream << textureFilePath() << '\n'
           << "format: " << pixelFormat << '\n'
           << "filter: " << filtering.xName() << ',' << filtering.yName() << '\n'
           << "repeat: none\n";
}

void DataExporterLibGdx::write() const {
    // The sentence speaks of XML; it is the one that users know.
    DataFile file(fileName(), QStringLiteral("Failed to write xml file %1"));
    writeHead(file.text());
    const QList<PackedSprite> sprites = sortedSprites();
    for (int i = 0; i < sprites.size(); ++i) {
        // The last one of a full name is the one that is listed. Equal names lie side by side.
        if (i + 1 < sprites.size() && sprites[i].fullName() == sprites[i + 1].fullName())
            continue;
        writeEntry(file.text(), sprites[i]);
    }
    file.commit();
}
