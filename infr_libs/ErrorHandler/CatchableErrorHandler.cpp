#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"

#include "infr_libs/ErrorHandler/FormattedText.h"

#include <string>

namespace {

// A longer message is cut there: 65,536 bytes with the zero that ends it.
constexpr std::size_t s_maxMessageLength = 65'535;

__attribute__((format(printf, 1, 0))) std::string messageText(const char* format, va_list arguments) {
    std::string text = formattedText(format, arguments);
    if (text.size() > s_maxMessageLength)
        text.resize(s_maxMessageLength);
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
    const std::string message = messageText(format, arguments);
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
    const std::string message = messageText(format, arguments);
    if (m_exitOnError && exit)
        throw std::string(message);
    write(stderr, message);
}
