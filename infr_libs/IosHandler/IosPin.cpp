#include "infr_libs/IosHandler/IosPin.h"

#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/IosHandler/IosHandler.h"

IosPin::IosPin(ZelmUtils* utils, const std::string& name, unsigned number)
    : m_utils(utils), m_packageName(name.substr(0, name.find(':'))), m_number(number) {
    if (m_packageName.size() == name.size())
        m_utils->errorHandler->fatalError(true, "ERROR: Invalid pin name format: %s\n", name.c_str());
    else
        m_pinName = name.substr(m_packageName.size() + 1);
}

IosPin::~IosPin() = default;

IosPort* IosPin::getPort(unsigned index) const {
    const std::vector<IosPort*>& m_ports = m_pinPorts; // as the assertion calls it
    ZELM_ASSERT(index < m_ports.size());
    return m_ports[index];
}

unsigned IosPin::getPortBit(unsigned index) const {
    return index < m_pinPortBits.size() ? m_pinPortBits[index] : 0;
}

unsigned IosPin::getPortPriority(unsigned index) const {
    return index < m_pinPortPriorities.size() ? m_pinPortPriorities[index] : 0;
}

void IosPin::addPort(const IosHandler& handler, unsigned node, unsigned core, const std::string& name,
                     unsigned bit, unsigned priority, bool ignoreMissing) {
    IosPort* const port = handler.findPort(node, core, name);
    if (!port) {
        if (!ignoreMissing)
            m_utils->errorHandler->fatalError(true, "ERROR: No port '%s' found on node %d core %d\n",
                                              name.c_str(), static_cast<int>(node), static_cast<int>(core));
        return;
    }
    port->connectPin(bit, priority, this);
    // Remembered here also where the bit turned out to be another pin's, and the report of it returned.
    m_pinPorts.push_back(port);
    m_pinPortBits.push_back(bit);
    m_pinPortPriorities.push_back(priority);
}

void IosPin::addZLink(const IosHandler& handler, unsigned node, unsigned number, unsigned bit, bool isIn,
                      bool ignoreMissing) {
    if (m_zLink)
        m_utils->errorHandler->fatalError(true, "ERROR: Two ZLinks for specified pin '%s' in package '%s'\n",
                                          m_pinName.c_str(), m_packageName.c_str());
    IosZLink* const link = handler.findZLink(node, number);
    if (!link) {
        if (!ignoreMissing)
            m_utils->errorHandler->fatalError(true, "ERROR: ZLink %d not found on node %d\n",
                                              static_cast<int>(number), static_cast<int>(node));
        return;
    }
    link->connectPin(bit, isIn, this);
    m_zLink = link;
    m_zLinkBit = bit;
    m_zLinkIn = isIn;
}

void IosPin::dump(FILE* file) const {
    std::fprintf(file, "      %s: package = %s, id = %d.\n", m_pinName.c_str(), m_packageName.c_str(),
                 static_cast<int>(m_number));
    if (m_zLink)
        std::fprintf(file, "        zLink: %d, bit %d, direction %s\n",
                     static_cast<int>(m_zLink->getNumber()), static_cast<int>(m_zLinkBit),
                     m_zLinkIn ? "in" : "out");
    for (std::size_t i = 0; i < m_pinPorts.size(); ++i)
        std::fprintf(file, "        Port %s: bit %d, priority %d\n", m_pinPorts[i]->getName().c_str(),
                     static_cast<int>(m_pinPortBits[i]), static_cast<int>(m_pinPortPriorities[i]));
}

void IosPin::dumpAsTarget(FILE* file) const {
    std::fprintf(file, "pin (%d) name: '%s', package: '%s'\n", static_cast<int>(m_number), m_pinName.c_str(),
                 m_packageName.c_str());
}
