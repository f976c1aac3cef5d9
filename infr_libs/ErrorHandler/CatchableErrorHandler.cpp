#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"

#include <string>

namespace {

__attribute__((format(printf, 1, 0))) std::string formatted(const char* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length < 0)
        return format; // a format that can't be carried out still tells more than nothing

    std::string text(static_cast<std::size_t>(length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    return text;
}

void write(FILE* stream, const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

} // namespace

void CatchableErrorHandler::fatalError(bool exit, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::string message = formatted(format, arguments);
    va_end(arguments);

    const bool throws = m_exitOnError && exit;
    if (!throws)
        write(stderr, message);
    if (m_traceOnError)
        write(stdout, message);
    if (throws)
        throw std::string(message);
}

void CatchableErrorHandler::fatalVError(bool exit, const char* format, va_list arguments) {
    // No copy to standard output: wanted, in contrast to fatalError.
    const std::string message = formatted(format, arguments);
    if (m_exitOnError && exit)
        throw std::string(message);
    write(stderr, message);
}
