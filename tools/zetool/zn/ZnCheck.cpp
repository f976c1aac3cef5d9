#include "tools/zetool/zn/ZnCheck.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/WholeFile.h"

namespace {

void writeObject(OutputFile& output, const NetworkReading& reading) {
    Json object = jsonObject("znCheck", 1);
    object["error"] = reading.failure ? jsonText(reading.failure->error) : Json(nullptr);
    object["warnings"] = Json::array();
    for (const std::string& warning : reading.warningList())
        object["warnings"].push_back(jsonText(warning));
    writeJson(output, object);
}

} // namespace

int znCheck(const Invocation& invocation) {
    const std::string file = shownName(invocation.value("FILE"));
    const NetworkReading reading(file, readWhole(invocation.value("FILE")));
    reading.printWarnings();
    if (reading.failure)
        printLines(reading.failure->message);
    OutputFile output = resultFile(invocation);
    if (invocation.has("json"))
        writeObject(output, reading);
    else
        output.write(file + ": the network " + (reading.failure ? "doesn't load" : "loads") +
                     "; warnings: " + std::to_string(reading.warningList().size()) + "\n");
    output.close();
    return reading.failure || !reading.warnings.empty() ? s_foundWrong : s_fine;
}
