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
    std::vector<std::uint64_t> endLines;        // that hold the word $end, where a comment ends for others
    std::vector<std::uint64_t> unreadableLines; // lines of no known form
};

// A text as it stands in a document that a standard file carries along: `<Structure escaped="yes">`.
std::string escapedStructureText(std::string_view text);

// Whether `$end` stands in a text as a word of its own.
bool holdsEndWord(std::string_view text);

// Takes a document line by line.
class StructureReader {
public:
    explicit StructureReader(StructureDocument& document) : m_document(document) {}

    void addLine(std::string_view text, std::uint64_t line);

private:
    // Which separator counts in a line whose values may hold anything: the first where the first value can't
    // hold one, the last where the second can't.
    enum class Split { AtFirst, AtLast };

    bool openElement(std::string_view line);
    bool addEntry(std::string_view line);

    // The values of a line of the form: open VALUE close, and open FIRST between SECOND close.
    bool one(std::string_view line, std::string_view open, std::string_view close, std::string& value) const;
    bool two(std::string_view line, std::string_view open, std::string_view between, std::string_view close,
             std::string& first, std::string& second, Split split = Split::AtLast) const;
    std::string text(std::string_view raw) const;

    StructureDocument& m_document;
    bool m_isEscaped = false; // a document carried along into a standard file is XML as it should be
    std::string m_core;
    std::string m_category;
    std::string m_group;
    StructureAliasMap* m_map = nullptr; // the map that entries go to; null outside one
    std::uint64_t m_line = 0;
};
