#include "tools/zetool/target/TargetFind.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/target/TargetPaths.h"
#include "tools/zetool/TextTable.h"

namespace {

using Files = std::vector<TargetPaths::NamedFile>;

void writeTable(OutputFile& output, const Files& files) {
    TextTable table({{"Kind"}, {"File"}, {"Note"}});
    for (const TargetPaths::NamedFile& file : files)
        table.add({file.kind, file.file, file.note});
    table.write(output);
}

void writeObject(OutputFile& output, const std::string& name, const Files& files) {
    Json object = jsonObject("targetFind", 1);
    object["name"] = jsonText(name);
    Json& list = object["files"] = Json::array();
    for (const TargetPaths::NamedFile& file : files) {
        Json entry = Json::object();
        entry["kind"] = file.kind;
        entry["file"] = jsonText(file.file);
        entry["note"] = jsonText(file.note);
        list.push_back(std::move(entry));
    }
    writeJson(output, object);
}

} // namespace

int targetFind(const Invocation& invocation) {
    const std::string& name = invocation.value("NAME");
    // Every folder would have it.
    if (name.empty())
        throw ToolFailure("target find: the name is empty");
    const Files files = TargetPaths().find(name);
    OutputFile output = resultFile(invocation);
    if (invocation.has("json"))
        writeObject(output, name, files);
    else if (!files.empty())
        writeTable(output, files);
    output.close();
    if (!files.empty())
        return s_fine;
    printMessage("cannot find " + name);
    return s_foundWrong;
}
