#include "tools/zetool/image/ImageBuild.h"

#include "infr_libs/ElfHandler/ElfHandler.h"
#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"
#include "tools/zetool/Command.h"
#include "tools/zetool/Documents.h"
#include "tools/zetool/image/Container.h"
#include "tools/zetool/image/Places.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/OutputFile.h"
#include "tools/zetool/WholeFile.h"
#include "tools/zetool/Words.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Where a program goes: the position of its node in the scan chain, and the core's number on it.
struct Place {
    std::uint16_t position;
    std::uint16_t core;
};

struct Program {
    std::string core; // as given
    std::string file;
    std::string bytes;
};

// A value "CORE=FILE"; the last = counts, since core names may hold one and files seldom do.
Program programOf(const std::string& value) {
    const std::size_t mark = value.rfind('=');
    if (mark == std::string::npos || mark == 0 || mark + 1 == value.size())
        throw ToolFailure("image build: '" + value + "' isn't of the form CORE=FILE");
    Program program{value.substr(0, mark), value.substr(mark + 1), {}};
    program.bytes = readWhole(program.file);
    return program;
}

bool checkConfiguration(const std::string& file, const std::string& text) {
    const std::unique_ptr<Document> document = loadDocument(file, text);
    if (!document)
        return false;
    const std::string& root = *document->root()->getName();
    if (root == "ZSystem")
        return true;
    printMessage(file, "the root must be 'ZSystem', not '" + root + "'");
    return false;
}

bool checkProgram(const Program& program) {
    CatchableErrorHandler handler;
    std::istringstream stream(program.bytes);
    try {
        const ElfHandler elf(&handler, stream);
        return true;
    } catch (const std::string& error) {
        printMessage(program.file, error.substr(0, error.find_last_not_of('\n') + 1));
        return false;
    }
}

// The place of a core by its name, or by "POSITION:CORE"; nothing if the network has no such core.
std::optional<Place> placeOf(const ZNLoader& network, const std::string& core) {
    std::optional<Place> given;
    const std::size_t colon = core.find(':');
    if (colon != std::string::npos) {
        const auto position = wholeNumber<std::uint16_t>(std::string_view(core).substr(0, colon));
        const auto number = wholeNumber<std::uint16_t>(std::string_view(core).substr(colon + 1));
        if (position && number)
            given = Place{*position, *number};
    }
    for (const CorePlace& candidate : corePlaces(network)) {
        const Place place{static_cast<std::uint16_t>(candidate.position),
                          static_cast<std::uint16_t>(candidate.core)};
        if (*candidate.name == core ||
            (given && given->position == place.position && given->core == place.core))
            return place;
    }
    return std::nullopt;
}

const std::string& required(const Invocation& invocation, const char* option) {
    if (!invocation.has(option))
        throw ToolFailure(std::string("image build: --") + option + " is missing");
    return invocation.value(option);
}

} // namespace

int imageBuild(const Invocation& invocation) {
    const std::string& networkFile = required(invocation, "network");
    const std::string& configFile = required(invocation, "config");
    required(invocation, "elf");
    const std::string& outputFile = required(invocation, "output");

    const std::string networkText = readWhole(networkFile);
    const std::string configText = readWhole(configFile);
    std::vector<Program> programs;
    for (const std::string& value : invocation.values("elf"))
        programs.push_back(programOf(value));

    // All parts are looked at, so that one call names all their faults.
    const std::unique_ptr<ZNLoader> network = loadNetwork(networkFile, networkText);
    bool isSound = checkConfiguration(configFile, configText) && network;
    const Container container(createZBHandler());
    if (!container)
        throw ToolFailure("not enough memory");
    addZBSector(container.get(), ZBSEC_SYSCONFIG, configText.size(), configText.data());
    addZnZBSector(container.get(), networkText.size(), networkText.data());
    for (const Program& program : programs) {
        isSound = checkProgram(program) && isSound;
        if (!network)
            continue;
        const std::optional<Place> place = placeOf(*network, program.core);
        if (!place) {
            printMessage(networkFile, "there is no core '" + program.core + "' for " + program.file);
            isSound = false;
            continue;
        }
        addElfZBSector(container.get(), place->position, place->core, program.bytes.data(),
                       program.bytes.size());
    }
    if (!isSound)
        return s_foundWrong;
    addEndZBSector(container.get());

    OutputFile output(outputFile, invocation.has("force"));
    output.write(bytesOf(container.get(), outputFile));
    output.close();
    return s_fine;
}
