#include "infr_libs/AutoDefines/AutoDefines.h"

#include "infr_libs/AutoDefines/zs1bAutoDefines.h"
#include "infr_libs/AutoDefines/zs1cAutoDefines.h"
#include "infr_libs/AutoDefines/zs2aAutoDefines.h"
#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/XmlParser/XmlNode.h"

#include <string_view>

namespace {

constexpr unsigned s_versionBits = 0xf0000000;

template<typename Architecture>
AutoDefines* make(unsigned arch) {
    return new Architecture(arch);
}

// By the identifier without its version: the architecture's own identifier, and what makes its definitions.
struct ArchitectureRow {
    unsigned jtagId;
    unsigned arch;
    AutoDefines* (*make)(unsigned arch);
};
constexpr ArchitectureRow s_architectures[] = {
    {0x0002731, 0x2731, make<zs1bAutoDefines>},
    {0xfff2731, 0x2731, make<zs1bAutoDefines>},
    {0x0002633, 0x2633, make<zs1cAutoDefines>},
    {0x0003633, 0x3633, make<zs2aAutoDefines>},
};

constexpr bool isStatusField(std::string_view name) {
    return name.starts_with("SR_");
}

} // namespace

AutoDefines::AutoDefines(unsigned arch) : m_arch(arch) {}

AutoDefines::~AutoDefines() = default;

AutoDefines* AutoDefines::createAutoDefines(XmlNode* root, ErrorHandler* errorHandler) {
    const XmlNode* const system = root->findNode("System");
    if (!system) {
        errorHandler->fatalError(true, "ERROR: No 'System' node defined in XML file\n");
        return nullptr;
    }
    const XmlNode* const nodes = system->findNode("Nodes");
    if (!nodes) {
        errorHandler->fatalError(true, "ERROR: No 'Nodes' node in 'System' node\n");
        return nullptr;
    }
    if (nodes->numNodes() == 0) {
        errorHandler->fatalError(true, "ERROR: No 'Node' in 'Nodes' node\n");
        return nullptr;
    }
    // The first one decides for the whole system, whatever it is called: wanted.
    const XmlNode* const node0 = nodes->getNode(0);
    ZELM_ASSERT(node0 != __null);
    unsigned jtagId = 0;
    node0->getUIntAttribute("jtagId", jtagId, true);
    return createAutoDefines(jtagId, errorHandler);
}

AutoDefines* AutoDefines::createAutoDefines(unsigned int jtagId, ErrorHandler* errorHandler) {
    const unsigned id = jtagId & ~s_versionBits;
    for (const ArchitectureRow& row : s_architectures)
        if (row.jtagId == id)
            return row.make(row.arch);
    errorHandler->fatalError(true, "ERROR: unrecognised JTAG ID '0x%x'.\n", id);
    return nullptr;
}

unsigned AutoDefines::SR_EXISTING_BITS() const {
    unsigned bits = 0;
#define ZELM_STATUS_BITS(name, ...)                                                                          \
    if constexpr (isStatusField(#name))                                                                      \
        bits |= m_##name.mask;
    ZELM_REGISTER_FIELDS(ZELM_STATUS_BITS)
#undef ZELM_STATUS_BITS
    return bits;
}

unsigned AutoDefines::RES_ID(unsigned type, unsigned resnum, unsigned portwidth) const {
    return m_RES_ID_TYPE.set(0, type) | m_RES_ID_RESNUM.set(0, resnum) | m_RES_ID_PORTWIDTH.set(0, portwidth);
}
