#include "Generator.h"

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

bool isList(Type type) {
    return type == Type::StringList || type == Type::FileNameList || type == Type::ObjectList;
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

std::string enumName(const Class& cls, const Property& property) {
    for (const Enum& row : cls.enums) {
        if (std::string(row.name) == property.of)
            return std::string(cls.name) + "::" + row.name;
    }
    return property.of;
}

std::string initialiser(const Property& property) {
    if (property.type == Type::Enum)
        return std::string(" = ") + property.of + "::" + property.defaultValue;
    if (property.type == Type::Object)
        return " = nullptr";
    return *property.defaultValue ? std::string(" = ") + property.defaultValue : "";
}

/// What the patterns below are filled with for one property.
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

/// A pattern for every property of the class, in order; `pattern` may return an empty text.
template <typename Pattern>
std::string forEach(const Class& cls, Pattern pattern) {
    std::string text;
    for (const Property& property : cls.properties)
        text += fill(pattern(property), values(cls, property));
    return text;
}

// Header.

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

// Source.

std::string create(const Property& property) {
    return property.type == Type::Object ? "    m_{name} = new {of}(this);\n" : "";
}

std::string destroy(const Property& property) {
    if (property.type == Type::ObjectList)
        return "    qDeleteAll(m_{name});\n";
    return property.type == Type::Object ? "    delete m_{name};\n" : "";
}

std::string writeValue(const Property& property) {
    if (property.storage == Storage::ReadOnly)
        return "";
    const std::string key = "    writer.writeKey(\"{name}\");\n";
    switch (property.type) {
    case Type::Bool:
        return key + "    writer.writeBool(m_{name});\n";
    case Type::Int:
        return key + "    writer.writeInt(m_{name});\n";
    case Type::UInt:
        return key + "    writer.writeUInt(m_{name});\n";
    case Type::Double:
        return key + "    writer.writeDouble(m_{name});\n";
    case Type::String:
        return key + "    writer.writeString(m_{name});\n";
    case Type::FileName:
        return key + "    writer.writeFileName(m_{name});\n";
    case Type::Size:
        return key + "    writer.writeSize(m_{name});\n";
    case Type::Enum:
        return key + "    writer.writeEnum(GEnumInfo<{enum}>::instance().qualifiedName(), {name}Name());\n";
    case Type::Object:
        return key + "    writer.writeObject(*m_{name});\n";
    case Type::StringList:
    case Type::FileNameList:
    case Type::ObjectList:
        break;
    }
    const char* item = property.type == Type::StringList     ? "writeString(item)"
                       : property.type == Type::FileNameList ? "writeFileName(item)"
                                                             : "writeObject(*item)";
    return key + "    writer.beginArray();\n    for (const auto& item : m_{name})\n        writer." + item +
           ";\n    writer.endElement();\n";
}

std::string readValue(const Property& property) {
    std::string text = "        if (name == QLatin1String(\"{name}\")";
    if (property.oldKey)
        text += std::string(" || name == QLatin1String(\"") + property.oldKey + "\")";
    text += ") {\n";
    switch (property.type) {
    case Type::Enum:
        text +=
            "            m_{name} =\n"
            "                static_cast<{enum}>(reader.readEnum(item, GEnumInfo<{enum}>::instance()));\n";
        break;
    case Type::Object:
        text += "            auto object = reader.readObjectOf<{of}>(item);\n"
                "            delete m_{name};\n"
                "            m_{name} = object.release();\n"
                "            m_{name}->setParent(this);\n";
        break;
    case Type::ObjectList:
        text += "            qDeleteAll(m_{name});\n"
                "            m_{name}.clear();\n"
                "            for (auto element = reader.arrayBegin(item); !element.isNull(); element = "
                "element.next()) {\n"
                "                m_{name}.append(reader.readObjectOf<{of}>(element).release());\n"
                "                adopt{Name}(m_{name}.last());\n"
                "            }\n";
        break;
    case Type::StringList:
    case Type::FileNameList:
        text += "            reader.readList(item, m_{name});\n";
        break;
    default:
        text += "            reader.read(item, m_{name});\n";
    }
    return text + "            continue;\n        }\n";
}

std::string setDefault(const Property& property) {
    if (property.type == Type::Object)
        return "    m_{name}->setDefaults();\n";
    return "    set{Name}({default});\n";
}

std::string copyMember(const Property& property) {
    if (property.type == Type::Object)
        return "    delete m_{name};\n"
               "    m_{name} = other.m_{name}->clone();\n"
               "    m_{name}->setParent(this);\n";
    if (property.type == Type::ObjectList)
        return "    for (const {item} item : other.m_{name}) {\n"
               "        m_{name}.append(item->clone());\n"
               "        adopt{Name}(m_{name}.last());\n"
               "    }\n";
    return "    m_{name} = other.m_{name};\n";
}

std::string setter(const Property& property) {
    if (property.type == Type::Object)
        return "// The former object is left to whoever holds it.\n"
               "void {class}::set{Name}({arg} value) {\n"
               "    if (m_{name} == value)\n        return;\n"
               "    m_{name} = value;\n"
               "    m_{name}->setParent(this);\n"
               "    setDirty(true);\n"
               "    emit on{Name}Changed(value);\n"
               "}\n\n";
    std::string text = "void {class}::set{Name}({arg} value) {\n"
                       "    if (m_{name} == value)\n        return;\n"
                       "    m_{name} = value;\n";
    if (property.type == Type::ObjectList)
        text += "    for ({item} item : m_{name})\n        adopt{Name}(item);\n";
    text += "    setDirty(true);\n    emit on{Name}Changed(value);\n";
    if (property.type == Type::Enum)
        text += "    emit on{Name}NameChanged({name}Name());\n";
    text += "}\n\n";
    if (property.type == Type::Enum)
        text +=
            "QString {class}::{name}Name() const { return GEnumInfo<{enum}>::instance().name(m_{name}); }\n\n"
            "void {class}::set{Name}Name(const QString& stored) {\n"
            "    set{Name}(GEnumInfo<{enum}>::instance().value(stored));\n"
            "}\n\n";
    return text;
}

/// Getter and setter apart, a list is edited by four operations.
std::string listOperations(const Property& property) {
    if (!isList(property.type))
        return "";
    const bool objects = property.type == Type::ObjectList;
    const std::string adopt = objects ? "    adopt{Name}(item);\n" : "";
    const std::string changed = "    setDirty(true);\n    emit on{Name}Changed(m_{name});\n";
    std::string text = "void {class}::add{Name}({itemArg} item) {\n    m_{name}.append(item);\n" + adopt +
                       changed +
                       "}\n\n"
                       "{item} {class}::take{Name}(int index) {\n    {item} item = m_{name}.takeAt(index);\n";
    // Taking marks the owner as changed only where the list holds objects.
    text += objects ? "    release{Name}(item);\n" + changed : "    emit on{Name}Changed(m_{name});\n";
    text += "    return item;\n}\n\n"
            "void {class}::clear{Name}() {\n";
    text += objects ? "    for ({item} item : m_{name}) {\n"
                      "        disconnect(item, nullptr, this, nullptr);\n"
                      "        item->deleteLater();\n"
                      "    }\n"
                    : "";
    text += "    m_{name}.clear();\n" + changed +
            "}\n\n"
            "void {class}::insert{Name}(int index, {itemArg} item) {\n    m_{name}.insert(index, item);\n" +
            adopt + changed + "}\n\n";
    if (objects)
        text += "void {class}::emit{Name}Changed() { emit on{Name}Changed(m_{name}); }\n\n"
                "void {class}::adopt{Name}({item} item) {\n"
                "    item->setParent(this);\n"
                "    disconnect(item, &GSerializable::propertyChanged, this, &{class}::emit{Name}Changed);\n"
                "    connect(item, &GSerializable::propertyChanged, this, &{class}::emit{Name}Changed);\n"
                "}\n\n"
                "void {class}::release{Name}({item} item) {\n"
                "    item->setParent(nullptr);\n"
                "    disconnect(item, &GSerializable::propertyChanged, this, &{class}::emit{Name}Changed);\n"
                "}\n\n";
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

std::string classSource(const Class& cls) {
    std::string enums;
    std::string types;
    for (const Enum& row : cls.enums) {
        const std::string qualified = std::string(cls.name) + "::" + row.name;
        enums += enumInfo(row, qualified);
        types += fill("    qRegisterMetaType<{type}>(\"{type}\");\n", {{"type", qualified}});
    }
    return fill(R"(#include "{class}.h"

#include "GSerializableFactory.h"
#include "GSerializableReader.h"
#include "GSerializableWriter.h"

{enums}namespace {

bool registerTypes() {
    qRegisterMetaType<{class}List>("{class}List");
{types}    return GSerializableFactory::add("{class}", []() -> QObject* { return new {class}; });
}

const bool registered = registerTypes();

} // namespace

{class}::{class}(QObject* parent) : GSerializable(parent) {
    Q_UNUSED(registered)
{create}    {class}::setDirty(false);
}

{class}::~{class}() {
{destroy}}

void {class}::write(GSerializableWriter& writer) const {
    writer.beginStruct(metaObject()->className());
{write}    writer.endElement();
}

void {class}::read(const GSerializableNode& node) {
    for (GSerializableNode key = node, item = node; !key.isNull(); key = item.next()) {
        const QString name = key.structKey();
        item = key.next();
        const GSerializableReader& reader = key.reader();
{read}    }
}

void {class}::setDefaults() {
{defaults}}

{class}* {class}::clone() const {
    auto* copy = static_cast<{class}*>(GSerializableFactory::create(QLatin1String(metaObject()->className())));
    copy->copyMembers(*this);
    return copy;
}

void {class}::copyMembers(const {class}& other) {
{copy}}

{setters}{lists})",
                {{"class", cls.name},
                 {"enums", enums},
                 {"types", types},
                 {"create", forEach(cls, create)},
                 {"destroy", forEach(cls, destroy)},
                 {"write", forEach(cls, writeValue)},
                 {"read", forEach(cls, readValue)},
                 {"defaults", forEach(cls, setDefault)},
                 {"copy", forEach(cls, copyMember)},
                 {"setters", forEach(cls, setter)},
                 {"lists", forEach(cls, listOperations)}});
}

std::map<std::string, std::string> generateAll() {
    std::map<std::string, std::string> files;
    for (const Enum& row : globalEnums()) {
        files[std::string(row.name) + ".h"] = enumHeader(row);
        files[std::string(row.name) + ".cpp"] = enumSource(row);
    }
    for (const Class& cls : classes()) {
        files[std::string(cls.name) + ".h"] = classHeader(cls);
        files[std::string(cls.name) + ".cpp"] = classSource(cls);
    }
    return files;
}

} // namespace meta
