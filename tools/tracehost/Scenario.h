#pragma once

#include "tools/tracehost/Pattern.h"
#include "tools/tracehost/Program.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// What a scenario file says, as data: the device, how its state moves, and who watches it.
// `ScenarioReader` makes it, `Simulation` plays it.

// A field of a state record that a scenario can drive.
struct Field {
    std::string_view name; // of the record's member
    std::size_t offset;    // in the record, of an unsigned int
    bool isText = false;   // the number is that of a text
};

enum class ResourceKind { Port, Thread, Timer, ClockBlock, Instruction, Pad };
constexpr std::size_t s_numResourceKinds = 6;

// What all resources of a kind share.
struct ResourceKindInfo {
    ResourceKind kind;
    std::string_view word; // in a scenario, and in messages
    bool isNamed;          // its resources have names of their own
    bool isOfDevice;       // stands outside cores
    std::span<const Field> fields;
};

std::span<const ResourceKindInfo, s_numResourceKinds> resourceKinds();
const ResourceKindInfo& resourceKind(ResourceKind kind);

// The words of TraceInstructionState with texts as numbers, so that they move like all others.
struct InstructionWords {
    unsigned int valid = 0;
    unsigned int thread = 0;
    unsigned int pc = 0;
    unsigned int mnemonic = 0;
    unsigned int functionName = 0;
};

// A pattern that rules a field from a clock on, until the next segment begins.
struct Segment {
    Clock from = 0;
    Clock phase = 0; // the pattern's own time at `from`
    std::shared_ptr<const Pattern> pattern;
};

struct Wave {
    const Field* field;
    std::vector<Segment> segments; // never empty; `from` ascends
};

struct Resource {
    std::string name;
    std::vector<Wave> waves; // at most one a field
};

struct Core {
    std::uint32_t node;
    std::uint32_t number;
    std::array<std::vector<Resource>, s_numResourceKinds> resources; // by kind; those of the device are empty
    std::vector<Program> programs;                                   // the threads' turns, in this order

    std::uint32_t pid() const { return (node << 16) | number; }
    std::vector<Resource>& of(ResourceKind kind) { return resources[static_cast<std::size_t>(kind)]; }
    const std::vector<Resource>& of(ResourceKind kind) const {
        return resources[static_cast<std::size_t>(kind)];
    }
};

struct Notification {
    Clock clock;
    std::uint32_t instance; // counts from 0, in the order of the instances
    std::uint32_t number;
    unsigned int line; // of the file, for a complaint once the instances are known
};

struct Scenario {
    // The texts that an idle core shows: eight blanks for a mnemonic, and no function.
    static constexpr std::uint32_t s_blankMnemonic = 0;
    static constexpr std::uint32_t s_noFunction = 1;

    bool hasClocks = false;
    Clock clocks = 0;
    double frequency = 400; // MHz
    std::string version = "1.0";
    std::uint32_t firstCycle = 0;
    bool garbage = false; // fill the unlisted words of state records
    std::vector<std::string> instances;
    std::vector<Notification> notifications; // by clock, those of one clock as they were given
    std::vector<Core> cores;
    std::vector<Resource> pads;
    std::deque<std::string> texts = {"        ", ""};
};
