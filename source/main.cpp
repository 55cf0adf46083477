#include "CommandLineSequencer.h"
#include "ConsoleLog.h"
#include "DataExporterRegistry.h"
#include "Error.h"
#include "ExporterFolders.h"
#include "GFileName.h"
#include "ImageLoader.h"
#include "PackedResult.h"
#include "product.h"

#include <QFile>
#include <QGuiApplication>

#include <cstdio>

namespace {

/// The toolkit's own talk (what its image readers think of a file, our debug output) isn't for users; what it
/// can't go on after is.
void handleToolkitMessage(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

void registerMetaTypes() {
    qRegisterMetaType<GFileName>("GFileName");
    qRegisterMetaType<GFileNameList>("GFileNameList");
    qRegisterMetaType<Error>("Error");
    qRegisterMetaType<PackedResult>("PackedResult");
}

/// Without a time zone in the environment the C library looks at its file again for every date, five times
/// for each source.
void keepTimeZone() {
    constexpr char systemZone[] = "/etc/localtime";
    if (!qEnvironmentVariableIsSet("TZ") && QFile::exists(QLatin1String(systemZone)))
        qputenv("TZ", QByteArray(":") + systemZone);
}

QStringList argumentsOf(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

/// A folder of template formats that can't be read is no reason to stop: the other formats work.
void findTemplateFormats(const QStringList& arguments) {
    const QStringList faults = scanExporterFolders(DataExporterRegistry::instance());
    // Before the options are read, the log doesn't know yet that the run is to be quiet.
    if (arguments.contains(QLatin1String("--quiet")))
        return;
    for (const QString& fault : faults)
        ConsoleLog::instance().warning(QStringLiteral("Failed to scan exporters: %1").arg(fault));
}

} // namespace

int main(int argc, char** argv) {
    qInstallMessageHandler(handleToolkitMessage);
    keepTimeZone();
    registerMetaTypes();

    // A batch run needs no display, but the toolkit draws some formats (text in an SVG) only with a graphical
    // application object. It gets arguments of its own, so that it takes none of the user's for itself.
    char platformOption[] = "-platform";
    char platform[] = "offscreen";
    char* toolkitArguments[] = {argv[0], platformOption, platform, nullptr};
    int toolkitArgumentCount = 3;
    QGuiApplication application(toolkitArgumentCount, toolkitArguments);
    QGuiApplication::setApplicationName(QLatin1String(product::name));
    QGuiApplication::setOrganizationName(QLatin1String(product::organisation));
    QGuiApplication::setApplicationVersion(QLatin1String(product::version));

    // Singletons that the worker thread uses exist before it starts.
    QtUniversalImageLoader::ImageLoader::instance(false);
    DataFormats::setInstance(&DataExporterRegistry::instance());

    const QStringList arguments = argumentsOf(argc, argv);
    findTemplateFormats(arguments);
    CommandLineSequencer sequencer(arguments);
    sequencer.start();
    return QGuiApplication::exec();
}
