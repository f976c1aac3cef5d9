#pragma once

#include "infr_libs/ErrorHandler/TraceType.h"

#include <array>
#include <cstdarg>
#include <cstdio>

class XmlNode;

// Decides what a fatal message does (print, or print and end the process), and where trace lines go.
// Every class of the infrastructure reports through one, reached through the `ZelmUtils` record that owns
// it. A message is a printf format and its arguments; nothing is added to it, a line end least of all.
// Code behind a fatal call must be valid when the call returns.
class ErrorHandler {
public:
    static constexpr int s_numTraceTypes = 7;

    ErrorHandler() = default;
    virtual ~ErrorHandler();

    ErrorHandler(const ErrorHandler&) = delete;
    ErrorHandler& operator=(const ErrorHandler&) = delete;

    // Writes the message to standard error, and to standard output too with `setTraceOnError(true)`. Ends
    // the process with status 1 when `exit` is true, unless `setExitOnError(false)`.
    virtual void fatalError(bool exit, const char* format, ...) __attribute__((format(printf, 3, 4)));

    // Writes to the target. In GDB/MI mode a message becomes one target-stream record, whatever its lines.
    virtual void trace(const char* format, ...) __attribute__((format(printf, 2, 3)));

    // Writes to the target if the type (0 to 6) is on. The prefix goes to standard output always. A type
    // that doesn't exist is reported, not fatally, and nothing is written.
    virtual void trace(int traceType, bool printPrefix, const char* format, ...)
        __attribute__((format(printf, 4, 5)));

    virtual void setExitOnError(bool exitOnError) { m_exitOnError = exitOnError; }
    virtual void setTraceOnError(bool traceOnError) { m_traceOnError = traceOnError; }
    virtual void setGdbMiTracing(bool gdbMiTracing) { m_gdbMiTracing = gdbMiTracing; }

    // As `fatalError`, but neither flushes nor copies to standard output.
    virtual void fatalVError(bool exit, const char* format, va_list arguments)
        __attribute__((format(printf, 3, 0)));

    // Writes to the target, whatever the mode.
    virtual void vTrace(const char* format, va_list arguments) __attribute__((format(printf, 2, 0)));

    // Opens a file for trace output in place of the present one. Null, or a file that can't be opened,
    // means standard output.
    void setTarget(const char* fileName);

    // Never null; standard output where no file is open. Owned by the handler.
    FILE* getTarget() const;

    // A type that doesn't exist is off, and stays off.
    bool getTraceConfig(int traceType) const;
    void setTraceConfig(int traceType, bool on);

    // Turns types on from the `Trace` items of a configuration. Defined with the configuration, which
    // knows the document.
    void handleTraceConfigItems(XmlNode* node);

protected:
    bool m_exitOnError = true;
    FILE* m_target = nullptr; // null: standard output
    bool m_traceOnError = false;
    bool m_gdbMiTracing = false;
    std::array<TraceType, s_numTraceTypes> m_traceTypes;
};
