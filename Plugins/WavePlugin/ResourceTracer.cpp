#include "Plugins/WavePlugin/ResourceTracer.h"

#include "infr_libs/ErrorHandler/Assertion.h"
#include "Plugins/WavePlugin/BinaryDigits.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstring>
#include <utility>

namespace {

constexpr unsigned int s_noCore = 0xffffffff;
constexpr std::size_t s_textSize = 1024; // of the texts that are valid until the next call
constexpr unsigned int s_valueBits = 64; // of every value; wider signals repeat them

char* appendDecimal(char* at, std::uint32_t value) {
    constexpr std::ptrdiff_t longest = 11; // of a 32-bit number, its sign included
    if (value < 10) {                      // nearly all that scalar lines show
        *at = static_cast<char>('0' + value);
        return at + 1;
    }
    return std::to_chars(at, at + longest, static_cast<std::int32_t>(value)).ptr;
}

char* append(char* at, std::string_view text) {
    return std::copy(text.begin(), text.end(), at);
}

// A value line under construction: the widest value, the blank, the letter b, and an identifier.
struct Line {
    char text[s_textSize + s_binarySlack + Identifier::s_room];
};

} // namespace

ResourceTracer::ResourceTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string name)
    : m_callbacks(callbacks), m_pid(pid), m_name(std::move(name)), m_prefix(m_name + "_") {
    std::snprintf(m_tag, sizeof m_tag, "%d%d", pid >> 16, pid & 0xffff);
}

ResourceTracer::ResourceTracer(TracePluginCallbacks* callbacks) : m_callbacks(callbacks), m_pid(s_noCore) {}

ResourceTracer::~ResourceTracer() {
    m_callbacks = nullptr;
}

unsigned int ResourceTracer::getPid() {
    ZELM_ASSERT(m_pid != 0xffffffff);
    return m_pid;
}

char* ResourceTracer::getTag(const char* prefix, const char* suffix, unsigned int index) {
    static char s_tag[s_textSize];
    std::snprintf(s_tag, sizeof s_tag, "%s%s%s%d", prefix, m_tag, suffix, static_cast<int>(index));
    return s_tag;
}

std::string ResourceTracer::rationaliseName(const char* name) {
    std::string rational = name;
    std::ranges::replace(rational, ':', '_');
    return rational;
}

std::uint64_t ResourceTracer::bytesToInt64(const unsigned char* bytes) {
    std::uint64_t value = 0;
#pragma GCC unroll 8 // then it is one load
    for (int i = 0; i < 8; ++i)
        value = value << CHAR_BIT | bytes[i];
    return value;
}

char* ResourceTracer::getBinaryValue(uint64_t value, unsigned int numBits) {
    static char s_text[s_textSize + s_binarySlack];
    ZELM_ASSERT(numBits < 1024);
    // The leading digits of a width beyond 64 are the low end of a repetition.
    char* at = s_text;
    if (const unsigned int leading = numBits % s_valueBits; leading != 0)
        at = appendBinary(at, value, leading);
    for (unsigned int i = 0; i < numBits / s_valueBits; ++i)
        at = appendBinary(at, value, s_valueBits);
    *at = '\0';
    return s_text;
}

char* ResourceTracer::getBinaryValueString(const char* text, unsigned int numBytes) {
    static char s_text[s_textSize + s_binarySlack];
    ZELM_ASSERT((numBytes * 8) < 1024);
    const std::size_t length = strnlen(text, numBytes);
    char* at = s_text;
    for (std::size_t i = 0; i < numBytes; ++i)
        at = appendBinary(at, i < length ? static_cast<unsigned char>(text[i]) : 0U, CHAR_BIT);
    *at = '\0';
    return s_text;
}

void ResourceTracer::getInstruction(TraceInstructionState* state) {
    std::memset(state, 0, offsetof(TraceInstructionState, reserved6));
    m_callbacks->getInstructionState(m_pid, 0, state);
}

void ResourceTracer::printCycles(FILE* fp, bool* firstChange) {
    LineStream stream(fp);
    printCycles(stream, firstChange);
}

char* ResourceTracer::appendTimeLine(char* at, bool* firstChange) {
    *at++ = '#';
    at = appendDecimal(at, m_callbacks->getCycleCount());
    *at++ = '\n';
    *firstChange = false;
    return at;
}

void ResourceTracer::writeTimeLine(LineStream& stream, bool* firstChange) {
    char line[s_timeLineRoom];
    stream.writeLater(line, static_cast<std::size_t>(appendTimeLine(line, firstChange) - line));
}

void ResourceTracer::output(FILE* fp, unsigned int width, std::uint64_t value, const char* prefix,
                            const char* suffix, unsigned int index) {
    LineStream stream(fp);
    output(stream, width, value, Identifier(prefix, m_tag, suffix, index));
}

void ResourceTracer::output(LineStream& stream, unsigned int width, std::uint64_t value,
                            const Identifier& identifier) {
    Line line;
    char* at = line.text;
    if (width < 2) {
        at = appendDecimal(at, static_cast<std::uint32_t>(value));
    } else {
        *at++ = 'b';
        if (width <= s_valueBits)
            at = appendBinary(at, value, width);
        else
            at = append(at, getBinaryValue(value, width));
        *at++ = ' ';
    }
    at = identifier.appendTo(at);
    stream.writeThrough(line.text, static_cast<std::size_t>(at - line.text));
}

void ResourceTracer::outputChange(FILE* fp, unsigned int width, std::uint64_t* cached, std::uint64_t value,
                                  bool* firstChange, const char* prefix, const char* suffix,
                                  unsigned int index) {
    printCycles(fp, firstChange);
    output(fp, width, value, prefix, suffix, index);
    *cached = value;
}

void ResourceTracer::outputString(FILE* fp, unsigned int numBytes, const char* text, const char* prefix,
                                  const char* suffix, unsigned int index) {
    Line line;
    char* at = append(line.text, "b");
    at = append(at, getBinaryValueString(text, numBytes));
    *at++ = ' ';
    at = Identifier(prefix, m_tag, suffix, index).appendTo(at);
    std::fwrite(line.text, 1, static_cast<std::size_t>(at - line.text), fp);
}

void ResourceTracer::outputIfChangedString(FILE* fp, unsigned int numBytes, char* cached, const char* text,
                                           bool* firstChange, const char* prefix, const char* suffix,
                                           unsigned int index) {
    if (std::strcmp(cached, text) == 0)
        return;
    printCycles(fp, firstChange);
    outputString(fp, numBytes, text, prefix, suffix, index);
    std::memcpy(cached, text, numBytes);
}
