// Reads the input as a waveform and converts it as `zetool wave standard` does, for samplers too. What comes
// out has none of the troubles that `zetool wave check` knows, and is converted to itself.

#include "tests/support/TemporaryFolder.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/wave/GtkwaveSession.h"
#include "tools/zetool/wave/StandardConversion.h"
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
std::size_t convert(const std::string& from, const std::string& to, StandardReader reader) {
    OpenWave wave(from);
    StandardConversion conversion(wave, reader);
    OutputFile output(to, true);
    conversion.write(output);
    output.close();
    std::size_t numKept = 0;
    for (const bool isKept : conversion.signals().isKept())
        numKept += isKept;
    return numKept;
}

// Returns how many kinds of trouble a waveform has.
std::size_t check(const std::string& file) {
    OpenWave wave(file);
    WaveChecker checker(wave.header, wave.signals, wave.source);
    wave.scan(checker);
    GtkwaveSession(wave.header, wave.signals, "a.vcd", "a.gtkw", "a.filters");
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
        convert(input, twice, StandardReader::Sampler);
        if (convert(input, once, StandardReader::Viewer) == 0)
            return 0; // without a signal there is nothing to say whose file it is
    } catch (const ToolFailure&) {
        return 0; // a time that 64 bits don't hold
    }
    require(check(once) == 0);
    convert(once, twice, StandardReader::Viewer);
    require(readFile(once) == readFile(twice));
    return 0;
}
