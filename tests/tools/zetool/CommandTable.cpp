#include "tests/tools/zetool/CommandTable.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/ZetoolProgram.h"

#include <gtest/gtest.h>

void expectCommands(const std::string& folder, std::span<const CommandCase> cases) {
    for (const CommandCase& row : cases) {
        const ChildResult result = zetoolShell(folder, row.line);
        EXPECT_EQ(result.output, row.output) << row.line;
        EXPECT_EQ(result.error, row.error) << row.line;
        EXPECT_EQ(result.exitStatus, row.status) << row.line;
    }
}

std::string schemaFaults(const std::string& schema, const std::string& json) {
    const TemporaryFolder folder;
    const std::string document = folder.write("document.json", json);
    const ChildResult result =
        runProgram({ZETOOL_READERS "/validate-json", ZETOOL_DOCS "/schemas/" + schema, document});
    return result.exitStatus == 0 ? "" : result.output + result.error + "the document doesn't hold";
}

std::string writtenJson(const std::string& folder, const std::string& line, const std::string& schema) {
    const ChildResult result = zetoolShell(folder, line);
    EXPECT_EQ(result.error, "") << line;
    EXPECT_EQ(result.exitStatus, 0) << line;
    EXPECT_EQ(schemaFaults(schema, result.output), "") << line;
    return result.output;
}
