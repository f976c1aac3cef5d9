#include "tools/zetool/wave/StandardSignals.h"

#include <algorithm>

namespace {

// The order in which one-bit signals are taken where not all of them fit: what a protocol decoder is for
// comes first.
unsigned int rankOf(const WaveSignal& signal) {
    if (signal.category == "Pads")
        return 0;
    return signal.category == "Ports" && signal.nameInCore() == signal.group ? 1 : 2;
}

} // namespace

ValueKind valueKind(const VcdVariable& variable) {
    if (variable.type == "real" || variable.type == "realtime")
        return ValueKind::Real;
    if (variable.type == "event")
        return ValueKind::Event;
    return variable.type == "string" ? ValueKind::Text : ValueKind::Bits;
}

StandardSignals::StandardSignals(const WaveSignals& signals, StandardChoice choice)
    : m_isKept(signals.all().size()), m_slotOf(signals.all().size()) {
    if (choice == StandardChoice::OneBit)
        chooseOneBit(signals);
    else
        m_isKept.assign(m_isKept.size(), true);
    for (std::size_t index = 0; index < m_isKept.size(); ++index) {
        const VcdVariable& variable = *signals.all()[index].variable;
        if (valueKind(variable) == ValueKind::Text && m_isKept[index]) {
            m_isKept[index] = false;
            ++m_numTexts;
        }
        m_slotOf[index] = slotFor(variable);
        if (m_isKept[index])
            m_slots[m_slotOf[index]].isKept = true;
    }
}

void StandardSignals::chooseOneBit(const WaveSignals& signals) {
    std::size_t numChosen = 0;
    for (unsigned int rank = 0; rank <= 2; ++rank) {
        for (std::size_t index = 0; index < m_isKept.size(); ++index) {
            const WaveSignal& signal = signals.all()[index];
            if (rankOf(signal) != rank || numChosen == s_mostChannels)
                continue;
            if (signal.variable->width > 1 || valueKind(*signal.variable) != ValueKind::Bits)
                continue;
            m_isKept[index] = true;
            ++numChosen;
        }
    }
    m_numLeftOut = m_isKept.size() - numChosen;
}

std::uint32_t StandardSignals::slotFor(const VcdVariable& variable) {
    StandardSlot slot;
    slot.width = std::max(variable.width, 1u);
    slot.kind = valueKind(variable);
    slot.identifier = variable.identifier;
    const auto next = static_cast<std::uint32_t>(m_slots.size());
    const std::uint32_t first = m_table.add(variable.identifier, next);
    if (first == next) {
        m_slots.push_back(std::move(slot));
        return next;
    }
    const auto isSame = [&](std::uint32_t number) {
        return m_slots[number].width == slot.width && m_slots[number].kind == slot.kind;
    };
    if (isSame(first))
        return first;
    for (const std::uint32_t copy : m_slots[first].copies)
        if (isSame(copy))
            return copy;
    do
        slot.identifier += '~';
    while (m_table.add(slot.identifier, next) != next);
    m_slots.push_back(std::move(slot));
    m_slots[first].copies.push_back(next);
    return next;
}
