#pragma once

#include "SettingsTable.h"

#include <map>
#include <string>

namespace meta {

/// The generated files of the whole table: name to text.
std::map<std::string, std::string> generateAll();

/// Header and source of one class, as text.
std::string classHeader(const Class& cls);
std::string classSource(const Class& cls);

/// Header and source of an enum that belongs to no class.
std::string enumHeader(const Enum& globalEnum);
std::string enumSource(const Enum& globalEnum);

/// The page of the documentation that lists all settings, in Markdown.
std::string settingsPage();

/// `text` with each "{key}" replaced by its value.
std::string fill(std::string text, const std::map<std::string, std::string>& values);

/// The declaration of an enum and the GEnumInfoData that carries its names.
std::string enumDeclaration(const Enum& row, const std::string& indent);
std::string enumInfo(const Enum& row, const std::string& qualifiedName);

} // namespace meta
