#include "tools/zetool/wave/StructureDocument.h"

#include "tools/zetool/Utf8.h"

#include <algorithm>
#include <array>

namespace {

std::string_view withoutBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

// What stands between the fixed texts of a line.
bool takeOne(std::string_view text, std::string_view open, std::string_view close, std::string_view& value) {
    if (!text.starts_with(open) || !text.ends_with(close) || text.size() < open.size() + close.size())
        return false;
    value = text.substr(open.size(), text.size() - open.size() - close.size());
    return true;
}

// A name that happens to be spelled like one is read as one by XML parsers, and is no fault of form.
bool isEntity(std::string_view text) {
    return std::ranges::any_of(std::array{"&amp;", "&lt;", "&gt;", "&quot;", "&apos;", "&#36;"},
                               [&](const char* entity) { return text.starts_with(entity); });
}

// Whether an XML parser would refuse the line: a quote too many, a bare `<` or `&`, a byte that is no UTF-8
// or no character.
bool isIllFormed(std::string_view text) {
    if (text.find('<', 1) != std::string_view::npos)
        return true;
    for (auto at = text.find('&'); at != std::string_view::npos; at = text.find('&', at + 1))
        if (!isEntity(text.substr(at)))
            return true;
    // An element of the document has two quotes an attribute, each behind an equals sign.
    const auto quotes = std::ranges::count(text, '"');
    std::size_t attributes = 0;
    for (std::size_t at = text.find("=\""); at != std::string_view::npos; at = text.find("=\"", at + 1))
        ++attributes;
    if (static_cast<std::size_t>(quotes) != 2 * attributes)
        return true;
    const bool hasControl = std::ranges::any_of(
        text, [](char c) { return static_cast<unsigned char>(c) < 32 && c != '\t' && c != '\r'; });
    return hasControl || !isUtf8(text);
}

constexpr std::string_view s_escapedStructure = "<Structure escaped=\"yes\">";

constexpr std::array<std::string_view, 12> s_passedOver = {
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
    "<Structure>",
    "<Hierarchy>",
    "</Hierarchy>",
    "<ValueAliases>",
    "</ValueAliases>",
    "<SignalDocs>",
    "</SignalDocs>",
    "<ValueDocs>",
    "</ValueDocs>",
    "<SignalAliases>",
    "</SignalAliases>",
};

struct EntityRow {
    std::string_view entity;
    char character;
};
constexpr EntityRow s_entities[] = {
    {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&#36;", '$'},
};

} // namespace

bool holdsEndWord(std::string_view text) {
    constexpr std::string_view s_blanks = " \t\r";
    for (auto at = text.find("$end"); at != std::string_view::npos; at = text.find("$end", at + 1)) {
        const bool begins = at == 0 || s_blanks.find(text[at - 1]) != std::string_view::npos;
        const bool ends = at + 4 == text.size() || s_blanks.find(text[at + 4]) != std::string_view::npos;
        if (begins && ends)
            return true;
    }
    return false;
}

std::string escapedStructureText(std::string_view text) {
    std::string result;
    for (const char c : toUtf8(text)) {
        const auto row = std::ranges::find(s_entities, c, &EntityRow::character);
        if (row != std::end(s_entities))
            result += row->entity;
        else // XML has no place for control characters, escaped or not
            result += static_cast<unsigned char>(c) < ' ' ? '_' : c;
    }
    return result;
}

std::string StructureReader::text(std::string_view raw) const {
    if (!m_isEscaped)
        return std::string(raw);
    std::string result;
    while (!raw.empty()) {
        const auto row = std::ranges::find_if(
            s_entities, [&](const EntityRow& entity) { return raw.starts_with(entity.entity); });
        const bool isEntity = row != std::end(s_entities);
        result += isEntity ? row->character : raw.front();
        raw.remove_prefix(isEntity ? row->entity.size() : 1);
    }
    return result;
}

void StructureReader::addLine(std::string_view text, std::uint64_t line) {
    m_line = line;
    m_document.isThere = true;
    text = withoutBlanks(text);
    if (text.empty() || std::ranges::find(s_passedOver, text) != s_passedOver.end())
        return;
    if (text == s_escapedStructure) {
        m_isEscaped = true;
        return;
    }
    if (isIllFormed(text))
        m_document.illFormedLines.push_back(line);
    if (holdsEndWord(text))
        m_document.endLines.push_back(line);
    if (text == "</Structure>")
        m_document.isWhole = true;
    else if (text == "</Core>")
        m_core.clear();
    else if (text == "</Category>")
        m_category.clear();
    else if (text == "</Group>")
        m_group.clear();
    else if (text == "</ValueAliasMap>" || text == "</SignalAliasMap>")
        m_map = nullptr;
    else if (text != "</SignalDoc>" && !openElement(text) && !addEntry(text))
        m_document.unreadableLines.push_back(line);
}

bool StructureReader::openElement(std::string_view line) {
    std::string first;
    std::string second;
    if (one(line, "<Core name=\"", "\">", m_core) || one(line, "<Category name=\"", "\">", m_category) ||
        one(line, "<Group name=\"", "\">", m_group) || one(line, "<Date value=\"", "\"/>", m_document.date))
        return true;
    if (two(line, "<ValueAliasMap coreName=\"", "\" category=\"", "\">", first, second)) {
        m_map = &m_document.functionAliases.emplace_back(StructureAliasMap{first, second, {}});
        return true;
    }
    if (one(line, "<SignalAliasMap coreName=\"", "\">", first)) {
        m_map = &m_document.portAliases.emplace_back(StructureAliasMap{first, "", {}});
        return true;
    }
    if (two(line, "<SignalDoc name=\"", "\" description=\"", "\">", first, second)) {
        m_document.docs.push_back({first, second, {}});
        return true;
    }
    return false;
}

bool StructureReader::addEntry(std::string_view line) {
    std::string first;
    std::string second;
    if (two(line, "<Signal name=\"", "\" radix=\"", "\"/>", first, second)) {
        m_document.signals.push_back({first, second, m_core, m_category, m_group, m_line});
        return true;
    }
    // Of a port the first value is a location; of a function the second is a short name.
    const Split split = m_map && m_map->category.empty() ? Split::AtFirst : Split::AtLast;
    if (m_map && two(line, "<Entry name=\"", "\" alias=\"", "\"/>", first, second, split)) {
        m_map->entries.push_back({first, second});
        return true;
    }
    if (!m_document.docs.empty() &&
        two(line, "<ValueDoc value=\"", "\" text=\"", "\"/>", first, second, Split::AtFirst)) {
        m_document.docs.back().values.emplace_back(first, second);
        return true;
    }
    return false;
}

bool StructureReader::one(std::string_view line, std::string_view open, std::string_view close,
                          std::string& value) const {
    std::string_view raw;
    if (!takeOne(line, open, close, raw))
        return false;
    value = text(raw);
    return true;
}

bool StructureReader::two(std::string_view line, std::string_view open, std::string_view between,
                          std::string_view close, std::string& first, std::string& second,
                          Split split) const {
    std::string_view both;
    if (!takeOne(line, open, close, both))
        return false;
    const auto at = split == Split::AtFirst ? both.find(between) : both.rfind(between);
    if (at == std::string_view::npos)
        return false;
    first = text(both.substr(0, at));
    second = text(both.substr(at + between.size()));
    return true;
}
