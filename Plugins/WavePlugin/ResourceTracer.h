#pragma once

#include "Plugins/WavePlugin/Identifier.h"
#include "Plugins/WavePlugin/LineStream.h"
#include "Plugins/WavePlugin/TracePluginCallbacks.h"

#include <cstdint>
#include <cstdio>
#include <string>

class ElfHandler;
class StructureFileWriter;

// The base of all tracers. A tracer shows the resources of one kind, on one core or on the whole device: it
// declares their signals, and on each clock asks the simulator for their states and writes what changed.
// `TraceInfo` makes and owns the tracers of a core, the entry points those of the device.
//
// This is also the one place that knows how identifiers, value lines and time lines are spelled, and what
// counts as a change.
class ResourceTracer {
public:
    // A tracer of a core. The pid is the packed core id of the callbacks, the name that of the network. The
    // callbacks must outlive the tracer.
    ResourceTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string name);

    // A tracer of the whole device: no core, no name, empty tag and prefix.
    explicit ResourceTracer(TracePluginCallbacks* callbacks);

    virtual ~ResourceTracer();

    ResourceTracer(const ResourceTracer&) = delete;
    ResourceTracer& operator=(const ResourceTracer&) = delete;

    // ---------------------------------------------------------------- the life of a tracer, by virtual slot.
    // It begins with the three operations of the structure document.

    // Writes the `$var` lines.
    virtual void declareVariables(FILE* fp) = 0;

    // Writes a `$dumpvars` block with the first values, and remembers them.
    virtual void initialiseVariables(FILE* fp) = 0;

    // Writes what differs from the values last written. Once a clock; allocates nothing, but where a thread
    // comes to a function of a longer name than it ever was in. The flag is true until something was written
    // in this clock.
    virtual void traceVariables(FILE* fp, bool* firstChange) = 0;

    // Lists the signals in the structure document.
    virtual void dumpSignalHierarchy(StructureFileWriter* writer) = 0;

    // Lists names for values that one ELF image of the core gives. Called once an image.
    virtual void dumpSignalValueAliases(StructureFileWriter* writer, ElfHandler* elf,
                                        std::string coreName) = 0;

    // Describes the signals in the structure document.
    virtual void dumpSignalDocs(StructureFileWriter* writer) = 0;

    // ---------------------------------------------------------------- what all tracers share

    TracePluginCallbacks* getCallbacks() { return m_callbacks; }

    // Ends the process in a tracer that belongs to no core.
    unsigned int getPid();

    // Decimal node number and decimal core number with nothing between them. Nodes and cores may collide
    // (node 1 core 11, node 11 core 1): wanted.
    const char* getTag() const { return m_tag; }

    // The core's name and an underscore: what the full name of a core's signal begins with.
    const char* getPrefix() const { return m_prefix.c_str(); }

    // The identifier of a signal. Valid until the next call.
    char* getTag(const char* prefix, const char* suffix, unsigned int index);

    // The name of a resource for which the simulator gives none.
    static constexpr const char* s_unnamed = "(null)";

    // The name with each colon replaced by an underscore.
    std::string rationaliseName(const char* name);

    // Eight bytes, the first one in the top byte. Reads exactly eight, with no stop at a terminator.
    std::uint64_t bytesToInt64(const unsigned char* bytes);

    // The low bits of the value as digits, most significant first; below 1,024. Bits above the 64th repeat
    // the value: wanted. Valid until the next call.
    char* getBinaryValue(std::uint64_t value, unsigned int numBits);

    // The bits of the text's first numBytes bytes, zero bits behind its end; below 128 bytes. Valid until
    // the next call.
    char* getBinaryValueString(const char* text, unsigned int numBytes);

    // Writes the time line and clears the flag, if it is set.
    void printCycles(FILE* fp, bool* firstChange);

    // Writes one value line, which reaches the file at once. Width 0 and 1 give a scalar line, in which the
    // value isn't masked: wanted.
    void output(FILE* fp, unsigned int width, std::uint64_t value, const char* prefix, const char* suffix,
                unsigned int index);

    // Writes the value, behind the clock's time line, and remembers it; nothing if it is the one remembered.
    void outputIfChanged(FILE* fp, unsigned int width, std::uint64_t* cached, std::uint64_t value,
                         bool* firstChange, const char* prefix, const char* suffix, unsigned int index) {
        if (*cached != value)
            outputChange(fp, width, cached, value, firstChange, prefix, suffix, index);
    }

    // Writes one value line with the bits of a text. Unlike a number, it may stay in the stream's buffer.
    void outputString(FILE* fp, unsigned int numBytes, const char* text, const char* prefix,
                      const char* suffix, unsigned int index);

    // As `outputIfChanged`, for a text. Reads numBytes bytes at the text, whatever its length. The cache has
    // numBytes + 1 bytes, the last one zero.
    void outputIfChangedString(FILE* fp, unsigned int numBytes, char* cached, const char* text,
                               bool* firstChange, const char* prefix, const char* suffix, unsigned int index);

protected:
    // The same for a run of lines, with identifiers made beforehand.
    void printCycles(LineStream& stream, bool* firstChange) {
        if (*firstChange)
            writeTimeLine(stream, firstChange);
    }
    void output(LineStream& stream, unsigned int width, std::uint64_t value, const Identifier& identifier);

    // Writes the time line to memory, clears the flag, and returns the line's end.
    char* appendTimeLine(char* at, bool* firstChange);
    static constexpr std::size_t s_timeLineRoom = 13; // a number of 32 bits with its sign, and two more

    // The instruction that the core executed in this clock. Words that the simulator leaves alone read as
    // zero, those without a name hold nothing defined: clearing them too would take as long as all else here.
    void getInstruction(TraceInstructionState* state);

    TracePluginCallbacks* m_callbacks; // the simulator's; not owned
    unsigned int m_pid;                // packed core id; all bits set: no core
    std::string m_name;                // the core's, from the network; empty: no core
    char m_tag[32] = {};               // ten digits at most
    std::string m_prefix;

private:
    void outputChange(FILE* fp, unsigned int width, std::uint64_t* cached, std::uint64_t value,
                      bool* firstChange, const char* prefix, const char* suffix, unsigned int index);
    void writeTimeLine(LineStream& stream, bool* firstChange);
};
