#include "PropertyText.h"

#include <set>

namespace meta {

namespace {

std::string propertyDeclaration(const Property& property) {
    std::string text;
    if (property.type == Type::Enum)
        text = "    Q_PROPERTY(QString {name}Name READ {name}Name WRITE set{Name}Name NOTIFY "
               "on{Name}NameChanged)\n";
    return text + "    Q_PROPERTY({type} {name} READ {name} WRITE set{Name} NOTIFY on{Name}Changed)\n";
}

std::string accessors(const Property& property) {
    std::string text = "    /// {meaning}\n";
    if (property.type == Type::Enum)
        text += "    QString {name}Name() const;\n"
                "    virtual void set{Name}Name(const QString& stored);\n";
    text += "    {type} {name}() const { return m_{name}; }\n"
            "    virtual void set{Name}({arg} value);\n";
    if (isList(property.type))
        text += "    void add{Name}({itemArg} item);\n"
                "    {item} take{Name}(int index);\n"
                "    void clear{Name}();\n"
                "    void insert{Name}(int index, {itemArg} item);\n";
    return text + "\n";
}

std::string signalDeclaration(const Property& property) {
    if (property.type == Type::Enum)
        return "    void on{Name}NameChanged(const QString& stored);\n"
               "    void on{Name}Changed({arg} value);\n";
    return "    void on{Name}Changed({arg} value);\n";
}

std::string listSlot(const Property& property) {
    return property.type == Type::ObjectList ? "    void emit{Name}Changed();\n"
                                               "    void adopt{Name}({item} item);\n"
                                               "    void release{Name}({item} item);\n"
                                             : "";
}

std::string includes(const Class& cls) {
    std::set<std::string> headers;
    for (const Property& property : cls.properties) {
        if (property.type == Type::Object || property.type == Type::ObjectList)
            headers.insert(property.of);
        if (property.type == Type::Enum && enumName(cls, property) == property.of)
            headers.insert(property.of);
    }
    std::string text;
    for (const std::string& header : headers)
        text += "#include \"" + header + ".h\"\n";
    return text;
}

std::string nestedEnums(const Class& cls) {
    std::string text;
    for (const Enum& row : cls.enums)
        text += enumDeclaration(row, "    ") + "    Q_ENUM(" + row.name + ")\n\n";
    return text;
}

std::string enumSpecialisations(const Class& cls) {
    std::string text;
    for (const Enum& row : cls.enums)
        text += fill("template <> GEnumInfoData<{enum}>::GEnumInfoData();\n"
                     "template <> QString GEnumInfoData<{enum}>::shortName();\n"
                     "template <> QString GEnumInfoData<{enum}>::qualifiedName();\n",
                     {{"enum", std::string(cls.name) + "::" + row.name}});
    return text;
}

} // namespace

std::string classHeader(const Class& cls) {
    return fill(R"(#pragma once

// Made from the table of settings.

#include "GEnumInfo.h"
#include "GFileName.h"
#include "GSerializable.h"
{includes}
#include <QSize>
#include <QStringList>

/// {meaning}
class {class} : public GSerializable {
    Q_OBJECT
{properties}
public:
{enums}    explicit {class}(QObject* parent = nullptr);
    ~{class}() override;

    void write(GSerializableWriter& writer) const override;
    void read(const GSerializableNode& node) override;
    void setDefaults() override;
    {class}* clone() const override;

{accessors}signals:
{signals}
protected:
    /// Takes over all values and clones of all nested objects, without signals.
    void copyMembers(const {class}& other);

private:
{slots}{members}};

using {class}List = QList<{class}*>;
Q_DECLARE_METATYPE({class}List)

{specialisations})",
                {{"class", cls.name},
                 {"meaning", cls.meaning},
                 {"includes", includes(cls)},
                 {"properties", forEach(cls, propertyDeclaration)},
                 {"enums", nestedEnums(cls)},
                 {"accessors", forEach(cls, accessors)},
                 {"signals", forEach(cls, signalDeclaration)},
                 {"slots", forEach(cls, listSlot)},
                 {"members",
                  forEach(cls, [](const Property&) { return std::string("    {type} m_{name}{init};\n"); })},
                 {"specialisations", enumSpecialisations(cls)}});
}

} // namespace meta
