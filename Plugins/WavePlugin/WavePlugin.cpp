#include "Plugins/WavePlugin/WavePlugin.h"

#include "infr_libs/PluginLibrary/PluginLibrary.h"
#include "Plugins/WavePlugin/PadTracer.h"
#include "Plugins/WavePlugin/PluginArguments.h"
#include "Plugins/WavePlugin/StructureFileWriter.h"
#include "Plugins/WavePlugin/TraceInfo.h"

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <list>
#include <memory>
#include <string>

// An entry point is visible outside the library, and works when a 32-bit host calls with a stack that is
// aligned to four bytes only.
#define ENTRY_POINT extern "C" __attribute__((visibility("default"), force_align_arg_pointer))

namespace {

// ---------------------------------------------------------------- the instances

constexpr unsigned int s_maxPlugins = 64;

// By instance number. What PluginTerminate has deleted stays in its list as null, since the length of the
// lists tells an instance that was in use from one that never was.
std::list<std::unique_ptr<TraceInfo>> s_traceInfos[s_maxPlugins];           // in order of first mention
std::list<std::unique_ptr<ResourceTracer>> m_resourceTracers[s_maxPlugins]; // those of no core
FILE* s_traceFp[s_maxPlugins];                                              // null: none, or closed
bool s_traceActive[s_maxPlugins];                                           // whether clocks are traced

unsigned int s_numPlugins; // the next instance number; never reused

// The table of the instance that was activated last serves the end of all instances: wanted.
TracePluginCallbacks* s_callbacks;

// ---------------------------------------------------------------- failing

const char* const s_options =
    "  [global options][core option][trace options][core option][trace options]...\n"
    "\n"
    "Global options:\n"
    "  -o file                  Place the trace output into <file>\n"
    "  -pads                    Enables tracing of the pad state of the device\n"
    "\n"
    "Core option (required for multi-core):\n"
    "  -core <name>             Specify a core using its ZN core name\n"
    "\n"
    "Trace options (per core):\n"
    "  -ports                   Enable port tracing\n"
    "  -ports-detailed          Enable detailed port tracing\n"
    "  -cycles                  Enable clock cycle tracing\n"
    "  -threads                 Enable thread tracing\n"
    "  -timers                  Enable timer tracing\n"
    "  -clock-blocks            Enable clock block tracing\n"
    "  -instructions            Enable instruction tracing\n"
    "  -functions               Enable function tracing\n"
    "\n"
    "\n";

const char* const s_extraOptions =
    "Extra options:\n"
    "  -ze filename           Ze file used (Enables the usage of zn specified names)\n"
    "  -help                  Prints this message\n"
    "\n"
    "\n";

void printUsage() {
    std::fputs("Arguments have the form:\n", stderr);
    std::fputs(s_options, stderr);
    std::fputs(s_extraOptions, stderr);
}

[[noreturn]] __attribute__((format(printf, 1, 2))) void fail(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::exit(1);
}

[[noreturn]] void failWithUsage() {
    printUsage();
    std::exit(1);
}

[[noreturn]] __attribute__((format(printf, 1, 2))) void failWithUsage(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    failWithUsage();
}

// Runs the body of an entry point. Nothing may leave it: the simulator couldn't catch it.
template<typename Body>
auto guarded(const Body& body) {
    try {
        return body();
    } catch (const std::exception& error) {
        fail("WavePlugin Error: %s\n", error.what());
    } catch (const std::string& error) { // what the infrastructure throws
        fail("WavePlugin Error: %s\n", error.c_str());
    } catch (...) {
        fail("WavePlugin Error: unknown exception\n");
    }
}

// ---------------------------------------------------------------- options

// A core as options name it.
struct NamedCore {
    std::string name;
    unsigned int node = 0;
    unsigned int core = 0;
};

struct TraceOption {
    const char* word;
    void (*apply)(TraceInfo& info);
};

constexpr TraceOption s_traceOptions[] = {
    {"-cycles", [](TraceInfo& info) { info.setTraceCycles(true); }},
    {"-ports", [](TraceInfo& info) { info.setTracePorts(TraceInfo::Ports); }},
    {"-ports-detailed", [](TraceInfo& info) { info.setTracePorts(TraceInfo::DetailedPorts); }},
    {"-threads", [](TraceInfo& info) { info.setTraceThreads(true); }},
    {"-clock-blocks", [](TraceInfo& info) { info.setTraceClocks(true); }},
    {"-timers", [](TraceInfo& info) { info.setTraceTimers(true); }},
    {"-instructions", [](TraceInfo& info) { info.setTraceInstructions(true); }},
    {"-functions", [](TraceInfo& info) { info.setTraceFunctions(true); }},
};

// The words of one instance, read once from front to back.
class Words {
public:
    explicit Words(const std::list<std::string>& words) : m_next(words.begin()), m_end(words.end()) {}

