#pragma once

// The table that all settings classes are made from. A new setting is one row here: the generator beside this
// file turns it into member, getter, setter, signal, property, reading, writing, default and clone.

#include <vector>

namespace meta {

enum class Type {
    Bool,
    Int,
    UInt,
    Double,
    String,
    FileName,     ///< GFileName; relative to the project's folder in a file
    Size,         ///< QSize in pixels
    Enum,         ///< `of` names the enum; comes as a pair of properties, name half and value half
    Object,       ///< `of` names the class; a nested object that is never null
    StringList,   ///< QStringList
    FileNameList, ///< GFileNameList
    ObjectList,   ///< `of` names the class; a QList of owned pointers
};

enum class Storage {
    Stored,
    ReadOnly, ///< an old key: read for the migration of older files, never written
};

struct Property {
    const char* name;
    Type type;
    const char* of;           ///< enum or class, for the types that need one
    const char* defaultValue; ///< as C++ text; an enum's stored name; empty: what the type starts with
    const char* meaning;
    Storage storage = Storage::Stored;
    const char* oldKey = nullptr; ///< a second key that is read as this one
};

/// The texts of an enumerator. Its number is its position, its C++ name is its stored name.
struct Enumerator {
    const char* stored;
    const char* display;     ///< null: the stored name
    const char* description; ///< null: the display name
};

struct Enum {
    const char* name;
    const char* meaning;
    std::vector<Enumerator> enumerators;
};

struct Class {
    const char* name;
    const char* meaning;
    std::vector<Enum> enums;
    std::vector<Property> properties; ///< in the order of declaration, signals and storage
};

/// Enums that belong to no class.
const std::vector<Enum>& globalEnums();

/// All classes; one that another holds stands before it.
const std::vector<Class>& classes();

} // namespace meta
