#include "OptionTable.h"

#include "OptionRows.h"

const std::vector<Option>& optionTable() {
    static const std::vector<Option> table =
        optionRows::joined({layoutOptions, outputOptions, pixelOptions, runOptions});
    return table;
}
