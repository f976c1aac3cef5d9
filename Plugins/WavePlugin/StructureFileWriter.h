#pragma once

#include "infr_libs/ZNLoader/ZNLoader.h"
#include "Plugins/WavePlugin/TracePluginCallbacks.h"

#include <cstdio>
#include <span>
#include <string>
#include <vector>

class PluginLibrary;

// The description of the signals whose full names match a pattern: a row of a tracer's table.
struct SignalDoc {
    const char* pattern; // a regular expression, for the viewer to match
    const char* description;
    const char* values[3][2]; // pairs of value and text; the first empty pair ends them
};

// Writes the structure document, the XML that tells a waveform viewer how the flat list of signals is
// grouped, named and described, into the waveform itself, as one `$comment`. It holds no model: each call
// writes its text at once, so the order of calls is the order of the document, and the caller sees to it
// that what is opened gets closed. Nothing is escaped: wanted; names must hold no quote, no < and no &.
//
// The entry points make one for each instance while it starts. Stream and library belong to them.
class StructureFileWriter {
public:
    StructureFileWriter(FILE* fp, TracePluginCallbacks* callbacks, PluginLibrary* library);

    // Opens the comment and the document. Always true.
    bool initialise(std::string date);

    // Closes the document and the comment.
    void terminate();

    void openHierachy();
    void closeHierachy();
    void openCore(std::string name);
    void closeCore();
    void openCategory(std::string name, bool inCore);
    void closeCategory(bool inCore);
    void openGroup(std::string name);
    void closeGroup();

    // The flags only set the indentation. The radix is "HEX", "DECIMAL" or "ASCII".
    void addSignal(std::string name, bool inGroup, std::string radix, bool inCore);

    void openValueAliases();
    void closeValueAliases();
    void openValueAliasMap(std::string coreName, std::string category);
    void addValueAliasEntry(std::string name, std::string alias);
    void closeValueAliasMap();

    void openSignalDocs();
    void closeSignalDocs();

    // The values are pairs of value and text, ended by a pair whose first pointer is null.
    void addSignalDocEntry(std::string name, std::string description, const char* const (*values)[2]);
    void addSignalDocEntries(std::span<const SignalDoc> docs);

    // The names that the library's network gives to ports, as aliases. Without a network: a warning on
    // standard error, and the section is left out.
    void processZnFile();

    // The same section for any network: a map for each core, also for a core whose ports have no names.
    void addSignalAliases(const ZNLoader& network);

private:
    void addSignalAliasMap(const std::string& coreName, const std::vector<ZNLoader::PortDesc>& ports);

    [[maybe_unused]] TracePluginCallbacks*
        m_callbacks; // kept with the others; the document asks the simulator nothing
    PluginLibrary* m_library;
    FILE* m_fp;
};
