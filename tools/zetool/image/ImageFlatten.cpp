#include "tools/zetool/image/ImageFlatten.h"

#include "infr_libs/ZelmBinaryHandler/ZBErrors.h"
#include "tools/zetool/Command.h"
#include "tools/zetool/image/Container.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/Result.h"

#include <cstdint>
#include <string>

namespace {

// More than any device of the family has: beyond that an address is wrong, and the gap in front of it would
// fill the memory of the host.
constexpr std::uint64_t s_mostFlatBytes = std::uint64_t{64} << 20;

// The first ELF sector that is left.
std::size_t indexOfElf(const ZBHandler* container) {
    std::size_t index = 0;
    for (auto* sector = getFirstSector(container); sector && sector->type != ZBSEC_ELF;
         sector = getNextSector(container, sector))
        ++index;
    return index;
}

} // namespace

int imageFlatten(const Invocation& invocation) {
    const std::string& file = invocation.value("FILE");
    if (!invocation.has("output"))
        throw ToolFailure("image flatten: --output is missing");
    const Container container = loadContainer(file);
    if (!container)
        return s_foundWrong;
    if (banishElves(container.get(), s_mostFlatBytes) != 0) {
        printMessage(file, "sector " + std::to_string(indexOfElf(container.get())) + ": " +
                               container->errorMessage);
        if (container->errorCode == zbinternals::s_outOfMemory.code)
            printMessage(file, "flat images of more than " + std::to_string(s_mostFlatBytes) +
                                   " bytes aren't made");
        return s_foundWrong;
    }
    OutputFile output = resultFile(invocation);
    output.write(bytesOf(container.get(), invocation.value("output")));
    output.close();
    return s_fine;
}
