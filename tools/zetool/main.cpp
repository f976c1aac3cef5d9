#include "tools/zetool/Commands.h"
#include "tools/zetool/Zetool.h"

int main(int argc, char** argv) {
    return runZetool(allNouns(), {argv + 1, argv + (argc > 0 ? argc : 1)});
}
