#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ElfHandler/ElfSectionHeader.h"
#include "infr_libs/ElfHandler/ElfStrings.h"
#include "infr_libs/ElfHandler/ElfSymbolTable.h"
#include "infr_libs/ErrorHandler/Assertion.h"

#include <utility>

unsigned int ElfHandler::numSymbols() const {
    return m_symbolTable ? m_symbolTable->numSymbols() : 0;
}

const char* ElfHandler::getSymbolName(unsigned int index) const {
    ZELM_ASSERT(m_symbolTable != __null);
    return m_symbolTable->symbolName(index);
}

std::uint32_t ElfHandler::getSymbolInfo(unsigned int index) const {
    ZELM_ASSERT(m_symbolTable != __null);
    return m_symbolTable->symbolInfo(index);
}

std::uint32_t ElfHandler::getSymbolValue(unsigned int index) const {
    ZELM_ASSERT(m_symbolTable != __null);
    return m_symbolTable->symbolValue(index);
}

std::uint32_t ElfHandler::getSymbolSize(unsigned int index) const {
    ZELM_ASSERT(m_symbolTable != __null);
    return m_symbolTable->symbolSize(index);
}

std::uint32_t ElfHandler::getSymbolSectionIndex(unsigned int index) const {
    ZELM_ASSERT(m_symbolTable != __null);
    return m_symbolTable->symbolSectionIndex(index);
}

bool ElfHandler::isSymbolGlobal(unsigned int index) const {
    ZELM_ASSERT(m_symbolTable != __null);
    const std::uint32_t binding = m_symbolTable->symbolInfo(index) >> 4;
    return binding == ElfSymbol::STB_GLOBAL || binding == ElfSymbol::STB_WEAK;
}

bool ElfHandler::lookupSymbolValue(const char* name, std::uint32_t& value) const {
    const ElfSymbol* symbol = m_symbolTable ? m_symbolTable->find(name) : nullptr;
    if (!symbol)
        return false;
    value = symbol->st_value;
    return true;
}

const char* ElfHandler::getStringsEntry(std::uint32_t offset) const {
    return m_strings ? m_strings->getEntry(offset) : "";
}

ElfString* ElfHandler::findString(const char* text) {
    return m_strings->find(text);
}

ElfString* ElfHandler::addString(const char* text) {
    return m_strings->add(text);
}

unsigned int ElfHandler::addSymbol(const char* name, std::uint32_t value, std::uint32_t sectionIndex,
                                   std::uint32_t binding, std::uint32_t type, std::uint32_t size,
                                   const char*) {
    ZELM_ASSERT(binding == 1 || binding == 0 || binding == 2);
    return m_symbolTable->add(m_strings->add(name), value, sectionIndex, binding, type, size);
}

unsigned int ElfHandler::addAbsoluteSymbol(const char* name, std::uint32_t value, std::uint32_t binding,
                                           std::uint32_t type, std::uint32_t size, const char* text) {
    ZELM_ASSERT(binding == 1 || binding == 0 || binding == 2);
    return addSymbol(name, value, ElfSymbol::SHN_ABS, binding, type, size, text);
}

unsigned int ElfHandler::addCommonSymbol(const char* name, std::uint32_t size, std::uint32_t value,
                                         std::uint32_t binding, std::uint32_t type, const char* text) {
    ZELM_ASSERT(binding == 1 || binding == 0 || binding == 2);
    return addSymbol(name, value, ElfSymbol::SHN_COMMON, binding, type, size, text);
}

unsigned int ElfHandler::addUndefinedSymbol(const char* name, std::uint32_t binding, std::uint32_t type,
                                            std::uint32_t size, const char* text) {
    ZELM_ASSERT(binding == 1 || binding == 0 || binding == 2);
    return addSymbol(name, 0, ElfSymbol::SHN_UNDEF, binding, type, size, text);
}

void ElfHandler::collectReferences(std::set<const ElfSymbol*>& symbols, unsigned int sectionIndex,
                                   std::uint64_t from, std::uint64_t to) const {
    const ElfSectionHeader* section = getSectionHeader(sectionIndex);
    if (!section)
        return;
    for (const ElfRelocationTable* table : section->getRelocations()) {
        for (const ElfRelocation& relocation : table->getRelocations()) {
            if (from <= relocation.getOffset() && relocation.getOffset() < to)
                symbols.insert(std::as_const(*m_symbolTable).getSymbol(relocation.getSymbol()));
        }
    }
}

void ElfHandler::getReferencedSymbols(std::set<const ElfSymbol*>& symbols, unsigned int sectionIndex) const {
    collectReferences(symbols, sectionIndex, 0, std::uint64_t{1} << 32);
}

void ElfHandler::getReferencedSymbols(std::set<const ElfSymbol*>& symbols, unsigned int sectionIndex,
                                      std::uint32_t from, std::uint32_t to) const {
    collectReferences(symbols, sectionIndex, from, to);
}

void ElfHandler::getReferencedSymbols(std::set<const ElfSymbol*>& symbols, const ElfSymbol* topSym,
                                      const ElfSymbol* botSym) const {
    ZELM_ASSERT(topSym && botSym);
    ZELM_ASSERT(topSym->st_shndx == botSym->st_shndx);
    collectReferences(symbols, topSym->st_shndx, topSym->st_value, botSym->st_value);
}
