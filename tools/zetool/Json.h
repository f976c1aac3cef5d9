#pragma once

#include "tools/zetool/OutputFile.h"

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

// What every command with `--json` writes: one object in ASCII, its keys in the order in which they were
// added, `type` and `version` first.
using Json = nlohmann::ordered_json;

Json jsonObject(std::string_view type, int version);

// A text of any bytes as JSON takes it: by `toDistinctUtf8`.
Json jsonText(std::string_view text);

// A value on one line, in ASCII.
std::string jsonLine(const Json& value);

void writeJson(OutputFile& output, const Json& object);
