#include "infr_libs/ElfHandler/ElfStrings.h"

#include "infr_libs/ElfHandler/ElfBlock.h"
#include "infr_libs/ElfHandler/ElfInput.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace {

// What the index makes room for before it has seen the texts of a table: one text for so many bytes, but no
// more than so many texts, since they need not differ.
constexpr std::size_t s_bytesForText = 16;
constexpr std::size_t s_maxReserved = 0x100000;

} // namespace

ElfStrings::ElfStrings(ErrorHandler* errorHandler) : m_errorHandler(errorHandler) {
    add("");
}

ElfStrings::ElfStrings(ErrorHandler* errorHandler, std::istream& stream, const ElfSectionHeader* header)
    : m_errorHandler(errorHandler) {
    ElfInput input(stream);
    m_bufferSize = header->sh_size;
    if (input.mayClaim(m_bufferSize) && m_bufferSize <= ElfBlock::s_maxNumBytes)
        m_buffer = newZeroBytes(std::size_t{m_bufferSize} + 1);
    if (!m_buffer)
        failToAllocate(" for reading strings");
    const std::size_t numRead = input.readWhatIsThere(m_buffer.get(), m_bufferSize);
    // Behind what the file has stand zeros alone: the first may end a text, the second is the empty text, and
    // any others are the empty text again.
    addReadTexts(std::min(numRead + 2, std::size_t{m_bufferSize}));
}

ElfStrings::~ElfStrings() = default;

// A text that the table already holds isn't added a second time, and those behind it move down, away from
// the offsets that the file's symbols have for them. It is wanted: the offset of a text is the sum of what
// was added before it, and tables that this library writes hold each text once.
void ElfStrings::addReadTexts(std::size_t numBytes) {
    const char* text = bytes();
    const char* end = text + numBytes;
    m_byName.reserve(std::min(s_maxReserved, numBytes / s_bytesForText));
    while (const void* zero = std::memchr(text, '\0', static_cast<std::size_t>(end - text))) {
        const std::string_view view(text, static_cast<const char*>(zero));
        ElfTextIndex::Key key = ElfTextIndex::keyOf(view);
        if (!m_byName.find(key)) {
            const std::uint32_t offset = m_numBytes;
            append(view);
            key.text = {bytes() + offset, view.size()}; // it may have moved
            m_byName.insert(key, offset);
        }
        text = static_cast<const char*>(zero) + 1;
    }
    if (text != end)
        m_errorHandler->fatalError(true, "ERROR: Strings not correctly terminated\n");
}

ElfString* ElfStrings::add(const char* text) {
    const std::string_view view(text);
    ElfTextIndex::Key key = ElfTextIndex::keyOf(view);
    if (const std::uint32_t* offset = m_byName.find(key))
        return stringAt(*offset, view);

    const std::uint64_t newSize = std::uint64_t{m_numBytes} + view.size() + 1;
    try {
        if (newSize > ElfBlock::s_maxNumBytes)
            throw std::bad_alloc();
        const std::uint32_t offset = m_numBytes;
        ElfString* string = stringAt(offset, view);
        key.text = string->getName(); // its own copy: the text may lie in the buffer that is replaced
        append(key.text);
        m_byName.insert(key, offset);
        return string;
    } catch (const std::bad_alloc&) {
        m_errorHandler->fatalError(true, "ERROR: Failed to allocate memory for string constant '%s'\n", text);
        std::exit(1);
    }
}

ElfString* ElfStrings::find(const char* text) {
    const std::uint32_t* offset = m_byName.find(ElfTextIndex::keyOf(text));
    return offset ? stringAt(*offset, text) : nullptr;
}

ElfString* ElfStrings::stringAt(std::uint32_t offset, std::string_view text) {
    return &m_strings.try_emplace(offset, text, offset).first->second;
}

// Puts a text without zeros behind the last one. It may lie in the buffer at its new place or above it, or
// outside the buffer.
void ElfStrings::append(std::string_view text) {
    const std::uint32_t offset = m_numBytes;
    const auto end = static_cast<std::uint32_t>(offset + text.size());
    if (m_bufferSize <= end)
        makeRoom(end + 1);
    char* place = reinterpret_cast<char*>(m_buffer.get()) + offset;
    if (place != text.data())
        std::memmove(place, text.data(), text.size());
    m_buffer[end] = 0;
    m_numBytes = end + 1;
}

// Replaces the buffer by one of twice this size, which holds the texts added so far and zeros behind them.
void ElfStrings::makeRoom(std::uint32_t numBytes) {
    auto larger = allocate(2 * std::uint64_t{numBytes});
    const std::uint32_t newSize = 2 * numBytes;
    copyTexts(larger.get());
    std::memset(larger.get() + m_numBytes, 0, newSize - m_numBytes);
    m_buffer = ElfBytes(larger.release());
    m_bufferSize = newSize;
}

unsigned char* ElfStrings::createBuffer(bool final) {
    if (!final) {
        makeRoom(m_numBytes);
        return nullptr;
    }
    auto table = allocate(m_numBytes);
    copyTexts(table.get());
    return table.release();
}

void ElfStrings::copyTexts(unsigned char* destination) const {
    if (m_numBytes != 0)
        std::memcpy(destination, m_buffer.get(), m_numBytes);
}

// An array of this many bytes and a zero behind them.
std::unique_ptr<unsigned char[]> ElfStrings::allocate(std::uint64_t numBytes) {
    if (numBytes > ElfBlock::s_maxNumBytes)
        failToAllocate("");
    const auto size = static_cast<std::size_t>(numBytes);
    std::unique_ptr<unsigned char[]> array(new (std::nothrow) unsigned char[size + 1]);
    if (!array)
        failToAllocate("");
    array[size] = 0;
    return array;
}

// Ends the process also where the error handler returns: nothing of a table without its bytes makes sense.
void ElfStrings::failToAllocate(const char* purpose) {
    m_errorHandler->fatalError(true, "ERROR: Failed to allocate memory%s\n", purpose);
    std::exit(1);
}

void ElfStrings::display() const {
    std::printf("\nStrings:\n");
    for (std::uint32_t offset = 0; offset < m_numBytes;) {
        const char* str = getEntry(offset);
        ZELM_ASSERT(str != __null);
        std::printf("%08x %s\n", offset, str);
        offset += static_cast<std::uint32_t>(std::strlen(str)) + 1;
    }
}
