#pragma once

#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "tools/zetool/elf/ElfFault.h"
#include "tools/zetool/elf/ElfView.h"

#include <memory>
#include <optional>

// An ELF file read by the library, as the plugin reads it: whole, or up to the first message.
class ElfReading {
public:
    // Reads the bytes that the view is of. Nothing that a file holds ends the process.
    explicit ElfReading(const ElfView& view);

    // Null where the file can't be read; then there is a fault.
    const ElfHandler* handler() const { return m_handler.get(); }

    // The library's message, or why the library wasn't asked.
    const std::optional<ElfFault>& fault() const { return m_fault; }

    // What the library says of a file that it has read.
    std::optional<ElfFault> check();

private:
    // Throws messages while a file is read, and counts them afterwards.
    class Messages : public CatchableErrorHandler {
    public:
        void fatalError(bool exit, const char* format, ...) override __attribute__((format(printf, 3, 4)));

        bool m_counts = false;
        std::string m_first;
        std::uint64_t m_count = 0;
    };

    Messages m_messages;
    std::unique_ptr<ElfHandler> m_handler;
    std::optional<ElfFault> m_fault;
};
