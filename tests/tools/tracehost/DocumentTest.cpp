// The page that describes scenarios, held against the program.

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"
#include "tools/tracehost/ScenarioReader.h"
#include "tools/tracehost/Simulation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string page() {
    return readFile(PROJECT_FOLDER "/docs/formats/scenario.md");
}

// The blocks of the page that are marked as scenarios.
std::vector<std::string> examples() {
    const std::string text = page();
    const std::string open = "```scenario\n";
    std::vector<std::string> found;
    for (std::size_t place = 0; (place = text.find(open, place)) != std::string::npos;) {
        place += open.size();
        found.push_back(text.substr(place, text.find("```", place) - place));
    }
    return found;
}

Scenario scenarioOf(const std::string& text) {
    std::istringstream stream(text);
    return ScenarioReader("example").read(stream);
}

} // namespace

TEST(ScenarioPage, TheWorkedExampleDoesWhatThePageTells) {
    const Scenario scenario = scenarioOf(examples().at(0));
    Simulation simulation(scenario);
    TracePluginCallbacks* callbacks = simulation.callbacks();
    std::vector<unsigned int> line;
    TracePortState port;
    TraceThreadState thread;
    for (; simulation.clock() < 4000; simulation.advance()) {
        const Clock clock = simulation.clock();
        callbacks->getPortState(0, 0, &port);
        line.push_back(port.value);
        callbacks->getPortState(0, 1, &port);
        ASSERT_EQ(port.value, clock / 250 % 10);
        callbacks->getThreadState(0, 0, &thread);
        ASSERT_EQ(thread.waiting, clock % 160 >= 20 ? 1U : 0U);
    }
    std::string text;
    for (std::size_t byte = 0; byte < 6; ++byte) { // a round of the text takes 580 clocks
        const std::size_t begin = byte / 3 * 580 + byte % 3 * 160;
        unsigned int bits = 0;
        for (unsigned int bit = 0; bit < 10; ++bit)
            bits |= line.at(begin + bit * 16) << bit;
        EXPECT_EQ(bits & 0x201U, 0x200U); // start and stop
        text += static_cast<char>(bits >> 1);
    }
    EXPECT_EQ(text, "Hi\nHi\n");
}

TEST(ScenarioPage, EveryExampleIsAccepted) {
    ASSERT_EQ(examples().size(), 2U);
    for (const std::string& text : examples())
        EXPECT_NO_THROW(scenarioOf(text));
}

TEST(ScenarioPage, EveryResourceAndFieldIsNamed) {
    const std::string text = page();
    for (const ResourceKindInfo& kind : resourceKinds()) {
        EXPECT_THAT(text, testing::HasSubstr("| `" + std::string(kind.word) + "` | `"));
        for (const Field& field : kind.fields)
            EXPECT_THAT(text, testing::HasSubstr("`" + std::string(field.name) + "`"));
    }
}

TEST(LoadScenario, ChangesAsManyPortsAsItIsAskedFor) {
    const ChildResult generated = runProgram({PROJECT_FOLDER "/examples/load-scenario", "1000", "200", "50"});
    ASSERT_EQ(generated.exitStatus, 0);
    const Scenario scenario = scenarioOf(generated.output);
    EXPECT_EQ(scenario.clocks, 50U);
    Simulation simulation(scenario);
    std::vector<unsigned int> last(1000);
    const auto changes = [&] {
        unsigned int count = 0;
        for (unsigned int port = 0; port < last.size(); ++port) {
            TracePortState state;
            simulation.callbacks()->getPortState(0, port, &state);
            count += state.value != last[port];
            last[port] = state.value;
        }
        return count;
    };
    changes();
    while (simulation.clock() < scenario.clocks) {
        simulation.advance();
        ASSERT_EQ(changes(), 200U);
    }
}

TEST(LoadScenario, RefusesWhatItCannotSpreadEvenly) {
    const ChildResult result = runProgram({PROJECT_FOLDER "/examples/load-scenario", "1000", "300", "50"});
    EXPECT_EQ(result.exitStatus, 2);
    EXPECT_EQ(result.error, "load-scenario: 300 changes don't divide 1000 ports\n");
}
