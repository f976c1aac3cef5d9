#include "infr_libs/ErrorHandler/TraceType.h"

#include "infr_libs/ErrorHandler/Assertion.h"

#include <cstring>

TraceType::~TraceType() = default;

const char* TraceType::getTraceString() const {
    ZELM_ASSERT(m_traceString != __null);
    return m_traceString.get();
}

void TraceType::setTraceString(const char* text) {
    const std::size_t numBytes = std::strlen(text) + 1;
    auto copy = std::make_unique<char[]>(numBytes);
    std::memcpy(copy.get(), text, numBytes);
    m_traceString = std::move(copy);
}
