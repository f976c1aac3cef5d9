#include "tools/zetool/image/ImageCheck.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/image/ImageChecker.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"

namespace {

const char* keyOf(FindingKind kind) {
    return s_findingRows[static_cast<std::size_t>(kind)].key;
}

std::string counted(std::uint64_t number, const std::string& what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

// The findings as messages; gives their number.
std::uint64_t printFindings(const std::string& file, const ImageFindings& findings) {
    std::uint64_t number = findings.all().size();
    for (const Finding& finding : findings.all())
        printMessage(file, finding.text);
    for (const FindingRow& row : s_findingRows) {
        const std::uint64_t numDropped = findings.numDropped(row.kind);
        number += numDropped;
        if (numDropped > 0)
            printMessage(file, std::to_string(numDropped) + " more of the kind " + row.key);
    }
    return number;
}

void writeObject(OutputFile& output, const ImageChecker& checker) {
    const ImageFindings& findings = checker.findings();
    Json object = jsonObject("imageCheck", 1);
    object["numSectors"] = checker.numSectors();
    Json& list = object["findings"] = Json::array();
    for (const Finding& finding : findings.all()) {
        Json row = Json::object();
        row["kind"] = keyOf(finding.kind);
        row["sector"] = finding.sector ? Json(*finding.sector) : Json(nullptr);
        row["text"] = jsonText(finding.text);
        list.push_back(std::move(row));
    }
    Json& dropped = object["dropped"] = Json::array();
    for (const FindingRow& row : s_findingRows)
        if (findings.numDropped(row.kind) > 0)
            dropped.push_back({{"kind", row.key}, {"count", findings.numDropped(row.kind)}});
    writeJson(output, object);
}

} // namespace

int imageCheck(const Invocation& invocation) {
    const std::string& path = invocation.value("FILE");
    const SeekableFile file(path);
    ImageChecker checker(file);
    checker.check();
    const std::uint64_t number = printFindings(path, checker.findings());
    OutputFile output = resultFile(invocation);
    if (invocation.has("json"))
        writeObject(output, checker);
    else
        output.write(shownName(path) + ": " + counted(checker.numSectors(), "sector") + ", " +
                     (number == 0 ? "nothing found" : counted(number, "finding")) + "\n");
    output.close();
    return number > 0 ? s_foundWrong : s_fine;
}
