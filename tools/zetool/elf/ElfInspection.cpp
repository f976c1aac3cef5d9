#include "tools/zetool/elf/ElfInspection.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/elf/ElfWords.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/WholeFile.h"

ElfInspection::ElfInspection(const std::string& file) : m_file(file), m_view(readWhole(file)) {
    if (!m_view.refusal().empty())
        throw ToolFailure(m_file, m_view.refusal());
}

int ElfInspection::finish() const {
    for (const auto* faults : {&m_view.faults(), &m_faults}) {
        for (const ElfFault& fault : *faults)
            printMessage(m_file, fault.line());
    }
    if (m_numMissingNames != 0)
        printMessage(m_file, "names lie outside the strings: " + std::to_string(m_numMissingNames));
    return m_view.faults().empty() && m_faults.empty() && m_numMissingNames == 0 ? s_fine : s_foundWrong;
}

Json nameJson(const std::optional<std::string_view>& name) {
    return name ? jsonText(name->substr(0, s_longestName)) : Json(nullptr);
}
