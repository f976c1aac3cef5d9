#include "tests/support/StubSimulator.h"

#include <algorithm>
#include <cstring>

namespace {

// All bits of a listed word, so that a record of such words is a mask.
constexpr unsigned int s_word = ~0U;
const char* const s_pointer = reinterpret_cast<const char*>(~std::uintptr_t{0});

TracePortState listedPortWords() {
    TracePortState listed{};
    listed.name = s_pointer;
    for (const auto field :
         {&TracePortState::width, &TracePortState::value, &TracePortState::inUse, &TracePortState::direction,
          &TracePortState::threadsWaiting, &TracePortState::transferRegister, &TracePortState::shiftRegister,
          &TracePortState::outputThreadPc, &TracePortState::details, &TracePortState::counter,
          &TracePortState::timeStamp, &TracePortState::shiftRegisterCount,
          &TracePortState::shiftRegisterValid, &TracePortState::shiftRegisterSize,
          &TracePortState::transferRegisterFull, &TracePortState::transferRegisterSize})
        listed.*field = s_word;
    return listed;
}

TraceThreadState listedThreadWords() {
    TraceThreadState listed{};
    listed.inUse = listed.waiting = listed.resourceType = listed.resourceNumber = s_word;
    return listed;
}

TraceTimerState listedTimerWords() {
    TraceTimerState listed{};
    listed.time = listed.inUse = listed.threadsWaiting = s_word;
    return listed;
}

TraceClockBlockState listedClockBlockWords() {
    TraceClockBlockState listed{};
    listed.inUse = listed.started = listed.threadsWaiting = listed.fallingEdge = listed.risingEdge = s_word;
    return listed;
}

TraceInstructionState listedInstructionWords() {
    TraceInstructionState listed{};
    listed.valid = listed.thread = listed.pc = s_word;
    listed.mnemonic = listed.functionName = s_pointer;
    return listed;
}

TracePadState listedPadWords() {
    TracePadState listed{};
    listed.name = s_pointer;
    listed.value = s_word;
    return listed;
}

} // namespace

StubSimulator* StubSimulator::s_current = nullptr;

const TracePluginCallbacks StubSimulator::s_callbacks = {
    .getInterfaceVersion = [] { return ++s_current->calls[0], s_current->interfaceVersion; },
    .getClockFrequency = [] { return ++s_current->calls[1], s_current->clockFrequency; },
    .getCycleCount = [] { return ++s_current->calls[2], s_current->cycle; },
    .reserved3 = {},
    .getInstructionState =
        [](unsigned int pid, unsigned int, TraceInstructionState* state) {
            ++s_current->calls[18];
            s_current->answer(state, s_current->core(pid).instruction, listedInstructionWords());
            state->mnemonic = s_current->text(state->mnemonic);
            state->functionName = s_current->text(state->functionName);
        },
    .getNumThreads =
        [](unsigned int pid) {
            return ++s_current->calls[19], static_cast<unsigned int>(s_current->core(pid).threads.size());
        },
    .getThreadState =
        [](unsigned int pid, unsigned int thread, TraceThreadState* state) {
            ++s_current->calls[20];
            s_current->answer(state, s_current->core(pid).threads.at(thread), listedThreadWords());
        },
    .getNumPorts =
        [](unsigned int pid) {
            return ++s_current->calls[21], static_cast<unsigned int>(s_current->core(pid).ports.size());
        },
    .getPortState =
        [](unsigned int pid, unsigned int port, TracePortState* state) {
            ++s_current->calls[22];
            s_current->answer(state, s_current->core(pid).ports.at(port), listedPortWords());
            state->name = s_current->text(state->name);
        },
    .reserved23 = {},
    .getNumTimers =
        [](unsigned int pid) {
            return ++s_current->calls[26], static_cast<unsigned int>(s_current->core(pid).timers.size());
        },
    .getTimerState =
        [](unsigned int pid, unsigned int timer, TraceTimerState* state) {
            ++s_current->calls[27];
            s_current->answer(state, s_current->core(pid).timers.at(timer), listedTimerWords());
        },
    .reserved28 = {},
    .getNumClockBlocks =
        [](unsigned int pid) {
            return ++s_current->calls[32], static_cast<unsigned int>(s_current->core(pid).clockBlocks.size());
        },
    .getClockBlockState =
        [](unsigned int pid, unsigned int clockBlock, TraceClockBlockState* state) {
            ++s_current->calls[33];
            s_current->answer(state, s_current->core(pid).clockBlocks.at(clockBlock),
                              listedClockBlockWords());
        },
    .getNumPads = [] { return ++s_current->calls[34], static_cast<unsigned int>(s_current->pads.size()); },
    .getPadState =
        [](unsigned int pad, TracePadState* state) {
            ++s_current->calls[35];
            s_current->answer(state, s_current->pads.at(pad), listedPadWords());
            state->name = s_current->text(state->name);
        },
};

StubSimulator::StubSimulator() : m_callbacks(s_callbacks) {
    s_current = this;
}

StubSimulator::~StubSimulator() {
    if (s_current == this)
        s_current = nullptr;
}

TracePortState StubSimulator::port(const char* name, unsigned int width) {
    TracePortState state{};
    state.name = name;
    state.width = width;
    return state;
}

TracePadState StubSimulator::pad(const char* name, unsigned int value) {
    TracePadState state{};
    state.name = name;
    state.value = value;
    return state;
}

template<typename State>
void StubSimulator::answer(State* state, const State& held, const State& listed) {
    for (auto& text : m_texts)
        text.fill('?'); // whatever texts were handed out before
    *state = held;
    if (!garbage)
        return;
    auto* const bytes = reinterpret_cast<unsigned char*>(state);
    const auto* const mask = reinterpret_cast<const unsigned char*>(&listed);
    for (std::size_t i = 0; i < sizeof(State); ++i) {
        m_noise = m_noise * 1664525 + 1013904223;
        bytes[i] = static_cast<unsigned char>((bytes[i] & mask[i]) | (m_noise >> 24 & ~mask[i]));
    }
}

const char* StubSimulator::text(const char* held) {
    if (!textsExpire || !held)
        return held;
    auto& buffer = m_texts[m_nextText++ % m_texts.size()];
    std::memset(buffer.data(), 0, buffer.size());
    std::memcpy(buffer.data(), held, std::min(std::strlen(held), buffer.size() - 1));
    return buffer.data();
}
