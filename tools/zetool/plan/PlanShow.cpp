#include "tools/zetool/plan/PlanShow.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/plan/PlanArguments.h"
#include "tools/zetool/plan/PlanStumbles.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/TextTable.h"
#include "tools/zetool/WholeFile.h"
#include "tools/zetool/Words.h"

#include <algorithm>

namespace {

// How many texts of a kind of trouble are shown to people.
constexpr std::size_t s_shownStumbles = 10;

constexpr const char* s_assumption =
    "assumed: the simulator has what the image says. Its own counts and names decide.";

// What one word gives, on one core or on the device.
struct WordSignals {
    const char* word;
    std::vector<VcdVariable> signals;
};

struct CorePlan {
    const PlanCore* core;
    std::vector<WordSignals> words;
};

struct Plan {
    std::string file;
    std::optional<WordSignals> pads;
    std::vector<CorePlan> cores;
    std::optional<std::string> arguments;
    std::size_t numSignals = 0; // that the arguments give
    std::vector<PlanStumble> stumbles;
};

std::optional<unsigned int> numberOption(const Invocation& invocation, const char* option) {
    if (!invocation.has(option))
        return std::nullopt;
    const std::string& text = invocation.value(option);
    const std::optional<unsigned int> number = wholeNumber<unsigned int>(text);
    if (!number)
        throw ToolFailure(std::string("plan: --") + option + ": '" + text + "' isn't a number");
    return number;
}

bool isWanted(const Invocation& invocation, const char* word) {
    const auto& wanted = invocation.values("trace");
    return wanted.empty() || std::ranges::find(wanted, word) != wanted.end();
}

// In the order in which they are named; the names are those of the image.
std::vector<const PlanCore*> wantedCores(const Invocation& invocation, const PlanImage& image) {
    std::vector<const PlanCore*> cores;
    for (const std::string& name : invocation.values("core")) {
        const auto found = std::ranges::find(image.cores(), name, &PlanCore::name);
        if (found != image.cores().end() && std::ranges::find(cores, &*found) == cores.end())
            cores.push_back(&*found);
    }
    if (!invocation.has("core"))
        for (const PlanCore& core : image.cores())
            if (!core.programs.empty())
                cores.push_back(&core);
    return cores;
}

// The waveform beside the image, in the folder where the simulator runs.
std::string waveformName(const Invocation& invocation, const std::string& image) {
    if (invocation.has("waveform"))
        return invocation.value("waveform");
    const std::string name = image.substr(image.rfind('/') + 1);
    const std::size_t point = name.rfind('.');
    return (point == std::string::npos || point == 0 ? name : name.substr(0, point)) + ".vcd";
}

std::vector<VcdVariable> declaredBy(const PlanImage& image, bool pads, const std::vector<PlanTrace>& traces) {
    return PlanHead(image, pads, traces, PlanHead::Aliases::Without).header.variables;
}

Plan makePlan(const Invocation& invocation, const PlanImage& image,
              const std::vector<const PlanCore*>& cores) {
    Plan plan;
    const std::string& path = invocation.value("IMAGE");
    plan.file = shownName(path);
    const bool pads = isWanted(invocation, s_padsWord);
    if (pads)
        plan.pads = WordSignals{s_padsWord, declaredBy(image, true, {})};

    std::vector<PlanTrace> traces;
    for (const PlanCore* const core : cores) {
        CorePlan corePlan{core, {}};
        PlanTrace trace{core, {}};
        for (const PlanWord& word : s_coreWords) {
            if (!isWanted(invocation, word.word))
                continue;
            corePlan.words.push_back({word.word, declaredBy(image, false, {{core, {&word}}})});
            // Of the two words for ports the later one counts, so that one is enough.
            if (!trace.words.empty() && std::string_view(word.word).starts_with(trace.words.back()->word))
                trace.words.pop_back();
            trace.words.push_back(&word);
        }
        plan.cores.push_back(std::move(corePlan));
        if (!trace.words.empty())
            traces.push_back(std::move(trace));
    }
    const PlanHead whole(image, pads, traces, PlanHead::Aliases::With);
    plan.numSignals = whole.header.variables.size();
    plan.stumbles = stumblesOf(whole);
    const std::string imageName = path == "-" ? "IMAGE" : path;
    plan.arguments = planArguments(imageName, waveformName(invocation, imageName), pads, traces);
    return plan;
}

void writeSignals(OutputFile& output, const WordSignals& word) {
    TextTable table({{"width", TextTable::Align::Right}, {"name"}});
    for (const VcdVariable& signal : word.signals)
        table.add({std::to_string(signal.width), signal.name});
    table.write(output);
}

void writeWord(OutputFile& output, const WordSignals& word, const std::string& place) {
    output.write("\n" + place + "-" + word.word + ": " + std::to_string(word.signals.size()) +
                 (word.signals.size() == 1 ? " signal\n" : " signals\n"));
    writeSignals(output, word);
}

std::string countText(const PlanCount& count) {
    return std::to_string(count.number) + " (" + sourceText(count.source) + ")";
}

void writeCores(OutputFile& output, const Plan& plan) {
    TextTable table(
        {{"core"}, {"node"}, {"number"}, {"programs"}, {"ports"}, {"threads"}, {"timers"}, {"clock blocks"}});
    for (const CorePlan& corePlan : plan.cores) {
        const PlanCore& core = *corePlan.core;
        table.add({core.name, std::to_string(core.node), std::to_string(core.number),
                   std::to_string(core.programs.size()),
                   countText({static_cast<unsigned int>(core.ports.size()), core.portSource}),
                   countText(core.threads), countText(core.timers), countText(core.clockBlocks)});
    }
    table.write(output);
}

void writeCounts(OutputFile& output, const Plan& plan) {
    TextTable table({{"core"}, {"option"}, {"signals", TextTable::Align::Right}});
    const auto add = [&](const std::string& core, const WordSignals& word) {
        table.add({core, std::string("-") + word.word, std::to_string(word.signals.size())});
    };
    if (plan.pads)
        add("", *plan.pads);
    for (const CorePlan& corePlan : plan.cores)
        for (const WordSignals& word : corePlan.words)
            add(corePlan.core->name, word);
    table.write(output);
}

void writeStumbles(OutputFile& output, const Plan& plan) {
    for (std::size_t i = 0; i < plan.stumbles.size();) {
        const TroubleRow* const row = plan.stumbles[i].row;
        output.write(std::string("\n") + row->text + "\n    " + row->readers + "\n");
        std::size_t count = 0;
        for (; i < plan.stumbles.size() && plan.stumbles[i].row == row; ++i)
            if (count++ < s_shownStumbles)
                output.write("    " + plan.stumbles[i].text + "\n");
        if (count > s_shownStumbles)
            output.write("    and " + std::to_string(count - s_shownStumbles) + " more\n");
    }
}

void writeText(OutputFile& output, const Plan& plan, bool withNames) {
    writeCores(output, plan);
    output.write(std::string(s_assumption) + "\n\n");
    writeCounts(output, plan);
    if (plan.arguments)
        output.write("\narguments for these " + std::to_string(plan.numSignals) + " signals:\n" +
                     *plan.arguments + "\n");
    writeStumbles(output, plan);
    if (!withNames)
        return;
    if (plan.pads)
        writeWord(output, *plan.pads, "");
    for (const CorePlan& corePlan : plan.cores)
        for (const WordSignals& word : corePlan.words)
            writeWord(output, word, corePlan.core->name + " ");
}

Json wordJson(const WordSignals& word, bool withNames) {
    Json object = Json::object();
    object["option"] = std::string("-") + word.word;
    object["count"] = word.signals.size();
    Json& list = object["signals"] = Json::array();
    if (!withNames)
        return object;
    for (const VcdVariable& signal : word.signals) {
        Json row = Json::object();
        row["name"] = jsonText(signal.name);
        row["width"] = signal.width;
        row["identifier"] = jsonText(signal.identifier);
        list.push_back(std::move(row));
    }
    return object;
}

Json countJson(const PlanCount& count) {
    Json object = Json::object();
    object["number"] = count.number;
    object["source"] = sourceKey(count.source);
    return object;
}

void writeObject(OutputFile& output, const Plan& plan, bool withNames) {
    Json object = jsonObject("plan", 1);
    object["assumption"] = s_assumption;
    object["arguments"] = plan.arguments ? Json(jsonText(*plan.arguments)) : Json();
    object["numSignals"] = plan.numSignals;
    object["pads"] = plan.pads ? wordJson(*plan.pads, withNames) : Json();
    Json& cores = object["cores"] = Json::array();
    for (const CorePlan& corePlan : plan.cores) {
        const PlanCore& core = *corePlan.core;
        Json row = Json::object();
        row["name"] = jsonText(core.name);
        row["node"] = core.node;
        row["number"] = core.number;
        row["programs"] = core.programs.size();
        row["ports"] = countJson({static_cast<unsigned int>(core.ports.size()), core.portSource});
        row["threads"] = countJson(core.threads);
        row["timers"] = countJson(core.timers);
        row["clockBlocks"] = countJson(core.clockBlocks);
        Json& options = row["options"] = Json::array();
        for (const WordSignals& word : corePlan.words)
            options.push_back(wordJson(word, withNames));
        cores.push_back(std::move(row));
    }
    Json& troubles = object["troubles"] = Json::array();
    for (const PlanStumble& stumble : plan.stumbles) {
        Json row = Json::object();
        row["trouble"] = stumble.row->key;
        row["text"] = stumble.row->text;
        row["name"] = jsonText(stumble.text);
        row["readers"] = stumble.row->readers;
        troubles.push_back(std::move(row));
    }
    writeJson(output, object);
}

} // namespace

