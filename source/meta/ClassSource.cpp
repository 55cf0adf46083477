#include "PropertyText.h"

namespace meta {

namespace {

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

} // namespace meta
