#pragma once

#include "infr_libs/ElfHandler/ElfGroupList.h"
#include "infr_libs/ElfHandler/ElfRelocationTable.h"

#include <cstdint>
#include <iosfwd>
#include <list>
#include <memory>
#include <set>
#include <string>
#include <vector>

class ElfBlock;
class ElfHeader;
class ElfInput;
class ElfProgramHeader;
class ElfSectionHeader;
class ElfString;
class ElfStrings;
class ElfSymbol;
class ElfSymbolTable;
class ErrorHandler;

// One 32-bit little-endian ELF file as objects: read whole from a stream, or built from nothing, changed and
// written. Contents are blocks, one for each segment and one for each section that no segment covers; a
// section header only points into a block. There is one symbol table and one string table, which also has
// the section names. Whoever makes a handler owns it, and it owns all objects that it hands out but where an
// operation says otherwise.
//
// Faults in a file and failed writing go to the error handler; misuse is an assertion. Where the error
// handler returns, reading goes on, except behind a second symbol or string table.
class ElfHandler {
public:
    // What a loader needs of a segment.
    struct Segment {
        std::uint32_t paddr;
        std::uint32_t filesz;      // so many bytes are there
        const unsigned char* data; // in a block of the handler
    };

    // Note sections all have this name, written without a terminating zero.
    static constexpr const char* noteName = "ZELM";
    static constexpr std::uint32_t noteNameLen = 4;

    enum NoteType : std::uint32_t { NOTE_IDENT = 1, NOTE_CORE = 2, NOTE_COREREV = 3 };

    enum FileType : std::uint8_t { ET_REL = 1, ET_EXEC = 2 };

    // Reads the file from the stream's position. The stream isn't needed afterwards.
    ElfHandler(ErrorHandler* errorHandler, std::istream& stream);

    // Reads the file of this path.
    ElfHandler(ErrorHandler* errorHandler, const char* fileName);

    // A new file of this type, 1 (relocatable) or 2 (executable), else an assertion. It has the null section
    // and the null symbol.
    ElfHandler(ErrorHandler* errorHandler, unsigned char type);

    virtual ~ElfHandler();

    ElfHandler(const ElfHandler&) = delete;
    ElfHandler& operator=(const ElfHandler&) = delete;

    // ---- The file ----

    std::uint32_t getEntryPoint() const;
    unsigned int getType() const;
    const ElfHeader* getHeader() const { return m_header.get(); }
    const std::string& getFileName() const { return m_fileName; }
    ErrorHandler* getErrorHandler() const { return m_errorHandler; }

    const std::vector<std::unique_ptr<ElfProgramHeader>>& getProgramHeaders() const {
        return m_programHeaders;
    }
    const std::vector<std::unique_ptr<ElfSectionHeader>>& getSectionHeaders() const {
        return m_sectionHeaders;
    }
    const std::vector<std::unique_ptr<ElfBlock>>& getBlocks() const { return m_blocks; }
    const std::vector<std::unique_ptr<ElfGroup>>& getGroups() const { return m_groups.getGroups(); }
    const std::list<ElfRelocationTable>& getRelocationTables() const { return m_relocationTables; }
    ElfSymbolTable* getSymbolTable() const { return m_symbolTable.get(); }
    ElfStrings* getStrings() const { return m_strings.get(); }

    // Null for an index out of range.
    ElfSectionHeader* getSectionHeader(unsigned int sectionIndex) const;

    // The block that is this segment, or null.
    ElfBlock* findBlock(const ElfProgramHeader* header) const;

    // The first block that holds this section, and the section's offset in it; or null.
    ElfBlock* findBlock(const ElfSectionHeader* header, std::uint32_t& offset) const;

    // The loadable segments that have bytes in the file. A segment whose bytes couldn't be had, where the
    // error handler returned, is among them with none. The caller owns the vector and the records.
    std::vector<Segment*>* getProgramSegments() const;

    // Reports symbols that name a section which isn't there.
    void check() const;

    // Prints everything to standard output.
    void display() const;

    // ---- Symbols and strings ----

    // 0 without a symbol table.
    unsigned int numSymbols() const;

    // Valid until a string is added; empty for an index out of range.
    const char* getSymbolName(unsigned int index) const;

    // The fields of a symbol. An index out of range is an assertion.
    std::uint32_t getSymbolInfo(unsigned int index) const;
    std::uint32_t getSymbolValue(unsigned int index) const;
    std::uint32_t getSymbolSize(unsigned int index) const;
    std::uint32_t getSymbolSectionIndex(unsigned int index) const;

    // Global or weak.
    bool isSymbolGlobal(unsigned int index) const;

    // False, and no value, where there is no symbol of this name.
    bool lookupSymbolValue(const char* name, std::uint32_t& value) const;

