#include "tools/zetool/xml/XmlTree.h"

#include "tools/zetool/Json.h"
#include "tools/zetool/Words.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

constexpr std::size_t s_deepestIndent = 50; // levels

// Calls `enter` for each node ahead of its sub-nodes and `leave` behind them, with the node's depth; `enter`
// also gets whether the node is the first of its parent's.
template<class Enter, class Leave>
void walk(const XmlNode& root, const Enter& enter, const Leave& leave) {
    struct Open {
        const XmlNode* node;
        unsigned next; // sub-node
    };
    std::vector<Open> open = {{&root, 0}};
    enter(root, 0, true);
    while (!open.empty()) {
        const XmlNode& node = *open.back().node;
        const unsigned next = open.back().next++;
        if (next == node.numNodes()) {
            leave(node, open.size() - 1);
            open.pop_back();
            continue;
        }
        const XmlNode& subNode = *node.getNode(next);
        enter(subNode, open.size(), next == 0);
        open.push_back({&subNode, 0});
    }
}

std::string indentation(std::size_t depth) {
    return std::string(2 * std::min(depth, s_deepestIndent), ' ');
}

std::string startTag(const XmlNode& node, bool escaped) {
    std::string tag = "<" + *node.getName();
    for (unsigned i = 0; i < node.numAttributes(); ++i) {
        const XmlAttribute& attribute = *node.getAttribute(i);
        const std::string& value = *attribute.getValue();
        tag += " " + *attribute.getName() + "=\"" +
               (escaped ? withEntities(value, Quotes::Replaced) : value) + "\"";
    }
    return tag;
}

Json attributesJson(const XmlNode& node) {
    Json list = Json::array();
    for (unsigned i = 0; i < node.numAttributes(); ++i) {
        const XmlAttribute& attribute = *node.getAttribute(i);
        list.push_back({jsonText(*attribute.getName()), jsonText(*attribute.getValue())});
    }
    return list;
}

} // namespace

void writeTreeText(OutputFile& output, const XmlNode& root, bool escaped) {
    const auto enter = [&](const XmlNode& node, std::size_t depth, bool) {
        output.write(indentation(depth));
        output.write(startTag(node, escaped));
        if (node.numNodes() == 0 && node.getValue()->empty()) {
            output.write("/>\n");
            return;
        }
        output.write(">");
        output.write(escaped ? withEntities(*node.getValue()) : *node.getValue());
        if (node.numNodes() > 0)
            output.write("\n");
    };
    const auto leave = [&](const XmlNode& node, std::size_t depth) {
        if (node.numNodes() > 0)
            output.write(indentation(depth));
        else if (node.getValue()->empty())
            return;
        output.write("</" + *node.getName() + ">\n");
    };
    walk(root, enter, leave);
}

void writeTreeJson(OutputFile& output, const XmlNode& root) {
    // Below the member of an object that holds the tree.
    constexpr std::size_t s_outer = 1;
    const auto enter = [&](const XmlNode& node, std::size_t depth, bool isFirst) {
        if (depth > 0)
            output.write((isFirst ? "\n" : ",\n") + indentation(depth + s_outer));
        output.write("{\"name\": " + jsonLine(jsonText(*node.getName())));
        output.write(", \"value\": " + jsonLine(jsonText(*node.getValue())));
        output.write(", \"line\": " + std::to_string(node.getLineNum()));
        output.write(", \"attributes\": " + jsonLine(attributesJson(node)));
        output.write(", \"children\": [");
    };
    const auto leave = [&](const XmlNode& node, std::size_t depth) {
        if (node.numNodes() > 0)
            output.write("\n" + indentation(depth + s_outer));
        output.write("]}");
    };
    walk(root, enter, leave);
}
