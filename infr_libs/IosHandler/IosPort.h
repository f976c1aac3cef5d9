#pragma once

#include <cstdio>
#include <map>
#include <string>

class IosPin;
struct ZelmUtils;

// A port of a core, and the pins that its bits are connected to. Owned by the `IosHandler`.
class IosPort {
public:
    // `id` is the resource identifier: the width in bits 16 to 21, the number among ports of this width in
    // bits 8 to 15.
    IosPort(ZelmUtils* utils, const std::string& name, unsigned id);
    virtual ~IosPort();

    IosPort(const IosPort&) = delete;
    IosPort& operator=(const IosPort&) = delete;

    const std::string& getName() const { return m_name; }
    unsigned getId() const { return m_id; }
    unsigned getSize() const { return (m_id >> 16) & 0x3f; } // width in bits

    // Null for a bit that isn't connected, whose priority is 0.
    IosPin* getPin(unsigned bit) const;
    unsigned getPinPriority(unsigned bit) const;

    // A bit that is connected already is reported, and stays as it is.
    void connectPin(unsigned bit, unsigned priority, IosPin* pin);

    void dump(FILE* file) const;

private:
    ZelmUtils* m_utils; // not owned
    std::string m_name;
    unsigned m_id;
    std::map<unsigned, IosPin*> m_bitPins; // not owned
    std::map<unsigned, unsigned> m_bitPriorities;
};
