// Template formats: descriptor and template, a line "---" between them. Whatever they are, the exporter
// writes a file or throws.

#include "DataExporterGeneric.h"
#include "Error.h"
#include "Settings.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

namespace {

void write(const QString& name, const QByteArray& bytes) {
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        std::abort();
}

PackedTexture sheet() {
    PackedSprite sprite(QStringLiteral("a/run_02.png"), 1);
    sprite.setPosition({2, 3});
    sprite.setSize({7, 5});
    sprite.setUntrimmedSize({9, 8});
    sprite.setTextureSize({128, 64});
    PackedSprite alias(QStringLiteral("<\"b\">.png"), 2);
    sprite.addAlias(alias);
    PackedTexture texture(2, 2);
    texture.setSize({128, 64});
    texture.add(sprite);
    return texture;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static QCoreApplication application(*argc, *argv);
    // What the library says of broken templates is no finding.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    // Scripts are code, and a deadline of minutes ends what includes and ranges multiply: nothing to wait for
    // here.
    if (bytes.contains("load") || bytes.contains("range") || bytes.contains("include"))
        return -1;
    static const QTemporaryDir folder;
    const int separator = bytes.indexOf("\n---\n");
    write(folder.filePath(QStringLiteral("exporter.xml")), bytes.left(separator));
    write(folder.filePath(QStringLiteral("main.txt")),
          separator < 0 ? QByteArray() : bytes.mid(separator + 5));
    static Settings settings;
    try {
        DataExporterGeneric exporter(folder.path());
        exporter.setFileName(folder.filePath(QStringLiteral("out.txt")));
        exporter.setInput(&settings, sheet());
        exporter.setSmartUpdateKey(QStringLiteral("$token$"));
        exporter.write();
    } catch (const Error&) {
        // Refused, as it should be.
    }
    return 0;
}
