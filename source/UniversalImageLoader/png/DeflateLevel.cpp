#include "DeflateLevel.h"

const DeflateLevel& DeflateLevel::of(int level) {
    static constexpr DeflateLevel levels[] = {
        {4, 4, 8, 4},      {4, 5, 16, 8},     {4, 6, 32, 32},       {4, 4, 16, 16},       {8, 16, 32, 32},
        {8, 16, 128, 128}, {8, 32, 128, 256}, {32, 128, 258, 1024}, {32, 258, 258, 4096},
    };
    return levels[level - 1];
}
