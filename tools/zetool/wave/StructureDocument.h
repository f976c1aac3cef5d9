#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

// A signal's entry in the hierarchy. Where core, category or group are empty, the signal stands outside one.
struct StructureSignal {
    std::string name;
    std::string radix;
    std::string core;
    std::string category;
    std::string group;
    std::uint64_t line = 0;
};

// What a signal whose whole name matches the pattern means.
struct StructureDoc {
    std::string pattern;
    std::string description;
    std::vector<std::pair<std::string, std::string>> values; // value and text
};

struct StructureAlias {
    std::string name;
    std::string alias;
};

// Aliases of one core: for functions, full names and the short names that the waveform shows; for ports,
// locations and the user's names.
struct StructureAliasMap {
    std::string core;
    std::string category; // "functions"; empty for ports
    std::vector<StructureAlias> entries;
};

// The structure document in the file's comment: how signals group, what they mean and how values are named.
//
// The document escapes nothing, so a name with a quote, `<` or `&` makes it ill-formed XML, and a general
// parser would give it up as a whole. Its elements stand one a line in a fixed form, however: what is between
// the form's fixed texts is the name, whatever it holds.
struct StructureDocument {
    bool isThere = false; // whether the file holds one, if only in part
    bool isWhole = false; // whether its end was reached
    std::uint64_t firstLine = 0;
    std::string date;
    std::vector<StructureSignal> signals;
    std::vector<StructureDoc> docs;
    std::vector<StructureAliasMap> functionAliases;
    std::vector<StructureAliasMap> portAliases;
    std::vector<std::uint64_t> illFormedLines;  // what an XML parser stumbles over
    std::vector<std::uint64_t> unreadableLines; // lines of no known form
};

// Takes a document line by line.
class StructureReader {
public:
    explicit StructureReader(StructureDocument& document) : m_document(document) {}

    void addLine(std::string_view text, std::uint64_t line);

private:
    bool openElement(std::string_view text);
    bool addEntry(std::string_view text);

    StructureDocument& m_document;
    std::string m_core;
    std::string m_category;
    std::string m_group;
    StructureAliasMap* m_map = nullptr; // the map that entries go to; null outside one
    std::uint64_t m_line = 0;
};
