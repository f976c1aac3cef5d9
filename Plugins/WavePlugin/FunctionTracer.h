#pragma once

#include "Plugins/WavePlugin/ResourceTracer.h"
#include "Plugins/WavePlugin/ShortFunctionNames.h"

#include <vector>

// Shows which function each hardware thread of a core executes, as a value of eight characters. The
// structure document pairs these short names with the functions' own, which come from the symbols of the
// core's ELF images.
class FunctionTracer : public ResourceTracer {
public:
    FunctionTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName);

    void dumpSignalHierarchy(StructureFileWriter* writer) override;
    void dumpSignalValueAliases(StructureFileWriter* writer, ElfHandler* elf, std::string coreName) override;
    void dumpSignalDocs(StructureFileWriter* writer) override;
    void declareVariables(FILE* fp) override;
    void initialiseVariables(FILE* fp) override;

    // Allocates only where a thread comes to a function of a longer name than it ever was in.
    void traceVariables(FILE* fp, bool* firstChange) override;

    // Settles the short name of a function; one numbering serves all images of the core.
    std::string createShortFunctionName(const char* name);

    // The short name of a function, or its first eight bytes if none was settled.
    std::string getShortFunctionName(const char* name) const;

private:
    // What was last written for a thread.
    struct ThreadFunction {
        std::string name;                                     // the function's own
        char shortName[ShortFunctionNames::s_numBytes + 1]{}; // as written, and a zero
        bool written = false;                                 // until then the waveform shows x
    };

    std::vector<ThreadFunction> m_threadFunctions; // by thread number
    ShortFunctionNames m_shortNames;               // complete before the first clock
};
