#include "tools/zetool/zn/ZnShow.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/WholeFile.h"
#include "tools/zetool/zn/NetworkJson.h"
#include "tools/zetool/zn/NetworkText.h"

namespace {

// A failure is a result here like any other: standard error stays free for what the loader itself writes.
int showJson(const Invocation& invocation) {
    const NetworkReading reading(invocation.value("FILE"));
    OutputFile output = resultFile(invocation);
    JsonStream json(output);
    json.beginObject();
    json.add("type", "zn");
    json.add("version", 1);
    if (reading.failure) {
        json.add("error", jsonText(reading.failure->error));
        json.add("warnings", linesJson(reading.warnings));
    } else {
        writeNetwork(json, *reading.network, reading.warnings,
                     invocation.has("no-users") ? Users::Summed : Users::Listed);
    }
    json.end();
    output.close();
    return reading.failure ? s_foundWrong : s_fine;
}

} // namespace

int znShow(const Invocation& invocation) {
    if (invocation.has("json"))
        return showJson(invocation);
    const std::string& file = invocation.value("FILE");
    const std::unique_ptr<ZNLoader> network = loadNetwork(shownName(file), readWhole(file));
    if (!network)
        return s_foundWrong;
    OutputFile output = resultFile(invocation);
    writeNetworkText(output, *network, !invocation.has("no-users"));
    output.close();
    return s_fine;
}
