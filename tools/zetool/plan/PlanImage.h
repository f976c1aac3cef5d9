#pragma once

#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "infr_libs/IosHandler/IosHandler.h"
#include "infr_libs/ZNLoader/ZNLoader.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Where a number or a list comes from.
enum class PlanSource { Configuration, NodeConfiguration, Default, Option };

// How that reads in texts and in JSON.
const char* sourceText(PlanSource source);
const char* sourceKey(PlanSource source);

struct PlanPort {
    std::string name;
    unsigned int width = 0; // in bits

    bool operator==(const PlanPort&) const = default;
};

struct PlanCount {
    unsigned int number = 0;
    PlanSource source = PlanSource::Default;
};

// A core as a simulator is assumed to have it.
struct PlanCore {
    std::string name;        // the whole `Reference` of the network
    unsigned int node = 0;   // routing identifier: the node's number in packed core ids
    unsigned int number = 0; // on its node
    std::vector<PlanPort> ports;
    PlanSource portSource = PlanSource::Default;
    PlanCount threads;
    PlanCount timers;
    PlanCount clockBlocks;
    std::vector<std::unique_ptr<ElfHandler>> programs;

    // As the plugin packs it.
    unsigned int pid() const { return node << 16 | (number & 0xffff); }
};

// Numbers and choices of the command line that stand in place of the image's.
struct PlanChoices {
    std::optional<unsigned int> threads;
    std::optional<unsigned int> timers;
    std::optional<unsigned int> clockBlocks;
    bool mappedPortsOnly = false;
};

// What an image tells of a simulation that hasn't begun: the cores that programs run on, in the network's
// order, and the pads. The parts are read by the project's own readers; what the plugin would refuse to start
// on is refused here too.
class PlanImage {
public:
    // `file` is the name for messages. Check `isFine` first: without it there are messages and nothing else.
    PlanImage(const std::string& file, std::string bytes, const PlanChoices& choices);

    bool isFine() const { return m_isFine; }

    const std::vector<PlanCore>& cores() const { return m_cores; }
    const std::vector<std::string>& pads() const { return m_pads; }
    const ZNLoader& network() const { return *m_network; }

private:
    bool read(std::string bytes, const PlanChoices& choices);
    bool readConfiguration(const std::string& text, const PlanChoices& choices);
    bool readProgram(std::uint16_t position, std::uint16_t core, std::string_view bytes);
    bool addCores(XmlNode* root, const IosHandler& ios, const PlanChoices& choices);
    bool isSound(const PlanCore& core) const;
    PlanCore* findCore(const std::string& name);
    bool refuse(const std::string& text) const;

    std::string m_file;
    bool m_isFine = false;
    CatchableErrorHandler m_handler; // what the programs report through
    std::unique_ptr<ZNLoader> m_network;
    std::vector<PlanCore> m_cores;
    std::vector<std::string> m_pads;
};
