#include "tools/zetool/wave/GtkwaveSession.h"

#include "tools/zetool/wave/ResourceTypes.h"
#include "tools/zetool/wave/StandardSignals.h"
#include "tools/zetool/Words.h"

#include <algorithm>
#include <cstdlib>
#include <set>

namespace {

// Flags of a trace line, behind its @.
constexpr unsigned int s_hexadecimal = 0x2;
constexpr unsigned int s_decimal = 0x4;
constexpr unsigned int s_binary = 0x8;
constexpr unsigned int s_rightJustified = 0x20;
constexpr unsigned int s_blank = 0x200;
constexpr unsigned int s_ascii = 0x800;
constexpr unsigned int s_filtered = 0x2000;
constexpr unsigned int s_closed = 0x400000;
constexpr unsigned int s_groupBegin = 0x800000;
constexpr unsigned int s_groupEnd = 0x1000000;

// A group of more signals than a window shows at once begins closed.
constexpr std::size_t s_mostOpen = 24;

constexpr std::size_t s_textBytes = 8; // of the texts that the plugin packs into a value

// A text as the plugin packs it, with zeros behind.
std::string packedDigits(std::string_view bytes) {
    std::string digits;
    for (std::size_t index = 0; index < s_textBytes; ++index)
        digits += hexDigits(index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0u, 2);
    return digits;
}

std::string withoutBlanksBehind(std::string_view text) {
    return std::string(text.substr(0, text.find_last_not_of(' ') + 1));
}

// A text between braces, in one line.
std::string braced(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '{')
            result += '(';
        else if (c == '}')
            result += ')';
        else
            result += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return "{" + result + "}";
}

const std::string& resourceTypeTable() {
    static const std::string s_table = [] {
        std::string table;
        for (const std::string_view type : s_resourceTypes)
            table += packedDigits(type) + " " + withoutBlanksBehind(type) + "\n";
        return table;
    }();
    return s_table;
}

// A description's values: decimal in the document, hexadecimal in all the signal's digits in a filter.
std::string docTable(const WaveSignal& signal) {
    const std::size_t numDigits = std::min((std::max(signal.variable->width, 1u) + 3) / 4, 16u);
    std::string table;
    for (const auto& [value, text] : signal.doc->values)
        table += hexDigits(std::strtoull(value.c_str(), nullptr, 0), numDigits) + " " + text + "\n";
    return table;
}

// The user's name in place of the location, and the location behind: "uart_tx_inuse (ZS1_PORT_1A_inuse)".
std::string shownName(const WaveSignal& signal) {
    if (signal.userName.empty())
        return "";
    const std::string name(signal.nameInCore());
    const std::string suffix = name.starts_with(signal.group) ? name.substr(signal.group.size()) : "";
    return signal.userName + suffix + " (" + name + ")";
}

} // namespace

GtkwaveSession::GtkwaveSession(const VcdHeader& header, const WaveSignals& signals, std::string dumpFile,
                               std::string saveFile, std::string filterFolder)
    : m_header(header), m_tree(waveTree(header, signals)), m_filterFolder(std::move(filterFolder)) {
    m_text = "[*]\n[*] Written by zetool wave gtkw\n[*]\n";
    m_text += "[dumpfile] \"" + dumpFile + "\"\n";
    // A bare name: paths are then relative to the folder of this file.
    m_text += "[savefile] \"" + saveFile + "\"\n";
    m_text += "[timestart] 0\n[size] 1400 900\n[pos] -1 -1\n[sst_expanded] 1\n";
    writeNode(0);
}

void GtkwaveSession::writeNode(std::size_t top) {
    // Opened nodes, with the child to go on with; depth is up to the file, so no recursion.
    std::vector<std::pair<std::size_t, std::size_t>> open = {{top, 0}};
    for (const WaveSignal* signal : m_tree[top].signals)
        writeSignal(*signal);
    while (!open.empty()) {
        auto& [number, next] = open.back();
        const WaveTreeNode& node = m_tree[number];
        const unsigned int closed = node.numSignals > s_mostOpen ? s_closed : 0;
        if (next == node.children.size()) {
            open.pop_back();
            if (!open.empty())
                addGroupLine(s_groupEnd | s_blank | closed, node.name);
            continue;
        }
        const std::size_t child = node.children[next++];
        const WaveTreeNode& inner = m_tree[child];
        addGroupLine(s_groupBegin | s_blank | (inner.numSignals > s_mostOpen ? s_closed : 0), inner.name);
        for (const WaveSignal* signal : inner.signals)
            writeSignal(*signal);
        open.emplace_back(child, 0);
    }
}

