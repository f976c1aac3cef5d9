#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

// Messages of the tool: one line each on standard error, behind the tool's name and the file that they are
// about. Standard output carries results alone.

// What makes a command impossible: wrong usage, or an input that can't be read. Ends the command with exit
// status 2 and its text as the message.
class ToolFailure : public std::exception {
public:
    ToolFailure(std::string_view file, std::string_view text);
    explicit ToolFailure(std::string_view text);

    const char* what() const noexcept override { return m_text.c_str(); }

private:
    std::string m_text;
};

// Text and the system's own words for the present errno.
std::string withSystemError(std::string_view text);

// How messages spell a file's name: `-` is standard input.
std::string shownName(std::string_view file);

void printMessage(std::string_view text);
void printMessage(std::string_view file, std::string_view text);
void printMessage(std::string_view file, std::uint64_t line, std::string_view text);

// Whether a standard stream is a terminal that takes colours and progress: never with NO_COLOR set.
bool isColourTerminal(int descriptor);