    bool atEnd() const { return m_next == m_end; }
    const std::string& next() { return *m_next++; }

    // The value of the option just read; without one the process ends.
    const std::string& value() {
        if (atEnd())
            failWithUsage();
        return next();
    }

private:
    std::list<std::string>::const_iterator m_next;
    std::list<std::string>::const_iterator m_end;
};

// The trace set of a core; a new one behind the others when the core has none yet.
TraceInfo& getTraceInfo(unsigned int instance, unsigned int node, unsigned int core,
                        const std::string& coreName) {
    auto& infos = s_traceInfos[instance];
    const auto found = std::ranges::find_if(infos, [&](const auto& info) {
        return info->getPid() >> 16 == node && (info->getPid() & 0xffff) == core;
    });
    if (found != infos.end())
        return **found;
    return *infos.emplace_back(std::make_unique<TraceInfo>(node << 16 | (core & 0xffff), coreName));
}

// Opens every image that the words name, and ends the process when they name none. An image that can't be
// opened is seen at the first question to the library. A word -ze is taken for the option even where it
// stands as the value of another: wanted.
void openImages(const std::list<std::string>& list, PluginLibrary& library) {
    std::string image;
    for (Words words(list); !words.atEnd();) {
        if (words.next() == "-ze") {
            image = words.value();
            library.openZe(image.c_str());
        }
    }
    if (image.empty())
        fail("WavePlugin Error: No ze file specified\n");
}

// Gives each option to the core that it is for, and returns the name of the output, empty for none.
std::string assignOptions(unsigned int id, const std::list<std::string>& list, PluginLibrary& library,
                          TracePluginCallbacks* callbacks) {
    const unsigned int numProcessors = library.getNumActiveProcessors();
    NamedCore current;
    if (!library.findDefaultZNCore(current.name, current.node, current.core))
        fail("WavePlugin Error: Unable to find default core in the zn file\n");

    std::string outputName;
    bool coreNamed = false;
    for (Words words(list); !words.atEnd();) {
        const std::string& word = words.next();
        if (word == "-o") {
            outputName = words.value();
        } else if (word == "-ze") {
            words.value();
        } else if (word == "-pads") {
            // Each mention adds a tracer, and its signals again: wanted.
            m_resourceTracers[id].push_back(std::make_unique<PadTracer>(callbacks));
        } else if (word == "-core") {
            current.name = words.value();
            if (!library.findZNCore(current.name, current.node, current.core))
                fail("Error: could not find core '%s' in ZN\n", current.name.c_str());
            coreNamed = true;
        } else if (word == "-help") {
            failWithUsage(); // with status 1: wanted
        } else {
            // Before the word is looked at: wanted, a misspelt option gets this message too.
            if (numProcessors >= 2 && !coreNamed)
                failWithUsage("Error: Must specify core with multi-core binaries\n");
            const auto* option = std::ranges::find(s_traceOptions, word, &TraceOption::word);
            if (option == std::end(s_traceOptions))
                failWithUsage("Error: Invalid argument to trace plugin: '%s'\n", word.c_str());
            option->apply(getTraceInfo(id, current.node, current.core, current.name));
        }
    }
    return outputName;
}

// ---------------------------------------------------------------- the head of the waveform

// Applies an operation to every tracer of no core, then to every trace set.
template<typename Operation>
void forAll(unsigned int id, const Operation& operation) {
    for (const auto& tracer : m_resourceTracers[id]) {
        if (tracer)
            operation(*tracer);
    }
    for (const auto& info : s_traceInfos[id]) {
        if (info)
            operation(*info);
    }
}

FILE* openOutput(const std::string& name) {
    if (name.empty())
        return stdout;
    FILE* fp = std::fopen(name.c_str(), "w");
    if (!fp)
        failWithUsage("Error opening file: %s\n", name.c_str());
    return fp;
}

std::string dateText() {
    const std::time_t now = std::time(nullptr);
    std::string text = std::asctime(std::localtime(&now));
    text.pop_back(); // its newline
    return text;
}

// A number with six places behind the point, whatever the locale of the host.
std::string fixedText(double value) {
    char text[400]; // 309 digits, sign, point and six more digits
    return {text, std::to_chars(text, std::end(text), value, std::chars_format::fixed, 6).ptr};
}

void writeHeader(FILE* fp, TracePluginCallbacks* callbacks, const std::string& date) {
    std::fprintf(fp, "$date\n  %s\n$end\n\n", date.c_str());
    std::fprintf(fp, "$version\n  Zcore C-Simulator + WaveTrace plugin (interface version: %s)\n$end\n\n",
                 callbacks->getInterfaceVersion());
    // One simulated clock, as a fraction where the frequency asks for one: wanted. Time numbers count clocks.
    const double nsPerClock = 1000.0F / callbacks->getClockFrequency();
    std::fprintf(fp, "$timescale\n  %s ns\n$end\n\n", fixedText(nsPerClock).c_str());
}

void writeStructure(unsigned int id, StructureFileWriter writer, const std::string& date) {
    writer.initialise(date);

    writer.openHierachy();
    forAll(id, [&](auto& traced) { traced.dumpSignalHierarchy(&writer); });
    writer.closeHierachy();

    writer.openValueAliases();
    for (const auto& info : s_traceInfos[id])
        info->dumpSignalValueAliases(&writer);
    writer.closeValueAliases();

    // The patterns match the signals of every core, so those of the first core serve all: wanted, also
    // where a later core has tracers that the first one lacks.
    writer.openSignalDocs();
    for (const auto& tracer : m_resourceTracers[id])
        tracer->dumpSignalDocs(&writer);
    if (!s_traceInfos[id].empty())
        s_traceInfos[id].front()->dumpSignalDocs(&writer);
    writer.closeSignalDocs();

    writer.processZnFile();
    writer.terminate();
}

unsigned int initialise(TracePluginCallbacks* callbacks, const char* arguments) {
    // A call that fails takes a number too: wanted.
    const unsigned int id = s_numPlugins++;
    if (id >= s_maxPlugins)
        fail("Error: Exceeded the maximum number of plugins (%d).\n", static_cast<int>(s_maxPlugins));

    std::list<std::string> words;
    strToStrList(arguments, &words);
    if (words.empty())
        failWithUsage("Error: Incorrect arguments to trace plugin.\n");

    PluginLibrary library;
    openImages(words, library);
    const std::string outputName = assignOptions(id, words, library, callbacks);
    if (m_resourceTracers[id].empty() && s_traceInfos[id].empty())
        return id; // nothing to trace: no file, and silence for good

    s_traceActive[id] = true;
    s_callbacks = callbacks;
    for (const auto& info : s_traceInfos[id])
        info->initialise(callbacks, &library);

    FILE* const fp = s_traceFp[id] = openOutput(outputName);
    const std::string date = dateText();
    writeHeader(fp, callbacks, date);
    writeStructure(id, StructureFileWriter(fp, callbacks, &library), date);
    forAll(id, [&](auto& traced) { traced.declareVariables(fp); });
    std::fputs("\n$enddefinitions $end\n\n", fp);
    forAll(id, [&](auto& traced) { traced.initialiseVariables(fp); });
    std::fflush(fp);
    return id;
}

void clock(unsigned int instance) {
    if (instance >= s_maxPlugins || !s_traceActive[instance])
        return;
    FILE* const fp = s_traceFp[instance];
    bool firstChange = true;
    forAll(instance, [&](auto& traced) { traced.traceVariables(fp, &firstChange); });
    if (!firstChange)
        std::fputc('\n', fp);
}

void notify(unsigned int instance, unsigned int notification) {
    enum { TurnOn = 0, TurnOff = 1 };
    if (instance >= s_maxPlugins)
        return;
    if (notification == TurnOn)
        s_traceActive[instance] = true;
    else if (notification == TurnOff)
        s_traceActive[instance] = false;
}

void terminate(unsigned int instance) {
    if (instance >= s_maxPlugins)
        return;
    if (m_resourceTracers[instance].empty() && s_traceInfos[instance].empty())
        return;
    // The last time line is written also while tracing is off. Standard output is neither flushed nor
    // closed: it is the host's.
    if (FILE* const fp = s_traceFp[instance]) {
        std::fprintf(fp, "#%d\n", static_cast<int>(s_callbacks->getCycleCount()));
        if (fp != stdout) {
            std::fclose(fp);
            s_traceFp[instance] = nullptr;
        }
    }
    for (auto& tracer : m_resourceTracers[instance])
        tracer.reset();
    for (auto& info : s_traceInfos[instance])
        info.reset();
}

} // namespace

// ---------------------------------------------------------------- what the simulator calls

ENTRY_POINT unsigned int PluginInitialise(TracePluginCallbacks* callbacks, const char* arguments) {
    return guarded([&] { return initialise(callbacks, arguments); });
}

ENTRY_POINT void PluginClock(unsigned int instance) {
    guarded([&] { clock(instance); });
}

ENTRY_POINT void PluginNotify(unsigned int instance, unsigned int notification) {
    guarded([&] { notify(instance, notification); });
}

ENTRY_POINT void PluginTerminate(unsigned int instance) {
    guarded([&] { terminate(instance); });
}

ENTRY_POINT const char* PluginHelp(void) {
    return s_options;
}
