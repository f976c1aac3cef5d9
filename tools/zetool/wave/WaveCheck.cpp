#include "tools/zetool/wave/WaveCheck.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/wave/OpenWave.h"
#include "tools/zetool/wave/WaveChecker.h"

namespace {

std::string lastStepText(const VcdHeader& header, const WaveChecker& checker) {
    if (!header.isWhole)
        return "there are no steps";
    if (!checker.hasStep())
        return checker.lastStepIsWhole() ? "there are no steps" : "the values at the start aren't whole";
    return "the last step, at time " + std::to_string(checker.lastTime()) + " in line " +
           std::to_string(checker.lastStepLine()) +
           (checker.lastStepIsWhole() ? ", is whole" : ", isn't whole");
}

bool writeText(OutputFile& output, const std::string& file, const VcdHeader& header,
               const WaveChecker& checker) {
    bool any = false;
    for (const TroubleRow& row : s_troubleRows) {
        const BodyFault& fault = checker.troubles()[row.trouble];
        if (fault.count == 0)
            continue;
        any = true;
        std::string line = file + ":" + std::to_string(fault.firstLine) + ": " + row.text;
        line += fault.firstText.empty() ? "" : ": " + fault.firstText;
        line += fault.count > 1 ? " (the first of " + std::to_string(fault.count) + ")" : "";
        output.write(line + "\n    " + row.readers + "\n");
    }
    output.write(file + ": " + lastStepText(header, checker) + "\n");
    return any;
}

bool writeObject(OutputFile& output, const VcdHeader& header, const WaveChecker& checker) {
    Json object = jsonObject("waveCheck", 1);
    Json& list = object["troubles"] = Json::array();
    for (const TroubleRow& row : s_troubleRows) {
        const BodyFault& fault = checker.troubles()[row.trouble];
        if (fault.count == 0)
            continue;
        Json trouble = Json::object();
        trouble["trouble"] = row.key;
        trouble["line"] = fault.firstLine;
        trouble["count"] = fault.count;
        trouble["text"] = row.text;
        trouble["first"] = jsonText(fault.firstText);
        trouble["readers"] = row.readers;
        list.push_back(std::move(trouble));
    }
    const bool any = !list.empty();
    object["declarationsAreWhole"] = header.isWhole;
    object["lastStep"] = nullptr;
    if (checker.hasStep()) {
        Json& step = object["lastStep"] = Json::object();
        step["time"] = checker.lastTime();
        step["line"] = checker.lastStepLine();
        step["isWhole"] = checker.lastStepIsWhole();
    }
    writeJson(output, object);
    return any;
}

} // namespace

int waveCheck(const Invocation& invocation) {
    const std::string& path = invocation.value("FILE");
    OpenWave wave(path);
    WaveChecker checker(wave.header, wave.signals, wave.source);
    wave.scan(checker);

    OutputFile output = resultFile(invocation);
    const bool any = invocation.has("json") ? writeObject(output, wave.header, checker)
                                            : writeText(output, shownName(path), wave.header, checker);
    output.close();
    return any ? s_foundWrong : s_fine;
}
