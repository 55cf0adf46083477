// What the toolkit reads (PNG and others, known by their first bytes), behind our checks of sizes.

#include "ImageLoader.h"

#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

// The toolkit leaves small things of its own behind.
extern "C" const char* __asan_default_options() { return "detect_leaks=0"; }

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static QGuiApplication application(*argc, *argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("picture.png"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    file.write(reinterpret_cast<const char*>(data), qint64(size));
    file.close();
    QtUniversalImageLoader::ImageLoader::instance()->load(path);
    return 0;
}
