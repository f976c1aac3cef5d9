// What a simulator may have of its own under the plugin's names: an older version of the same classes, say.
// Linked into a host and exported by it; whoever calls one of these by mistake ends the process.

#include <cstdio>
#include <cstdlib>
#include <string>

#pragma GCC visibility push(default)

namespace {

[[noreturn]] void calledByMistake(const char* name) {
    std::fprintf(stderr, "the host's own %s was called\n", name);
    std::_Exit(9);
}

} // namespace

class ErrorHandler {
public:
    virtual ~ErrorHandler();
    virtual void fatalError(bool exit, const char* format, ...);
};
ErrorHandler::~ErrorHandler() {
    calledByMistake("~ErrorHandler");
}
void ErrorHandler::fatalError(bool, const char*, ...) {
    calledByMistake("ErrorHandler::fatalError");
}

class PluginLibrary {
public:
    PluginLibrary();
    virtual ~PluginLibrary();
    bool openZe(const char* fileName);
    unsigned int getNumActiveProcessors();
};
PluginLibrary::PluginLibrary() {
    calledByMistake("PluginLibrary");
}
PluginLibrary::~PluginLibrary() {
    calledByMistake("~PluginLibrary");
}
bool PluginLibrary::openZe(const char*) {
    calledByMistake("PluginLibrary::openZe");
}
unsigned int PluginLibrary::getNumActiveProcessors() {
    calledByMistake("PluginLibrary::getNumActiveProcessors");
}

class ResourceTracer {
public:
    char* getTag(const char* prefix, const char* suffix, unsigned int index);
    std::string rationaliseName(const char* name);
    void printCycles(FILE* fp, bool* firstChange);
};
char* ResourceTracer::getTag(const char*, const char*, unsigned int) {
    calledByMistake("ResourceTracer::getTag");
}
std::string ResourceTracer::rationaliseName(const char*) {
    calledByMistake("ResourceTracer::rationaliseName");
}
void ResourceTracer::printCycles(FILE*, bool*) {
    calledByMistake("ResourceTracer::printCycles");
}

class StructureFileWriter {
public:
    void openHierachy();
    void closeHierachy();
};
void StructureFileWriter::openHierachy() {
    calledByMistake("StructureFileWriter::openHierachy");
}
void StructureFileWriter::closeHierachy() {
    calledByMistake("StructureFileWriter::closeHierachy");
}

extern "C" {
unsigned int PluginInitialise(void* callbacks, const char* arguments);
void PluginClock(unsigned int instance);

unsigned int PluginInitialise(void*, const char*) {
    calledByMistake("PluginInitialise");
}
void PluginClock(unsigned int) {
    calledByMistake("PluginClock");
}
}
