#include "tools/zetool/pll/PllShow.h"

#include "infr_libs/ZNLoader/TickTock_G4.h"
#include "infr_libs/ZNLoader/TickTock_L1.h"
#include "infr_libs/ZNLoader/ZNUtils.h"
#include "tools/zetool/Command.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/pll/PllWords.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/Words.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>

namespace {

// The fields of a PLL register. Each divider stands there less one; the output divider's is the top of what
// remains below `numBits`.
struct RegisterForm {
    unsigned feedbackShift;
    unsigned outputShift;
    unsigned numBits;
};

struct Device {
    const char* name;
    RegisterForm form;
    std::unique_ptr<TickTock> (*create)(ZNUtils* utils);
};

constexpr Device s_devices[] = {
    {"g4",
     {8, 16, 24},
     [](ZNUtils* utils) -> std::unique_ptr<TickTock> { return TickTock_G4::create(utils); }},
    {"l1",
     {8, 23, 32},
     [](ZNUtils* utils) -> std::unique_ptr<TickTock> { return TickTock_L1::create(utils); }},
};

struct Dividers {
    std::uint32_t input = 0;
    std::uint32_t feedback = 0; // in feedback steps
    std::uint32_t output = 0;
};

// A divider's field from one bit up to another.
std::uint32_t fieldOf(std::uint32_t reg, unsigned from, unsigned to) {
    return (reg & static_cast<std::uint32_t>((std::uint64_t(1) << to) - 1)) >> from;
}

Dividers dividersOf(std::uint32_t reg, const RegisterForm& form) {
    return {fieldOf(reg, 0, form.feedbackShift) + 1, fieldOf(reg, form.feedbackShift, form.outputShift) + 1,
            fieldOf(reg, form.outputShift, form.numBits) + 1};
}

struct Setting {
    std::uint32_t oscillator = 0; // frequencies in Hz
    std::optional<std::uint32_t> wantedSystem;
    std::optional<std::uint32_t> wantedReference;
    Dividers dividers;
    unsigned stepsPerUnit = 1;
    std::uint64_t vco = 0;
    std::uint32_t system = 0;
    std::uint32_t pllRegister = 0;
    bool hasReference = false;
    std::uint32_t reference = 0;
    std::uint32_t referenceDivider = 0;
    std::uint32_t referenceRegister = 0;
};

constexpr const char* s_dividerOptions[] = {"input-div", "feedback-div", "output-div"};

const std::string& required(const Invocation& invocation, const char* option) {
    if (!invocation.has(option))
        throw ToolFailure(std::string("pll: --") + option + " is missing");
    return invocation.value(option);
}

void refuseBoth(const Invocation& invocation, const char* first, const char* second) {
    if (invocation.has(first) && invocation.has(second))
        throw ToolFailure(std::string("pll: --") + first + " and --" + second + " exclude each other");
}

// Throws the planner's message where there is no setting.
void planPll(const Invocation& invocation, TickTock& planner, Setting& setting) {
    const auto option = [&](const char* name) -> const std::string& { return required(invocation, name); };
    bool byDividers = false;
    for (const char* const name : s_dividerOptions) {
        refuseBoth(invocation, "system", name);
        refuseBoth(invocation, "min-feedback-div", name);
        byDividers = byDividers || invocation.has(name);
    }
    setting.oscillator = frequencyOf("oscillator", option("oscillator"));
    if (byDividers) {
        const std::uint32_t input = dividerOf("input-div", option("input-div"));
        const std::uint32_t feedback = halvesOf("feedback-div", option("feedback-div"));
        const std::uint32_t output = dividerOf("output-div", option("output-div"));
        setting.pllRegister =
            planner.calculatePllValueFromDivs(setting.oscillator, input, feedback, output, &setting.system);
    } else {
        setting.wantedSystem = frequencyOf("system", option("system"));
        const std::uint32_t minimum = invocation.has("min-feedback-div")
                                          ? halvesOf("min-feedback-div", invocation.value("min-feedback-div"))
                                          : 0;
        setting.pllRegister =
            planner.calculatePllValue(setting.oscillator, *setting.wantedSystem, minimum, &setting.system);
    }
}

void planReference(const Invocation& invocation, TickTock& planner, Setting& setting) {
    refuseBoth(invocation, "reference", "reference-div");
    if (invocation.has("reference")) {
        setting.wantedReference = frequencyOf("reference", invocation.value("reference"));
        setting.referenceRegister =
            planner.calculateRefDivValue(setting.system, *setting.wantedReference, &setting.reference);
        setting.hasReference = true;
    } else if (invocation.has("reference-div")) {
        setting.referenceRegister = planner.calculateRefDivValueFromDiv(
            setting.system, dividerOf("reference-div", invocation.value("reference-div")),
            &setting.reference);
        setting.hasReference = true;
    }
    setting.referenceDivider = setting.referenceRegister + 1;
}

// Names what is outside of the device's limits; a search stays within them, dividers that are given need not.
bool isWithinLimits(TickTock& planner, const Setting& setting) {
    bool isWithin = true;
    try {
        planner.testValidFreq(setting.oscillator,
                              static_cast<long long>(setting.vco / setting.dividers.output));
    } catch (const std::string& error) {
        printLines(error);
        isWithin = false;
    }
    const auto check = [&](const char* what, std::uint64_t frequency, long long lowest, long long highest) {
        if (frequency >= static_cast<std::uint64_t>(lowest) &&
            frequency <= static_cast<std::uint64_t>(highest))
            return;
        printMessage(std::string(what) + " would have " + std::to_string(frequency) + " Hz, and can have " +
                     std::to_string(lowest) + " to " + std::to_string(highest) + " Hz");
        isWithin = false;
    };
    check("the VCO", setting.vco, planner.m_minVcoFreq, planner.m_maxVcoFreq);
    check("the phase detector", setting.oscillator / setting.dividers.input, planner.m_minPfdFreq,
          planner.m_maxPfdFreq);
    return isWithin;
}

// Steps as a ratio: "16" or "10.5".
std::string ratioText(const Setting& setting) {
    const bool isHalf = setting.dividers.feedback % setting.stepsPerUnit != 0;
    return std::to_string(setting.dividers.feedback / setting.stepsPerUnit) + (isHalf ? ".5" : "");
}

std::string frequencyText(std::uint64_t frequency, const std::optional<std::uint32_t>& wanted) {
    std::string text = std::to_string(frequency) + " Hz";
    if (wanted && *wanted != frequency)
        text += " (wanted: " + std::to_string(*wanted) + " Hz)";
    return text;
}

void writeText(OutputFile& output, const Device& device, const Setting& setting) {
    const auto line = [&](const char* head, const std::string& text) {
        char start[32];
        std::snprintf(start, sizeof start, "%-22s", head);
        output.write(start + text + "\n");
    };
    line("device", device.name);
    line("oscillator", frequencyText(setting.oscillator, {}));
    line("input divider", std::to_string(setting.dividers.input));
    line("feedback divider",
         ratioText(setting) + (setting.stepsPerUnit == 1
                                   ? ""
                                   : " (" + std::to_string(setting.dividers.feedback) + " half steps)"));
    line("output divider", std::to_string(setting.dividers.output));
    line("VCO", frequencyText(setting.vco, {}));
    line("system frequency", frequencyText(setting.system, setting.wantedSystem));
    line("PLL register", hexText(setting.pllRegister));
    if (!setting.hasReference)
        return;
    line("reference divider", std::to_string(setting.referenceDivider));
    line("reference frequency", frequencyText(setting.reference, setting.wantedReference));
    line("reference register", hexText(setting.referenceRegister));
}

void writeObject(OutputFile& output, const Device& device, const Setting& setting) {
    const auto wanted = [](const std::optional<std::uint32_t>& frequency) {
        return frequency ? Json(*frequency) : Json();
    };
    Json object = jsonObject("pll", 1);
    object["device"] = device.name;
    object["oscillatorHz"] = setting.oscillator;
    object["inputDivider"] = setting.dividers.input;
    object["feedbackSteps"] = setting.dividers.feedback;
    object["feedbackStepsPerUnit"] = setting.stepsPerUnit;
    object["outputDivider"] = setting.dividers.output;
    object["vcoHz"] = setting.vco;
    object["wantedSystemHz"] = wanted(setting.wantedSystem);
    object["systemHz"] = setting.system;
    object["pllRegister"] = setting.pllRegister;
    Json& reference = object["reference"] = nullptr;
    if (setting.hasReference) {
        reference = Json::object();
        reference["divider"] = setting.referenceDivider;
        reference["wantedHz"] = wanted(setting.wantedReference);
        reference["hz"] = setting.reference;
        reference["register"] = setting.referenceRegister;
    }
    writeJson(output, object);
}

} // namespace

int pllShow(const Invocation& invocation) {
    const std::string& name = required(invocation, "device");
    const Device* device = s_devices;
    while (name != device->name) // one of the option's choices
        ++device;

    ZNUtils utils;
    const std::unique_ptr<TickTock> planner = device->create(&utils);
    Setting setting;
    try {
        planPll(invocation, *planner, setting);
        planReference(invocation, *planner, setting);
    } catch (const std::string& error) {
        printLines(error);
        return s_foundWrong;
    }
    setting.dividers = dividersOf(setting.pllRegister, device->form);
    setting.stepsPerUnit = static_cast<unsigned>(planner->m_feedbackStepsPerUnit);
    setting.vco = std::uint64_t(setting.dividers.feedback) * setting.oscillator /
                  (std::uint64_t(setting.dividers.input) * setting.stepsPerUnit);
    const bool isWithin = isWithinLimits(*planner, setting);

    OutputFile output = resultFile(invocation);
    if (invocation.has("json"))
        writeObject(output, *device, setting);
    else
        writeText(output, *device, setting);
    output.close();
    return isWithin ? s_fine : s_foundWrong;
}
