#include "infr_libs/IosHandler/IosZLink.h"

#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/IosHandler/IosPin.h"

namespace {

IosPin* findPin(const std::map<unsigned, IosPin*>& pins, unsigned bit) {
    const auto found = pins.find(bit);
    return found == pins.end() ? nullptr : found->second;
}

} // namespace

IosZLink::IosZLink(ZelmUtils* utils, unsigned number) : m_utils(utils), m_number(number) {}

IosZLink::~IosZLink() = default;

IosPin* IosZLink::getInPin(unsigned bit) const {
    return findPin(m_inPins, bit);
}

IosPin* IosZLink::getOutPin(unsigned bit) const {
    return findPin(m_outPins, bit);
}

void IosZLink::connectPin(unsigned bit, bool isIn, IosPin* pin) {
    std::map<unsigned, IosPin*>& pins = isIn ? m_inPins : m_outPins;
    if (pins.contains(bit))
        m_utils->errorHandler->fatalError(true, "ERROR: ZLink %d adding duplicate bit %d in direction '%s'\n",
                                          static_cast<int>(m_number), static_cast<int>(bit),
                                          isIn ? "in" : "out");
    pins.emplace(bit, pin);
}

void IosZLink::dump(FILE* file) const {
    std::fprintf(file, "      %d:\n", static_cast<int>(m_number));
    for (const auto& [bit, pin] : m_inPins) {
        std::fprintf(file, "        Input bit %d: ", static_cast<int>(bit));
        pin->dumpAsTarget(file);
    }
    for (const auto& [bit, pin] : m_outPins) {
        std::fprintf(file, "        Output bit %d: ", static_cast<int>(bit));
        pin->dumpAsTarget(file);
    }
}
