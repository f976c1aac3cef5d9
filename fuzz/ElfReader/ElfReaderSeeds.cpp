#include "tests/support/ElfSeeds.h"
#include "tests/support/FuzzSeeds.h"

int main(int argc, char** argv) {
    return writeSeeds(argc, argv, elfSeeds());
}
