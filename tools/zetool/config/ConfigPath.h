#pragma once

#include "infr_libs/ConfigurationHandler/Configuration.h"

#include <string>
#include <vector>

// A way through a configuration: Node[number=0]/Processor[number=1]/@numThreads.
class ConfigPath {
public:
    // Throws a ToolFailure for a text that is no path.
    explicit ConfigPath(const std::string& text);

    const std::string& text() const { return m_text; }

    // Of the value that is asked for; empty where the element itself is.
    const std::string& attribute() const { return m_attribute; }

    // The element, by the look-ups of `Configuration`; null where there is none.
    XmlNode* find(Configuration& configuration, XmlNode* root) const;

private:
    struct Step {
        std::string element;
        std::string attribute; // empty: any element of the name
        std::string value;
    };

    std::string m_text;
    std::vector<Step> m_steps;
    std::string m_attribute;
};
