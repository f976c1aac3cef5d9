#pragma once

#include "tools/zetool/wave/WaveTree.h"

#include <map>
#include <string>
#include <vector>

// A session of GTKWave: its save file, and the filter files that turn values into texts. Paths in it are
// relative to the save file, so that a folder can be moved with all three in it.
class GtkwaveSession {
public:
    // `dumpFile` as the save file is to name it, `saveFile` its own bare name, `filterFolder` the name of the
    // folder beside it.
    GtkwaveSession(const VcdHeader& header, const WaveSignals& signals, std::string dumpFile,
                   std::string saveFile, std::string filterFolder);

    const std::string& text() const { return m_text; }

    // Name in the folder, and content.
    const std::vector<std::pair<std::string, std::string>>& filters() const { return m_filters; }

    // Signals whose values stay numbers because a session has no more than s_mostFilters filters.
    std::size_t numWithoutFilter() const { return m_numWithoutFilter; }

    static constexpr std::size_t s_mostFilters = 128;

private:
    void writeNode(std::size_t number);
    void writeSignal(const WaveSignal& signal);
    void addGroupLine(unsigned int flags, const std::string& name);
    void setFlags(unsigned int flags);
    std::string traceName(const WaveSignal& signal) const;
    std::string filterOf(const WaveSignal& signal);
    std::string functionTable(const std::string& core);
    // Number and path of the filter file that holds this; empty where there is none.
    std::string fileFor(const std::string& kind, const std::string& content);

    const VcdHeader& m_header;
    std::vector<WaveTreeNode> m_tree;
    std::string m_filterFolder;
    std::string m_text;
    unsigned int m_flags = 0; // those in force
    std::vector<std::pair<std::string, std::string>> m_filters;
    std::map<std::string, std::string> m_fileByContent;
    std::map<std::string, std::string> m_functionTables; // by core
    std::size_t m_numWithoutFilter = 0;
};
