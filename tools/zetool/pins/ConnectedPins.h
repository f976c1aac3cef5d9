#pragma once

#include "tools/zetool/pins/PinMap.h"

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

// The pin map of an image, pin by pin. `loadConnectedPins` makes it for its caller.
class ConnectedPins {
public:
    // As PinMap.
    explicit ConnectedPins(XmlNode* root);

    const PinMap& map() const { return m_map; }

    // Pins in the order of pads, each with its ports and then its link; a pin without either once.
    const std::vector<PinConnection>& connections() const { return m_connections; }

private:
    PinMap m_map;
    std::vector<PinConnection> m_connections;
};

// The pins of an image file, or null after the reader's messages.
std::unique_ptr<ConnectedPins> loadConnectedPins(const std::string& file);
