#include "DataExporterRegistry.h"

#include "DataExporterBHive.h"
#include "DataExporterCocos2d.h"
#include "DataExporterJSON.h"

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
        {make<DataExporterBHive>,
         {.id = QStringLiteral("bhive"),
          .displayName = QStringLiteral("BHive"),
          .description = QStringLiteral("Format for BHive"),
          .fileFilter = QStringLiteral("BHive (*.json)"),
          .fileExtension = QStringLiteral("json"),
          .defaultFileName = QStringLiteral("out.json"),
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
