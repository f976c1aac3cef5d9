#include "tools/zetool/Messages.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

ToolFailure::ToolFailure(std::string_view file, std::string_view text)
    : m_text(shownName(file) + ": " + std::string(text)) {}

ToolFailure::ToolFailure(std::string_view text) : m_text(text) {}

std::string withSystemError(std::string_view text) {
    const int error = errno;
    return std::string(text) + ": " + std::strerror(error);
}

std::string shownName(std::string_view file) {
    return file == "-" ? "(standard input)" : std::string(file);
}

void printMessage(std::string_view text) {
    std::string line = isColourTerminal(STDERR_FILENO) ? "\x1b[1mzetool:\x1b[0m " : "zetool: ";
    line += text;
    line += '\n';
    std::fflush(stdout);
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fflush(stderr);
}

void printMessage(std::string_view file, std::string_view text) {
    printMessage(shownName(file) + ": " + std::string(text));
}

void printMessage(std::string_view file, std::uint64_t line, std::string_view text) {
    printMessage(shownName(file) + ":" + std::to_string(line) + ": " + std::string(text));
}

bool isColourTerminal(int descriptor) {
    const char* noColour = std::getenv("NO_COLOR");
    return !(noColour && *noColour != '\0') && isatty(descriptor) == 1;
}
