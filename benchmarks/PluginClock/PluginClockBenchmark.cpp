// What a clock costs, side by side with its floors in the same run: an idle clock against the plain loop
// that polls the same records and compares each field with a 64-bit cache, a clock with changes against the
// bare writes of the same bytes. With cycles no clock is without bytes: there the idle clock's floor is the
// plain loop and the bare writes. Ratios hold from machine to machine, times don't.
//
// usage: PluginClockBenchmark                  measure, and print a table
//        PluginClockBenchmark CLOCKS CHANGES   play so many clocks with so many changes each, plugin and
//                                              plain loop, and print nothing: for a tool that counts
//                                              instructions

#include "benchmarks/PluginClock/Device.h"
#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

// Many rounds, each shorter than a time slice, plugin and floor by turns. The median of the rounds' ratios
// counts: a processor that changes its speed on the way changes it for both halves of nearly every round.
constexpr int s_rounds = 400;
constexpr unsigned int s_idleClocksOfARound = 1000;
constexpr unsigned int s_changesOfARound = 1000;

constexpr std::size_t s_bufferSize = 4096; // of the waveform's stream, in bytes

double nanoseconds(Clock::duration time) {
    return std::chrono::duration<double, std::nano>(time).count();
}

// ---------------------------------------------------------------- the floor of an idle clock

// What a careful plain tracer keeps and does: a cache for each signal, and one compare each.
class PlainLoop {
public:
    explicit PlainLoop(bool all) : m_all(all), m_cache(Device::s_signals) { poll(); }

    // The number of signals that changed.
    __attribute__((noinline)) unsigned int poll() {
        TracePluginCallbacks* const callbacks = Device::callbacks();
        unsigned int changed = 0;
        std::uint64_t* cache = m_cache.data();
        const auto compare = [&](std::uint64_t value) {
            if (*cache != value) {
                ++changed;
                *cache = value;
            }
            ++cache;
        };
        for (unsigned int i = 0; i < Device::s_pads; ++i) {
            TracePadState state;
            callbacks->getPadState(i, &state);
            compare(state.value);
        }
        for (unsigned int i = 0; i < Device::s_ports; ++i) {
            TracePortState state;
            callbacks->getPortState(0, i, &state);
            compare(state.value);
            compare(state.inUse);
            compare(state.threadsWaiting);
            compare(state.direction);
            compare(state.outputThreadPc);
            compare(state.details);
            compare(state.shiftRegister);
            compare(state.shiftRegisterValid);
            compare(state.shiftRegisterSize);
            compare(state.shiftRegisterCount);
            compare(state.transferRegister);
            compare(state.transferRegisterFull);
            compare(state.transferRegisterSize);
            compare(state.counter);
            compare(state.timeStamp);
        }
        for (unsigned int i = 0; i < Device::s_threads; ++i) {
            TraceThreadState state;
            callbacks->getThreadState(0, i, &state);
            compare(state.inUse);
            compare(state.waiting);
            compare(state.resourceType);
            compare(state.resourceNumber);
        }
        for (unsigned int i = 0; i < Device::s_clockBlocks; ++i) {
            TraceClockBlockState state;
            callbacks->getClockBlockState(0, i, &state);
            compare(state.inUse);
            compare(state.started);
            compare(state.threadsWaiting);
            compare(state.risingEdge);
            compare(state.fallingEdge);
        }
        for (unsigned int i = 0; i < Device::s_timers; ++i) {
            TraceTimerState state;
            callbacks->getTimerState(0, i, &state);
            compare(state.time);
            compare(state.inUse);
            compare(state.threadsWaiting);
        }
        TraceInstructionState state;
        callbacks->getInstructionState(0, 0, &state);
        compare(state.pc);
        compare(state.thread);
        std::uint64_t mnemonic = 0;
        for (int i = 0; i < 8; ++i)
            mnemonic = mnemonic << 8 | static_cast<unsigned char>(state.mnemonic[i]);
        compare(mnemonic);
        if (!m_all)
            return changed;
        compare(callbacks->getCycleCount());
        // The function of the thread that executed.
        callbacks->getInstructionState(0, 0, &state);
        std::string& function = m_functions[state.thread];
        if (function != state.functionName) {
            ++changed;
            function = state.functionName;
        }
        return changed;
    }

private:
    bool m_all; // cycles and functions too
    std::vector<std::uint64_t> m_cache;
    std::array<std::string, Device::s_threads> m_functions;
};

// ---------------------------------------------------------------- the floor of a busy clock

// The pieces in which a waveform's clocks with changes reach the file: each ends behind a value line, and
// what stands before the line (the end of the last clock, the time line) goes with it.
std::vector<std::string_view> writes(std::string_view clocks) {
    std::vector<std::string_view> pieces;
    std::size_t begin = 0;
    for (std::size_t at = 0; at < clocks.size();) {
        const std::size_t end = clocks.find('\n', at) + 1;
        const char first = clocks[at];
        at = end;
        if (first == 'b' || first == '0' || first == '1') {
            pieces.push_back(clocks.substr(begin, end - begin));
            begin = end;
        }
    }
    return pieces;
}

// The pieces in which clocks without changes reach the file: the stream's buffer by the buffer.
std::vector<std::string_view> buffersOf(std::string_view clocks) {
    std::vector<std::string_view> pieces;
    for (; !clocks.empty(); clocks.remove_prefix(pieces.back().size()))
        pieces.push_back(clocks.substr(0, s_bufferSize));
    return pieces;
}

