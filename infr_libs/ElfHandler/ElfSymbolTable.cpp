#include "infr_libs/ElfHandler/ElfSymbolTable.h"

#include "infr_libs/ElfHandler/ElfFields.h"
#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfInput.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfString.h"
#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ErrorHandler/Assertion.h"
#include "infr_libs/ErrorHandler/ErrorHandler.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace {

constexpr std::uint64_t s_symbolsAtATime = 0x1000;

} // namespace

ElfSymbolTable::ElfSymbolTable(ElfHandler* handler)
    : m_handler(handler),
      m_nameIndex([this](std::uint32_t i) { return m_handler->getStringsEntry(m_indexedNames[i].offset); }) {}

ElfSymbolTable::ElfSymbolTable(ElfHandler* handler, std::istream& stream, const ElfSectionHeader* header)
    : ElfSymbolTable(handler) {
    ElfInput input(stream);
    const std::uint64_t numClaimed = header->sh_size / ElfSymbol::s_numBytes;
    const std::uint64_t numThere = (input.numBytesLeft() + ElfSymbol::s_numBytes - 1) / ElfSymbol::s_numBytes;
    if (numClaimed > numThere)
        reportNoMemoryForSection(handler->getErrorHandler());

    std::vector<unsigned char> bytes;
    for (std::uint64_t numLeft = std::min(numClaimed, numThere); numLeft != 0;) {
        const auto count = static_cast<std::size_t>(std::min(numLeft, s_symbolsAtATime));
        bytes.resize(count * ElfSymbol::s_numBytes);
        input.read(bytes.data(), bytes.size());
        for (std::size_t i = 0; i < bytes.size(); i += ElfSymbol::s_numBytes)
            m_symbols.emplace_back(bytes.data() + i);
        numLeft -= count;
    }
}

ElfSymbolTable::ElfSymbolTable(ElfHandler* handler, const ElfString* nullString) : ElfSymbolTable(handler) {
    m_symbols.emplace_back(nullString->getOffset(), 0U, 0U, 0U, 0U, 0U);
}

ElfSymbolTable::~ElfSymbolTable() = default;

unsigned int ElfSymbolTable::add(const ElfString* name, std::uint32_t value, std::uint32_t sectionIndex,
                                 std::uint32_t binding, std::uint32_t type, std::uint32_t size) {
    m_symbols.emplace_back(name->getOffset(), value, sectionIndex, binding, type, size);
    indexNewSymbols();
    return numSymbols() - 1;
}

void ElfSymbolTable::updateIndex() {
    m_numIndexed = 0;
    indexNewSymbols();
}

// Symbols that were read wait for this until a name is looked for, or one may change: most files are read
// by those who do neither. As long as no name changes, it doesn't show.
//
// Names behind the last text of a table that held a text twice are an exception: adding a text changes them
// without a word. The index gives only what still has the name under which it was put there.
void ElfSymbolTable::indexNewSymbols() {
    if (m_numIndexed == 0)
        m_nameIndex.reserve(m_symbols.size());
    for (; m_numIndexed < numSymbols(); ++m_numIndexed) {
        const std::uint32_t offset = m_symbols[m_numIndexed].st_name;
        const ElfTextIndex::Key key = ElfTextIndex::keyOf(m_handler->getStringsEntry(offset));
        if (m_nameIndex.find(key))
            continue;
        m_indexedNames.push_back({offset, m_numIndexed});
        m_nameIndex.insert(key, static_cast<std::uint32_t>(m_indexedNames.size() - 1));
    }
}

std::optional<unsigned int> ElfSymbolTable::lookUp(const char* name) {
    indexNewSymbols();
    if (const std::uint32_t* i = m_nameIndex.find(ElfTextIndex::keyOf(name)))
        return m_indexedNames[*i].symbolNum;

    // The index may be stale, since a symbol's `st_name` is open to change.
    for (unsigned int i = 0; i < numSymbols(); ++i) {
        const char* candidate = symbolName(i);
        if (candidate == name || std::strcmp(candidate, name) == 0)
            return i;
    }
    return std::nullopt;
}

