#pragma once

#include "Generator.h"

// What the generators of a class's header and source know of one property.

namespace meta {

bool isList(Type type);

/// An enum's C++ name, qualified if it belongs to the class.
std::string enumName(const Class& cls, const Property& property);

/// What the patterns of the generators are filled with for one property.
std::map<std::string, std::string> values(const Class& cls, const Property& property);

/// A pattern for every property of the class, in order; `pattern` may return an empty text.
template <typename Pattern>
std::string forEach(const Class& cls, Pattern pattern) {
    std::string text;
    for (const Property& property : cls.properties)
        text += fill(pattern(property), values(cls, property));
    return text;
}

} // namespace meta
