#include "tools/zetool/image/Container.h"

#include "tools/zetool/Messages.h"
#include "tools/zetool/WholeFile.h"

#include <cstdint>
#include <limits>
#include <new>

std::string bytesOf(ZBHandler* container, const std::string& file) {
    const std::uint64_t size = getZBFileSize(container);
    if (size > std::numeric_limits<std::int32_t>::max())
        throw ToolFailure(file, "an image can't have " + std::to_string(size) + " bytes");
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (writeZBToMemory(container, bytes.data(), static_cast<std::int32_t>(size)) < 0)
        throw ToolFailure(file, container->errorMessage);
    return bytes;
}

Container loadContainer(const std::string& file) {
    const std::string bytes = readWhole(file);
    Container container(loadZBFromMemory(bytes.data(), bytes.size()));
    if (!container)
        throw std::bad_alloc();
    if (container->errorCode == 0)
        return container;
    printMessage(file, container->errorMessage);
    return nullptr;
}
