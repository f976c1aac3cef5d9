#pragma once

#include "tools/zetool/Json.h"
#include "tools/zetool/OutputFile.h"

#include <string>
#include <string_view>
#include <vector>

// An object in the form of `writeJson` that is written piece by piece: for results of which no tree could be
// held. Whoever makes the stream opens the outer object first and closes all that was opened. Keys are this
// system's own words in ASCII.
class JsonStream {
public:
    explicit JsonStream(OutputFile& output) : m_output(output) {}

    // The next member of an object, or, with an empty key, the next element of a list (or the outer object).
    void add(std::string_view key, const Json& value);
    void beginObject(std::string_view key = {}) { begin(key, '{', '}'); }
    void beginList(std::string_view key = {}) { begin(key, '[', ']'); }

    // The next element of a list, as it stands on one line.
    void addWritten(std::string_view text);

    // All members of an object that was made whole.
    void addMembers(const Json& object);

    // Closes what was opened last; the outermost with a line end.
    void end();

private:
    struct Open {
        char closing;
        bool isEmpty = true;
    };

    void begin(std::string_view key, char opening, char closing);
    void startEntry(std::string_view key);

    OutputFile& m_output;
    std::string m_lineStart = "\n"; // a line end and the present indentation
    std::vector<Open> m_open;
};
