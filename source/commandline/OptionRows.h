#pragma once

#include "GEnumInfo.h"
#include "Option.h"

// The parts of the table of options, in processing order, and what their rows are written with.

std::vector<Option> layoutOptions(); ///< format, algorithm, sizes, paddings
std::vector<Option> outputOptions(); ///< names, variants, trimming, size search, divisors
std::vector<Option> pixelOptions();  ///< pixel format, dithering, preparation, file lists
std::vector<Option> runOptions();    ///< exporters' own, texture format, and the run itself

namespace optionRows {

/// The words of an option that stand for an enumerator, tried before the stored names.
template <typename E>
using Words = std::initializer_list<std::pair<const char*, E>>;

/// Sets an enum property by a word of the option or by a stored name. Throws Error 55 for anything else.
template <typename Owner, typename Base, typename E>
void choose(Owner* owner, const QString& word, Words<E> words, void (Base::*set)(E),
            void (Base::*setName)(const QString&)) {
    for (const auto& [name, value] : words) {
        if (word == QLatin1String(name)) {
            (owner->*set)(value);
            return;
        }
    }
    (owner->*setName)(word);
}

/// The stored names of an enum with their descriptions, for a list in the help.
template <typename E>
std::vector<OptionListEntry> enumList() {
    const auto& info = GEnumInfo<E>::instance();
    std::vector<OptionListEntry> entries;
    for (const QString& name : info.names())
        entries.emplace_back(name, info.description(name));
    return entries;
}

/// Stored names of an enum in one line.
template <typename E>
QString enumNames(const char* separator) {
    return GEnumInfo<E>::instance().names().join(QLatin1String(separator));
}

inline QString text(const char* utf8) { return QString::fromUtf8(utf8); }
inline QStringList lines(std::initializer_list<const char*> list) {
    QStringList result;
    for (const char* line : list)
        result.append(text(line));
    return result;
}

/// The rows of several parts, one part after the other.
std::vector<Option> joined(std::initializer_list<std::vector<Option> (*)()> parts);

/// An option that only says so: its effect is the whole of it.
Option flag(const char* name, std::function<void(OptionContext&)> effect, OptionHelp help = {});

/// The other kinds.
Option string(const char* name, std::function<void(OptionContext&, const QString&)> effect,
              OptionHelp help = {});
Option integer(const char* name, OptionRange range, std::function<void(OptionContext&, int)> effect,
               OptionHelp help = {});
Option list(const char* name, std::function<void(OptionContext&, const QStringList&)> effect,
            OptionHelp help = {});

} // namespace optionRows
