#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/wave/VcdText.h"
#include "tests/tools/zetool/wave/WaveSamples.h"
#include "tests/tools/zetool/ZetoolProgram.h"

// What the readers that people have make of `zetool wave standard` and `zetool wave gtkw`.
namespace {

constexpr std::uint64_t s_frequencies[] = {10, 100, 333, 400, 500, 600, 700};

std::string binary(std::uint64_t value, int width) {
    std::string digits;
    for (int bit = width - 1; bit >= 0; --bit)
        digits += value >> bit & 1 ? '1' : '0';
    return digits;
}

// A run that changes something of every kind, past 2^31 clocks too.
std::string longRun(std::uint64_t megahertz) {
    SampleWave wave = fullSample();
    char period[32];
    std::snprintf(period, sizeof period, "%f ns", 1000.0 / static_cast<double>(megahertz));
    wave.timescale = period;
    std::string text = wave.start();
    std::uint64_t state = 1;
    std::uint32_t clock = 0;
    for (int step = 0; step < 200; ++step) {
        state = state * 6364136223846793005u + 1442695040888963407u;
        clock += step == 120 ? 2'000'000'000u : static_cast<std::uint32_t>(state >> 44) % 1000 + 1;
        text += "#" + std::to_string(static_cast<std::int32_t>(clock)) + "\n";
        text += "b" + binary(clock, 32) + " _00\n";
        text += "b" + binary(state >> 20, 4) + " po00a1\n";
        text += "b" + binary(state, 64) + " ti00a0\n";
        text += std::to_string(state >> 33 & 3) + "po00b0\n";
        text += std::to_string(state >> 35 & 1) + "paa0\n";
        if (step > 50)
            text += "b" + binary(0x6d61696e2e300000, 64) + " fu00a0\n";
        text += "\n";
    }
    return text + "#" + std::to_string(static_cast<std::int32_t>(clock)) + "\n";
}

// The lines of a reader, "NAME TIME VALUE", as changes.
VcdText asChanges(const VcdText& declared, const std::string& lines, bool byIdentifier) {
    VcdText result("");
    result.widths = declared.widths;
    std::istringstream stream(lines);
    for (std::string name, time, value; stream >> name >> time >> value;) {
        if (!byIdentifier)
            result.add(name, time, value);
        else
            for (const std::string& path : declared.identifiers.at(name))
                result.add(path, time, value);
    }
    return result;
}

class Readers : public testing::Test {
protected:
    // Converts a.vcd to s.vcd and gives it read.
    VcdText convert(const std::string& text, const std::string& options = "") {
        m_folder.write("a.vcd", text);
        const ChildResult result = shell("zetool wave standard --force -o s.vcd a.vcd " + options);
        EXPECT_EQ(result.exitStatus, 0) << result.error;
        return VcdText(m_folder.read("s.vcd"));
    }

    ChildResult shell(const std::string& line) { return zetoolShell(m_folder.path(), line); }

