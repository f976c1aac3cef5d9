#include "tools/zetool/wave/VcdHeader.h"

#include "tools/zetool/wave/VcdSource.h"
#include "tools/zetool/Words.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::string_view s_blanks = " \t\r\v\f";

constexpr std::size_t s_deepestScope = 1000;

// Keywords that open a declaration. Only before one of them, or at the end of a line, is a `$end` the end of
// a `$var`: the plugin writes names as they are, and one of them may hold the word.
constexpr std::array<std::string_view, 8> s_keywords = {
    "$comment", "$date", "$enddefinitions", "$scope", "$timescale", "$upscope", "$var", "$version",
};

// Values may begin without the `$enddefinitions` that should stand before them.
constexpr std::array<std::string_view, 4> s_valueKeywords = {"$dumpvars", "$dumpall", "$dumpon", "$dumpoff"};

bool isKeyword(std::string_view word) {
    return std::ranges::find(s_keywords, word) != s_keywords.end();
}

// Takes the next word off a text; an empty one when there are none.
std::string_view takeWord(std::string_view& text) {
    const auto first = text.find_first_not_of(s_blanks);
    if (first == std::string_view::npos) {
        text = {};
        return {};
    }
    text.remove_prefix(first);
    const std::string_view word = text.substr(0, text.find_first_of(s_blanks));
    text.remove_prefix(word.size());
    return word;
}

std::string_view withoutBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(s_blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(s_blanks) - first + 1);
}

class HeaderReader {
public:
    HeaderReader(VcdSource& source, VcdHeader& header)
        : m_source(source), m_header(header), m_structure(header.structure) {}

    void read() {
        while (!m_done && m_source.nextLine(m_line)) {
            m_rest = m_line;
            m_header.lastLine = m_source.line();
            if (m_inStructure)
                readStructureLine();
            else
                readWords();
        }
        m_header.lastLine = m_source.line();
        if (!m_keyword.empty())
            fault("the file ends within " + m_keyword);
        else if (!m_done && !m_header.isWhole)
            fault("the file ends within its declarations");
    }

private:
    void fault(std::string text) { m_header.faults.push_back({m_source.line(), std::move(text)}); }

    // A line of the structure document; its end is the first `$end` that is a whole line, so that one
    // inside a name does no harm.
    void readStructureLine() {
        if (withoutBlanks(m_line) == "$end") {
            m_inStructure = false;
            m_keyword.clear();
            return;
        }
        // A document that was cut, with the waveform going on behind it.
        if (m_line.starts_with("$var ") || m_line.starts_with("$enddefinitions")) {
            fault("the structure document has no end");
            m_inStructure = false;
            m_keyword.clear();
            readWords();
            return;
        }
        m_structure.addLine(m_line, m_source.line());
    }

    void readWords() {
        while (!m_done) {
            if (!m_keyword.empty()) {
                if (!readBody())
                    return;
                continue;
            }
            const std::string_view word = takeWord(m_rest);
            if (word.empty())
                return;
            if (word.front() == '$')
                openDeclaration(word);
            else if (word.front() == '#')
                endWithoutKeyword(word, "a time");
            else
                fault("'" + std::string(word.substr(0, 40)) + "' stands between declarations");
        }
    }

    void openDeclaration(std::string_view word) {
        if (word == "$end")
            return fault("$end without a declaration");
        if (std::ranges::find(s_valueKeywords, word) != s_valueKeywords.end())
            return endWithoutKeyword(word, std::string(word));
        m_keyword = word;
        m_body.clear();
        m_bodyLine = m_source.line();
    }

    // Values begin although the declarations weren't closed.
    void endWithoutKeyword(std::string_view word, const std::string& what) {
        fault(what + " stands before $enddefinitions");
        m_source.unread(m_rest.size() + word.size());
        m_header.isWhole = true;
        m_done = true;
    }

    // Words of a declaration up to its `$end`. False when the line is used up before that.
    bool readBody() {
        if (m_keyword == "$comment" && m_body.empty() && m_rest.find("<?xml") != std::string_view::npos &&
            withoutBlanks(m_rest).starts_with("<?xml") && !m_header.structure.isThere) {
            m_inStructure = true;
            m_header.structure.firstLine = m_source.line();
            m_line = m_rest;
            readStructureLine();
            return false;
        }
        const std::string_view start = m_rest;
        while (!m_rest.empty()) {
            const std::string_view word = takeWord(m_rest);
            if (word != "$end")
                continue;
            if (m_keyword == "$var") {
                std::string_view behind = m_rest;
                const std::string_view next = takeWord(behind);
                if (!next.empty() && !isKeyword(next))
                    continue; // a `$end` within a name
            }
            addToBody(start.substr(0, start.size() - m_rest.size() - word.size()));
            closeDeclaration();
            return true;
        }
        addToBody(start);
        return false;
    }

