#include "tests/support/ElfSeeds.h"
#include "tests/support/FuzzSeeds.h"

#include <string>
#include <vector>

// Edits alone, and each of the files behind edits of its own.
int main(int argc, char** argv) {
    std::vector<std::string> seeds = {std::string(24, '\0'), std::string("\0\10\1\20", 4),
                                      "edits of a new file"};
    std::string edits;
    for (char i = 0; i < 24; ++i)
        edits += static_cast<char>(i * 37);
    for (const std::string& file : elfSeeds()) {
        seeds.push_back(edits + file);
        edits = edits.substr(5) + edits.substr(0, 5);
    }
    return writeSeeds(argc, argv, seeds);
}
