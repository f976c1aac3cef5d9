#pragma once

#include "infr_libs/ErrorHandler/ErrorHandler.h"
#include "infr_libs/ErrorHandler/FormattedText.h"

#include <string>
#include <vector>

// Keeps the messages that it is given and returns, fatal or not: for what goes on behind a report.
class RecordingErrorHandler : public ErrorHandler {
public:
    void fatalError(bool exit, const char* format, ...) override __attribute__((format(printf, 3, 4))) {
        va_list arguments;
        va_start(arguments, format);
        fatalVError(exit, format, arguments);
        va_end(arguments);
    }

    void fatalVError(bool exit, const char* format, va_list arguments) override
        __attribute__((format(printf, 3, 0))) {
        m_messages.push_back((exit ? "fatal " : "") + formattedText(format, arguments));
    }

    // In order; a message that may end the process begins with "fatal ".
    const std::vector<std::string>& messages() const { return m_messages; }

private:
    std::vector<std::string> m_messages;
};