    const TemporaryFolder m_folder;
    const std::string m_readers = ZETOOL_READERS "/";
};

TEST_F(Readers, GtkwavesConverterReadsEqualValuesAtRightTimes) {
    for (const std::uint64_t megahertz : s_frequencies) {
        const VcdText expected = convert(longRun(megahertz));
        const ChildResult result = shell("vcd2fst s.vcd s.fst && fst2vcd s.fst -o back.vcd");
        ASSERT_EQ(result.exitStatus, 0) << result.error;
        const VcdText back(m_folder.read("back.vcd"));
        EXPECT_EQ(back.timescale, expected.timescale);
        EXPECT_EQ(back.widths, expected.widths);
        EXPECT_EQ(back.changes, expected.changes) << megahertz;
    }
}

TEST_F(Readers, TimesAreThoseOfTheClocks) {
    const std::map<std::string, std::uint64_t> units = {
        {"100ns", 100'000'000}, {"10ns", 10'000'000}, {"1ns", 1'000'000}, {"100ps", 100'000}, {"1fs", 1}};
    for (const std::uint64_t megahertz : s_frequencies) {
        const VcdText read = convert(longRun(megahertz));
        const auto& changes = read.changes.at("stdcore_0.Cycles.CYCLES");
        ASSERT_EQ(changes.size(), 201u);
        for (const std::string& change : changes) {
            std::istringstream words(change);
            std::uint64_t time = 0;
            std::string value;
            words >> time >> value;
            const std::uint64_t clock = std::stoull(value, nullptr, 2);
            EXPECT_EQ(time * units.at(read.timescale), (clock * 1'000'000'000 + megahertz / 2) / megahertz);
        }
    }
}

TEST_F(Readers, VcdParserReadsEqualValuesAtRightTimes) {
    for (const std::uint64_t megahertz : s_frequencies) {
        const VcdText expected = convert(longRun(megahertz));
        const ChildResult result =
            shell("NODE_PATH=" ZETOOL_NODE_MODULES " node " + m_readers + "read-with-parser.js s.vcd");
        ASSERT_EQ(result.exitStatus, 0) << result.error;
        EXPECT_EQ(asChanges(expected, result.output, false).changes, expected.changes) << megahertz;
    }
}

TEST_F(Readers, VcdStreamReadsEqualValuesAtRightTimes) {
    for (const std::uint64_t megahertz : s_frequencies) {
        const VcdText expected = convert(longRun(megahertz));
        const ChildResult result =
            shell("NODE_PATH=" ZETOOL_NODE_MODULES " node " + m_readers + "read-with-stream.js s.vcd");
        ASSERT_EQ(result.exitStatus, 0) << result.error;
        EXPECT_EQ(asChanges(expected, result.output, true).changes, expected.changes) << megahertz;
    }
}

// A pad that sends a text at 1 Mbaud, eight bits without parity, from a clock of these MHz.
std::string uartRun(const std::string& text, unsigned int megahertz) {
    SampleWave wave;
    char period[32];
    std::snprintf(period, sizeof period, "%f ns", 1000.0 / megahertz);
    wave.timescale = period;
    wave.pads = {"Pad0", "Pad1"};
    wave.cores = fullSample().cores;
    std::string result = wave.start();
    unsigned int clock = 10;
    char last = '0';
    const auto put = [&](char level, unsigned int numBits) {
        if (level != last)
            result += "#" + std::to_string(clock) + "\n" + level + "paa1\n\n";
        last = level;
        clock += numBits * megahertz;
    };
    put('1', 20);
    for (const char c : text) {
        put('0', 1);
        for (int bit = 0; bit < 8; ++bit)
            put(c >> bit & 1 ? '1' : '0', 1);
        put('1', 3);
    }
    return result + "#" + std::to_string(clock + 100) + "\n";
}

TEST_F(Readers, SigrokDecodesTheBytesThatAPadSends) {
    for (const unsigned int megahertz : {100u, 333u, 400u}) {
        convert(uartRun("Hi!\n", megahertz), "--for pulseview");
        const ChildResult result =
            shell("sigrok-cli -i s.vcd -P uart:rx=Pad1:baudrate=1000000:format=ascii -A uart=rx-data");
        EXPECT_EQ(result.exitStatus, 0) << result.error;
        EXPECT_EQ(result.output, "uart-1: H\nuart-1: i\nuart-1: !\nuart-1: [0A]\n") << megahertz;
    }
}

// The lines of a session that show something, with the paths of filters as they stand in this folder.
std::string traceLines(const std::string& text, const std::string& folder) {
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.front() == '[' || line.front() == '*')
            continue;
        const auto at = line.front() == '^' ? line.find(folder + "/") : std::string::npos;
        if (at != std::string::npos)
            line.erase(at, folder.size() + 1);
        result += line + "\n";
    }
    return result;
}

// Opens a session, lets GTKWave print the values of all traces at a time, and write the session again in
// place.
constexpr const char* s_script = "gtkwave::setMarker MARKER\n"
                                 "for {set i 0} {$i < [gtkwave::getTotalNumTraces]} {incr i} {\n"
                                 "    puts \"[gtkwave::getTraceNameFromIndex $i] = "
                                 "[gtkwave::getTraceValueAtMarkerFromIndex $i]\"\n"
                                 "}\n"
                                 "gtkwave::/File/Write_Save_File\n"
                                 "exit\n";

TEST_F(Readers, GtkwaveWritesEveryTraceLineOfASessionAgain) {
    SampleWave wave = fullSample();
    wave.cores.push_back(wave.cores[0]);
    wave.cores[1].name = "stdcore[1]";
    wave.cores[1].tag = "01";
    for (TracedCore& core : wave.cores)
        for (int function = 0; function < 2000; ++function)
            core.functions.emplace_back("a_function_with_a_long_name_" + std::to_string(function),
                                        "a_fu." + std::to_string(function % 1000));
    m_folder.write("first/a.vcd", wave.start() + "#1\n1po00b0\n\n#9\n");
    m_folder.write("script", s_script);
    for (const std::string name : {"first", "moved"}) {
        if (name == "moved")
            std::filesystem::rename(m_folder.file("first"), m_folder.file("moved"));
        else
            ASSERT_EQ(shell("zetool wave gtkw first/a.vcd").exitStatus, 0);
        const std::string written = m_folder.read(name + "/a.gtkw");
        m_folder.write(name + "/b.gtkw", written);
        const ChildResult result = shell("sed -i s/MARKER/1/ script; " + m_readers +
                                         "with-display gtkwave -S script " + name + "/b.gtkw");
        EXPECT_EQ(result.exitStatus, 0) << result.error;
        const std::string again = m_folder.read(name + "/b.gtkw");
        EXPECT_THAT(again, testing::HasSubstr("[dumpfile] \"" + m_folder.file(name + "/a.vcd") + "\""));
        EXPECT_EQ(traceLines(again, m_folder.file(name)), traceLines(written, m_folder.file(name)));
    }
}

TEST_F(Readers, GtkwaveWritesTheSessionOfAStandardFileAgain) {
    convert(fullSample().start() + "#1\n1po00b0\n\n#9\n");
    m_folder.write("script", s_script);
    ASSERT_EQ(shell("zetool wave gtkw s.vcd").exitStatus, 0);
    const std::string written = m_folder.read("s.gtkw");
    EXPECT_THAT(written,
                testing::HasSubstr("+{uart_tx (ZS1_PORT_1A)} stdcore_0.Ports.ZS1_PORT_1A.ZS1_PORT_1A\n"));
    const ChildResult result =
        shell("sed -i s/MARKER/1/ script; " + m_readers + "with-display gtkwave -S script s.gtkw");
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_EQ(traceLines(m_folder.read("s.gtkw"), m_folder.path()), traceLines(written, m_folder.path()));
}

TEST_F(Readers, GtkwaveShowsTextsAndUserNames) {
    SampleWave wave;
    wave.cores.emplace_back();
    TracedCore& core = wave.cores[0];
    core.ports = {{"ZS1_PORT_1A", 1, "uart_tx"}};
    core.numThreads = 1;
    core.functions = {{"main", "main.0"}, {"a_function_of_some_length", "a_fu.0"}};
    core.numFunctionThreads = 1;
    m_folder.write("a.vcd", wave.start() + "#1\n1po00b0\nb" + binary(0x54494d4552202020, 64) + " t00c0\nb" +
                                binary(0x615f66752e300000, 64) + " fu00a0\n\n#9\n");
    m_folder.write("script", s_script);
    ASSERT_EQ(shell("zetool wave gtkw a.vcd").exitStatus, 0);
    const ChildResult result =
        shell("sed -i s/MARKER/2/ script; " + m_readers + "with-display gtkwave -S script a.gtkw");
    EXPECT_THAT(result.output, testing::HasSubstr("\nuart_tx (ZS1_PORT_1A) = 0\n"));
    EXPECT_THAT(result.output,
                testing::HasSubstr("\nuart_tx_inuse (ZS1_PORT_1A_inuse) = The port is in use\n"));
    EXPECT_THAT(result.output, testing::HasSubstr("_waitingResourceType[63:0] = TIMER\n"));
    EXPECT_THAT(result.output, testing::HasSubstr("_Functions_Thread0[63:0] = a_function_of_some_length\n"));
}

} // namespace
