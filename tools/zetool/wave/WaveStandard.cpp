#include "tools/zetool/wave/WaveStandard.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/wave/StandardBody.h"
#include "tools/zetool/wave/StandardDeclarations.h"
#include "tools/zetool/wave/WaveNotes.h"

int waveStandard(const Invocation& invocation) {
    const std::string& path = invocation.value("FILE");
    const bool isForSampling = invocation.value("for") == "pulseview";
    InputFile input(path);
    VcdSource source(input);
    const VcdHeader header = readVcdHeader(source);
    const WaveSignals waveSignals(header);
    const StandardSignals signals(waveSignals, isForSampling ? StandardChoice::OneBit : StandardChoice::All);
    const StandardNames names(header, waveSignals, signals.isKept(),
                              isForSampling ? StandardNames::Leaf::Whole : StandardNames::Leaf::InScope);
    TimeScale scale = TimeScale::of(header.timescale, header.isOfPlugin());
    if (isForSampling)
        scale = scale.coarse();

    OutputFile output = resultFile(invocation);
    // A viewer that samples reads no structure document.
    output.write(standardDeclarations(header, waveSignals, signals, names, scale, !isForSampling));
    StandardBody body(header, source, signals, scale, output);
    if (header.isWhole)
        VcdBodyScanner(source, body).scan();
    body.finish();
    output.close();

    WaveNotes notes(path);
    notes.addHeader(header, waveSignals);
    if (!scale.isUsable())
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
                               std::to_string(waveSignals.all().size()) +
                               " signals are left out: such viewers take one-bit signals, at most " +
                               std::to_string(StandardSignals::s_mostChannels));
    return notes.any() ? s_foundWrong : s_fine;
}