// Flags hold until the next: only a change is written.
void GtkwaveSession::setFlags(unsigned int flags) {
    if (flags == m_flags)
        return;
    m_flags = flags;
    m_text += "@" + hexDigits(flags) + "\n";
}

void GtkwaveSession::addGroupLine(unsigned int flags, const std::string& name) {
    setFlags(flags);
    m_text += "-" + name + "\n";
}

std::string GtkwaveSession::traceName(const WaveSignal& signal) const {
    const VcdVariable& variable = *signal.variable;
    std::string name = m_header.path(variable);
    if (!variable.range.empty())
        return name + variable.range;
    // Without its range right behind, a wider signal isn't found, and is left out without a word.
    if (variable.width > 1 && valueKind(variable) == ValueKind::Bits)
        name += "[" + std::to_string(variable.width - 1) + ":0]";
    return name;
}

void GtkwaveSession::writeSignal(const WaveSignal& signal) {
    const VcdVariable& variable = *signal.variable;
    if (valueKind(variable) == ValueKind::Text)
        return;
    const std::string filter = filterOf(signal);
    const std::string alias = shownName(signal);
    const bool isOneBit = variable.width <= 1;
    unsigned int flags = s_rightJustified;
    if (!filter.empty())
        flags |= s_hexadecimal | s_filtered;
    else if (isOneBit)
        flags |= s_binary;
    else if (signal.radix == "DECIMAL")
        flags |= s_decimal;
    else if (signal.radix == "ASCII")
        flags |= s_ascii;
    else
        flags |= s_hexadecimal;
    setFlags(flags);
    if (!filter.empty())
        m_text += "^" + filter + "\n";
    if (!filter.empty() && isOneBit)
        m_text +=
            "#" + braced(alias.empty() ? m_header.path(variable) : alias) + " " + traceName(signal) + "\n";
    else if (!alias.empty())
        m_text += "+" + braced(alias) + " " + traceName(signal) + "\n";
    else
        m_text += traceName(signal) + "\n";
}

std::string GtkwaveSession::filterOf(const WaveSignal& signal) {
    const bool isTextWide = signal.variable->width == 8 * s_textBytes;
    if (isTextWide && signal.category == "Functions")
        return fileFor("functions", functionTable(signal.core));
    if (isTextWide && signal.variable->name.ends_with("_waitingResourceType"))
        return fileFor("resources", resourceTypeTable());
    if (signal.doc && !signal.doc->values.empty())
        return fileFor("values", docTable(signal));
    return "";
}

std::string GtkwaveSession::functionTable(const std::string& core) {
    const auto [known, isNew] = m_functionTables.try_emplace(core);
    if (!isNew)
        return known->second;
    std::set<std::string> shown;
    std::string& table = known->second;
    for (const StructureAliasMap& map : m_header.structure.functionAliases) {
        if (map.core != core)
            continue;
        for (const StructureAlias& entry : map.entries) {
            const std::string digits = packedDigits(entry.alias);
            if (shown.insert(digits).second)
                table += digits + " " + entry.name + "\n";
        }
    }
    return table;
}

std::string GtkwaveSession::fileFor(const std::string& kind, const std::string& content) {
    if (content.empty())
        return "";
    const auto known = m_fileByContent.find(content);
    if (known != m_fileByContent.end())
        return known->second;
    if (m_filters.size() == s_mostFilters) {
        ++m_numWithoutFilter;
        return "";
    }
    const std::string name = kind + "-" + std::to_string(m_filters.size()) + ".txt";
    m_filters.emplace_back(name, content);
    // Filters are numbered in the order of their first use.
    return m_fileByContent[content] = std::to_string(m_filters.size()) + " " + m_filterFolder + "/" + name;
}
