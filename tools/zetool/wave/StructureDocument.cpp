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

// Which `between` counts in a line whose values may hold anything: the first where the first value can't hold
// one, the last where the second can't.
enum class Split { AtFirst, AtLast };

// The values of a line of the form open VALUE between VALUE close.
bool takeTwo(std::string_view text, std::string_view open, std::string_view between, std::string_view close,
             std::string& first, std::string& second, Split split = Split::AtLast) {
    if (!text.starts_with(open) || !text.ends_with(close) || text.size() < open.size() + close.size())
        return false;
    text = text.substr(open.size(), text.size() - open.size() - close.size());
    const auto at = split == Split::AtFirst ? text.find(between) : text.rfind(between);
    if (at == std::string_view::npos)
        return false;
    first = text.substr(0, at);
    second = text.substr(at + between.size());
    return true;
}

bool takeOne(std::string_view text, std::string_view open, std::string_view close, std::string& value) {
    if (!text.starts_with(open) || !text.ends_with(close) || text.size() < open.size() + close.size())
        return false;
    value = text.substr(open.size(), text.size() - open.size() - close.size());
    return true;
}

// A name that happens to be spelled like one is read as one by XML parsers, and is no fault of form.
bool isEntity(std::string_view text) {
    return std::ranges::any_of(std::array{"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"},
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

} // namespace

void StructureReader::addLine(std::string_view text, std::uint64_t line) {
    m_line = line;
    m_document.isThere = true;
    text = withoutBlanks(text);
    if (text.empty() || std::ranges::find(s_passedOver, text) != s_passedOver.end())
        return;
    if (isIllFormed(text))
        m_document.illFormedLines.push_back(line);
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

bool StructureReader::openElement(std::string_view text) {
    std::string first;
    std::string second;
    if (takeOne(text, "<Core name=\"", "\">", m_core) ||
        takeOne(text, "<Category name=\"", "\">", m_category) ||
        takeOne(text, "<Group name=\"", "\">", m_group) ||
        takeOne(text, "<Date value=\"", "\"/>", m_document.date))
        return true;
    if (takeTwo(text, "<ValueAliasMap coreName=\"", "\" category=\"", "\">", first, second)) {
        m_map = &m_document.functionAliases.emplace_back(StructureAliasMap{first, second, {}});
        return true;
    }
    if (takeOne(text, "<SignalAliasMap coreName=\"", "\">", first)) {
        m_map = &m_document.portAliases.emplace_back(StructureAliasMap{first, "", {}});
        return true;
    }
    if (takeTwo(text, "<SignalDoc name=\"", "\" description=\"", "\">", first, second)) {
        m_document.docs.push_back({first, second, {}});
        return true;
    }
    return false;
}

bool StructureReader::addEntry(std::string_view text) {
    std::string first;
    std::string second;
    if (takeTwo(text, "<Signal name=\"", "\" radix=\"", "\"/>", first, second)) {
        m_document.signals.push_back({first, second, m_core, m_category, m_group, m_line});
        return true;
    }
    // Of a port the first value is a location; of a function the second is a short name.
    const Split split = m_map && m_map->category.empty() ? Split::AtFirst : Split::AtLast;
    if (m_map && takeTwo(text, "<Entry name=\"", "\" alias=\"", "\"/>", first, second, split)) {
        m_map->entries.push_back({first, second});
        return true;
    }
    if (!m_document.docs.empty() &&
        takeTwo(text, "<ValueDoc value=\"", "\" text=\"", "\"/>", first, second, Split::AtFirst)) {
        m_document.docs.back().values.emplace_back(first, second);
        return true;
    }
    return false;
}
