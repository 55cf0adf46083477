#include "DataExporterAndEngine.h"

#include "DataText.h"
#include "Error.h"
#include "Settings.h"
#include "XmlDataFile.h"
#include "product.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

QString filterWord(AndEngine::MinFilter filter) {
    switch (filter) {
    case AndEngine::MinFilter::Nearest:
        return QStringLiteral("nearest");
    case AndEngine::MinFilter::Linear:
        return QStringLiteral("linear");
    case AndEngine::MinFilter::LinearMipmapLinear:
        return QStringLiteral("linear_mipmap_linear");
    case AndEngine::MinFilter::LinearMipmapNearest:
        return QStringLiteral("linear_mipmap_nearest");
    case AndEngine::MinFilter::NearestMipmapLinear:
        return QStringLiteral("nearest_mipmap_linear");
    case AndEngine::MinFilter::NearestMipmapNearest:
        return QStringLiteral("nearest_mipmap_nearest");
    }
    return {};
}

QString filterWord(AndEngine::MagFilter filter) {
    return filter == AndEngine::MagFilter::MagNearest ? QStringLiteral("nearest") : QStringLiteral("linear");
}

QString wrapWord(AndEngineWrap::Wrap wrap) {
    return wrap == AndEngineWrap::Wrap::Clamp ? QStringLiteral("clamp") : QStringLiteral("repeat");
}

QString comparablePath(const QString& fileName) {
    return QDir::cleanPath(QFileInfo(fileName).absoluteFilePath());
}

void writeRegion(XmlDataFile& file, int id, const PackedSprite& sprite) {
    const QRect rect = sprite.frameRectWithoutRotation();
    QXmlStreamWriter& xml = file.xml();
    xml.writeEmptyElement(QStringLiteral("textureregion"));
    xml.writeAttribute(QStringLiteral("id"), QString::number(id));
    xml.writeAttribute(QStringLiteral("src"), sprite.fullName());
    file.writePoint(QStringLiteral("x"), QStringLiteral("y"), rect.topLeft());
    file.writeSize(QStringLiteral("width"), QStringLiteral("height"), rect.size());
    xml.writeAttribute(QStringLiteral("rotated"), DataText::boolean(sprite.rotated()));
    xml.writeAttribute(QStringLiteral("trimmed"), DataText::boolean(sprite.trimmed()));
    file.writePoint(QStringLiteral("srcx"), QStringLiteral("srcy"), sprite.cornerOffset());
    file.writeSize(QStringLiteral("srcwidth"), QStringLiteral("srcheight"), sprite.untrimmedSize());
}

} // namespace

DataExporterAndEngine::DataExporterAndEngine(const DataExporterInfo& info) : DataExporter(info) {}

void DataExporterAndEngine::write() const {
    XmlDataFile atlas(fileName());
    writeAtlas(atlas, pixelFormatWord());
    const QString javaFileName = settings()->andEngine()->javaFileName();
    if (javaFileName.isEmpty())
        throw Error(
            Error::CommandLine,
            QStringLiteral("AndEngine exproter needs a java file name to export definitions. On command line "
                           "use --andengine-java <filename> to set the file name"));
    checkJavaFileName(javaFileName);
    DataFile java(javaFileName, QStringLiteral("Failed to write java file %1"));
    writeConstants(java.text(), javaFileName);
    // The description comes last: it holds the token by which a later run finds both files current, so that
    // an interruption in between is made good then.
    java.commit();
    try {
        atlas.commit();
    } catch (const Error&) {
        OutputFile::remove(javaFileName);
        throw;
    }
}

void DataExporterAndEngine::checkJavaFileName(const QString& javaFileName) const {
    const QString path = comparablePath(javaFileName);
    if (path == comparablePath(fileName()) || path == comparablePath(settings()->textureFileName()))
        throw Error(Error::DataFile, QStringLiteral("%1 would be written twice; give the java definitions a "
                                                    "file of their own (--andengine-java)")
                                         .arg(javaFileName));
}

