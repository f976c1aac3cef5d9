#pragma once

#include "infr_libs/AutoDefines/AutoDefines.h"
#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "infr_libs/ErrorHandler/ZelmUtils.h"
#include "infr_libs/IosHandler/IosHandler.h"
#include "infr_libs/StringLibrary/StringLibrary.h"

#include <memory>
#include <string>
#include <vector>

// A pin, and one bit of a port or a link that is connected to it.
struct PinConnection {
    const IosPin* pin;
    const IosPort* port = nullptr; // one of the two, or none
    const IosZLink* link = nullptr;
    unsigned node = 0;
    unsigned core = 0; // of a port
    unsigned bit = 0;
    unsigned priority = 0; // of a port
    bool isIn = false;     // of a link

    // The name of the port or link; empty without one.
    std::string name() const;
};

// How commands call a link: "link3".
std::string linkName(const IosZLink& link);

// The map of an image, with all that it needs to live.
class PinMap {
public:
    // The map of a configuration document. Throws what the readers throw.
    explicit PinMap(const std::string& document);

    const IosHandler& handler() const { return *m_handler; }

    // Pins in the order of pads, each with its ports and then its link; a pin without either once.
    const std::vector<PinConnection>& connections() const { return m_connections; }

private:
    void connect();

    CatchableErrorHandler m_errorHandler;
    StringLibrary m_strings{&m_errorHandler};
    ZelmUtils m_utils{&m_errorHandler, &m_strings, nullptr};
    std::unique_ptr<AutoDefines> m_autoDefines;
    std::unique_ptr<IosHandler> m_handler;
    std::vector<PinConnection> m_connections;
};

// The map of an image file, or null after the reader's messages.
std::unique_ptr<PinMap> loadPinMap(const std::string& file);
