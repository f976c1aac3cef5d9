#pragma once

#include "infr_libs/ElfHandler/ElfBytes.h"
#include "infr_libs/ElfHandler/ElfString.h"
#include "infr_libs/ElfHandler/ElfTextIndex.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

class ElfSectionHeader;
class ErrorHandler;

// The one string table of an ELF file, for symbol and section names. Each text stands in it once, at an
// offset that is fixed when it is first added. Made and owned by an `ElfHandler`.
//
// The raw table alone holds the texts: back to back, each with its terminating zero, in order of adding. A
// hash index over it finds a text, and an `ElfString` is made for a text when someone first asks for it, so
// that a table of a million names costs its bytes and a few more.
class ElfStrings {
public:
    // A table that holds the empty string at offset 0.
    explicit ElfStrings(ErrorHandler* errorHandler);

    // Reads `sh_size` bytes from the stream's position. Bytes behind the last zero are reported and belong
    // to no text. A size that can't be had ends the process with status 1, also where the error handler
    // returns.
    ElfStrings(ErrorHandler* errorHandler, std::istream& stream, const ElfSectionHeader* header);

    virtual ~ElfStrings();

    ElfStrings(const ElfStrings&) = delete;
    ElfStrings& operator=(const ElfStrings&) = delete;

    // The object of this text, new or existing; never null. The text may lie in the table itself. Pointers
    // into the raw table are no longer valid afterwards.
    ElfString* add(const char* text);

    // Null for a text that isn't in the table.
    ElfString* find(const char* text);

    // The text from this offset of the raw table to the next zero; empty outside the table.
    std::string getString(std::uint32_t offset) const { return getEntry(offset); }

    // The same without a copy, valid until the next `add`.
    const char* getEntry(std::uint32_t offset) const {
        return offset < m_bufferSize ? reinterpret_cast<const char*>(m_buffer.get()) + offset : "";
    }

    // The length of all texts with their zeros, which is the offset of the next one.
    std::uint32_t numBytes() const { return m_numBytes; }

    // With `final`, a new array of exactly `numBytes` that holds all texts; the caller owns it. Else gives
    // the raw table room for twice `numBytes`, and returns null.
    unsigned char* createBuffer(bool final);

    // Prints all texts in order of adding to standard output.
    void display() const;

private:
    const char* bytes() const { return reinterpret_cast<const char*>(m_buffer.get()); }
    ElfString* stringAt(std::uint32_t offset, std::string_view text);
    void addReadTexts(std::size_t numBytes);
    void append(std::string_view text);
    void makeRoom(std::uint32_t numBytes);
    void copyTexts(unsigned char* destination) const;
    std::unique_ptr<unsigned char[]> allocate(std::uint64_t numBytes);
    [[noreturn]] void failToAllocate(const char* purpose);

    ElfTextIndex m_byName{[this](std::uint32_t offset) { return bytes() + offset; }}; // offsets of the texts
    std::unordered_map<std::uint32_t, ElfString> m_strings; // by offset: those that were asked for
    std::uint32_t m_numBytes = 0;
    ElfBytes m_buffer;              // the raw table, and a zero behind it that ends every text
    std::uint32_t m_bufferSize = 0; // its capacity, without that zero
    ErrorHandler* m_errorHandler;
};
