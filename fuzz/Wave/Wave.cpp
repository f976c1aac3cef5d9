// Reads the input as a waveform and converts it as `zetool wave standard` does, for samplers too. What comes
// out has none of the troubles that `zetool wave check` knows, and is converted to itself.

#include "tests/support/TemporaryFolder.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/wave/GtkwaveSession.h"
#include "tools/zetool/wave/StandardBody.h"
#include "tools/zetool/wave/StandardDeclarations.h"
#include "tools/zetool/wave/WaveChecker.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

// Returns how many signals there are.
std::size_t convert(const std::string& from, const std::string& to, bool isForSampling) {
    InputFile input(from);
    VcdSource source(input);
    const VcdHeader header = readVcdHeader(source);
    const WaveSignals all(header);
    const StandardSignals signals(all, isForSampling ? StandardChoice::OneBit : StandardChoice::All);
    const StandardNames names(header, all, signals.isKept(),
                              isForSampling ? StandardNames::Leaf::Whole : StandardNames::Leaf::InScope);
    TimeScale scale = TimeScale::of(header.timescale, header.isOfPlugin());
    if (isForSampling)
        scale = scale.coarse();
    OutputFile output(to, true);
    output.write(standardDeclarations(header, all, signals, names, scale, !isForSampling));
    StandardBody body(header, source, signals, scale, output);
    if (header.isWhole)
        VcdBodyScanner(source, body).scan();
    body.finish();
    output.close();
    std::size_t numKept = 0;
    for (const bool isKept : signals.isKept())
        numKept += isKept;
    return numKept;
}

// Returns how many kinds of trouble a waveform has.
std::size_t check(const std::string& file) {
    InputFile input(file);
    VcdSource source(input);
    const VcdHeader header = readVcdHeader(source);
    const WaveSignals signals(header);
    WaveChecker checker(header, signals, source);
    if (header.isWhole)
        VcdBodyScanner(source, checker).scan();
    checker.finish();
    GtkwaveSession(header, signals, "a.vcd", "a.gtkw", "a.filters");
    std::size_t numTroubles = 0;
    for (const TroubleRow& row : s_troubleRows)
        numTroubles += checker.troubles()[row.trouble].count > 0;
    return numTroubles;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryFolder s_folder;
    const std::string input = s_folder.write("a.vcd", {reinterpret_cast<const char*>(data), size});
    const std::string once = s_folder.file("once.vcd");
    const std::string twice = s_folder.file("twice.vcd");
    check(input);
    try {
        convert(input, twice, true);
        if (convert(input, once, false) == 0)
            return 0; // without a signal there is nothing to say whose file it is
    } catch (const ToolFailure&) {
        return 0; // a time that 64 bits don't hold
    }
    require(check(once) == 0);
    convert(once, twice, false);
    require(readFile(once) == readFile(twice));
    return 0;
}