    void addToBody(std::string_view text) {
        text = withoutBlanks(text);
        if (text.empty())
            return;
        if (!m_body.empty())
            m_body += '\n';
        m_body += text;
    }

    void closeDeclaration() {
        std::ranges::replace(m_body, '\n', ' ');
        if (m_keyword == "$date")
            m_header.date = m_body;
        else if (m_keyword == "$version")
            m_header.version = m_body;
        else if (m_keyword == "$timescale")
            addTimescale();
        else if (m_keyword == "$scope")
            openScope();
        else if (m_keyword == "$upscope")
            closeScope();
        else if (m_keyword == "$var")
            addVariable();
        else if (m_keyword == "$enddefinitions")
            endDeclarations();
        else if (m_keyword != "$comment")
            fault("unknown declaration " + m_keyword.substr(0, 40));
        m_keyword.clear();
    }

    void addTimescale() {
        std::string_view rest = m_body;
        m_header.timescale.clear();
        for (std::string_view word = takeWord(rest); !word.empty(); word = takeWord(rest)) {
            m_header.timescale += m_header.timescale.empty() ? "" : " ";
            m_header.timescale += word;
        }
        m_header.timescaleLine = m_bodyLine;
    }

    void openScope() {
        // No design nests so deep; a file that claims it would make paths out of all proportion.
        if (++m_depth > s_deepestScope) {
            if (m_depth == s_deepestScope + 1)
                fault("scopes nest deeper than " + std::to_string(s_deepestScope) +
                      "; inner ones are left out");
            return;
        }
        std::string_view rest = m_body;
        const std::string type(takeWord(rest));
        m_header.scopes.push_back({type, std::string(withoutBlanks(rest)), m_scope});
        m_scope = m_header.scopes.size() - 1;
    }

    void closeScope() {
        if (m_depth == 0)
            return fault("$upscope without a scope");
        if (m_depth-- > s_deepestScope)
            return;
        m_scope = m_header.scopes[m_scope].parent;
    }

    void addVariable() {
        std::string_view rest = m_body;
        VcdVariable variable;
        variable.type = takeWord(rest);
        const auto width = wholeNumber<unsigned int>(takeWord(rest));
        variable.identifier = takeWord(rest);
        variable.scope = m_scope;
        variable.line = m_bodyLine;
        if (!width)
            return fault("a $var without a width");
        variable.width = *width;
        if (variable.identifier.empty())
            return fault("a $var without an identifier");
        // Exactly one blank stands before the plugin's names; more belong to the name.
        variable.name = rest.empty() ? "" : rest.substr(1);
        if (variable.name.empty())
            fault("a $var without a name");
        m_header.variables.push_back(std::move(variable));
    }

    void endDeclarations() {
        m_header.isWhole = true;
        m_done = true;
        m_source.unread(m_rest.size());
    }

    VcdSource& m_source;
    VcdHeader& m_header;
    StructureReader m_structure;
    std::string_view m_line;
    std::string_view m_rest; // what of the line is still to be read
    std::string m_keyword;   // the open declaration's; empty between declarations
    std::string m_body;      // its words so far
    std::uint64_t m_bodyLine = 0;
    std::size_t m_scope = 0;
    std::size_t m_depth = 0; // of open scopes, those left out too
    bool m_inStructure = false;
    bool m_done = false;
};

// In files of other tools a range may stand behind the name: "a [7:0]", with blanks of its own at times. What
// isn't one belongs to the name.
void splitRange(VcdVariable& variable) {
    std::string_view rest = variable.name;
    const std::string name(takeWord(rest));
    std::string range;
    for (const char c : rest)
        if (s_blanks.find(c) == std::string_view::npos)
            range += c;
    const bool isRange = range.starts_with('[') && range.find(']') == range.size() - 1 &&
                         range.find_first_not_of("0123456789:-", 1) == range.size() - 1;
    if (!range.empty() && !isRange)
        return;
    variable.range = range;
    variable.name = name;
}

} // namespace

bool VcdHeader::isOfPlugin() const {
    const bool isNamed = structure.isThere || version.find("WaveTrace plugin") != std::string::npos;
    return isNamed && scopes.size() == 1;
}

std::string VcdHeader::path(const VcdVariable& variable) const {
    std::string text = variable.name;
    for (std::size_t scope = variable.scope; scope != 0; scope = scopes[scope].parent)
        text.insert(0, scopes[scope].name + ".");
    return text;
}

bool isPlainName(std::string_view name) {
    return std::ranges::all_of(name, [](char c) { return c > ' ' && c < 127 && c != ':'; });
}

VcdHeader readVcdHeader(VcdSource& source) {
    VcdHeader header;
    HeaderReader(source, header).read();
    if (!header.isOfPlugin())
        for (VcdVariable& variable : header.variables)
            splitRange(variable);
    return header;
}
