#include "OptionTable.h"

#include "OptionRows.h"

const std::vector<Option>& optionTable() {
    static const std::vector<Option> table = [] {
        std::vector<Option> rows;
        for (auto part : {layoutOptions, outputOptions, pixelOptions, runOptions}) {
            std::vector<Option> more = part();
            rows.insert(rows.end(), more.begin(), more.end());
        }
        return rows;
    }();
    return table;
}
