#include "tools/zetool/config/ConfigPath.h"

#include "infr_libs/XmlParser/XmlNode.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Words.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace {

[[noreturn]] void refuse(const std::string& text, const char* reason) {
    throw ToolFailure("config get: '" + text + "' " + reason);
}

// A whole text that is a number, as a document may write one.
std::optional<std::uint32_t> numberOf(const std::string& text) {
    const bool isHexadecimal = text.starts_with("0x");
    return isHexadecimal ? wholeNumber<std::uint32_t>(std::string_view(text).substr(2), 16)
                         : wholeNumber<std::uint32_t>(text);
}

} // namespace

ConfigPath::ConfigPath(const std::string& text) : m_text(text) {
    std::size_t at = text.starts_with('/') ? 1 : 0;
    for (;;) {
        if (text.compare(at, 1, "@") == 0) {
            m_attribute = text.substr(at + 1);
            if (m_attribute.empty() || m_steps.empty())
                refuse(text, "needs an element and an attribute's name around its @");
            return;
        }
        Step step;
        const std::size_t end = std::min(text.find_first_of("/[", at), text.size());
        step.element = text.substr(at, end - at);
        if (step.element.empty())
            refuse(text, "lacks an element's name");
        at = end;
        if (at < text.size() && text[at] == '[') {
            const std::size_t close = text.find(']', at);
            const std::size_t equals = text.find('=', at);
            if (close == std::string::npos || equals == std::string::npos || equals > close ||
                equals == at + 1)
                refuse(text, "has brackets that aren't of the form [attribute=value]");
            step.attribute = text.substr(at + 1, equals - at - 1);
            step.value = text.substr(equals + 1, close - equals - 1);
            at = close + 1;
        }
        m_steps.push_back(step);
        if (at == text.size())
            return;
        if (text[at] != '/')
            refuse(text, "has something other than / behind its brackets");
        ++at;
    }
}

XmlNode* ConfigPath::find(Configuration& configuration, XmlNode* root) const {
    XmlNode* node = root;
    for (const Step& step : m_steps) {
        XmlNode* found = nullptr;
        // A look-up counts the element it starts at, so that those below are asked one by one. The root
        // itself can be the first step.
        const auto look = [&](const auto& lookUp) {
            found = node == root && &step == &m_steps.front() ? lookUp(node) : nullptr;
            for (unsigned i = 0; i < node->numNodes() && !found; ++i)
                found = lookUp(node->getNode(i));
        };
        if (step.attribute.empty()) {
            look([&](XmlNode* start) { return configuration.findNode(start, step.element.c_str()); });
        } else {
            look([&](XmlNode* start) {
                return configuration.findNodeWithAttributeValue(start, step.element.c_str(),
                                                                step.attribute.c_str(), step.value.c_str());
            });
            const std::optional<std::uint32_t> number = numberOf(step.value);
            if (!found && number)
                look([&](XmlNode* start) {
                    return configuration.findNodeWithAttributeValue(start, step.element.c_str(),
                                                                    step.attribute.c_str(), *number);
                });
        }
        if (!found)
            return nullptr;
        node = found;
    }
    return node;
}
