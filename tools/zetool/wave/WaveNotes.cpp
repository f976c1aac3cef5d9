#include "tools/zetool/wave/WaveNotes.h"

#include "tools/zetool/Messages.h"

void WaveNotes::add(std::uint64_t line, const std::string& text) {
    printMessage(m_path, line, text);
    m_any = true;
}

void WaveNotes::add(const BodyFault& fault, const std::string& text) {
    if (fault.count == 0)
        return;
    const std::string more = fault.count > 1 ? " (the first of " + std::to_string(fault.count) + ")" : "";
    add(fault.firstLine, text + ": " + fault.firstText + more);
}

void WaveNotes::addHeader(const VcdHeader& header, const WaveSignals& signals) {
    for (const VcdHeaderFault& fault : header.faults)
        add(fault.line, fault.text);
    const auto& illFormed = header.structure.illFormedLines;
    if (!illFormed.empty()) {
        const std::string others =
            illFormed.size() > 1 ? " and in " + std::to_string(illFormed.size() - 1) + " further lines" : "";
        add(illFormed.front(), "the structure document is ill-formed XML here" + others +
                                   "; names are taken from the $var lines");
    }
    const auto& unreadable = header.structure.unreadableLines;
    if (!unreadable.empty())
        add(unreadable.front(), "a line of the structure document can't be read");
    const auto& undeclared = signals.undeclared();
    if (!undeclared.empty())
        add(undeclared.front()->line,
            "the structure document lists a signal that isn't declared: " + undeclared.front()->name);
}
