#pragma once

#include <string>
#include <vector>

// A vector of strings that it owns: they are deleted with it. An entry that is taken out by hand belongs to
// whoever took it.
class StringVector : public std::vector<const std::string*> {
public:
    StringVector() = default;
    ~StringVector() {
        for (const std::string* text : *this)
            delete text;
    }

    StringVector(const StringVector&) = delete;
    StringVector& operator=(const StringVector&) = delete;
};
