#include "TemplateRenderer.h"

#include "AlgorithmBasicSettings.h"
#include "AlgorithmSettings.h"
#include "DataExporter.h"
#include "Error.h"
#include "OutputFile.h"
#include "Settings.h"
#include "TemplateLoader.h"
#include "TemplateOutput.h"

#include <grantlee/context.h>
#include <grantlee/engine.h>
#include <grantlee/exception.h>
#include <grantlee/outputstream.h>
#include <grantlee/template.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSharedPointer>
#include <QTextStream>

#include <algorithm>
#include <chrono>
#include <new>

namespace {

/// More than any data file needs, and less than a disk holds.
constexpr qint64 maxOutputBytes = qint64(1) << 30;

/// Thousands of sprites take seconds.
constexpr std::chrono::minutes maxTime{5};

using SortBy = AlgorithmBasicSettings::SortBy;

template <class Key>
void sortBy(QList<PackedSprite>& sprites, bool descending, Key key) {
    std::stable_sort(sprites.begin(), sprites.end(), [&](const PackedSprite& a, const PackedSprite& b) {
        return descending ? key(b) < key(a) : key(a) < key(b);
    });
}

const QString& nameOf(const PackedSprite& sprite) { return sprite.fullName(); }

QList<PackedSprite> orderedSprites(const DataExporter& exporter) {
    QList<PackedSprite> sprites = exporter.texture().allSprites();
    const AlgorithmSettings& algorithm = *exporter.settings()->algorithmSettings();
    if (algorithm.algorithmName() != QLatin1String("Basic")) {
        sortBy(sprites, false, nameOf);
        return sprites;
    }
    // The packer's own order, so that rows come out as they lie on the sheet.
    const bool descending = algorithm.basic()->order() == AlgorithmBasicSettings::Order::Descending;
    switch (algorithm.basic()->sortBy()) {
    case SortBy::Best:
        break;
    case SortBy::Name:
        sortBy(sprites, descending, nameOf);
        break;
    case SortBy::Width:
        sortBy(sprites, descending, [](const PackedSprite& s) { return s.untrimmedSize().width(); });
        break;
    case SortBy::Height:
        sortBy(sprites, descending, [](const PackedSprite& s) { return s.untrimmedSize().height(); });
        break;
    case SortBy::Area:
        sortBy(sprites, descending, [](const PackedSprite& s) {
            return qint64(s.untrimmedSize().width()) * s.untrimmedSize().height();
        });
        break;
    case SortBy::Circumference:
        sortBy(sprites, descending,
               [](const PackedSprite& s) { return s.untrimmedSize().width() + s.untrimmedSize().height(); });
        break;
    }
    return sprites;
}

QVariantList listOf(const QList<PackedSprite>& sprites) {
    QVariantList list;
    list.reserve(sprites.size());
    for (const PackedSprite& sprite : sprites)
        list.append(QVariant::fromValue(sprite));
    return list;
}

QVariantMap textureOf(const DataExporter& exporter) {
    const QString fileName = exporter.settings()->textureFileName();
    const QFileInfo info(fileName);
    return {{QStringLiteral("size"), exporter.texture().size()},
            {QStringLiteral("absoluteFileName"), fileName},
            {QStringLiteral("trimmedName"), info.completeBaseName()},
            {QStringLiteral("fullName"), info.fileName()}};
}

/// `settings` are the exporter's, or equal ones.
void fill(Grantlee::Context& context, const DataExporter& exporter, Settings* settings) {
    context.insert(QStringLiteral("settings"), static_cast<QObject*>(settings));
    context.insert(QStringLiteral("sprites"), listOf(exporter.texture().sprites()));
    context.insert(QStringLiteral("allSprites"), listOf(orderedSprites(exporter)));
    context.insert(QStringLiteral("smartUpdateKey"), exporter.smartUpdateKey());
    context.insert(QStringLiteral("texture"), textureOf(exporter));
}

[[noreturn]] void failWriting(const QString& name, const QString& reason) {
    throw Error(Error::Exporter, QStringLiteral("Failed to write %1: %2").arg(name, reason));
}

void renderInto(QIODevice& device, const Grantlee::Template& page, Grantlee::Context& context,
                QDeadlineTimer deadline) {
    TemplateOutput output(device, maxOutputBytes, deadline);
    QTextStream text(&output);
    text.setCodec("UTF-8");
    Grantlee::OutputStream stream(&text);
    page->render(&stream, &context);
    if (page->error() == Grantlee::NoError)
        text.flush();
}

constexpr int maxTagsTried = 2000;

/// The library says "line 0" of every fault. The line is that of the first tag that alone has the same one.
/// Tags inside a block, and its beginning, are faults in any case when they stand alone: for these 0 stays.
int lineOfFault(const Grantlee::Engine& engine, const QString& text, const QString& name,
                const QString& reason) {
    static const QRegularExpression tag(
        QStringLiteral(R"re(\{%\s*(?!end|else|elif|empty)(\w+)[^\n]*?%\}|\{\{[^\n]*?\}\})re"));
    if (reason.startsWith(QLatin1String("Unclosed tag")))
        return 0;
    QString loads;
    auto tags = tag.globalMatch(text);
    for (int i = 0; i < maxTagsTried && tags.hasNext(); ++i) {
        const QRegularExpressionMatch match = tags.next();
        if (engine.newTemplate(loads + match.captured(), name)->errorString() == reason)
            return text.leftRef(match.capturedStart()).count(QLatin1Char('\n')) + 1;
        if (match.captured(1) == QLatin1String("load"))
            loads += match.captured();
    }
    return 0;
}

QString reasonOf(const Grantlee::Template& page, const Grantlee::Engine& engine, const QString& fileName,
                 const QString& name) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return page->errorString();
    const int line = lineOfFault(engine, QString::fromUtf8(file.readAll()), name, page->errorString());
    return page->errorString().replace(QLatin1String("line 0"), QStringLiteral("line %1").arg(line));
}

