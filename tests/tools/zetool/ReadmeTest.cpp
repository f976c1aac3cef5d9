#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/ZetoolProgram.h"

// Every command of the README is executed as it stands there, in its order, in a folder that has what a
// checkout has. Building is left to whoever builds this test, `scripts/demo` and `scripts/test` to the
// latter.
namespace {

std::vector<std::string> commands() {
    std::istringstream page(readFile(README));
    std::vector<std::string> all;
    bool isInside = false;
    for (std::string line; std::getline(page, line);) {
        if (line.starts_with("```"))
            isInside = line == "```sh";
        else if (isInside)
            all.push_back(line);
    }
    return all;
}

bool isRunElsewhere(const std::string& command) {
    return command.starts_with("cmake --preset 32 ") || command.starts_with("scripts/demo ") ||
           command.starts_with("scripts/test ");
}

TEST(Readme, HasCommandsThatWork) {
    const TemporaryFolder folder;
    std::filesystem::create_directory_symlink(BUILD_FOLDER, folder.path() / "build");
    std::filesystem::create_directory_symlink(EXAMPLES, folder.path() / "examples");
    std::size_t numRun = 0;
    std::string exports; // a shell keeps its variables from line to line
    for (const std::string& command : commands()) {
        if (isRunElsewhere(command))
            continue;
        ++numRun;
        const ChildResult result = zetoolShell(folder.path(), exports + command);
        EXPECT_EQ(result.exitStatus, 0) << command << "\n" << result.output << result.error;
        EXPECT_EQ(result.error, "") << command;
        if (command.starts_with("export "))
            exports += command.substr(0, command.find(" && ")) + "; ";
    }
    EXPECT_GE(numRun, 14u);
    EXPECT_NE(folder.read("app.gtkw"), "");
    EXPECT_NE(folder.read("standard.vcd"), "");
}

} // namespace
