#include "DataExporterGideros.h"

#include "DataFile.h"

#include <QMargins>

namespace {

/// What trimming took away at each side.
QMargins margins(const PackedSprite& sprite) {
    if (!sprite.trimmed())
        return {};
    const QPoint corner = sprite.sourceRect().topLeft();
    const QSize rest = sprite.untrimmedSize() - sprite.frameRectWithoutRotation().size();
    return {corner.x(), corner.y(), rest.width() - corner.x(), rest.height() - corner.y()};
}

} // namespace

DataExporterGideros::DataExporterGideros(const DataExporterInfo& info) : DataExporter(info) {}

QString DataExporterGideros::nameInFile(const PackedSprite& sprite) const {
    QString name = DataExporter::nameInFile(sprite);
    return name.replace(QLatin1Char('/'), QLatin1Char('_')).replace(QLatin1Char('\\'), QLatin1Char('_'));
}

void DataExporterGideros::write() const {
    DataFile file(fileName(), QStringLiteral("Failed to write giderous output file %1"));
    for (const PackedSprite& sprite : sortedSprites()) {
        const QRect rect = sprite.frameRect();
        const QMargins gone = margins(sprite);
        file.text() << nameInFile(sprite) << ", " << rect.x() << ", " << rect.y() << ", " << rect.width()
                    << ", " << rect.height() << ", " << gone.left() << ", " << gone.top() << ", "
                    << gone.right() << ", " << gone.bottom() << '\n';
    }
    file.commit();
}
