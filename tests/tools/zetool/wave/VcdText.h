#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

// The changes of a waveform by path, as text "TIME VALUE" in order: a plain reader of standard files, for
// tests that hold two of them against each other. Values are in full width; a value that is written again
// without a change counts once, as readers differ in that alone.
struct VcdText {
    std::string timescale;
    std::map<std::string, std::vector<std::string>> changes;     // by path, points between scopes
    std::map<std::string, std::vector<std::string>> identifiers; // paths by identifier
    std::map<std::string, unsigned int> widths;                  // by path

    explicit VcdText(std::string_view text);

    // Adds a change, unless it is none.
    void add(const std::string& path, const std::string& time, std::string value);
};
