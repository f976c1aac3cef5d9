#pragma once

#include "infr_libs/ZNLoader/ZNLoader.h"
#include "tools/zetool/JsonStream.h"

#include <string>

// How a link tells the routes that cross it.
enum class Users { Listed, Summed };

// The members of a network's object, behind the stream's object that is open: everything that the loader's
// model holds. `warnings` are told by lines, also where one has several: that form is fixed.
void writeNetwork(JsonStream& json, const ZNLoader& network, const std::string& warnings, Users users);

// Lines as a list.
Json linesJson(const std::string& text);
