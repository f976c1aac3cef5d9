#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <istream>

class ErrorHandler;

// The one way from a stream to the objects of an ELF file: every read stays within what the stream holds,
// and what lies past its end reads as zeros. The stream is never left in a failed state, so that one short
// table doesn't spoil the next. Made on the spot by whoever reads; the stream stays the caller's.
class ElfInput {
public:
    // Measures the stream and keeps its position. A stream that can't be measured counts as empty.
    explicit ElfInput(std::istream& stream);

    std::istream& stream() const { return m_stream; }

    // Bytes of the whole stream.
    std::uint64_t length() const { return m_length; }

    // Bytes from the position to the stream's end.
    std::uint64_t numBytesLeft() const { return m_length - m_position; }

    // May a block or table be believed to have this many bytes? Headers may claim somewhat more than the
    // stream holds, and get zeros for it, but not memory for whatever number they name.
    bool mayClaim(std::uint64_t numBytes) const { return numBytes <= m_length + s_slack; }

    static constexpr std::uint64_t s_slack = 0x4000000;

    // Counted from the stream's beginning; a place past the end means the end.
    void seek(std::uint64_t offset);

    // What the stream lacks of the bytes becomes zeros.
    void read(void* destination, std::size_t numBytes);

    // What the stream lacks is left alone. Returns how many of the bytes it had.
    std::size_t readWhatIsThere(void* destination, std::size_t numBytes);

    // The bytes of one structure of the file.
    template<class Structure>
    std::array<unsigned char, Structure::s_numBytes> readBytes() {
        std::array<unsigned char, Structure::s_numBytes> bytes;
        read(bytes.data(), bytes.size());
        return bytes;
    }

private:
    std::istream& m_stream;
    std::uint64_t m_length = 0;
    std::uint64_t m_position = 0; // never beyond m_length
};

// The message for a section that claims more than can be read or kept.
void reportNoMemoryForSection(ErrorHandler* errorHandler);
