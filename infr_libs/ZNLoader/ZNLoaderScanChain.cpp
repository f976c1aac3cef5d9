// The `JTAGChain` element: the nodes of the scan chain in position order.

#include "infr_libs/ZNLoader/ZNLoaderReading.h"

#include <algorithm>
#include <cstdio>

namespace {

using ChainLink = ZNLoader::ChainLink;
using ChainReading = AttributeReading<ChainLink>;

bool findChainNode(ChainReading& reading, const std::string& value) {
    reading.m_target.m_node = reading.m_loader.findNodeForId(value);
    if (!reading.m_target.m_node)
        reading.m_loader.m_utils.throwError(11032, ElementLocation(reading.m_element),
                                            "Node \"%s\" referenced in JTAGDevice not found.\n",
                                            value.c_str());
    return false;
}

constexpr AttributeRow<ChainReading> s_deviceAttributes[] = {
    {"nodeid", findChainNode},
    {"position", storeInt<&ChainLink::m_position>},
};

constexpr AttributeRow<ChainReading> s_spaceAttributes[] = {
    {"position", storeInt<&ChainLink::m_position>},
    {"devices", storeInt<&ChainLink::m_deviceCount>},
    {"bitlength", storeInt<&ChainLink::m_bitLength>},
};

template<class Rows>
void readChainLink(ZNLoader& loader, XmlNode* element, ChainLink& link, const Rows& rows) {
    ChainReading reading{loader, element, link};
    readAttributes(reading, rows, [&](const std::string& name) {
        loader.m_utils.buildWarningMessage(loader.warningTarget(), 11031, ElementLocation(element),
                                           "Found unexpected attribute \"%s\" inside %s node; ignoring.\n",
                                           name.c_str(), element->getName()->c_str());
    });
}

} // namespace

bool ZNLoader::readJTAGChain(XmlNode* element) {
    m_jtagPreDevices = m_jtagPreBits = m_jtagPostDevices = m_jtagPostBits = m_jtagMaxFrequency = 0;
    m_jtagChainElement = element;
    for (unsigned i = 0; i < element->numAttributes(); ++i) {
        const XmlAttribute* attribute = element->getAttribute(i);
        std::fprintf(stderr, "readJTAGChain attrs : %u\n", i); // wanted: users' scripts look for it
        if (isText(*attribute->getName(), "maxfrequency"))
            m_jtagMaxFrequency = freqInHertz(*attribute->getValue(), element);
        else
            m_utils.buildWarningMessage(warningTarget(), 11104, ElementLocation(element),
                                        "Found unexpected attribute \"%s\" inside \"%s\" node; ignoring.\n",
                                        attribute->getName()->c_str(), element->getName()->c_str());
    }

    std::vector<ChainLink> chain;
    int position = 0; // of the next element, unless it says another
    forEachSubNode(element, [&](XmlNode* child) {
        ChainLink link;
        link.m_position = position;
        if (isNamed(child, "jtagdevice")) {
            readChainLink(*this, child, link, s_deviceAttributes);
            if (!link.m_node)
                m_utils.throwError(11102, ElementLocation(child),
                                   "Device in JTAGChain node does not specify a NodeId.\n");
        } else if (isNamed(child, "jtagspace")) {
            readChainLink(*this, child, link, s_spaceAttributes);
        } else {
            warnOf(*this, {11030, "Found unexpected node \"%s\" inside JTAGChain node; ignoring.\n"}, child,
                   *child->getName());
            return;
        }
        chain.push_back(link);
        position = static_cast<int>(static_cast<unsigned>(link.m_position) + 1);
    });
    std::ranges::stable_sort(chain, jtagPositionComparitor);

    for (std::size_t i = 0; i < chain.size(); ++i) {
        const ChainLink& link = chain[i];
        if (link.m_node) {
            m_jtagNodes.push_back(link.m_node);
        } else if (i == 0) { // a space that is the whole chain is a leading one
            m_jtagPreDevices = link.m_deviceCount;
            m_jtagPreBits = link.m_bitLength;
        } else if (i == chain.size() - 1) {
            m_jtagPostDevices = link.m_deviceCount;
            m_jtagPostBits = link.m_bitLength;
        } else {
            m_utils.throwError(11103, ElementLocation(element),
                               "JTAGSpace nodes may occur only at the start end end of the chain.\n");
        }
    }
    return false;
}

bool ZNLoader::jtagPositionComparitor(const ChainLink& first, const ChainLink& second) {
    return first.m_position < second.m_position;
}

void ZNLoader::ChainLink::dump(FILE* trace) const {
    std::fprintf(trace,
                 "ChainLink::dump()...\nm_position : %d\nm_deviceCount : %d\nm_bitLength : %d\n"
                 "ChainLink::dump done.\n",
                 m_position, m_deviceCount, m_bitLength);
}
