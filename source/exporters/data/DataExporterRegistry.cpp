#include "DataExporterRegistry.h"

#include "DataExporterAGK.h"
#include "DataExporterAndEngine.h"
#include "DataExporterBHive.h"
#include "DataExporterCEGUI.h"
#include "DataExporterCSS.h"
#include "DataExporterCocos2d.h"
#include "DataExporterCorona.h"
#include "DataExporterGeneric.h"
#include "DataExporterGideros.h"
#include "DataExporterJSON.h"
#include "DataExporterLibGdx.h"
#include "DataExporterMoai.h"
#include "DataExporterSlick2D.h"
#include "DataExporterSparrow.h"
#include "DataExporterXML.h"

#include <QDebug>

#include <algorithm>

namespace {

struct Row {
    std::unique_ptr<DataExporter> (*make)(const DataExporterInfo&);
    DataExporterInfo info;
};

template <class Exporter, auto... variant>
std::unique_ptr<DataExporter> make(const DataExporterInfo& info) {
    return std::make_unique<Exporter>(info, variant...);
}

using Plist = DataExporterCocos2d::Variant;
using Json = DataExporterJSON::Variant;

// The order is that of the registry: the first match of a name wins.
std::vector<Row> builtInFormats() {
    return {
        {make<DataExporterCocos2d, Plist::Rotating>,
         {.id = QStringLiteral("cocos2d"),
          .displayName = QStringLiteral("cocos2d"),
          .description = QStringLiteral("plist format for cocos2d"),
          .fileFilter = QStringLiteral("Cocos2d plist (*.plist)"),
          .fileExtension = QStringLiteral("plist"),
          .defaultFileName = QStringLiteral("out.plist"),
          .showsTrimNames = true}},
        {make<DataExporterCocos2d, Plist::Upright>,
         {.id = QStringLiteral("cocos2d-0.99.4"),
          .displayName = QStringLiteral("cocos2d-0.99.4"),
          .description = QStringLiteral("plist format for 'old' cocos2d"),
          .fileFilter = QStringLiteral("Cocos2d plist (*.plist)"),
          .fileExtension = QStringLiteral("plist"),
          .defaultFileName = QStringLiteral("out.plist"),
          .supportsRotation = false,
          .showsTrimNames = true}},
        {make<DataExporterCocos2d, Plist::Original>,
         {.id = QStringLiteral("cocos2d-original"),
          .displayName = QStringLiteral("cocos2d-original"),
          .description = QStringLiteral("plist format for 'old' (original version)"),
          .fileFilter = QStringLiteral("Cocos2d plist (*.plist)"),
          .fileExtension = QStringLiteral("plist"),
          .defaultFileName = QStringLiteral("out.plist"),
          .supportsRotation = false,
          .showsTrimNames = true}},
        {make<DataExporterCorona>,
         {.id = QStringLiteral("corona"),
          .displayName = QStringLiteral("Corona TM SDK"),
          .description = QStringLiteral("lua file for Corona TM SDK"),
          .fileFilter = QStringLiteral("Corona TM SDK Lua (*.lua)"),
          .fileExtension = QStringLiteral("lua"),
          .defaultFileName = QStringLiteral("out.lua"),
          .supportsRotation = false}},
        {make<DataExporterSparrow>,
         {.id = QStringLiteral("sparrow"),
          .displayName = QStringLiteral("Sparrow / Starling"),
          .description = QStringLiteral("xml file for Sparrow/Starling SDK"),
          .fileFilter = QStringLiteral("Sparrow XML (*.xml)"),
          .fileExtension = QStringLiteral("xml"),
          .defaultFileName = QStringLiteral("out.xml"),
          .supportsRotation = false}},
        {make<DataExporterLibGdx>,
         {.id = QStringLiteral("libgdx"),
          .displayName = QStringLiteral("LibGDX"),
          .description = QStringLiteral("text file for lib GDX"),
          .fileFilter = QStringLiteral("Lib GDX (*.txt)"),
          .fileExtension = QStringLiteral("txt"),
          .defaultFileName = QStringLiteral("pack"),
          .rotationDirection = PackedSprite::CounterClockwise,
          .showsLibGdxFiltering = true}},
        {make<DataExporterJSON, Json::Hash>,
         {.id = QStringLiteral("json"),
          .displayName = QStringLiteral("JSON (Hash)"),
          .description = QStringLiteral("text file for json/html as hash"),
          .fileFilter = QStringLiteral("JSON (*.json)"),
          .fileExtension = QStringLiteral("json"),
          .defaultFileName = QStringLiteral("out.json")}},
        {make<DataExporterJSON, Json::Unity>,
         {.id = QStringLiteral("unity"),
          .displayName = QStringLiteral("Unity3D"),
          .description = QStringLiteral("text file for Unity3D, json format but .txt ending"),
          .fileFilter = QStringLiteral("Unity (*.txt)"),
          .fileExtension = QStringLiteral("txt"),
          .defaultFileName = QStringLiteral("out.json")}},
        {make<DataExporterJSON, Json::Array>,
         {.id = QStringLiteral("json-array"),
          .displayName = QStringLiteral("JSON (Array)"),
          .description = QStringLiteral("text file for json/html as array"),
          .fileFilter = QStringLiteral("JSON (*.json)"),
          .fileExtension = QStringLiteral("json"),
          .defaultFileName = QStringLiteral("out.json")}},
        {make<DataExporterCSS>,
         {.id = QStringLiteral("css"),
          .displayName = QStringLiteral("css"),
          .description = QStringLiteral("css format for web design"),
          .fileFilter = QStringLiteral("CSS (*.css)"),
          .fileExtension = QStringLiteral("css"),
          .defaultFileName = QStringLiteral("out.css"),
          .supportsTrimming = false,
          .supportsRotation = false,
          .supportsNPOT = true,
          .showsTexturePath = false}},
        {make<DataExporterGideros>,
         {.id = QStringLiteral("gideros"),
          .displayName = QStringLiteral("Gideros"),
          .description = QStringLiteral("Format for Gideros"),
          .fileFilter = QStringLiteral("Gideros (*.txt)"),
          .fileExtension = QStringLiteral("txt"),
          .defaultFileName = QStringLiteral("out.txt"),
          .supportsRotation = false}},
        {make<DataExporterCEGUI>,
         {.id = QStringLiteral("cegui"),
          .displayName = QStringLiteral("CEGUI / OGRE"),
          .description = QStringLiteral("Format for CEGUI / OGRE"),
          .fileFilter = QStringLiteral("CEGUI (*.xml)"),
          .fileExtension = QStringLiteral("xml"),
          .defaultFileName = QStringLiteral("out.xml"),
          .supportsTrimming = false,
          .supportsRotation = false,
          .showsTrimNames = true}},
        {make<DataExporterAndEngine>,
         {.id = QStringLiteral("andengine"),
          .displayName = QStringLiteral("AndEngine"),
          .description = QStringLiteral("Format for AndEngine"),
          .fileFilter = QStringLiteral("AndEngine (*.xml)"),
          .fileExtension = QStringLiteral("xml"),
          .defaultFileName = QStringLiteral("out.xml"),
          .showsAndEngineOptions = true,
          .showsTrimNames = true}},
        {make<DataExporterAGK>,
         {.id = QStringLiteral("agk"),
          .displayName = QStringLiteral("AppGameKit"),
          .description = QStringLiteral("Format for AppGameKit"),
          .fileFilter = QStringLiteral("AppGameKit (*.txt)"),
          .fileExtension = QStringLiteral("txt"),
          .defaultFileName = QStringLiteral("out.txt"),
          .supportsTrimming = false,
          .supportsRotation = false,
          .showsTrimNames = true}},
        {make<DataExporterSlick2D>,
         {.id = QStringLiteral("slick2d"),
          .displayName = QStringLiteral("Slick2D"),
          .description = QStringLiteral("Format for Slick2D"),
          .fileFilter = QStringLiteral("Slick2D (*.def)"),
          .fileExtension = QStringLiteral("def"),
          .defaultFileName = QStringLiteral("out.def"),
          .supportsTrimming = false,
          .supportsRotation = false,
          .showsTrimNames = true}},
        {make<DataExporterMoai>,
         {.id = QStringLiteral("moai"),
          .displayName = QStringLiteral("Moai"),
          .description = QStringLiteral("Format for Moai"),
          .fileFilter = QStringLiteral("Moai (*.lua)"),
          .fileExtension = QStringLiteral("lua"),
          .defaultFileName = QStringLiteral("out.lua"),
          .showsTrimNames = true}},
        {make<DataExporterBHive>,
         {.id = QStringLiteral("bhive"),
          .displayName = QStringLiteral("BHive"),
          .description = QStringLiteral("Format for BHive"),
          .fileFilter = QStringLiteral("BHive (*.json)"),
          .fileExtension = QStringLiteral("json"),
          .defaultFileName = QStringLiteral("out.json"),
          .showsTrimNames = true}},
        {make<DataExporterXML>,
         {.id = QStringLiteral("xml"),
          .displayName = QStringLiteral("Generic XML"),
          .description = QStringLiteral("Generic XML format"),
          .fileFilter = QStringLiteral("XML (*.xml)"),
          .fileExtension = QStringLiteral("xml"),
          .defaultFileName = QStringLiteral("out.xml"),
          .showsTrimNames = true}},
    };
}

} // namespace

