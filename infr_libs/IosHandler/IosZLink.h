#pragma once

#include <cstdio>
#include <map>

class IosPin;
struct ZelmUtils;

// A link of a node's switch, and the pins that its bits are connected to, each way. Owned by the
// `IosHandler`.
class IosZLink {
public:
    IosZLink(ZelmUtils* utils, unsigned number);
    virtual ~IosZLink();

    IosZLink(const IosZLink&) = delete;
    IosZLink& operator=(const IosZLink&) = delete;

    unsigned getNumber() const { return m_number; }

    // Null for a bit that isn't connected.
    IosPin* getInPin(unsigned bit) const;
    IosPin* getOutPin(unsigned bit) const;

    // A bit that is connected already is reported, and stays as it is.
    void connectPin(unsigned bit, bool isIn, IosPin* pin);

    void dump(FILE* file) const;

private:
    ZelmUtils* m_utils; // not owned
    unsigned m_number;
    std::map<unsigned, IosPin*> m_inPins; // not owned
    std::map<unsigned, IosPin*> m_outPins;
};
