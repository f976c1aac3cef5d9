#pragma once

#include "infr_libs/ZNLoader/NodeConfig.h"

// The one node that a `NodeConfig` describes.
struct NodeInstance {
    using Cores = std::vector<std::unique_ptr<NodeConfig::CoreInstance>>;

    int number = 0;
    int reserved = 0;
    int jtagId = 0;                                           // 0 if absent
    int userId = 0;                                           // 0 if absent
    std::unique_ptr<Cores> cores = std::make_unique<Cores>(); // in document order
    XmlNode* xmlNode = nullptr;                               // the `Node`, owned by the parser
};