DataExporterRegistry::DataExporterRegistry() {
    for (const Row& row : builtInFormats())
        add(row.make(row.info));
}

DataExporterRegistry& DataExporterRegistry::instance() {
    // Job threads may still read it while the process ends.
    static auto* const registry = new DataExporterRegistry;
    return *registry;
}

void DataExporterRegistry::add(std::unique_ptr<DataExporter> exporter) {
    m_exporters.append(exporter.get());
    m_owned.push_back(std::move(exporter));
}

void DataExporterRegistry::scan(const QDir& dir) {
    qDebug().noquote() << QStringLiteral("Scanning for exporters in \"%1\"").arg(dir.absolutePath());
    for (const QFileInfo& folder : dir.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot))
        add(std::make_unique<DataExporterGeneric>(folder.absoluteFilePath()));
}

QList<DataExporter*> DataExporterRegistry::sortedExporters() const {
    QList<DataExporter*> sorted = m_exporters;
    std::stable_sort(sorted.begin(), sorted.end(), [](const DataExporter* a, const DataExporter* b) {
        return a->displayName().toLower() < b->displayName().toLower();
    });
    return sorted;
}

QStringList DataExporterRegistry::ids() const {
    QStringList list;
    for (const DataExporter* exporter : m_exporters)
        list.append(exporter->id());
    return list;
}

DataExporter* DataExporterRegistry::find(const QString& name) const {
    for (DataExporter* exporter : m_exporters) {
        if (exporter->id() == name || exporter->aliases().contains(name, Qt::CaseInsensitive))
            return exporter;
    }
    return nullptr;
}

std::optional<DataFormat> DataExporterRegistry::findFormat(const QString& name) const {
    const DataExporter* exporter = find(name);
    if (!exporter)
        return std::nullopt;
    DataFormat format;
    format.id = exporter->id();
    format.supportsRotation = exporter->supportsRotation();
    format.supportsTrimming = exporter->supportsTrimming();
    format.canTrim = exporter->canTrim();
    format.supportsNPOT = exporter->supportsNPOT();
    return format;
}