    // The text at this offset of the string table, valid until a string is added; empty outside the table.
    const char* getStringsEntry(std::uint32_t offset) const;

    ElfString* findString(const char* text);
    ElfString* addString(const char* text);

    // Each adds a symbol and returns its index. The binding is local, global or weak, else an assertion. The
    // last text is accepted and ignored.
    unsigned int addSymbol(const char* name, std::uint32_t value, std::uint32_t sectionIndex,
                           std::uint32_t binding, std::uint32_t type, std::uint32_t size,
                           const char* text = nullptr);
    unsigned int addAbsoluteSymbol(const char* name, std::uint32_t value, std::uint32_t binding,
                                   std::uint32_t type, std::uint32_t size, const char* text = nullptr);
    unsigned int addCommonSymbol(const char* name, std::uint32_t size, std::uint32_t value,
                                 std::uint32_t binding, std::uint32_t type, const char* text = nullptr);
    unsigned int addUndefinedSymbol(const char* name, std::uint32_t binding, std::uint32_t type,
                                    std::uint32_t size, const char* text = nullptr);

    // Adds the symbols that the relocations of a section refer to, null for one that doesn't exist. The
    // second form takes the relocations with from <= offset < to, the third those between two symbols of one
    // section.
    void getReferencedSymbols(std::set<const ElfSymbol*>& symbols, unsigned int sectionIndex) const;
    void getReferencedSymbols(std::set<const ElfSymbol*>& symbols, unsigned int sectionIndex,
                              std::uint32_t from, std::uint32_t to) const;
    void getReferencedSymbols(std::set<const ElfSymbol*>& symbols, const ElfSymbol* topSym,
                              const ElfSymbol* botSym) const;

    // ---- Building ----
    // Headers, blocks and data arrays that are given become the handler's; arrays come from `new[]`.

    // Each returns the index of the header.
    unsigned int addProgramHeader(ElfProgramHeader* header);
    unsigned int addSectionHeader(ElfSectionHeader* header);
    unsigned int addRelocationHeader(ElfSectionHeader* header);

    void addBlock(ElfBlock* block);

    // A loadable segment of fileBytes of data, at this virtual and physical address. Returns its index.
    unsigned int addSegment(std::uint32_t vaddr, std::uint32_t fileBytes, std::uint32_t memBytes,
                            unsigned char* data, std::uint32_t flags, std::uint32_t align);

    // Each adds a section and returns its index. The forms with a segment place it inside that segment's
    // block. With contents, its range must lie within the block's bytes (assertion). Without contents, its
    // offset must lie behind the bytes in the file and not behind the memory (assertion); how far its size
    // reaches from there isn't looked at, which is wanted.
    unsigned int addProgbitsSection(std::uint32_t addr, std::uint32_t numBytes, unsigned char* data,
                                    const char* name, std::uint32_t flags, std::uint32_t addralign,
                                    std::uint32_t entsize);
    unsigned int addProgbitsSection(std::uint32_t addr, std::uint32_t numBytes, unsigned int segmentNo,
                                    std::uint32_t offset, const char* name, std::uint32_t flags,
                                    std::uint32_t addralign, std::uint32_t entsize);
    unsigned int addNobitsSection(std::uint32_t addr, std::uint32_t numBytes, unsigned int segmentNo,
                                  std::uint32_t offset, const char* name, std::uint32_t flags,
                                  std::uint32_t addralign, std::uint32_t entsize);
    unsigned int addNobitsSection(std::uint32_t addr, std::uint32_t numBytes, const char* name,
                                  std::uint32_t flags, std::uint32_t addralign, std::uint32_t entsize);
    unsigned int addInfoSection(std::uint32_t addr, std::uint32_t numBytes, unsigned char* data,
                                const char* name, std::uint32_t flags, std::uint32_t addralign,
                                std::uint32_t entsize);
    unsigned int addExprSection(std::uint32_t addr, std::uint32_t numBytes, unsigned char* data,
                                const char* name, std::uint32_t flags, std::uint32_t addralign,
                                std::uint32_t entsize);
    unsigned int addNetinfoSection(std::uint32_t addr, std::uint32_t numBytes, unsigned char* data,
                                   const char* name, std::uint32_t flags, std::uint32_t addralign,
                                   std::uint32_t entsize);
    unsigned int addGroupSection(std::uint32_t numBytes, unsigned char* data);

    // The description is copied, and stays the caller's.
    unsigned int addNoteSection(const char* name, std::uint32_t type, const void* data, std::uint32_t size);

    // ---- Changing section contents ----
    // A section number out of range is an assertion, and so is a section without a block. Bytes outside the
    // block are never touched.

    std::uint32_t getSectionSize(unsigned int sectionNo) const;

    // Copies `sh_size` bytes of the section to the destination; what the block lacks is 0.
    void writeSectionData(unsigned int sectionNo, void* destination) const;

