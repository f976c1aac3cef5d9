#include "tools/zetool/Json.h"

#include "tools/zetool/Utf8.h"

Json jsonObject(std::string_view type, int version) {
    Json object = Json::object();
    object["type"] = type;
    object["version"] = version;
    return object;
}

Json jsonText(std::string_view text) {
    return toDistinctUtf8(text);
}

std::string jsonLine(const Json& value) {
    return value.dump(-1, ' ', true);
}

void writeJson(OutputFile& output, const Json& object) {
    constexpr int s_indent = 2;
    output.write(object.dump(s_indent, ' ', true));
    output.write("\n");
}
