#pragma once

#include "infr_libs/ZelmBinaryHandler/ZBHandler.h"

#include <memory>
#include <string>

// Containers in memory, as the commands that make images hold them.

struct DeleteContainer {
    void operator()(ZBHandler* container) const { deleteZBHandler(container); }
};
using Container = std::unique_ptr<ZBHandler, DeleteContainer>;

// The bytes of the file that the container makes. Throws a ToolFailure, which names the file that it would
// go to.
std::string bytesOf(ZBHandler* container, const std::string& file);

// The container in a file, or null after the library's message. What isn't read throws a ToolFailure.
Container loadContainer(const std::string& file);
