// The example of docs/formats/network.md must be read as the page says.

#include "tests/infr_libs/ZNLoader/NetworkText.h"
#include "tests/infr_libs/ZNLoader/ReadingTest.h"
#include "tests/support/TemporaryFolder.h"

namespace {

// The page's block behind this line.
std::string blockOf(const std::string& page, const std::string& opening) {
    const std::size_t start = page.find("```" + opening + "\n");
    if (start == std::string::npos)
        return "no block " + opening;
    const std::size_t text = page.find('\n', start) + 1;
    return page.substr(text, page.find("```\n", text) - text);
}

} // namespace

class NetworkPage : public ReadingTest {};

TEST_F(NetworkPage, TellsWhatItsExampleIsReadAs) {
    const std::string page = readFile(NETWORK_PAGE);
    open(blockOf(page, "xml"));
    EXPECT_EQ(networkText(loader), blockOf(page, "text"));
    EXPECT_EQ(warnings, "");
}
