#include "tools/zetool/elf/ElfReading.h"

#include "infr_libs/ErrorHandler/FormattedText.h"
#include "tools/zetool/BrokenLimit.h"

#include <cstdarg>
#include <sstream>

namespace {

constexpr const char* s_stops = "without a symbol table, strings must hold the empty text; the reader "
                                "stops at these";

std::string withoutLineEnd(const std::string& text) {
    return text.substr(0, text.find_last_not_of('\n') + 1);
}

} // namespace

void ElfReading::Messages::fatalError(bool exit, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::string text = formattedText(format, arguments);
    va_end(arguments);
    if (!m_counts)
        CatchableErrorHandler::fatalError(exit, "%s", text.c_str());
    if (m_count++ == 0)
        m_first = text;
}

ElfReading::ElfReading(const ElfView& view) {
    std::istringstream stream(view.bytes());
    try {
        m_handler = std::make_unique<ElfHandler>(&m_messages, stream);
    } catch (const std::string& message) {
        m_fault = {"reader", withoutLineEnd(message)};
    } catch (const BrokenLimit&) {
        // The one limit of reading: the library makes a table of symbols where a file has none.
        m_fault = {"reader", s_stops};
    }
}

std::optional<ElfFault> ElfReading::check() {
    if (!m_handler)
        return std::nullopt;
    m_messages.m_counts = true;
    m_handler->check();
    if (m_messages.m_count == 0)
        return std::nullopt;
    return ElfFault{"reader", withoutLineEnd(m_messages.m_first), m_messages.m_count};
}
