#pragma once

#include "tools/zetool/wave/OpenWave.h"
#include "tools/zetool/wave/StandardBody.h"
#include "tools/zetool/wave/StandardNames.h"
#include "tools/zetool/wave/StandardSignals.h"
#include "tools/zetool/wave/TimeScale.h"

#include <optional>

// Whom a standard waveform is for: any viewer, or one that samples one-bit signals.
enum class StandardReader { Viewer, Sampler };

// A waveform on its way to what IEEE 1364 has. Whoever converts makes it of an open waveform, which outlives
// it, writes once, and then asks what couldn't be carried over.
class StandardConversion {
public:
    StandardConversion(OpenWave& wave, StandardReader reader);

    // Declarations and body. Throws a ToolFailure for a time that 64 bits don't hold.
    void write(OutputFile& output);

    const StandardSignals& signals() const { return m_signals; }
    const TimeScale& scale() const { return m_scale; }

    // What was written; there behind `write`.
    const StandardBody& body() const { return *m_body; }

private:
    OpenWave& m_wave;
    StandardReader m_reader;
    StandardSignals m_signals;
    StandardNames m_names;
    TimeScale m_scale;
    std::optional<StandardBody> m_body;
};
