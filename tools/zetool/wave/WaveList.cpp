#include "tools/zetool/wave/WaveList.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Json.h"
#include "tools/zetool/Result.h"
#include "tools/zetool/TextTable.h"
#include "tools/zetool/wave/OpenWave.h"
#include "tools/zetool/wave/WaveNotes.h"

namespace {

// Core, category and group with slashes between; or the scopes of another tool's file.
std::string placeText(const VcdHeader& header, const WaveSignal& signal) {
    std::string text;
    for (std::size_t scope = signal.variable->scope; scope != 0; scope = header.scopes[scope].parent)
        text = header.scopes[scope].name + (text.empty() ? "" : "/" + text);
    for (const std::string* name : {&signal.core, &signal.category, &signal.group})
        if (!name->empty())
            text += (text.empty() ? "" : "/") + *name;
    return text;
}

std::string fullName(const WaveSignal& signal) {
    const VcdVariable& variable = *signal.variable;
    return variable.name + (variable.range.empty() ? "" : " " + variable.range);
}

void writeTable(OutputFile& output, const VcdHeader& header, const WaveSignals& signals) {
    TextTable table({{"width"}, {"name"}, {"group"}, {"user name"}, {"description"}});
    for (const WaveSignal& signal : signals.all())
        table.add({std::to_string(signal.variable->width), fullName(signal), placeText(header, signal),
                   signal.userName, signal.doc ? signal.doc->description : ""});
    table.write(output);
}

Json signalJson(const VcdHeader& header, const WaveSignal& signal) {
    Json scopes = Json::array();
    for (std::size_t scope = signal.variable->scope; scope != 0; scope = header.scopes[scope].parent)
        scopes.insert(scopes.begin(), jsonText(header.scopes[scope].name));
    Json values = Json::array();
    if (signal.doc)
        for (const auto& [value, text] : signal.doc->values)
            values.push_back({{"value", jsonText(value)}, {"text", jsonText(text)}});
    Json object = Json::object();
    object["name"] = jsonText(signal.variable->name);
    object["range"] = jsonText(signal.variable->range);
    object["kind"] = jsonText(signal.variable->type);
    object["width"] = signal.variable->width;
    object["identifier"] = jsonText(signal.variable->identifier);
    object["line"] = signal.variable->line;
    object["scopes"] = std::move(scopes);
    object["core"] = jsonText(signal.core);
    object["category"] = jsonText(signal.category);
    object["group"] = jsonText(signal.group);
    object["radix"] = jsonText(signal.radix);
    object["userName"] = jsonText(signal.userName);
    object["description"] = jsonText(signal.doc ? signal.doc->description : "");
    object["values"] = std::move(values);
    return object;
}

} // namespace

int waveList(const Invocation& invocation) {
    const std::string& path = invocation.value("FILE");
    const OpenWave wave(path);
    OutputFile output = resultFile(invocation);
    if (invocation.has("json")) {
        Json object = jsonObject("wave", 1);
        object["timescale"] = jsonText(wave.header.timescale);
        object["isOfPlugin"] = wave.header.isOfPlugin();
        Json& list = object["signals"] = Json::array();
        for (const WaveSignal& signal : wave.signals.all())
            list.push_back(signalJson(wave.header, signal));
        writeJson(output, object);
    } else {
        writeTable(output, wave.header, wave.signals);
    }
    output.close();
    WaveNotes notes(path);
    notes.addHeader(wave.header, wave.signals);
    return notes.any() ? s_foundWrong : s_fine;
}
