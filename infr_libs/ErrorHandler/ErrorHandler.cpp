#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include <cstdlib>
#include <string>

namespace {

// What a GDB/MI record can hold: the message is cut to the first size, newlines doubled in the second.
constexpr std::size_t s_miTextSize = 1024;
constexpr std::size_t s_miRecordSize = 2 * s_miTextSize;

bool isTraceType(int traceType) {
    return traceType >= 0 && traceType < ErrorHandler::s_numTraceTypes;
}

} // namespace

ErrorHandler::~ErrorHandler() {
    setTarget(nullptr);
}

void ErrorHandler::fatalError(bool exit, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::fflush(stderr);

    if (m_traceOnError) {
        va_start(arguments, format);
        std::vfprintf(stdout, format, arguments);
        va_end(arguments);
        std::fflush(stdout);
    }
    if (m_exitOnError && exit)
        std::exit(1);
}

void ErrorHandler::fatalVError(bool exit, const char* format, va_list arguments) {
    // Neither flush nor copy to standard output: wanted, in contrast to fatalError.
    std::vfprintf(stderr, format, arguments);
    if (m_exitOnError && exit)
        std::exit(1);
}

void ErrorHandler::trace(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    if (!m_gdbMiTracing) {
        ErrorHandler::vTrace(format, arguments);
        va_end(arguments);
        return;
    }

    char text[s_miTextSize] = "";
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);

    // A newline is the only character that is escaped: wanted, though quotes and backslashes stay as they
    // are.
    std::string record;
    record.reserve(s_miRecordSize);
    for (const char* c = text; *c != '\0'; ++c) {
        if (*c == '\n')
            record += "\\n";
        else
            record += *c;
    }
    std::fprintf(getTarget(), "@\"%s\"\n", record.c_str());
    std::fflush(getTarget());
}

void ErrorHandler::trace(int traceType, bool printPrefix, const char* format, ...) {
    if (!isTraceType(traceType)) {
        // A negative number was never a type either, but only those beyond the last are reported.
        if (traceType >= s_numTraceTypes)
            fatalError(false, "unknown trace type: %d\n", traceType);
        return;
    }
    const TraceType& type = m_traceTypes[static_cast<std::size_t>(traceType)];
    if (!type.isOn())
        return;

    if (printPrefix) {
        std::fprintf(stdout, "%s ", type.getTraceString());
        std::fflush(stdout);
    }
    va_list arguments;
    va_start(arguments, format);
    ErrorHandler::vTrace(format, arguments);
    va_end(arguments);
}

void ErrorHandler::vTrace(const char* format, va_list arguments) {
    std::vfprintf(getTarget(), format, arguments);
    std::fflush(getTarget());
}

void ErrorHandler::setTarget(const char* fileName) {
    if (m_target)
        std::fclose(m_target);
    m_target = fileName ? std::fopen(fileName, "wb") : nullptr;
}

FILE* ErrorHandler::getTarget() const {
    return m_target ? m_target : stdout;
}

bool ErrorHandler::getTraceConfig(int traceType) const {
    return isTraceType(traceType) && m_traceTypes[static_cast<std::size_t>(traceType)].isOn();
}

void ErrorHandler::setTraceConfig(int traceType, bool on) {
    if (!isTraceType(traceType))
        return;
    TraceType& type = m_traceTypes[static_cast<std::size_t>(traceType)];
    if (on)
        type.turnOn();
    else
        type.turnOff();
}