    // These three count from the start of the block, not from the section's offset in it, which is wanted:
    // they are meant for a section that has a block of its own.

    // Stores a word at 4 * wordIndex.
    void modifySectionData(unsigned int sectionNo, std::uint32_t wordIndex, std::uint32_t value);

    // Inserts numBytes at the offset, in a block that has room for them (`ElfBlock::extendData`), and
    // overwrites them and the fillBytes before them with the bytes of the fill word, from the highest place
    // down. The fourth argument is ignored.
    void expandSectionData(unsigned int sectionNo, std::uint32_t offset, std::uint32_t numBytes,
                           std::uint32_t unused, std::uint32_t fill, std::uint32_t fillBytes);

    // Removes numBytes at the offset.
    void contractSectionData(unsigned int sectionNo, std::uint32_t offset, std::uint32_t numBytes);

    // ---- Relocations ----

    // An empty table for `addRelocations`; it stays in its place.
    ElfRelocationTable* newRelocationTable();

    // Makes a section of the table, named after the section that it applies to.
    void addRelocations(unsigned int sectionNo, ElfRelocationTable* table);

    // `ElfRelocationTable::adjustOffsets` for all tables of a section; nothing for a section that isn't
    // there.
    void adjustRelocationOffsets(unsigned int sectionNo, std::uint32_t position, std::int32_t delta);

    // `ElfRelocationTable::substituteSymbol` for all tables of the file.
    void substituteRelocationReferences(std::uint32_t oldIndex, std::uint32_t newIndex);

    // Lets all relocation sections name this section as their symbol table.
    void updateRelocationSymbolTableLinks(unsigned int symbolTableSection);

    // ---- Writing ----

    // Gives each block its place in the file, adds the sections of symbols and strings, and sets the entry
    // point of an executable to `_start`. For a built file, once.
    void setElfAddresses();

    // `setElfAddresses`, then writes the file. A handler is written once.
    void writeToFile(const char* fileName);

protected:
    // A handler without a file: no header and no tables.
    explicit ElfHandler(ErrorHandler* errorHandler);

private:
    struct Reading;

    // The fields of a section header as the builders give them; the offset waits for `setElfAddresses`.
    struct SectionFields {
        std::uint32_t type;
        const char* name;
        std::uint32_t flags = 0;
        std::uint32_t addr = 0;
        std::uint32_t size = 0;
        std::uint32_t addralign = 0;
        std::uint32_t entsize = 0;
    };

    void collectReferences(std::set<const ElfSymbol*>& symbols, unsigned int sectionIndex, std::uint64_t from,
                           std::uint64_t to) const;

    // ElfHandlerReader.cpp
    void readFileStream(std::istream& stream);
    void readHeaders(Reading& reading);
    std::unique_ptr<ElfBlock> readBlock(Reading& reading, std::uint32_t offset, std::uint32_t size,
                                        const char* contents);
    void readSegment(Reading& reading, ElfProgramHeader* header);
    void readSection(Reading& reading, ElfSectionHeader* header);
    void readContents(Reading& reading, ElfSectionHeader* header, const ElfBlock* block);
    void readRelocations(Reading& reading, ElfSectionHeader* header, const ElfBlock* block);
    void readGroup(Reading& reading, ElfSectionHeader* header);
    void addMissingTables();

    // ElfHandlerBuilding.cpp
    void createDefaultHeader(unsigned char type);
    unsigned int addSection(const SectionFields& fields);
    unsigned int addSection(const SectionFields& fields, unsigned char* data);
    unsigned int addSection(const SectionFields& fields, ElfBlock* block, std::uint32_t offset);

    // ElfHandlerEditing.cpp
    ElfBlock* findBlockOfSection(unsigned int sectionNo, std::uint32_t& offset) const;

    // ElfHandlerWriter.cpp
    unsigned int addSymbolTable(std::uint32_t offset);
    unsigned int addStringTable(std::uint32_t offset);
    void setEntryPoint();

    std::unique_ptr<ElfHeader> m_header;
    std::vector<std::unique_ptr<ElfProgramHeader>> m_programHeaders; // in file order
    std::vector<std::unique_ptr<ElfSectionHeader>> m_sectionHeaders; // in file order, the null section first
    std::vector<ElfSectionHeader*> m_relocationHeaders;              // those of relocation sections
    std::vector<std::unique_ptr<ElfBlock>> m_blocks; // segments first, then uncovered sections
    std::list<ElfRelocationTable> m_relocationTables;
    std::unique_ptr<ElfStrings> m_strings;
    std::unique_ptr<ElfSymbolTable> m_symbolTable;
    ElfGroupList m_groups;
    bool m_tablesInFile = false; // symbols and strings have their sections, because the file was read
    ErrorHandler* m_errorHandler;
    std::string m_fileName; // the path given, else empty
};
