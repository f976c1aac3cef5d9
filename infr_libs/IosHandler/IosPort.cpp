#include "infr_libs/IosHandler/IosPort.h"

#include "infr_libs/AutoDefines/AutoDefines.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/IosHandler/IosPin.h"

IosPort::IosPort(ZelmUtils* utils, const std::string& name, unsigned id)
    : m_utils(utils), m_name(name), m_id(id) {}

IosPort::~IosPort() = default;

IosPin* IosPort::getPin(unsigned bit) const {
    const auto found = m_bitPins.find(bit);
    return found == m_bitPins.end() ? nullptr : found->second;
}

unsigned IosPort::getPinPriority(unsigned bit) const {
    const auto found = m_bitPriorities.find(bit);
    return found == m_bitPriorities.end() ? 0 : found->second;
}

void IosPort::connectPin(unsigned bit, unsigned priority, IosPin* pin) {
    if (m_bitPins.contains(bit))
        m_utils->errorHandler->fatalError(true, "ERROR: Port '%s' adding duplicate bit %d\n", m_name.c_str(),
                                          static_cast<int>(bit));
    m_bitPins.emplace(bit, pin);
    m_bitPriorities.emplace(bit, priority);
}

void IosPort::dump(FILE* file) const {
    std::fprintf(file, "      %s: ID = 0x%08x\n", m_name.c_str(), m_id);
    // The width by the architecture's own definition.
    const unsigned width = m_utils->autoDefines ? m_utils->autoDefines->RES_ID_PORTWIDTH(m_id) : getSize();
    for (unsigned bit = 0; bit < width; ++bit) {
        std::fprintf(file, "        Bit %d: ", static_cast<int>(bit));
        if (const IosPin* const pin = getPin(bit))
            pin->dumpAsTarget(file);
        else
            std::fprintf(file, "not connected\n");
    }
}
