#pragma once

#include "tools/zetool/wave/BodyFault.h"
#include "tools/zetool/wave/WaveSignals.h"

#include <cstdint>
#include <string>

// Messages of a waveform's command, each with its line; remembers whether there were any.
class WaveNotes {
public:
    explicit WaveNotes(std::string path) : m_path(std::move(path)) {}

    void add(std::uint64_t line, const std::string& text);

    // A fault's first place, and how often it occurs; nothing where it doesn't.
    void add(const BodyFault& fault, const std::string& text);

    // What reading header and structure document found.
    void addHeader(const VcdHeader& header, const WaveSignals& signals);

    bool any() const { return m_any; }

private:
    std::string m_path;
    bool m_any = false;
};
