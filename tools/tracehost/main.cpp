// tracehost: loads a trace plugin as a simulator does, and plays a scenario to it.

#include "tools/tracehost/Plugin.h"
#include "tools/tracehost/PluginWatch.h"
#include "tools/tracehost/Progress.h"
#include "tools/tracehost/Scenario.h"
#include "tools/tracehost/ScenarioReader.h"
#include "tools/tracehost/Simulation.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace {

constexpr int s_success = 0;
constexpr int s_fault = 1; // of the scenario or the plugin
constexpr int s_wrongUsage = 2;

constexpr char s_help[] =
    R"(usage: tracehost [OPTION]... PLUGIN SCENARIO

Loads the trace plugin PLUGIN, a shared library, as a simulator does, and plays
the file SCENARIO to it: a device whose ports, threads, timers and so on move
from clock to clock. The form of a scenario is described in
docs/formats/scenario.md.

  -i, --instance ARGUMENTS  start the plugin with these arguments, in place of
                            the scenario's 'instance' lines; may be repeated,
                            each adds an instance
  -c, --clocks NUMBER       play this many clocks, whatever the scenario says
  -g, --garbage             fill the words of state records that have no
                            meaning with changing garbage
      --check               read the scenario and stop there; needs no PLUGIN
      --plugin-help         print the help text of PLUGIN; needs no SCENARIO
  -h, --help                print this text
      --version             print the version

Exit status: 0, or 1 for a fault of the scenario or the plugin, or 2 for wrong
usage. A run of more than a second shows its progress when standard error is a
terminal, unless NO_COLOR is set.

Example:
  tracehost -i "-ze app.ze -o app.vcd -ports" lib/WavePlugin.so app.scenario
)";

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Options {
    std::vector<std::string> instances;
    std::optional<Clock> clocks;
    bool garbage = false;
    bool check = false;
    bool pluginHelp = false;
    bool help = false;
    bool version = false;
    std::vector<std::string> files;
};

Clock clocksOf(std::string_view text) {
    try {
        return numberOf(text, "--clocks", 0, s_maxClock);
    } catch (const ScenarioError& error) {
        throw UsageError(error.what());
    }
}

struct OptionRow {
    std::string_view shortName;
    std::string_view longName;
    bool takesValue;
    void (*apply)(Options& options, std::string_view value);
};

constexpr OptionRow s_options[] = {
    {"-i", "--instance", true, [](Options& o, std::string_view value) { o.instances.emplace_back(value); }},
    {"-c", "--clocks", true, [](Options& o, std::string_view value) { o.clocks = clocksOf(value); }},
    {"-g", "--garbage", false, [](Options& o, std::string_view) { o.garbage = true; }},
    {"", "--check", false, [](Options& o, std::string_view) { o.check = true; }},
    {"", "--plugin-help", false, [](Options& o, std::string_view) { o.pluginHelp = true; }},
    {"-h", "--help", false, [](Options& o, std::string_view) { o.help = true; }},
    {"", "--version", false, [](Options& o, std::string_view) { o.version = true; }},
};

const OptionRow& optionRow(std::string_view name, std::string_view word) {
    for (const OptionRow& row : s_options) {
        if (!name.empty() && (name == row.shortName || name == row.longName))
            return row;
    }
    throw UsageError("unknown option '" + std::string(word) + "'");
}

// Both "--clocks 5" and "--clocks=5" are understood, and everything behind "--" is a file.
Options parse(const std::vector<std::string_view>& words) {
    Options options;
    bool onlyFiles = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string_view word = words[i];
        if (onlyFiles || word.size() < 2 || word.front() != '-') {
            options.files.emplace_back(word);
            continue;
        }
        if (word == "--") {
            onlyFiles = true;
            continue;
        }
        const std::size_t equals = word.starts_with("--") ? word.find('=') : std::string_view::npos;
        const OptionRow& row = optionRow(word.substr(0, equals), word);
        std::string_view value;
        if (equals != std::string_view::npos) {
            if (!row.takesValue)
                throw UsageError("option '" + std::string(row.longName) + "' takes no value");
            value = word.substr(equals + 1);
        } else if (row.takesValue) {
            if (++i == words.size())
                throw UsageError("option '" + std::string(word) + "' needs a value");
            value = words[i];
        }
        row.apply(options, value);
    }
    return options;
}

