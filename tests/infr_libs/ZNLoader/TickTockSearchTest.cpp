// Holds the planner's search against every setting of the PLL: the ratio's definition, the limits, nothing
// else. Where the search is meant to pass over a setting that is possible, a test of its own says so.

#include "infr_libs/ZNLoader/TickTock_G4.h"
#include "infr_libs/ZNLoader/TickTock_L1.h"
#include "infr_libs/ZNLoader/ZNUtils.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <tuple>

namespace {

struct Setting {
    long long freq; // of the PLL's output
    std::uint16_t in;
    std::uint16_t feedback;
    std::uint16_t out;
};

struct Request {
    unsigned input;
    unsigned target; // of the PLL's output
    unsigned minFeedback;
};

// Every setting of one oscillator whose frequencies lie within the device's limits, by output frequency.
std::vector<Setting> allSettings(const PllLimits& limits, long long input) {
    const long long steps = limits.m_feedbackStepsPerUnit;
    std::vector<Setting> settings;
    for (long long in = 1; in <= limits.m_maxInputDiv; ++in) {
        if (input / in < limits.m_minPfdFreq || input / in > limits.m_maxPfdFreq)
            continue;
        for (long long feedback = 1; feedback <= limits.m_maxFeedbackDiv; ++feedback) {
            const long long vco = input * feedback / (in * steps);
            if (vco < limits.m_minVcoFreq || vco > limits.m_maxVcoFreq)
                continue;
            for (long long out = 1; out <= limits.m_maxOutputDiv; ++out)
                settings.push_back({input * feedback / (in * steps * out), static_cast<std::uint16_t>(in),
                                    static_cast<std::uint16_t>(feedback), static_cast<std::uint16_t>(out)});
        }
    }
    std::sort(settings.begin(), settings.end(),
              [](const Setting& a, const Setting& b) { return a.freq < b.freq; });
    return settings;
}

// What a request rules out, beyond the device's limits.
bool isAllowed(const PllLimits& limits, const Request& request, const Setting& setting) {
    // The VCO that the request would like to have with this output divider.
    const long long wantedVco = static_cast<long long>(setting.out) * request.target;
    if (wantedVco < limits.m_minVcoFreq || wantedVco > limits.m_maxVcoFreq)
        return false;
    // The exact feedback that it would take lies below the highest, and not below a minimum.
    const long long steps = limits.m_feedbackStepsPerUnit;
    const long long wantedFeedback = setting.in * steps * wantedVco / request.input;
    if (wantedFeedback >= limits.m_maxFeedbackDiv)
        return false;
    if (request.minFeedback * static_cast<long long>(request.input) > setting.in * steps * wantedVco)
        return false;
    // At or below the target the VCO isn't at its lowest frequency.
    const long long vco = static_cast<long long>(request.input) * setting.feedback / (setting.in * steps);
    return setting.feedback > wantedFeedback || vco > limits.m_minVcoFreq;
}

// The allowed settings closest to the target; several when they are equally close.
std::vector<Setting> closest(const std::vector<Setting>& settings, const PllLimits& limits,
                             const Request& request) {
    std::vector<Setting> best;
    long long bestError = std::numeric_limits<long long>::max();
    const auto consider = [&](const Setting& setting) {
        const long long error = std::llabs(setting.freq - static_cast<long long>(request.target));
        if (error > bestError)
            return false; // nothing beyond is closer
        if (!isAllowed(limits, request, setting))
            return true;
        if (error < bestError)
            best.clear();
        bestError = error;
        best.push_back(setting);
        return true;
    };
    const auto middle = std::lower_bound(settings.begin(), settings.end(), request.target,
                                         [](const Setting& a, long long freq) { return a.freq < freq; });
    for (auto above = middle; above != settings.end() && consider(*above); ++above) {
    }
    for (auto below = middle; below != settings.begin() && consider(*(below - 1)); --below) {
    }
    return best;
}

// Among equally close settings: the first exact one without a minimum, otherwise the smallest feedback.
Setting preferred(const std::vector<Setting>& settings, const Request& request) {
    const bool first = settings.front().freq == request.target && request.minFeedback == 0;
    return *std::min_element(settings.begin(), settings.end(), [&](const Setting& a, const Setting& b) {
        const auto key = [&](const Setting& s) { return std::tuple(first ? 0 : s.feedback, s.out, s.in); };
        return key(a) < key(b);
    });
}

class Requests {
public:
    explicit Requests(const PllLimits& limits) : m_limits(limits) {}

