#pragma once

#include "infr_libs/AutoDefines/AutoDefines.h"
#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/IosHandler/IosHandler.h"
#include "infr_libs/StringLibrary/StringLibrary.h"

#include <memory>
#include <vector>

// A port and a link with their places.
struct PlacedPort {
    unsigned node;
    unsigned core;
    const IosPort* port;
};
struct PlacedLink {
    unsigned node;
    const IosZLink* link;
};

// The pin map of a configuration, with all that it needs to live. Commands make it, and own it.
class PinMap {
public:
    // `root` is that of a ZSystem document with a `System` in it, which needn't outlive the map. Throws what
    // the readers throw.
    explicit PinMap(XmlNode* root);

    const IosHandler& handler() const { return m_handler; }

    // In the order of numbers, of a core or a node in the order of their making; the map owns what they
    // point to.
    std::vector<PlacedPort> ports() const;
    std::vector<PlacedLink> links() const;

private:
    CatchableErrorHandler m_errorHandler;
    StringLibrary m_strings{&m_errorHandler};
    std::unique_ptr<AutoDefines> m_autoDefines;
    ZelmUtils m_utils;
    IosHandler m_handler;
};
