#pragma once

#include "tools/zetool/wave/VcdHeader.h"

#include <string>
#include <vector>

// A declared signal with all that the structure document tells of it.
struct WaveSignal {
    const VcdVariable* variable = nullptr; // of the header
    std::string core;                      // empty for what belongs to no core
    std::string category;
    std::string group;
    std::string radix;                 // HEX, DECIMAL or ASCII; empty in files of other tools
    const StructureDoc* doc = nullptr; // null without a description
    std::string userName;              // the network's name of the port, or empty
    bool isListed = false;             // whether the document lists the signal

    // The name without its core, which viewers show beside it.
    std::string_view nameInCore() const;
};

// Joins a header's variables and its structure document. Order is that of the hierarchy; a signal that the
// document doesn't list follows its group, and one that has none stands behind all others, in the order of
// declaration. Each variable occurs exactly once. The header must outlive the signals.
class WaveSignals {
public:
    explicit WaveSignals(const VcdHeader& header);

    const std::vector<WaveSignal>& all() const { return m_all; }

    // Names that the document lists and the header doesn't declare, with their lines.
    const std::vector<const StructureSignal*>& undeclared() const { return m_undeclared; }

private:
    void takeListed(const VcdHeader& header, std::vector<bool>& taken);
    void placeOthers(const VcdHeader& header, const std::vector<bool>& taken);
    void addDocs(const VcdHeader& header);
    void addUserNames(const VcdHeader& header);

    std::vector<WaveSignal> m_all;
    std::vector<const StructureSignal*> m_undeclared;
};
