#pragma once

#include "Option.h"

/// A section's title in the help and the column at which its texts begin there.
struct OptionSectionLayout {
    OptionSection section;
    const char* title;
    int column = 30;
    bool isSubsection = true; ///< indented in the help
};

/// The sections of help, manual and options page, in their order.
const std::vector<OptionSectionLayout>& optionSections();

/// The options of a section in the order in which they are told, those without help (Hidden) in table order.
std::vector<const Option*> optionsOf(OptionSection section);
