#include "OptionSections.h"

#include "OptionTable.h"

#include <algorithm>

const std::vector<OptionSectionLayout>& optionSections() {
    static const std::vector<OptionSectionLayout> sections = {
        {OptionSection::Options, "Options", 30, false},
        {OptionSection::Output, "Output"},
        {OptionSection::AutoSD, "AutoSD"},
        {OptionSection::Algorithm, "Algorithm settings"},
        {OptionSection::Dimensions, "Dimensions and layout"},
        {OptionSection::Padding, "Padding and rotation"},
        {OptionSection::Graphics, "Graphics optimization"},
        {OptionSection::Additional, "Additional options", 30, false},
        {OptionSection::AndEngine, "Additional settings for AndEngine", 39},
        {OptionSection::Debugging, "Debugging"},
    };
    return sections;
}

std::vector<const Option*> optionsOf(OptionSection section) {
    std::vector<const Option*> options;
    for (const Option& option : optionTable()) {
        if (option.help.section == section)
            options.push_back(&option);
    }
    std::stable_sort(options.begin(), options.end(),
                     [](const Option* a, const Option* b) { return a->help.rank < b->help.rank; });
    return options;
}
