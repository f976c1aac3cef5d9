#include "tools/zetool/wave/WaveStandard.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/wave/StandardConversion.h"
#include "tools/zetool/wave/WaveNotes.h"

int waveStandard(const Invocation& invocation) {
    const std::string& path = invocation.value("FILE");
    OpenWave wave(path);
    StandardConversion conversion(wave, invocation.value("for") == "pulseview" ? StandardReader::Sampler
                                                                               : StandardReader::Viewer);
    OutputFile output = resultFile(invocation);
    conversion.write(output);
    output.close();

    const VcdHeader& header = wave.header;
    const StandardSignals& signals = conversion.signals();
    const StandardBody& body = conversion.body();
    WaveNotes notes(path);
    notes.addHeader(header, wave.signals);
    if (!conversion.scale().isUsable())
        notes.add(header.timescaleLine, "no usable timescale; times are counted in 1 ns");
    if (signals.numTexts() > 0)
        notes.add(header.lastLine, std::to_string(signals.numTexts()) +
                                       " signals of type string are left out: IEEE 1364 has no texts");
    notes.add(body.unknownIdentifiers, "a value of a signal that isn't declared is left out");
    notes.add(body.badTimes, "a time that is no number is passed over");
    notes.add(body.fallingTimes, "time falls; its values join the step before");
    notes.add(body.badValues, "a value that isn't one of 0, 1, x and z");
    notes.add(body.unknownWords, "an unknown keyword is passed over");
    if (body.lostLastStep())
        notes.add(body.lostStepLine(), "the file ends within the step that begins here; it is left out");
    if (signals.numLeftOut() > 0)
        printMessage(path, std::to_string(signals.numLeftOut()) + " of " +
                               std::to_string(wave.signals.all().size()) +
                               " signals are left out: such viewers take one-bit signals, at most " +
                               std::to_string(StandardSignals::s_mostChannels));
    return notes.any() ? s_foundWrong : s_fine;
}
