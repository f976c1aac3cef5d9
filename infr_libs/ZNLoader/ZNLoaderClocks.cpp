// The last pass over a network: which oscillator drives a processor, and the registers of its clocks.

#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ZNLoader/NodeInstance.h"
#include "infr_libs/ZNLoader/TickTock_G4.h"
#include "infr_libs/ZNLoader/TickTock_L1.h"
#include "infr_libs/ZNLoader/ZNLoaderReading.h"

#include <tuple>

namespace {

constexpr unsigned s_jtagIdMask = 0x0fffffff; // the version stands above
constexpr unsigned s_defaultReferenceFreq = 100000000;

// Null for a node that has no planner.
std::unique_ptr<TickTock> plannerOf(const NodeConfig& config, ZNUtils* utils) {
    switch (static_cast<unsigned>(config.m_node->jtagId) & s_jtagIdMask) {
    case 0x2731:
    case 0xfff2731:
        return TickTock_G4::create(utils);
    case 0x2633:
        return TickTock_L1::create(utils);
    default:
        return nullptr;
    }
}

// Plans the processors of one network. The search for a PLL setting is made once for each distinct request:
// thousands of nodes of one type have the same.
class ClockPlanner {
public:
    explicit ClockPlanner(ZNLoader& loader) : m_loader(loader) {}

    void plan(ZNLoader::ProcNode* thisNode) {
        const std::unique_ptr<TickTock> planner =
            thisNode->m_config ? plannerOf(*thisNode->m_config, &m_loader.m_utils) : nullptr;
        if (!planner)
            return;
        unsigned pll = 0;
        unsigned ref = 0;
        if (!thisNode->m_systemFreqByHz) {
            ZELM_ASSERT(!thisNode->m_referenceFreqByHz);
            pll = planner->calculatePllValueFromDivs(thisNode->m_oscillatorHz, thisNode->m_pllInputDiv,
                                                     thisNode->m_pllFeedbackDiv, thisNode->m_pllOutputDiv,
                                                     &thisNode->m_achievedSystemFreq);
            ref = planner->calculateRefDivValueFromDiv(thisNode->m_achievedSystemFreq, thisNode->m_refDiv,
                                                       &thisNode->m_achievedReferenceFreq);
        } else if (thisNode->m_systemFreq == 0) {
            m_loader.m_utils.buildWarningMessage(
                m_loader.warningTarget(), 11140, ElementLocation(thisNode->m_element),
                "System frequency is unspecified. No PLL configuration will be performed.\n");
        } else {
            pll = planSystem(thisNode, *planner);
            ref = planReference(thisNode, *planner);
        }
        thisNode->m_pllValues = {pll, ref};
    }

private:
    unsigned planSystem(ZNLoader::ProcNode* thisNode, TickTock& planner) {
        const Request request{planner.getExternalDiv(), thisNode->m_oscillatorHz, thisNode->m_systemFreq,
                              thisNode->m_pllFeedbackDivMin};
        auto setting = m_settings.find(request);
        if (setting == m_settings.end()) {
            Setting made;
            made.pll = planner.calculatePllValue(thisNode->m_oscillatorHz, thisNode->m_systemFreq,
                                                 thisNode->m_pllFeedbackDivMin, &made.achieved);
            setting = m_settings.emplace(request, made).first;
        }
        thisNode->m_achievedSystemFreq = setting->second.achieved;
        if (thisNode->m_achievedSystemFreq != thisNode->m_systemFreq) {
            if (thisNode->m_systemFreq != 0)
                warnOfDifference(thisNode, 11137, "system", thisNode->m_systemFreq,
                                 thisNode->m_achievedSystemFreq);
            else // never: a node without a request isn't planned, so that no default is ever applied
                warnOfDefault(thisNode, 11138, "400Mhz system", thisNode->m_achievedSystemFreq);
        }
        return setting->second.pll;
    }

    unsigned planReference(ZNLoader::ProcNode* thisNode, TickTock& planner) {
        ZELM_ASSERT(thisNode->m_referenceFreqByHz);
        const unsigned requested =
            thisNode->m_referenceFreq ? thisNode->m_referenceFreq : s_defaultReferenceFreq;
        const unsigned ref = planner.calculateRefDivValue(thisNode->m_achievedSystemFreq, requested,
                                                          &thisNode->m_achievedReferenceFreq);
        if (thisNode->m_achievedReferenceFreq != requested) {
            if (thisNode->m_referenceFreq != 0) // the code of the system frequency: wanted
                warnOfDifference(thisNode, 11137, "reference", requested, thisNode->m_achievedReferenceFreq);
            else
                warnOfDefault(thisNode, 11136, "100Mhz reference", thisNode->m_achievedReferenceFreq);
        }
        return ref;
    }

    void warnOfDifference(const ZNLoader::Node* node, ZNUtils::ErrorCode code, const char* clock,
                          unsigned requested, unsigned achieved) {
        m_loader.m_utils.buildWarningMessage(
            m_loader.warningTarget(), code, ElementLocation(node->m_element),
            "%dHz %s frequency for node \"%s\" could not be achived. Using %dHz.\n",
            static_cast<int>(requested), clock, node->m_id.c_str(), static_cast<int>(achieved));
    }

    void warnOfDefault(const ZNLoader::Node* node, ZNUtils::ErrorCode code, const char* clock,
                       unsigned achieved) {
        m_loader.m_utils.buildWarningMessage(
            m_loader.warningTarget(), code, ElementLocation(node->m_element),
            "Default %s frequency for node \"%s\" could not be achived. Using %dHz.\n", clock,
            node->m_id.c_str(), static_cast<int>(achieved));
    }

    // The external divider stands for the kind of planner.
    using Request = std::tuple<unsigned, unsigned, unsigned, unsigned>;
    struct Setting {
        unsigned pll = 0;
        unsigned achieved = 0;
    };

    ZNLoader& m_loader;
    std::map<Request, Setting> m_settings;
};

} // namespace

void ZNLoader::propagateZssc() {
    std::unordered_map<std::string, ZsscNode*> oscillators; // the last of an id counts
    for (Node* node : m_nodes) {
        if (node->getType() == ZsscNode::s_type)
            oscillators.insert_or_assign(node->m_id, static_cast<ZsscNode*>(node));
    }
    for (Node* node : m_procNodes) {
        const auto oscillator =
            node->m_oscillatorSrc.empty() ? oscillators.end() : oscillators.find(node->m_oscillatorSrc);
        if (oscillator == oscillators.end())
            continue;
        node->m_oscillatorNode = oscillator->second;
        const std::string& text = oscillator->second->m_oscillatorText;
        if (!text.empty())
            node->m_oscillatorHz = static_cast<unsigned>(freqInHertz(text, oscillator->second->m_element));
    }
}

void ZNLoader::planClocks() {
    ClockPlanner planner(*this);
    for (Node* node : m_nodes) {
        if (node->m_oscillatorHz != 0 && node->getType() == ProcNode::s_type)
            planner.plan(static_cast<ProcNode*>(node));
    }
}
