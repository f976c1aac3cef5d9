#pragma once

#include <cstdio>
#include <string>
#include <vector>

class IosHandler;
class IosPort;
class IosZLink;
struct ZelmUtils;

// A pin of a package: the pad that the simulator knows by its number, with what is connected to it, which is
// one bit of a link at most, and any number of port bits. Owned by the `IosHandler`.
class IosPin {
public:
    // `name` has the form package:pin; the first colon counts. One without a colon is reported.
    IosPin(ZelmUtils* utils, const std::string& name, unsigned number);
    virtual ~IosPin();

    IosPin(const IosPin&) = delete;
    IosPin& operator=(const IosPin&) = delete;

    const std::string& getPackageName() const { return m_packageName; }
    const std::string& getPinName() const { return m_pinName; }
    unsigned getNumber() const { return m_number; } // the pad
    IosZLink* getZLink() const { return m_zLink; }  // null if none
    unsigned getZLinkBit() const { return m_zLinkBit; }
    bool isZLinkIn() const { return m_zLinkIn; }

    unsigned getNumPorts() const { return static_cast<unsigned>(m_pinPorts.size()); }
    IosPort* getPort(unsigned index) const;

    // The bit and priority of that connection; 0 for an index beyond the last.
    unsigned getPortBit(unsigned index) const;
    unsigned getPortPriority(unsigned index) const;

    // Connect the pin, both ways. A port or link that the handler doesn't have is reported, unless
    // `ignoreMissing`, and nothing is connected.
    void addPort(const IosHandler& handler, unsigned node, unsigned core, const std::string& name,
                 unsigned bit, unsigned priority, bool ignoreMissing);
    void addZLink(const IosHandler& handler, unsigned node, unsigned number, unsigned bit, bool isIn,
                  bool ignoreMissing);

    void dump(FILE* file) const;

    // The end of a line about a bit that is connected to this pin.
    void dumpAsTarget(FILE* file) const;

private:
    ZelmUtils* m_utils; // not owned
    std::string m_packageName;
    std::string m_pinName;
    unsigned m_number;
    IosZLink* m_zLink = nullptr; // not owned
    unsigned m_zLinkBit = 0;
    bool m_zLinkIn = false;

    // In parallel.
    std::vector<IosPort*> m_pinPorts; // not owned
    std::vector<unsigned> m_pinPortBits;
    std::vector<unsigned> m_pinPortPriorities;
};
