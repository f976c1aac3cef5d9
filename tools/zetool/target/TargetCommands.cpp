#include "tools/zetool/target/TargetCommands.h"

#include "tools/zetool/target/TargetFind.h"
#include "tools/zetool/target/TargetList.h"

namespace {

constexpr ArgumentRow s_name[] = {{"NAME", "a target, a node type, a package or a file"}};

constexpr ExampleRow s_listExamples[] = {
    {"zetool target list", "Lists the folders of the environment's paths, and what is in them."},
};
constexpr ExampleRow s_findExamples[] = {
    {"zetool target find Package", "Shows the file of the package type Package."},
};

constexpr CommandRow s_commands[] = {
    {"list",
     "what the environment's paths hold",
     "Lists the folders that the environment's variables name (ZCC_TARGET_PATH, ZCC_DEVICE_PATH and those of "
     "libraries and include files) and whether they exist, and the files that networks go by: targets, node "
     "types (config_NAME.xml) and packages (NAME.pkg). A note tells of files that a name doesn't lead to, "
     "since an earlier folder has it too.",
     {},
     s_showOptions,
     nullptr,
     targetList,
     s_listExamples},
    {"find", "the files that a name leads to",
     "Shows which file a name leads to, for each kind of file that has it: a target, by its present or an "
     "old name, a node type, a package, or a file by its own name in any of the environment's paths. The "
     "first folder of a path that has the file counts.",
     s_name, s_showOptions, "no file goes by the name", targetFind, s_findExamples},
};

} // namespace

std::span<const CommandRow> targetCommands() {
    return s_commands;
}
