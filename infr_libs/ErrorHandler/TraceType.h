#pragma once

#include <memory>

// One named switch of the trace output. An `ErrorHandler` owns one for each trace type.
class TraceType {
public:
    TraceType() = default;
    virtual ~TraceType();

    TraceType(const TraceType&) = delete;
    TraceType& operator=(const TraceType&) = delete;

    void turnOn() { m_on = true; }
    void turnOff() { m_on = false; }
    bool isOn() const { return m_on; }

    // The prefix of this type's lines. It is a programming fault to ask before it was set (assertion).
    const char* getTraceString() const;

    // Keeps a copy of the text in place of an earlier one.
    void setTraceString(const char* text);

private:
    bool m_on = false;
    std::unique_ptr<char[]> m_traceString; // null until it is set
};
