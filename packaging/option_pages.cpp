// option_pages EXPORTERS FOLDER: writes manual page, bash completion and options page, which are made from
// the table of options, into the folder. EXPORTERS holds the data formats that come with the program.

#include "DataExporterRegistry.h"
#include "Error.h"
#include "OptionPages.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace {

void write(const QDir& folder, const QString& name, const QString& text) {
    const QString path = folder.filePath(name);
    if (!QDir().mkpath(QFileInfo(path).path()))
        throw Error(Error::CommandLine, QStringLiteral("Can't make the folder of %1").arg(path));
    QFile file(path);
    const QByteArray bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        throw Error(Error::CommandLine, QStringLiteral("Can't write %1: %2").arg(path, file.errorString()));
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: option_pages EXPORTERS FOLDER\n");
        return 1;
    }
    try {
        DataExporterRegistry::instance().scan(QDir(QString::fromLocal8Bit(argv[1])));
        const QDir folder(QString::fromLocal8Bit(argv[2]));
        write(folder, QStringLiteral("man/Sorvane.1"), manualPage());
        write(folder, QStringLiteral("completion/Sorvane"), bashCompletion());
        write(folder, QStringLiteral("docs/options.md"), optionsPage());
    } catch (const Error& error) {
        std::fprintf(stderr, "option_pages: %s\n", qPrintable(error.message()));
        return 1;
    }
    return 0;
}
