#include "JsonText.h"

#include "DataExporter.h"
#include "Settings.h"
#include "product.h"

#include <utility>

QString JsonText::rect(const QRect& rect) {
    return QStringLiteral("{\"x\":%1,\"y\":%2,\"w\":%3,\"h\":%4}")
        .arg(rect.x())
        .arg(rect.y())
        .arg(rect.width())
        .arg(rect.height());
}

QString JsonText::size(QSize size) {
    return QStringLiteral("{\"w\":%1,\"h\":%2}").arg(size.width()).arg(size.height());
}

QString JsonText::point(QPoint point) {
    return QStringLiteral("{\"x\":%1,\"y\":%2}").arg(point.x()).arg(point.y());
}

QString JsonText::escaped(QString text) {
    // The backslash first, as the others bring new ones.
    constexpr std::pair<char, const char*> escapes[] = {{'\\', "\\\\"}, {'"', "\\\""}, {'\b', "\\b"},
                                                        {'\f', "\\f"},  {'\n', "\\n"}, {'\r', "\\r"},
                                                        {'\t', "\\t"}};
    for (const auto& [character, escape] : escapes)
        text.replace(QLatin1Char(character), QLatin1String(escape));
    return text;
}

void JsonText::writeMetaHead(QTextStream& stream, const DataExporter& exporter, const QString& image) {
    stream << "\"meta\": {\n"
           << "\t\"app\": \"" << product::homePage << "\",\n"
           << "\t\"version\": \"1.0\",\n"
           << "\t\"image\": \"" << image << "\",\n"
           << "\t\"format\": \"" << exporter.settings()->outputFormatName() << "\",\n"
           << "\t\"size\": " << size(exporter.texture().size()) << ",\n";
}
