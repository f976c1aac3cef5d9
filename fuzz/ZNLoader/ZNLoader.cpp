// Opens the input as a network document, over the node types and the package of a `DeviceFolder`. Everything
// must end in a model whose parts agree with each other, or in an error; and a second time in the same.

#include "infr_libs/ZNLoader/ZNLoader.h"
#include "tests/support/NetworkBuilder.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

// The scan chain's reader writes a line to standard error for each attribute.
class QuietErrorStream {
public:
    QuietErrorStream() : m_earlier(stderr) {
        static FILE* const nowhere = std::fopen("/dev/null", "w");
        stderr = nowhere;
    }
    ~QuietErrorStream() { stderr = m_earlier; }

    QuietErrorStream(const QuietErrorStream&) = delete;
    QuietErrorStream& operator=(const QuietErrorStream&) = delete;

private:
    FILE* m_earlier;
};

void require(bool condition) {
    if (!condition)
        std::abort();
}

// A backslash at the very end of a tag's text is a stated limit of the parser that ends the process.
std::string withoutBackslashes(std::string text) {
    std::ranges::replace(text, '\\', '/');
    return text;
}

void checkNodes(const ZNLoader& loader) {
    for (ZNLoader::Node* node : loader.m_nodes) {
        ZNLoader::Node* first = *std::ranges::find_if(
            loader.m_nodes, [&](const auto* other) { return other->m_id == node->m_id; });
        require(loader.findNodeForId(node->m_id) == first);
        require((loader.nodeOrdinalOfId(node->m_id) < loader.m_procNodes.size()) ==
                (node->getType() == ZNLoader::ProcNode::s_type));
        require(node->m_boot != nullptr);
    }
}

void checkLinks(const ZNLoader& loader) {
    const auto isNode = [&](const ZNLoader::Node* node) {
        return std::ranges::find(loader.m_nodes, node) != loader.m_nodes.end();
    };
    for (const ZNLoader::Zlink* link : loader.m_links) {
        for (ZNLoader::ZlinkEnd* end : {link->m_end0, link->m_end1})
            require(!end->isNormal() || isNode(end->m_node));
        require(link->m_wires == 5 || link->m_wires == 2);
    }
}

// What opening says: the warnings, then the error if there is one.
std::string open(const std::string& text) {
    std::istringstream stream(text);
    std::string messages;
    try {
        const ZNLoader loader("fuzz", &stream, &messages);
        checkNodes(loader);
        checkLinks(loader);
    } catch (const std::string& error) {
        messages += error;
    } catch (const std::out_of_range& error) { // the input ended in a comment within a text value
        messages += error.what();
    }
    return messages;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const DeviceFolder devices;
    const QuietErrorStream quiet;
    const std::string text = withoutBackslashes(std::string(reinterpret_cast<const char*>(data), size));
    require(open(text) == open(text));
    return 0;
}
