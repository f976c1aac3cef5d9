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

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

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
    const std::unique_ptr<Document> document = loadDocument(shownName(file), text);
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
std::optional<CorePlace> placeOf(const ZNLoader& network, const std::string& core) {
    std::optional<std::size_t> position;
    std::optional<std::uint32_t> number;
    const std::size_t colon = core.find(':');
    if (colon != std::string::npos) {
        position = wholeNumber<std::size_t>(std::string_view(core).substr(0, colon));
        number = wholeNumber<std::uint32_t>(std::string_view(core).substr(colon + 1));
    }
    for (const CorePlace& place : corePlaces(network))
        if (*place.name == core ||
            (position == place.position && number && std::cmp_equal(*number, place.core)))
            return place;
    return std::nullopt;
}

// Whether an image, whose sectors have 16 bits for each, can name the place.
bool fitsImage(const CorePlace& place) {
    return std::in_range<std::uint16_t>(place.position) && std::in_range<std::uint16_t>(place.core);
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

    // What one part has read, no other part would find.
    const auto isStandardInput = [](const std::string& value) { return value.ends_with("=-"); };
    const auto numFromInput = (networkFile == "-") + (configFile == "-") +
                              std::ranges::count_if(invocation.values("elf"), isStandardInput);
    if (numFromInput > 1)
        throw ToolFailure("image build: standard input holds one part only");

    const std::string networkText = readWhole(networkFile);
    const std::string configText = readWhole(configFile);
    std::vector<Program> programs;
    for (const std::string& value : invocation.values("elf"))
        programs.push_back(programOf(value));

    // All parts are looked at, so that one call names all their faults.
    const std::unique_ptr<ZNLoader> network = loadNetwork(shownName(networkFile), networkText);
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
        const std::optional<CorePlace> place = placeOf(*network, program.core);
        if (!place) {
            printMessage(networkFile,
                         "there is no core '" + program.core + "' for " + shownName(program.file));
            isSound = false;
            continue;
        }
        if (!fitsImage(*place)) {
            printMessage(networkFile, "core '" + program.core + "' is number " + std::to_string(place->core) +
                                          " at position " + std::to_string(place->position) +
                                          " of the scan chain: an image holds 0 to 65535");
            isSound = false;
            continue;
        }
        addElfZBSector(container.get(), static_cast<std::uint16_t>(place->position),
                       static_cast<std::uint16_t>(place->core), program.bytes.data(), program.bytes.size());
    }
    if (!isSound)
        return s_foundWrong;
    addEndZBSector(container.get());

    OutputFile output(outputFile, invocation.has("force"));
    output.write(bytesOf(container.get(), outputFile));
    output.close();
    return s_fine;
}