ElfSymbol* ElfSymbolTable::find(const char* name) {
    const std::optional<unsigned int> symbolNum = lookUp(name);
    return symbolNum ? getSymbol(*symbolNum) : nullptr;
}

unsigned int ElfSymbolTable::findNumByName(const char* name) {
    return lookUp(name).value_or(0);
}

ElfSymbol* ElfSymbolTable::findGlobal(const char* name) {
    indexNewSymbols();
    for (unsigned int i = 0; i < numSymbols(); ++i) {
        if (m_symbols[i].getBinding() == ElfSymbol::STB_GLOBAL && std::strcmp(symbolName(i), name) == 0)
            return &m_symbols[i];
    }
    return nullptr;
}

int ElfSymbolTable::find(const ElfSymbol* symbol) const {
    const std::optional<std::size_t> symbolNum = m_symbols.indexOf(symbol);
    return symbolNum ? static_cast<int>(*symbolNum) : -1;
}

ElfSymbol* ElfSymbolTable::getSymbol(std::uint32_t symbolNum) {
    indexNewSymbols();
    return symbolNum < m_symbols.size() ? &m_symbols[symbolNum] : nullptr;
}

const ElfSymbol* ElfSymbolTable::getSymbol(std::uint32_t symbolNum) const {
    return symbolNum < m_symbols.size() ? &m_symbols[symbolNum] : nullptr;
}

std::uint32_t ElfSymbolTable::symbolValue(unsigned int symbolNum) const {
    ZELM_ASSERT(symbolNum < m_symbols.size());
    return m_symbols[symbolNum].st_value;
}

std::uint32_t ElfSymbolTable::symbolSize(unsigned int symbolNum) const {
    ZELM_ASSERT(symbolNum < m_symbols.size());
    return m_symbols[symbolNum].st_size;
}

std::uint32_t ElfSymbolTable::symbolInfo(unsigned int symbolNum) const {
    ZELM_ASSERT(symbolNum < m_symbols.size());
    return m_symbols[symbolNum].st_info;
}

std::uint32_t ElfSymbolTable::symbolSectionIndex(unsigned int symbolNum) const {
    ZELM_ASSERT(symbolNum < m_symbols.size());
    return m_symbols[symbolNum].st_shndx;
}

const char* ElfSymbolTable::symbolName(unsigned int symbolNum) const {
    return symbolNum < m_symbols.size() ? m_handler->getStringsEntry(m_symbols[symbolNum].st_name) : "";
}

unsigned char* ElfSymbolTable::createBuffer() const {
    auto buffer = std::make_unique<unsigned char[]>(numBytes());
    unsigned char* next = buffer.get();
    for (unsigned int i = 0; i < numSymbols(); ++i, next += ElfSymbol::s_numBytes)
        ElfSymbol::eachField(m_symbols[i], ElfFieldWriter(next));
    return buffer.release();
}

void ElfSymbolTable::check(ErrorHandler* errorHandler, unsigned int highestSection) const {
    for (unsigned int i = 0; i < numSymbols(); ++i) {
        const std::uint32_t section = m_symbols[i].st_shndx;
        if (section > highestSection && section < ElfSymbol::SHN_LORESERVE)
            errorHandler->fatalError(true, "Invalid section table index for symbol '%s'\n", symbolName(i));
    }
}

void ElfSymbolTable::display(const ElfStrings* strings) const {
    std::printf("\nSymbols:\n");
    for (unsigned int i = 0; i < numSymbols(); ++i) {
        const ElfSymbol& symbol = m_symbols[i];
        std::printf("%u: name: %s, st_name = %08x, st_value = %08x, st_size = %08x, ", i,
                    strings->getEntry(symbol.st_name), symbol.st_name, symbol.st_value, symbol.st_size);
        std::printf("st_info = %02x, st_other = %02x, st_shndx = %08x\n", symbol.st_info, symbol.st_other,
                    symbol.st_shndx);
    }
}
