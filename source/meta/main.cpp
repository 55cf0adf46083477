// settings_generator FOLDER: writes the settings classes of the table into the folder, touching only what
// differs.

#include "Generator.h"

#include <fstream>
#include <iostream>
#include <iterator>

namespace {

bool holds(const std::string& path, const std::string& text) {
    std::ifstream file(path, std::ios::binary);
    return file && std::string(std::istreambuf_iterator<char>(file), {}) == text;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: settings_generator FOLDER\n";
        return 1;
    }
    for (const auto& [name, text] : meta::generateAll()) {
        const std::string path = std::string(argv[1]) + "/" + name;
        if (holds(path, text))
            continue;
        std::ofstream file(path, std::ios::binary);
        file << text;
        if (!file.flush()) {
            std::cerr << "settings_generator: can't write " << path << '\n';
            return 1;
        }
    }
    return 0;
}
