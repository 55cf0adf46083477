#include "Generator.h"

namespace meta {

std::string fill(std::string text, const std::map<std::string, std::string>& values) {
    for (const auto& [key, value] : values) {
        const std::string pattern = "{" + key + "}";
        for (std::size_t at = text.find(pattern); at != std::string::npos;
             at = text.find(pattern, at + value.size()))
            text.replace(at, pattern.size(), value);
    }
    return text;
}

std::string enumDeclaration(const Enum& row, const std::string& indent) {
    std::string text = fill("{i}/// {meaning}\n{i}enum class {name} : int {\n",
                            {{"i", indent}, {"meaning", row.meaning}, {"name", row.name}});
    for (const Enumerator& value : row.enumerators)
        text += indent + "    " + value.stored + ",\n";
    return text + indent + "};\n";
}

std::string enumInfo(const Enum& row, const std::string& qualifiedName) {
    std::string text = fill("template <>\n"
                            "GEnumInfoData<{type}>::GEnumInfoData() {\n",
                            {{"type", qualifiedName}});
    for (const Enumerator& value : row.enumerators) {
        const char* display = value.display ? value.display : value.stored;
        text += fill("    add(QStringLiteral(\"{stored}\"), QStringLiteral(\"{display}\"),\n"
                     "        QStringLiteral(\"{description}\"));\n",
                     {{"stored", value.stored},
                      {"display", display},
                      {"description", value.description ? value.description : display}});
    }
    return text +
           fill("}\n\n"
                "template <>\n"
                "QString GEnumInfoData<{type}>::shortName() { return QStringLiteral(\"{name}\"); }\n\n"
                "template <>\n"
                "QString GEnumInfoData<{type}>::qualifiedName() { return QStringLiteral(\"{type}\"); }\n\n",
                {{"type", qualifiedName}, {"name", row.name}});
}

std::string enumHeader(const Enum& globalEnum) {
    return fill("#pragma once\n\n"
                "// Made from the table of settings.\n\n"
                "#include \"GEnumInfo.h\"\n\n"
                "#include <QMetaType>\n\n"
                "{declaration}\n"
                "Q_DECLARE_METATYPE({name})\n\n"
                "template <> GEnumInfoData<{name}>::GEnumInfoData();\n"
                "template <> QString GEnumInfoData<{name}>::shortName();\n"
                "template <> QString GEnumInfoData<{name}>::qualifiedName();\n",
                {{"declaration", enumDeclaration(globalEnum, "")}, {"name", globalEnum.name}});
}

std::string enumSource(const Enum& globalEnum) {
    return fill("#include \"{name}.h\"\n\n", {{"name", globalEnum.name}}) +
           enumInfo(globalEnum, globalEnum.name);
}

} // namespace meta
