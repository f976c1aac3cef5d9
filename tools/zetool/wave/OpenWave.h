#pragma once

#include "tools/zetool/InputFile.h"
#include "tools/zetool/wave/VcdBody.h"
#include "tools/zetool/wave/VcdHeader.h"
#include "tools/zetool/wave/VcdSource.h"
#include "tools/zetool/wave/WaveSignals.h"

#include <string>

// A waveform whose declarations are read, and whose body waits for one that handles it. Each command makes
// one of the file that it is given.
struct OpenWave {
    // Throws a ToolFailure for what isn't read; `-` is standard input.
    explicit OpenWave(const std::string& path) : input(path) {}

    OpenWave(const OpenWave&) = delete;
    OpenWave& operator=(const OpenWave&) = delete;

    // Lets a handler of VcdBodyScanner have the body, and then its end. Behind declarations that aren't whole
    // there is only the end. Once.
    template<typename Handler>
    void scan(Handler& handler) {
        if (header.isWhole)
            VcdBodyScanner(source, handler).scan();
        handler.finish();
    }

    InputFile input;
    VcdSource source{input};
    const VcdHeader header = readVcdHeader(source);
    const WaveSignals signals{header};
};