    unsigned oscillator() {
        for (;;) {
            const unsigned input = between(m_limits.m_minInputFreq, m_limits.m_maxInputFreq);
            if (input <= m_limits.m_inputGapLow || input >= m_limits.m_inputGapHigh)
                return input;
        }
    }

    // Evenly by magnitude, so that every output divider has its share; half of them are round numbers.
    Request request(unsigned input) {
        const double low = static_cast<double>(m_limits.m_minVcoFreq / m_limits.m_maxOutputDiv);
        const double high = static_cast<double>(m_limits.m_maxVcoFreq);
        const double share = static_cast<double>(m_random()) / 4294967296.0;
        auto target = static_cast<unsigned>(low * std::pow(high / low, share));
        if (m_random() % 2 == 0)
            target = std::max(target / 1000000 * 1000000, static_cast<unsigned>(low));
        const unsigned minFeedback = m_random() % 4 == 0 ? between(1, m_limits.m_maxFeedbackDiv / 4) : 0;
        return {input, target, minFeedback};
    }

private:
    unsigned between(long long low, long long high) {
        return static_cast<unsigned>(low + static_cast<long long>(m_random()) % (high - low + 1));
    }

    const PllLimits& m_limits;
    std::mt19937 m_random{20111};
};

template<typename Device>
void expectNoAllowedSettingToBeCloser(unsigned numOscillators, unsigned numTargets) {
    const PllLimits& limits = Device::s_limits;
    ZNUtils messages;
    const auto planner = Device::create(&messages);
    Requests requests(limits);
    for (unsigned i = 0; i < numOscillators; ++i) {
        const unsigned input = i == 0 ? 25000000 : requests.oscillator();
        const std::vector<Setting> settings = allSettings(limits, input);
        for (unsigned j = 0; j < numTargets; ++j) {
            const Request request = requests.request(input);
            const std::vector<Setting> best = closest(settings, limits, request);
            unsigned found = 0;
            const unsigned reg = planner->bestPllReg(input, request.target, request.minFeedback, found);
            if (best.empty()) {
                ASSERT_EQ(found, 0U) << input << " " << request.target << " " << request.minFeedback;
                continue;
            }
            const Setting wanted = preferred(best, request);
            const long long vco =
                static_cast<long long>(input) * wanted.feedback / (wanted.in * limits.m_feedbackStepsPerUnit);
            ASSERT_EQ(found, wanted.freq) << input << " " << request.target << " " << request.minFeedback;
            ASSERT_EQ(reg,
                      planner->getPllReg(wanted.in, wanted.feedback, wanted.out, static_cast<unsigned>(vco)))
                << input << " " << request.target << " " << request.minFeedback;
        }
    }
}

} // namespace

TEST(TickTockSearch, NoAllowedSettingOfG4IsCloser) {
    expectNoAllowedSettingToBeCloser<TickTock_G4>(16, 250);
}

TEST(TickTockSearch, NoAllowedSettingOfL1IsCloser) {
    expectNoAllowedSettingToBeCloser<TickTock_L1>(8, 500);
}

// --- Settings that are possible, closer, and passed over: wanted. Each is a rule of `isAllowed` above.

TEST(TickTockSearch, AnExactSettingWithTheVcoAtItsLowestIsPassedOver) {
    ZNUtils messages;
    const auto planner = TickTock_G4::create(&messages);
    // 10 over 1 over 250 is exactly 1 MHz, with a VCO of exactly 250 MHz.
    unsigned found = 0;
    planner->bestPllReg(25000000, 1000000, 0, found);
    EXPECT_EQ(found, 1016666U);
}

TEST(TickTockSearch, AnOutputDividerWhoseWantedVcoIsTooLowIsPassedOver) {
    ZNUtils messages;
    const auto planner = TickTock_G4::create(&messages);
    // 10 over 1 over 249 is 1004016 Hz, closer to 1000001; but 249 times 1000001 lies below 250 MHz.
    unsigned found = 0;
    planner->bestPllReg(25000000, 1000001, 0, found);
    EXPECT_EQ(found, 1016666U);
}

TEST(TickTockSearch, TheHighestFeedbackIsTakenOnlyFromBelow) {
    ZNUtils messages;
    const auto planner = TickTock_L1::create(&messages);
    // 8192 half steps over 31 are 660645161 Hz: the step above 660645161, and the step below the next.
    unsigned found = 0;
    EXPECT_EQ(planner->bestPllReg(5000000, 660645160, 0, found), 0x1fff1eU);
    EXPECT_EQ(found, 660645161U);
    EXPECT_EQ(planner->bestPllReg(5000000, 660645162, 0, found), 0x1bde1aU);
    EXPECT_EQ(found, 660648148U);
}
