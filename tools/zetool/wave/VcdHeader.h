#pragma once

#include "tools/zetool/wave/StructureDocument.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class VcdSource;

// A scope of the header. Scope 0 is the top, which has no name and no parent.
struct VcdScope {
    std::string type;
    std::string name;
    std::size_t parent = 0;
};

// One `$var`.
struct VcdVariable {
    std::string type;
    unsigned int width = 0;
    std::string identifier;
    std::string name;  // as it stands, brackets included; the plugin's names may hold blanks
    std::string range; // "[7:0]" where one stands behind the name, in files of other tools
    std::size_t scope = 0;
    std::uint64_t line = 0;
};

// A fault that reading the header found, with its line.
struct VcdHeaderFault {
    std::uint64_t line = 0;
    std::string text;
};

// What stands before the values: everything up to `$enddefinitions`, in memory.
struct VcdHeader {
    std::string date;
    std::string version;
    std::string timescale; // its words with one blank between each two
    std::uint64_t timescaleLine = 0;
    std::vector<VcdScope> scopes = {VcdScope()};
    std::vector<VcdVariable> variables;
    StructureDocument structure;
    bool isWhole = false; // whether `$enddefinitions` was reached
    std::uint64_t lastLine = 0;
    std::vector<VcdHeaderFault> faults;

    // Whether the file is as the wave plugin writes it: names are then whole lines, and times 32-bit counts
    // of clocks. A file that was made from one has scopes, and is a waveform like any other.
    bool isOfPlugin() const;

    // Scopes and name of a variable, points between.
    std::string path(const VcdVariable& variable) const;
};

// Whether a name is one word of ASCII without a colon: with another, GTKWave refuses the whole file.
bool isPlainName(std::string_view name);

// Reads a header from the start of a source, which then stands at the first byte behind it. Whatever is ill
// formed is passed over and noted under `faults`.
VcdHeader readVcdHeader(VcdSource& source);
