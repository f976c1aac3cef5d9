#pragma once

#include "tools/tracehost/PatternReader.h"
#include "tools/tracehost/Scenario.h"
#include "tools/tracehost/Words.h"

#include <functional>
#include <istream>
#include <string>
#include <string_view>
#include <unordered_map>

// Reads a scenario, a text file in the form that docs/formats/scenario.md describes. A reader is made for
// one file and used once.
class ScenarioReader {
public:
    // The name stands in errors; nothing is opened by it.
    explicit ScenarioReader(std::string fileName);

    // Throws `ScenarioError` with "FILE:LINE: reason".
    Scenario read(std::istream& stream);

private:
    using ReadLine = void (ScenarioReader::*)(Words& words);
    struct LineRow {
        std::string_view word;
        ReadLine read;
    };
    static const LineRow s_lines[];

    void readLine(const std::string& line);
    bool readKeyword(const std::string& word, Words& words);

    // Settings.
    void readClocks(Words& words);
    void readFrequency(Words& words);
    void readVersion(Words& words);
    void readStart(Words& words);
    void readGarbage(Words& words);
    void readInstance(Words& words);
    void readNotify(Words& words);

    // The device.
    void readNode(Words& words);
    void readCore(Words& words);
    bool readResource(const std::string& word, Words& words, const std::string& line);
    void readField(const std::string& line);
    void addSegment(Resource& resource, const Field& field, Segment segment);
    Core& currentCore(std::string_view wanted);

    // What a thread executes.
    void readProgram(Words& words);
    void readRun(Words& words);
    void readIdle(Words& words);
    void readLoop(Words& words);
    void readEnd(Words& words);
    void closeProgram();
    Program& currentProgram(std::string_view word);

    std::string m_fileName;
    unsigned int m_line = 0;
    Scenario m_scenario;
    TextNumbers m_texts{m_scenario.texts};

    // What a line refers to that names nothing itself.
    bool m_hasNode = false;
    std::uint32_t m_node = 0;
    std::unordered_map<std::uint32_t, std::size_t> m_places; // among the scenario's cores, by pid
    Core* m_core = nullptr;
    const ResourceKindInfo* m_kind = nullptr; // null: no resource is open
    std::vector<Resource>* m_resources = nullptr;
    std::size_t m_first = 0; // the open range of m_resources
    std::size_t m_last = 0;
    bool m_inProgram = false;
    std::vector<Clock> m_loopTimes; // of the program's open loops
};