int planShow(const Invocation& invocation) {
    const PlanChoices choices{numberOption(invocation, "threads"), numberOption(invocation, "timers"),
                              numberOption(invocation, "clock-blocks"), invocation.has("mapped-ports")};
    const std::string& path = invocation.value("IMAGE");
    const std::string file = shownName(path);
    const PlanImage image(file, readWhole(path), choices);
    if (!image.isFine())
        return s_foundWrong;
    for (const std::string& name : invocation.values("core")) {
        if (std::ranges::find(image.cores(), name, &PlanCore::name) != image.cores().end())
            continue;
        printMessage(file, "there is no core '" + name + "'");
        return s_foundWrong;
    }

    const Plan plan = makePlan(invocation, image, wantedCores(invocation, image));
    if (!plan.arguments)
        printMessage(file, "a name holds a quote ', so that no argument string can hold it");
    if (!plan.stumbles.empty())
        printMessage(file, "viewers will stumble over names: " + std::to_string(plan.stumbles.size()));
    OutputFile output = resultFile(invocation);
    if (invocation.has("json"))
        writeObject(output, plan, !invocation.has("summary"));
    else
        writeText(output, plan, !invocation.has("summary"));
    output.close();
    return plan.stumbles.empty() && plan.arguments ? s_fine : s_foundWrong;
}
