#include "tools/zetool/pins/PinMap.h"

#include "infr_libs/XmlParser/XmlNode.h"

PinMap::PinMap(XmlNode* root)
    : m_autoDefines(AutoDefines::createAutoDefines(root, &m_errorHandler)),
      m_utils{&m_errorHandler, &m_strings, m_autoDefines.get()},
      m_handler(root->findNode("System"), &m_utils) {}

std::vector<PlacedPort> PinMap::ports() const {
    std::vector<PlacedPort> ports;
    for (const unsigned node : m_handler.getNodes())
        for (const unsigned core : m_handler.getCores(node))
            for (const auto& port : *m_handler.getCorePorts(node, core))
                ports.push_back({node, core, port.get()});
    return ports;
}

std::vector<PlacedLink> PinMap::links() const {
    std::vector<PlacedLink> links;
    for (const unsigned node : m_handler.getNodes())
        for (unsigned index = 0; index < m_handler.getNumZLinks(node); ++index)
            links.push_back({node, m_handler.getZLink(node, index)});
    return links;
}
