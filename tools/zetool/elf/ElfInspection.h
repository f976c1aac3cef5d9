#pragma once

#include "tools/zetool/elf/ElfView.h"
#include "tools/zetool/Invocation.h"
#include "tools/zetool/Json.h"

#include <string>
#include <vector>

// One run of a command that shows something of an ELF file: opens it, writes what the command makes, and ends
// with messages on what the file lacks.
class ElfInspection {
public:
    // Throws a ToolFailure for what is no ELF file that programs can be.
    explicit ElfInspection(const std::string& file);

    const std::string& file() const { return m_file; }
    const ElfView& view() const { return m_view; }

    // Faults that the command found by itself.
    std::vector<ElfFault>& faults() { return m_faults; }

    // To be called with every name that the command shows, so that those that aren't there are told of.
    void noteName(const std::optional<std::string_view>& name) { m_numMissingNames += name ? 0 : 1; }

    // Prints all faults; gives the exit status.
    int finish() const;

private:
    std::string m_file;
    ElfView m_view;
    std::vector<ElfFault> m_faults;
    std::size_t m_numMissingNames = 0;
};

// A name as JSON takes it: null for one that isn't there.
Json nameJson(const std::optional<std::string_view>& name);
