#include "tools/zetool/elf/ElfCheck.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/elf/ElfReading.h"
#include "tools/zetool/elf/ElfRules.h"
#include "tools/zetool/elf/ElfTableRules.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/WholeFile.h"

namespace {

// The library's messages first, then what the tool finds by itself.
std::vector<ElfFault> faultsOf(const ElfView& view) {
    if (!view.refusal().empty())
        return {{"refused", view.refusal()}};
    std::vector<ElfFault> faults;
    ElfReading reading(view);
    if (reading.fault())
        faults.push_back(*reading.fault());
    if (const std::optional<ElfFault> fault = reading.check())
        faults.push_back(*fault);
    faults.insert(faults.end(), view.faults().begin(), view.faults().end());
    addHeaderFaults(view, faults);
    addSegmentFaults(view, faults);
    addSectionFaults(view, faults);
    addOverlaps(view, faults);
    addSymbolFaults(view, !reading.handler(), faults);
    addRelocationFaults(view, faults);
    if (reading.handler())
        addNameFaults(view, *reading.handler(), faults);
    return faults;
}

void writeText(OutputFile& output, const std::string& file, const std::vector<ElfFault>& faults) {
    for (const ElfFault& fault : faults)
        output.write(file + ": " + fault.line() + "\n");
    if (faults.empty())
        output.write(file + ": nothing is wrong\n");
}

void writeObject(OutputFile& output, const std::vector<ElfFault>& faults) {
    Json object = jsonObject("elfCheck", 1);
    Json& list = object["faults"] = Json::array();
    for (const ElfFault& fault : faults) {
        Json entry = Json::object();
        entry["fault"] = fault.fault;
        entry["text"] = jsonText(fault.text);
        entry["count"] = fault.count;
        list.push_back(std::move(entry));
    }
    writeJson(output, object);
}

} // namespace

int elfCheck(const Invocation& invocation) {
    const std::string& file = invocation.value("FILE");
    const std::vector<ElfFault> faults = faultsOf(ElfView(readWhole(file)));
    OutputFile output = resultFile(invocation);
    if (invocation.has("json"))
        writeObject(output, faults);
    else
        writeText(output, shownName(file), faults);
    output.close();
    return faults.empty() ? s_fine : s_foundWrong;
}