QString DataExporterAndEngine::nameInFile(const PackedSprite& sprite) const {
    QString name = sprite.trimmedName().toUpper();
    // By code unit: a character beyond the basic plane gives two underscores. Game code is compiled against
    // these names.
    std::replace_if(
        name.begin(), name.end(),
        [](QChar c) {
            return (c < QLatin1Char('A') || c > QLatin1Char('Z')) &&
                   (c < QLatin1Char('0') || c > QLatin1Char('9'));
        },
        QLatin1Char('_'));
    return name;
}

QString DataExporterAndEngine::containerWord() const {
    if (settings()->outputFormat() == SettingsBase::OutputFormat::ETC1)
        return QStringLiteral("etc1");
    const QString name = textureName();
    // The case of the suffix counts, as it does for the framework.
    if (name.endsWith(QLatin1String(".pvr")))
        return QStringLiteral("pvr");
    if (name.endsWith(QLatin1String(".pvr.gz")))
        return QStringLiteral("pvrgz");
    if (name.endsWith(QLatin1String(".pvr.ccz")))
        return QStringLiteral("pvrccz");
    return QStringLiteral("bitmap");
}

QString DataExporterAndEngine::pixelFormatWord() const {
    switch (settings()->outputFormat()) {
    case SettingsBase::OutputFormat::RGBA8888:
    case SettingsBase::OutputFormat::ETC1: // what the framework expands it to
        return QStringLiteral("RGBA_8888");
    case SettingsBase::OutputFormat::RGBA4444:
        return QStringLiteral("RGBA_4444");
    case SettingsBase::OutputFormat::RGB888:
        return QStringLiteral("RGB_888");
    case SettingsBase::OutputFormat::RGB565:
        return QStringLiteral("RGB_565");
    case SettingsBase::OutputFormat::ALPHA:
        return QStringLiteral("A_8");
    case SettingsBase::OutputFormat::ALPHA_INTENSITY:
        return QStringLiteral("AI_8");
    default:
        throw Error(Error::DataFile, QStringLiteral("Can't export in that pixel format for AndEngine"));
    }
}

void DataExporterAndEngine::writeAtlas(XmlDataFile& file, const QString& pixelFormat) const {
    QXmlStreamWriter& xml = file.xml();
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("texture"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1"));
    xml.writeAttribute(QStringLiteral("file"), textureName());
    xml.writeAttribute(QStringLiteral("type"), containerWord());
    file.writeSize(QStringLiteral("width"), QStringLiteral("height"), texture().size());
    xml.writeAttribute(QStringLiteral("pixelformat"), pixelFormat);
    writeOptions(file);
    file.writeOrigin(smartUpdateKey(), QStringLiteral(" "));
    int id = 0;
    for (const PackedSprite& sprite : sortedSprites())
        writeRegion(file, id++, sprite);
    file.writeEnd();
}

void DataExporterAndEngine::writeOptions(XmlDataFile& file) const {
    const AndEngine& options = *settings()->andEngine();
    QXmlStreamWriter& xml = file.xml();
    xml.writeAttribute(QStringLiteral("minfilter"), filterWord(options.minFilter()));
    xml.writeAttribute(QStringLiteral("magfilter"), filterWord(options.magFilter()));
    xml.writeAttribute(QStringLiteral("wrapt"), wrapWord(options.wrap()->t()));
    xml.writeAttribute(QStringLiteral("wraps"), wrapWord(options.wrap()->s()));
    xml.writeAttribute(QStringLiteral("premultiplyalpha"), DataText::boolean(settings()->premultiplyAlpha()));
}

void DataExporterAndEngine::writeConstants(QTextStream& stream, const QString& javaFileName) const {
    QString address = QLatin1String(product::homePage);
    address.remove(0, address.indexOf(QLatin1String("://")) + 3);
    stream << "// Definitions for sprite sheet " << QFileInfo(settings()->textureFileName()).baseName()
           << "\n// Created with " << address << "\n\n// " << smartUpdateKey() << "\n\npackage "
           << settings()->andEngine()->packageName() << ";\n\npublic interface "
           << QFileInfo(javaFileName).baseName() << "\n{\n";
    int id = 0;
    for (const PackedSprite& sprite : sortedSprites())
        stream << "\tpublic static final int " << nameInFile(sprite) << "_ID = " << id++ << ";\n";
    stream << "}\n";
}
