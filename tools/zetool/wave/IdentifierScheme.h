#pragma once

#include <string>
#include <string_view>

// What an identifier of the plugin tells: kind of resource, core, signal and index, as in "po01a2". With it a
// signal finds its place also where the structure document is missing or doesn't list it.
struct IdentifierMeaning {
    const char* category = ""; // as the structure document names it; empty for an unknown form
    std::string tag;           // node and core; empty for what belongs to no core
    std::string index;         // of the resource; empty where the core has only one
    const char* suffix = "";   // what the signal's name has behind the resource's
    const char* radix = "HEX";
    std::string resource;   // the resource's own name, where the scheme alone gives it
    bool isGrouped = false; // whether the signals of a resource make a group
};

IdentifierMeaning identifierMeaning(std::string_view identifier);
