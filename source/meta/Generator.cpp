#include "Generator.h"

namespace meta {

std::map<std::string, std::string> generateAll() {
    std::map<std::string, std::string> files;
    for (const Enum& row : globalEnums()) {
        files[std::string(row.name) + ".h"] = enumHeader(row);
        files[std::string(row.name) + ".cpp"] = enumSource(row);
    }
    for (const Class& cls : classes()) {
        files[std::string(cls.name) + ".h"] = classHeader(cls);
        files[std::string(cls.name) + ".cpp"] = classSource(cls);
    }
    files["settings.md"] = settingsPage();
    return files;
}

} // namespace meta
