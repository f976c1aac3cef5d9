#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

// What one command line gave to its command: the values of options and arguments by their rows' names.
// The command line has been checked against the rows: a value stands where its row demands one, and is one
// of the row's choices.
class Invocation {
public:
    // Whether an option or argument was given.
    bool has(std::string_view name) const { return !values(name).empty(); }

    // The value of an option or argument; empty where it wasn't given.
    const std::string& value(std::string_view name) const;

    // All values in the order of the command line.
    const std::vector<std::string>& values(std::string_view name) const;

    void add(std::string_view name, std::string value);

private:
    std::map<std::string, std::vector<std::string>, std::less<>> m_values;
};
