#include "tools/zetool/image/ImageExtract.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/image/SectorChoice.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>

namespace {

// The name of a sector's file in a folder, as 2-elf-node0-core1.elf.
std::string nameOf(const ImageSector& sector) {
    std::string name = std::to_string(sector.index) + "-";
    name += sector.row ? sector.row->name : "type" + std::to_string(sector.head.type);
    if (sector.hasRecord)
        name += "-node" + std::to_string(sector.node);
    if (sector.isPlace())
        name += "-core" + std::to_string(sector.core);
    return name + "." + (sector.row ? sector.row->extension : "bin");
}

// Writes the payload of the walker's sector, and closes the file unless the sector is cut off. False where
// something is wrong with it.
bool extract(SectorWalker& walker, OutputFile& output, const std::string& file, bool raw) {
    std::uint64_t before = raw ? 0 : walker.sector().prefixSize();
    const bool isWhole = walker.read([&](std::string_view piece) {
        const auto left = static_cast<std::size_t>(std::min<std::uint64_t>(before, piece.size()));
        before -= left;
        output.write(piece.substr(left));
    });
    if (!isWhole)
        return false;
    output.close();
    const ImageSector& sector = walker.sector();
    if (!sector.hasWrongCrc())
        return true;
    printMessage(file, sector.crcFault());
    return false;
}

int extractAll(const Invocation& invocation, SectorWalker& walker) {
    const std::string& file = invocation.value("FILE");
    const std::string& folder = invocation.value("output");
    if (folder.empty() || folder == "-")
        throw ToolFailure("image extract: --all needs a folder: -o FOLDER");
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw ToolFailure(folder, "can't be made: " + error.message());
    bool isSound = true;
    while (walker.next()) {
        OutputFile output((std::filesystem::path(folder) / nameOf(walker.sector())).string(),
                          invocation.has("force"));
        isSound = extract(walker, output, file, invocation.has("raw")) && isSound;
    }
    if (!walker.fault().empty())
        printMessage(file, walker.fault());
    return isSound && walker.fault().empty() ? s_fine : s_foundWrong;
}

int extractOne(const Invocation& invocation, SectorWalker& walker) {
    const std::string& file = invocation.value("FILE");
    const SectorChoice choice(invocation.value("SECTOR"));
    bool isThere = false;
    bool isSound = false;
    while (!isThere && walker.next()) {
        isThere = choice.fits(walker.sector());
        if (isThere) {
            OutputFile output = resultFile(invocation);
            isSound = extract(walker, output, file, invocation.has("raw"));
        } else {
            walker.skip();
        }
    }
    if (!walker.fault().empty())
        printMessage(file, walker.fault());
    else if (!isThere)
        throw ToolFailure(file, "there is no sector " + choice.text());
    return isSound ? s_fine : s_foundWrong;
}

} // namespace

int imageExtract(const Invocation& invocation) {
    if (invocation.has("all") == invocation.has("SECTOR"))
        throw ToolFailure("image extract: which sector? SECTOR or --all, one of the two");
    InputFile input(invocation.value("FILE"));
    SectorWalker walker(input);
    if (!walker.hasHeader()) {
        printMessage(input.path(), walker.fault());
        return s_foundWrong;
    }
    return invocation.has("all") ? extractAll(invocation, walker) : extractOne(invocation, walker);
}