// A file that takes pieces, and nothing else.
class BareFile {
public:
    explicit BareFile(const std::string& name)
        : m_descriptor(open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600)) {}
    ~BareFile() { close(m_descriptor); }
    BareFile(const BareFile&) = delete;
    BareFile& operator=(const BareFile&) = delete;

    // How long it took.
    Clock::duration take(const std::vector<std::string_view>& pieces) {
        const auto begin = Clock::now();
        for (const std::string_view piece : pieces) {
            if (write(m_descriptor, piece.data(), piece.size()) != static_cast<ssize_t>(piece.size()))
                std::abort();
        }
        return Clock::now() - begin;
    }

private:
    int m_descriptor;
};

// ---------------------------------------------------------------- measuring

// The rounds of one row, in nanoseconds a clock.
class Rounds {
public:
    void add(double plugin, double floor) {
        m_plugin.push_back(plugin);
        m_floor.push_back(floor);
        m_ratio.push_back(plugin / floor);
    }

    // `parts` is what a clock's time is divided by in the column behind it.
    void print(const char* name, unsigned int changes, double parts, const char* floor) {
        const double plugin = median(m_plugin);
        std::printf("%-8s %10u %12.0f %14.2f   %-24s %12.0f %8.2f\n", name, changes, plugin, plugin / parts,
                    floor, median(m_floor), median(m_ratio));
    }

private:
    static double median(std::vector<double>& values) {
        const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        return *middle;
    }

    std::vector<double> m_plugin;
    std::vector<double> m_floor;
    std::vector<double> m_ratio;
};

class Benchmark {
public:
    // With the tracers that poll numbers, or with all: with cycles and functions too.
    explicit Benchmark(bool all) : m_all(all) {
        const std::string image = m_folder.write("image.ze", imageOfCores("stdcore[0] 0 0\n"));
        const std::string arguments = "-ze '" + image + "' -o '" + m_folder.file("wave.vcd") +
                                      "' -pads -ports-detailed -threads -clock-blocks -timers -instructions" +
                                      (all ? " -cycles -functions" : "");
        m_instance = PluginInitialise(Device::callbacks(), arguments.c_str());
        PluginClock(m_instance); // the instructions' first values
    }

    ~Benchmark() { PluginTerminate(m_instance); }

    void play(unsigned int clocks, unsigned int changes) {
        PlainLoop plainLoop(m_all);
        for (unsigned int i = 0; i < clocks; ++i) {
            Device::step(changes);
            PluginClock(m_instance);
            plainLoop.poll();
        }
    }

    void measureIdle() {
        constexpr unsigned int clocks = s_idleClocksOfARound;
        PlainLoop plainLoop(m_all);
        BareFile bare(m_folder.file("bare.vcd"));
        Rounds rounds;
        unsigned int changed = 0;
        for (int round = 0; round < s_rounds; ++round) {
            const auto before = waveformSize();
            const auto begin = Clock::now();
            for (unsigned int i = 0; i < clocks; ++i)
                PluginClock(m_instance);
            const auto middle = Clock::now();
            for (unsigned int i = 0; i < clocks; ++i)
                changed += plainLoop.poll();
            const auto end = Clock::now();
            const std::string written = tail(before);
            const auto writing = bare.take(buffersOf(written));
            rounds.add(nanoseconds(middle - begin) / clocks, nanoseconds(end - middle + writing) / clocks);
        }
        if (changed != 0)
            std::abort();
        rounds.print("idle", 0, Device::s_signals, m_all ? "poll, compare, write" : "poll and compare");
    }

    void measureChanges(const char* name, unsigned int changes) {
        const unsigned int clocks = s_changesOfARound / changes;
        BareFile bare(m_folder.file("bare.vcd"));
        Rounds rounds;
        for (int round = 0; round < s_rounds; ++round) {
            const auto before = waveformSize();
            Clock::duration time{};
            for (unsigned int i = 0; i < clocks; ++i) {
                Device::step(changes);
                const auto begin = Clock::now();
                PluginClock(m_instance);
                time += Clock::now() - begin;
            }

            const std::string written = tail(before);
            rounds.add(nanoseconds(time) / clocks, nanoseconds(bare.take(writes(written))) / clocks);
        }
        rounds.print(name, changes, changes, "bare write of the bytes");
    }

private:
    std::uintmax_t waveformSize() const { return std::filesystem::file_size(m_folder.file("wave.vcd")); }

    // What the waveform has from a place on.
    std::string tail(std::uintmax_t from) const {
        std::ifstream waveform(m_folder.file("wave.vcd"), std::ios::binary);
        waveform.seekg(static_cast<std::streamoff>(from));
        return {std::istreambuf_iterator<char>(waveform), {}};
    }

    bool m_all;
    DeviceFolder m_devices;
    TemporaryFolder m_folder;
    unsigned int m_instance;
};

} // namespace

int main(int argc, char** argv) {
    if (argc == 3) {
        Benchmark(true).play(static_cast<unsigned int>(std::atoi(argv[1])),
                             static_cast<unsigned int>(std::atoi(argv[2])));
        return 0;
    }
    std::printf("%u signals, %zu bits\n", Device::s_signals, sizeof(void*) * 8);
    std::printf("%-8s %10s %12s %14s   %-24s %12s %8s\n", "clock", "changes", "ns/clock", "ns/signal",
                "floor", "ns/clock", "ratio");
    for (const bool all : {false, true}) {
        std::printf("%s\n", all ? "with cycles and functions"
                                : "ports, pads, threads, clock blocks, timers, instructions");
        Benchmark benchmark(all);
        benchmark.measureIdle();
        benchmark.measureChanges("sparse", 10);
        benchmark.measureChanges("busy", 200);
    }
    return 0;
}
