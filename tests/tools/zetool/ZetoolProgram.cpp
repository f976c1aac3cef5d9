#include "tests/tools/zetool/ZetoolProgram.h"

#include <filesystem>

ChildResult zetool(const std::vector<std::string>& words) {
    std::vector<std::string> all = {ZETOOL_PROGRAM};
    all.insert(all.end(), words.begin(), words.end());
    return runProgram(all);
}

ChildResult zetoolShell(const std::string& folder, const std::string& line) {
    const std::string programs = std::filesystem::path(ZETOOL_PROGRAM).parent_path();
    return runProgram({"env", "--chdir=" + folder, "sh", "-c", "PATH=" + programs + ":$PATH; " + line});
}
