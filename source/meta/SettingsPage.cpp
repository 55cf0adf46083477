#include "PropertyText.h"

namespace meta {

namespace {

/// An element's name in a project file, by the type of its value.
std::string elementOf(const Class& cls, const Property& property) {
    switch (property.type) {
    case Type::Bool:
        return "`<true/>` or `<false/>`";
    case Type::Int:
        return "`<int>`";
    case Type::UInt:
        return "`<uint>`";
    case Type::Double:
        return "`<double>`";
    case Type::String:
        return "`<string>`";
    case Type::FileName:
        return "`<filename>`";
    case Type::Size:
        return "`<QSize>`";
    case Type::Enum:
        return "`<enum type=\"" + enumName(cls, property) + "\">`";
    case Type::Object:
        return std::string("`<struct>` [") + property.of + "](#" + property.of + ")";
    case Type::StringList:
        return "`<array>` of `<string>`";
    case Type::FileNameList:
        return "`<array>` of `<filename>`";
    case Type::ObjectList:
        return std::string("`<array>` of `<struct>` [") + property.of + "](#" + property.of + ")";
    }
    return {};
}

/// The default as a user writes it: without the C++ around a text or a size.
std::string plainDefault(const Property& property) {
    std::string text = property.defaultValue;
    for (const std::string& wrapping : {std::string("QStringLiteral(\""), std::string("QSize(")}) {
        if (text.rfind(wrapping, 0) == 0)
            text = text.substr(wrapping.size(), text.find_last_not_of("\")") + 1 - wrapping.size());
    }
    return text;
}

std::string propertyRows(const Class& cls) {
    std::string text;
    for (const Property& property : cls.properties) {
        if (property.storage == Storage::ReadOnly)
            continue;
        text += "| `" + std::string(property.name) + "` | " + elementOf(cls, property) + " | " +
                plainDefault(property) + " | " + property.meaning + " |\n";
    }
    return text;
}

std::string enumTable(const Enum& row) {
    std::string text =
        "\n**" + std::string(row.name) + "**: " + row.meaning + "\n\n| value | meaning |\n|---|---|\n";
    for (const Enumerator& value : row.enumerators) {
        const char* display = value.display ? value.display : value.stored;
        text += "| `" + std::string(value.stored) + "` | " +
                (value.description ? value.description : display) + " |\n";
    }
    return text;
}

std::string section(const Class& cls) {
    std::string text = "\n## " + std::string(cls.name) + "\n\n" + cls.meaning +
                       "\n\n| setting | element | default | meaning |\n|---|---|---|---|\n" +
                       propertyRows(cls);
    for (const Enum& row : cls.enums)
        text += enumTable(row);
    return text;
}

} // namespace

std::string settingsPage() {
    std::string text =
        "<!-- Made from the table of settings by scripts/docs. -->\n"
        "# Settings\n\n"
        "Everything that a [project file](project-file.md) holds, and what a "
        "[template](templates.md) reads as "
        "`settings.<name>`. The outermost struct has the type Settings and holds what SettingsBase lists.\n";
    // The whole stands before its parts.
    for (auto cls = classes().rbegin(); cls != classes().rend(); ++cls)
        text += section(*cls);
    text += "\n## Enums of several classes\n";
    for (const Enum& row : globalEnums())
        text += enumTable(row);
    return text;
}

} // namespace meta