// Hands out the files by their place on the command line, and complains about a wrong number of them.
void expectFiles(const Options& options, std::initializer_list<std::string_view> names) {
    if (options.files.size() < names.size())
        throw UsageError(std::string(names.begin()[options.files.size()]) + " is missing");
    if (options.files.size() > names.size())
        throw UsageError("unexpected '" + options.files[names.size()] + "'");
}

Scenario readScenario(const std::string& fileName, const Options& options) {
    std::ifstream stream(fileName);
    Scenario scenario = ScenarioReader(fileName).read(stream);
    if (!stream.eof()) // not opened, or a folder
        throw ScenarioError(fileName + ": can't be read");
    scenario.garbage |= options.garbage;
    if (!options.instances.empty())
        scenario.instances = options.instances;
    scenario.clocks = options.clocks.value_or(scenario.clocks);
    if (!scenario.hasClocks && !options.clocks)
        throw ScenarioError(fileName + ": the line 'clocks NUMBER' is missing");
    for (const Notification& each : scenario.notifications) {
        if (!scenario.instances.empty() && each.instance >= scenario.instances.size())
            throw ScenarioError(fileName + ":" + std::to_string(each.line) + ": notify goes to instance " +
                                std::to_string(each.instance) + ", and the last one is " +
                                std::to_string(scenario.instances.size() - 1));
    }
    return scenario;
}

void show(const std::string& text) {
    if (!text.empty())
        std::fputs(text.c_str(), stderr);
}

// The life of a run: every instance is started at clock 0, then the device moves and each instance is
// clocked once a clock, with the notifications of a clock before it.
void play(const Scenario& scenario, Plugin& plugin) {
    Simulation simulation(scenario);
    for (const std::string& arguments : scenario.instances)
        plugin.initialise(simulation.callbacks(), arguments);

    constexpr Clock s_clocksBetweenLooks = 256; // at the time: it isn't free
    const bool showsProgress = Progress::isWanted(STDERR_FILENO);
    Progress progress(scenario.clocks, std::chrono::steady_clock::now());
    auto notification = scenario.notifications.begin();
    for (Clock clock = 1; clock <= scenario.clocks; ++clock) {
        simulation.advance();
        PluginWatch::setClock(clock);
        for (; notification != scenario.notifications.end() && notification->clock == clock; ++notification)
            plugin.notify(notification->instance, notification->number);
        for (unsigned int instance = 0; instance < plugin.numInstances(); ++instance)
            plugin.clock(instance);
        if (showsProgress && clock % s_clocksBetweenLooks == 0)
            show(progress.update(clock, std::chrono::steady_clock::now()));
    }
    for (unsigned int instance = 0; instance < plugin.numInstances(); ++instance)
        plugin.terminate(instance);
    show(progress.finish());
}

int run(const Options& options) {
    if (options.help) {
        std::fputs(s_help, stdout);
        return s_success;
    }
    if (options.version) {
        std::puts("tracehost " TRACEHOST_VERSION);
        return s_success;
    }
    if (options.check) {
        expectFiles(options, {"SCENARIO"});
        readScenario(options.files[0], options);
        return s_success;
    }
    if (options.pluginHelp) {
        expectFiles(options, {"PLUGIN"});
        std::fputs(Plugin(options.files[0]).help(), stdout);
        return s_success;
    }
    expectFiles(options, {"PLUGIN", "SCENARIO"});
    const Scenario scenario = readScenario(options.files[1], options);
    if (scenario.instances.empty())
        throw ScenarioError(options.files[1] + ": no 'instance' line, and no option --instance");
    Plugin plugin(options.files[0]);
    play(scenario, plugin);
    return s_success;
}

} // namespace

int main(int argc, char** argv) {
    PluginWatch::install();
    try {
        return run(parse({argv + 1, argv + argc}));
    } catch (const UsageError& error) {
        std::fprintf(stderr, "tracehost: %s\nTry 'tracehost --help'.\n", error.what());
        return s_wrongUsage;
    } catch (const ScenarioError& error) {
        std::fprintf(stderr, "%s\n", error.what());
    } catch (const PluginError& error) {
        std::fprintf(stderr, "tracehost: %s\n", error.what());
    }
    return s_fault;
}
