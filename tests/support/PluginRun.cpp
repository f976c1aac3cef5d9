#include "tests/support/PluginRun.h"

#include "Plugins/WavePlugin/WavePlugin.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/SampleImage.h"
#include "tests/support/TemporaryFolder.h"

#include <string_view>

namespace {

// The text behind the first mention of a mark; nothing when there is none.
std::string behind(const std::string& text, std::string_view mark) {
    const std::size_t at = text.find(mark);
    return at == std::string::npos ? std::string() : text.substr(at + mark.size());
}

} // namespace

std::string PluginResult::values() const {
    return behind(waveform, "\n$enddefinitions $end\n\n");
}

std::string PluginResult::declarations() const {
    const std::string text = behind(waveform, "</Structure>\n$end\n\n");
    return text.substr(0, text.find("\n$enddefinitions $end\n\n"));
}

std::string PluginResult::clocks() const {
    const std::string text = values();
    const std::string_view blockEnd = "$end\n\n";
    const std::size_t at = text.rfind(blockEnd);
    return at == std::string::npos ? std::string() : text.substr(at + blockEnd.size());
}

PluginResult runPlugin(StubSimulator& simulator, const std::string& options,
                       const std::function<void(unsigned int instance)>& play, const std::string& cores) {
    const DeviceFolder devices;
    const TemporaryFolder folder;
    const std::string ze = folder.write("image.ze", imageOfCores(cores));
    const std::string arguments = "-ze '" + ze + "' -o '" + folder.file("wave.vcd") + "' " + options;
    PluginResult result;
    result.process = runInChild([&] {
        const unsigned int instance = PluginInitialise(simulator.callbacks(), arguments.c_str());
        if (play)
            play(instance);
    });
    result.waveform = folder.read("wave.vcd");
    return result;
}
