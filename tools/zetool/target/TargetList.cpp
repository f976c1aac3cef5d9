#include "tools/zetool/target/TargetList.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/target/TargetPaths.h"
#include "tools/zetool/TextTable.h"

namespace {

void writeTables(OutputFile& output, const TargetPaths& paths) {
    TextTable settings({{"Variable"}, {"Value"}, {"State"}});
    for (const TargetPaths::Setting& setting : paths.settings())
        settings.add({setting.variable, setting.value, setting.state});
    settings.write(output);
    output.write("\n");
    TextTable files({{"Kind"}, {"Name"}, {"File"}, {"Note"}});
    for (const TargetPaths::NamedFile& file : paths.files())
        files.add({file.kind, file.name, file.file, file.note});
    files.write(output);
}

void writeObject(OutputFile& output, const TargetPaths& paths) {
    Json object = jsonObject("targetList", 1);
    Json& settings = object["settings"] = Json::array();
    for (const TargetPaths::Setting& setting : paths.settings()) {
        Json entry = Json::object();
        entry["variable"] = setting.variable;
        entry["isSet"] = setting.isSet;
        entry["value"] = jsonText(setting.value);
        entry["state"] = jsonText(setting.state);
        settings.push_back(std::move(entry));
    }
    Json& files = object["files"] = Json::array();
    for (const TargetPaths::NamedFile& file : paths.files()) {
        Json entry = Json::object();
        entry["kind"] = file.kind;
        entry["name"] = jsonText(file.name);
        entry["file"] = jsonText(file.file);
        entry["note"] = jsonText(file.note);
        files.push_back(std::move(entry));
    }
    writeJson(output, object);
}

} // namespace

int targetList(const Invocation& invocation) {
    const TargetPaths paths;
    OutputFile output = resultFile(invocation);
    if (invocation.has("json"))
        writeObject(output, paths);
    else
        writeTables(output, paths);
    output.close();
    return s_fine;
}
