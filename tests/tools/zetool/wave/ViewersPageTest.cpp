#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/wave/WaveSamples.h"
#include "tests/tools/zetool/ZetoolProgram.h"

// Every command of docs/viewers.md is executed as it stands there.
namespace {

// The commands of each code block.
std::vector<std::vector<std::string>> blocks() {
    std::istringstream page(readFile(ZETOOL_DOCS "/viewers.md"));
    std::vector<std::vector<std::string>> all;
    bool isInside = false;
    for (std::string line; std::getline(page, line);) {
        if (line == "```sh") {
            isInside = true;
            all.emplace_back();
        } else if (line == "```") {
            isInside = false;
        } else if (isInside) {
            all.back().push_back(line);
        }
    }
    return all;
}

// Viewers that no package of the test machine brings: their commands run where somebody has them.
const std::set<std::string> s_mayBeMissing = {"surfer", "pulseview", "code"};

// Viewers with a window, which stay until they are closed.
const std::set<std::string> s_stays = {"gtkwave", "surfer", "pulseview", "code"};

TEST(ViewersPage, HasCommandsThatWork) {
    ASSERT_GE(blocks().size(), 7u);
    for (const std::vector<std::string>& commands : blocks()) {
        const TemporaryFolder folder;
        folder.write("a.vcd", fullSample().start() + "#1\n1po00b0\n\n#2000\n1paa0\n\n#9000\n");
        for (const std::string& command : commands) {
            const std::string program = command.substr(0, command.find(' '));
            if (s_mayBeMissing.contains(program) &&
                runProgram({"sh", "-c", "command -v " + program}).exitStatus != 0)
                continue;
            const bool stays = s_stays.contains(program);
            const ChildResult result = zetoolShell(
                folder.path(), stays ? ZETOOL_READERS "/with-display timeout 3 " + command : command);
            // A window that is still there when its time is up opened its file.
            const int expected = stays ? 124 : command.starts_with("zetool wave check") ? 1 : 0;
            EXPECT_EQ(result.exitStatus, expected) << command << "\n" << result.output << result.error;
        }
    }
}

} // namespace
