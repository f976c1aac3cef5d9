#include "tools/zetool/zn/ZnGraph.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/Utf8.h"
#include "tools/zetool/WholeFile.h"
#include "tools/zetool/Words.h"
#include "tools/zetool/zn/ModelText.h"

#include <unordered_map>

namespace {

// How a node of each kind and a link of each use are drawn.
constexpr const char* s_heading = "graph network {\n"
                                  "  node [shape=box];\n";
constexpr const char* s_deviceStyle = ", shape=ellipse";
constexpr const char* s_zsscStyle = ", shape=hexagon";
constexpr const char* s_sodStyle = ", style=dashed";
constexpr const char* s_zsscLinkStyle = ", style=dotted";

// A text that Graphviz shows as it is: also outside of quotes it knows escapes and entities.
std::string shown(std::string_view text) {
    std::string result;
    for (const char c : toUtf8(text)) {
        switch (c) {
        case '"':
            result += "\\\"";
            break;
        case '\\':
            result += "\\\\";
            break;
        case '&':
            result += "&amp;";
            break;
        case '\n':
            result += "\\n";
            break;
        default:
            result += c;
        }
    }
    return result;
}

using Names = std::unordered_map<const ZNLoader::Node*, std::string>;

// What stands at an end: the number of the link or of the channel end.
int numberAt(ZNLoader::ZlinkEnd& end) {
    return end.isNormal() ? static_cast<ZNLoader::ZlinkNormalEnd&>(end).m_linkNumber
                          : static_cast<ZNLoader::ZlinkSodEnd&>(end).m_chanend;
}

void writeNode(OutputFile& output, const std::string& name, ZNLoader::Node& node) {
    std::string line = "  " + name + " [label=\"" + shown(node.m_id) + "\\n" + shown(node.m_type) + "\\n" +
                       hexText(node.m_routingId, 4) + "\"";
    line += deviceNode(&node) ? s_deviceStyle : "";
    line += zsscNode(&node) ? s_zsscStyle : "";
    output.write(line + "];\n");
}

void writeLink(OutputFile& output, const Names& names, const ZNLoader::Zlink& link) {
    const auto first = names.find(link.m_end0->m_node);
    const auto second = names.find(link.m_end1->m_node);
    if (first == names.end() || second == names.end())
        return;
    std::string line = "  " + first->second + " -- " + second->second;
    line += " [label=\"" + std::to_string(link.m_wires) + " wires\"";
    line += ", taillabel=\"" + std::to_string(numberAt(*link.m_end0)) + "\"";
    line += ", headlabel=\"" + std::to_string(numberAt(*link.m_end1)) + "\"";
    line += (link.m_flags & ZNLoader::Zlink::s_sod) != 0 ? s_sodStyle : "";
    line += (link.m_flags & ZNLoader::Zlink::s_zssc) != 0 ? s_zsscLinkStyle : "";
    output.write(line + "];\n");
}

} // namespace

int znGraph(const Invocation& invocation) {
    const std::string& file = invocation.value("FILE");
    const std::unique_ptr<ZNLoader> network = loadNetwork(shownName(file), readWhole(file));
    if (!network)
        return s_foundWrong;
    OutputFile output = resultFile(invocation);
    output.write(s_heading);
    // Names of the graph's own: ids can be empty, stand twice, or end in a backslash, which none can quote.
    Names names;
    for (ZNLoader::Node* node : network->m_nodes) {
        const std::string name = "n" + std::to_string(names.size());
        names.emplace(node, name);
        writeNode(output, name, *node);
    }
    for (const ZNLoader::Zlink* link : network->m_links)
        writeLink(output, names, *link);
    output.write("}\n");
    output.close();
    return s_fine;
}
