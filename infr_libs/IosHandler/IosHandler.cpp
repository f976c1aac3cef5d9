// Look-ups and dumps.

#include "infr_libs/IosHandler/IosHandler.h"

#include "infr_libs/ErrorHandler/Assertion.h"

#include <set>

namespace {

// The value of a key, or null.
template<typename Map, typename Key>
auto find(Map& map, const Key& key) -> decltype(&map.begin()->second) {
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

template<typename Owned>
unsigned sizeOf(const std::vector<Owned>* list) {
    return list ? static_cast<unsigned>(list->size()) : 0;
}

} // namespace

IosPort* IosHandler::findPort(unsigned node, unsigned core, std::string_view name) const {
    const auto* const ports = find(m_portsByName, std::pair(node, core));
    const auto* const port = ports ? find(*ports, name) : nullptr;
    return port ? *port : nullptr;
}

IosPin* IosHandler::findPin(std::string_view package, std::string_view pin) const {
    const auto* const pins = find(m_pinsByName, package);
    const auto* const found = pins ? find(*pins, pin) : nullptr;
    return found ? *found : nullptr;
}

IosZLink* IosHandler::findZLink(unsigned node, unsigned number) const {
    const auto* const link = find(m_zLinksByNumber, std::pair(node, number));
    return link ? *link : nullptr;
}

bool IosHandler::isPackageValid(std::string_view package) const {
    return m_pinsByName.contains(package);
}

unsigned IosHandler::getNumCores(unsigned node) const {
    const auto* const cores = find(m_ports, node);
    return cores ? static_cast<unsigned>(cores->size()) : 0;
}

const IosHandler::Ports* IosHandler::getCorePorts(unsigned node, unsigned core) const {
    const auto* const cores = find(m_ports, node);
    return cores ? find(*cores, core) : nullptr;
}

std::vector<unsigned> IosHandler::getNodes() const {
    std::set<unsigned> nodes;
    for (const auto& [node, cores] : m_ports)
        nodes.insert(node);
    for (const auto& [node, links] : m_zLinks)
        nodes.insert(node);
    return {nodes.begin(), nodes.end()};
}

std::vector<unsigned> IosHandler::getCores(unsigned node) const {
    std::vector<unsigned> numbers;
    if (const auto* const cores = find(m_ports, node)) {
        for (const auto& [core, ports] : *cores)
            numbers.push_back(core);
    }
    return numbers;
}

unsigned IosHandler::getNumPorts(unsigned node, unsigned core) const {
    return sizeOf(getCorePorts(node, core));
}

IosPort* IosHandler::getPort(unsigned node, unsigned core, unsigned index) const {
    const Ports* const ports = getCorePorts(node, core);
    return index < sizeOf(ports) ? (*ports)[index].get() : nullptr;
}

unsigned IosHandler::getNumZLinks(unsigned node) const {
    return sizeOf(find(m_zLinks, node));
}

IosZLink* IosHandler::getZLink(unsigned node, unsigned index) const {
    const ZLinks* const links = find(m_zLinks, node);
    return index < sizeOf(links) ? (*links)[index].get() : nullptr;
}

IosPin* IosHandler::getPin(unsigned index) const {
    ZELM_ASSERT(index < m_pins.size());
    return m_pins[index].get();
}

void IosHandler::dump(FILE* file) const {
    dumpPorts(file);
    dumpZLinks(file);
    dumpPins(file);
}

void IosHandler::dumpPorts(FILE* file) const {
    std::fprintf(file, "PORTS:\n");
    for (const auto& [node, cores] : m_ports) {
        std::fprintf(file, "  NODE %d:\n", static_cast<int>(node));
        for (const auto& [core, ports] : cores) {
            std::fprintf(file, "    CORE %d:\n", static_cast<int>(core));
            for (const auto& port : ports)
                port->dump(file);
        }
    }
}

void IosHandler::dumpZLinks(FILE* file) const {
    std::fprintf(file, "ZLINKS:\n");
    for (const auto& [node, links] : m_zLinks) {
        std::fprintf(file, "  NODE %d:\n", static_cast<int>(node));
        for (const auto& link : links)
            link->dump(file);
    }
}

void IosHandler::dumpPins(FILE* file) const {
    std::fprintf(file, "PINS:\n");
    for (const auto& pin : m_pins)
        pin->dump(file);
}
