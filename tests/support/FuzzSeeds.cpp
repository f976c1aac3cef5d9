#include "tests/support/FuzzSeeds.h"

#include <filesystem>
#include <fstream>

int writeSeeds(int argc, char** argv, std::span<const std::string> seeds) {
    if (argc != 2)
        return 2;
    const std::filesystem::path folder = argv[1];
    std::filesystem::create_directories(folder);
    unsigned number = 0;
    for (const std::string& seed : seeds)
        std::ofstream(folder / ("seed" + std::to_string(number++)), std::ios::binary) << seed;
    return 0;
}