void setUp(Grantlee::Engine& engine, const QString& directory, QDeadlineTimer deadline) {
    engine.addTemplateLoader(QSharedPointer<TemplateLoader>::create(directory, deadline));
    // The last one that is added is searched first.
    engine.addPluginPath(QCoreApplication::applicationDirPath() + QStringLiteral("/plugins"));
    engine.addPluginPath(directory);
    engine.addPluginPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../Plugins"));
    engine.addDefaultLibrary(QStringLiteral("grantlee_scriptabletags"));
    engine.loadDefaultLibraries();
}

Grantlee::Template loadPage(const Grantlee::Engine& engine, const QString& directory, const QString& name) {
    Grantlee::Template page = engine.loadByName(name);
    if (page->error() != Grantlee::NoError)
        throw Error(Error::Exporter,
                    QStringLiteral("Failed to init exporter template %1: %2")
                        .arg(name, reasonOf(page, engine, directory + QLatin1Char('/') + name, name)));
    return page;
}

} // namespace

void TemplateRenderer::render(const QString& templateName, bool keep) const {
    const QDeadlineTimer deadline(maxTime);
    Grantlee::Engine engine;
    setUp(engine, m_directory, deadline);
    const Grantlee::Template page = loadPage(engine, m_directory, templateName);

    OutputFile file(m_exporter.fileName());
    if (!file.open())
        throw Error(Error::Exporter,
                    QStringLiteral("Failed to open %1 for writing").arg(m_exporter.fileName()));
    // A script can write to the settings that it is handed, and its engine deletes an object without a
    // parent.
    QObject owner;
    Settings* const settings = m_exporter.settings()->clone();
    settings->setParent(&owner);
    Grantlee::Context context;
    fill(context, m_exporter, settings);
    try {
        renderInto(file.device(), page, context, deadline);
    } catch (const Grantlee::Exception& exception) {
        failWriting(templateName, exception.what());
    } catch (const std::bad_alloc&) {
        failWriting(templateName, QStringLiteral("Out of memory"));
    }
    if (page->error() != Grantlee::NoError)
        failWriting(templateName, page->errorString());
    if (keep && !file.commit())
        failWriting(templateName, file.errorString());
}
