// The example of docs/formats/container.md must be what the library reads and writes.

#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include "tests/infr_libs/ZelmBinaryHandler/Containers.h"
#include "tests/support/Bytes.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sstream>

namespace {

// The bytes column of the page's example; empty with a failure where an offset isn't where its bytes are.
std::string exampleOf(const std::string& page) {
    constexpr std::size_t bytesColumn = 8;
    constexpr std::size_t meaningColumn = 57;
    std::istringstream lines(page.substr(page.find("offset  bytes")));
    std::string line;
    std::getline(lines, line); // the headline
    std::string bytes;
    while (std::getline(lines, line) && line != "```") {
        if (line.empty())
            continue;
        EXPECT_EQ(std::stoul(line), bytes.size()) << line;
        bytes += fromHex(line.substr(bytesColumn, meaningColumn - bytesColumn));
    }
    return bytes;
}

} // namespace

TEST(ContainerPage, ShowsTheBytesOfItsExample) {
    const Container container = emptyContainer();
    addZnZBSector(container.get(), 1, "A");
    addBinaryZBSector(container.get(), 1, 2, 0x10000, "core!", 5);
    ZBSectorHolder_tag* jump = addGotoZBSector(container.get(), 1, 2);
    jump->data[4] = 4; // the entry point, as `banishElves` fills it in
    jump->data[6] = 1;
    addEndZBSector(container.get());

    const std::string example = exampleOf(readFile(CONTAINER_PAGE));
    EXPECT_EQ(example.size(), 116U);
    EXPECT_EQ(write(container), example);
    EXPECT_EQ(write(load(example)), example);
}
