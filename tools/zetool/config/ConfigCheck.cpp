#include "tools/zetool/config/ConfigCheck.h"

#include "infr_libs/ZNLoader/NodeConfig.h"
#include "tools/zetool/Command.h"
#include "tools/zetool/config/ConfigSchemaWalk.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/WholeFile.h"

#include <functional>
#include <optional>

namespace {

// What a reader stops at.
void collect(const std::string& file, std::vector<SchemaFault>& faults, const std::function<void()>& read) {
    if (const std::optional<ReadFailure> failure = failureOf(file, read))
        faults.push_back(faultOf(file, failure->message));
}

std::vector<SchemaFault> faultsOf(const Invocation& invocation) {
    const std::string& path = invocation.value("FILE");
    const std::string file = shownName(path);
    const std::string text = readWhole(path);
    std::vector<SchemaFault> faults;
    collect(file, faults, [&] {
        const Document document(file, text);
        faults = SchemaWalk().faults(file, document.root());
    });
    // Reads the file itself, and stops at faults that are told above.
    if (faults.empty() && invocation.has("node"))
        collect(file, faults, [&] { const NodeConfig config(path.c_str()); });
    return faults;
}

} // namespace

int configCheck(const Invocation& invocation) {
    if (invocation.has("node") && invocation.value("FILE") == "-")
        throw ToolFailure("config check: --node needs a file, not standard input");
    const std::vector<SchemaFault> faults = faultsOf(invocation);
    for (const SchemaFault& fault : faults)
        printMessage(fault.message);
    OutputFile output = resultFile(invocation);
    if (invocation.has("json")) {
        Json object = jsonObject("configCheck", 1);
        object["isValid"] = faults.empty();
        Json& list = object["faults"] = Json::array();
        for (const SchemaFault& fault : faults) {
            Json row = Json::object();
            row["line"] = fault.line > 0 ? Json(fault.line) : Json();
            row["text"] = jsonText(fault.text);
            list.push_back(std::move(row));
        }
        writeJson(output, object);
    } else {
        output.write(shownName(invocation.value("FILE")) + ": " +
                     (faults.empty() ? "no faults" : "faults: " + std::to_string(faults.size())) + "\n");
    }
    output.close();
    return faults.empty() ? s_fine : s_foundWrong;
}
