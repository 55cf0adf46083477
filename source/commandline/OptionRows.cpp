#include "OptionRows.h"

namespace optionRows {

std::vector<Option> joined(std::initializer_list<std::vector<Option> (*)()> parts) {
    std::vector<Option> rows;
    for (auto* part : parts) {
        const std::vector<Option> more = part();
        rows.insert(rows.end(), more.begin(), more.end());
    }
    return rows;
}

Option flag(const char* name, std::function<void(OptionContext&)> effect, OptionHelp help) {
    return {text(name), OptionKind::Flag, OptionRange::Any,
            [effect = std::move(effect)](OptionContext& context, const OptionValue&) { effect(context); },
            std::move(help)};
}

Option string(const char* name, std::function<void(OptionContext&, const QString&)> effect, OptionHelp help) {
    return {text(name), OptionKind::String, OptionRange::Any,
            [effect = std::move(effect)](OptionContext& context, const OptionValue& value) {
                effect(context, value.text);
            },
            std::move(help)};
}

Option integer(const char* name, OptionRange range, std::function<void(OptionContext&, int)> effect,
               OptionHelp help) {
    return {text(name), OptionKind::Integer, range,
            [effect = std::move(effect)](OptionContext& context, const OptionValue& value) {
                effect(context, value.integer);
            },
            std::move(help)};
}

Option list(const char* name, std::function<void(OptionContext&, const QStringList&)> effect,
            OptionHelp help) {
    return {text(name), OptionKind::List, OptionRange::Any,
            [effect = std::move(effect)](OptionContext& context, const OptionValue& value) {
                effect(context, value.list);
            },
            std::move(help)};
}

} // namespace optionRows
