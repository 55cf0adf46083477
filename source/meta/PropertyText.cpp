#include "PropertyText.h"

#include <cctype>
#include <set>

namespace meta {

namespace {

std::string capitalised(std::string name) {
    name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
    return name;
}

/// The C++ type that a member holds and a getter returns.
std::string memberType(const Property& property) {
    switch (property.type) {
    case Type::Bool:
        return "bool";
    case Type::Int:
        return "int";
    case Type::UInt:
        return "uint";
    case Type::Double:
        return "double";
    case Type::String:
        return "QString";
    case Type::FileName:
        return "GFileName";
    case Type::Size:
        return "QSize";
    case Type::Enum:
        return property.of;
    case Type::Object:
        return std::string(property.of) + "*";
    case Type::StringList:
        return "QStringList";
    case Type::FileNameList:
        return "GFileNameList";
    case Type::ObjectList:
        return std::string(property.of) + "List";
    }
    return {};
}

std::string itemType(const Property& property) {
    if (property.type == Type::StringList)
        return "QString";
    return property.type == Type::FileNameList ? "GFileName" : std::string(property.of) + "*";
}

/// How a value of the type is passed.
std::string passed(const std::string& type) {
    static const std::set<std::string> byReference = {"QString", "GFileName", "QStringList", "GFileNameList",
                                                      "AutoSDSettingsList"};
    return byReference.count(type) ? "const " + type + "&" : type;
}

std::string initialiser(const Property& property) {
    if (property.type == Type::Enum)
        return std::string(" = ") + property.of + "::" + property.defaultValue;
    if (property.type == Type::Object)
        return " = nullptr";
    return *property.defaultValue ? std::string(" = ") + property.defaultValue : "";
}

} // namespace

bool isList(Type type) {
    return type == Type::StringList || type == Type::FileNameList || type == Type::ObjectList;
}

std::string enumName(const Class& cls, const Property& property) {
    for (const Enum& row : cls.enums) {
        if (std::string(row.name) == property.of)
            return std::string(cls.name) + "::" + row.name;
    }
    return property.of;
}

std::map<std::string, std::string> values(const Class& cls, const Property& property) {
    // Qualified, so that the toolkit finds an enum's type by its name in a signal.
    const std::string type = property.type == Type::Enum ? enumName(cls, property) : memberType(property);
    return {{"class", cls.name},
            {"name", property.name},
            {"Name", capitalised(property.name)},
            {"type", type},
            {"arg", passed(type)},
            {"enum", property.type == Type::Enum ? enumName(cls, property) : ""},
            {"of", property.of},
            {"item", isList(property.type) ? itemType(property) : ""},
            {"itemArg", isList(property.type) ? passed(itemType(property)) : ""},
            {"init", initialiser(property)},
            {"default", property.type == Type::Enum
                            ? enumName(cls, property) + "::" + property.defaultValue
                            : (*property.defaultValue ? property.defaultValue : type + "()")},
            {"meaning", property.meaning}};
}

} // namespace meta
