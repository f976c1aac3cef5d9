#pragma once

#include "infr_libs/AutoDefines/RegisterFields.h"

class ErrorHandler;
class XmlNode;

// What differs between the architectures of the family: the places of fields in registers, and the numbers of
// things. Code asks for a field by name and gets the answer for the chip in the image, without ever naming
// the chip. One object serves a whole system; whoever creates it owns it, and puts it into the `ZelmUtils`
// record. It never changes.
//
// What isn't known of an architecture is answered harmlessly: a number as 0, a mask as no bits. The values
// stand in two tables, `RegisterFields.h` and `DeviceConstants.h`.
class AutoDefines {
public:
    // The definitions for the architecture of the document's first node, whatever that element's name.
    // `root` is the root of a ZSystem document. A document without one is reported as fatal; where the
    // report returns, the result is null.
    static AutoDefines* createAutoDefines(XmlNode* root, ErrorHandler* errorHandler);

    // The same by JTAG identifier, whose upper four bits, the version, don't count.
    static AutoDefines* createAutoDefines(unsigned int jtagId, ErrorHandler* errorHandler);

    virtual ~AutoDefines();

    AutoDefines(const AutoDefines&) = delete;
    AutoDefines& operator=(const AutoDefines&) = delete;

    // The JTAG identifier that stands for the architecture.
    unsigned getArch() const { return m_arch; }

    // The ports of a core without those of its peripherals, and those alone. Known for zs1b, elsewhere 0.
    unsigned NUM_PORTS() const {
        return m_numPorts1 + m_numPorts4 + m_numPorts8 + m_numPorts16 + m_numPorts32;
    }
    unsigned NUM_PERIPH_PORTS() const { return m_numPeriphPorts16 + m_numPeriphPorts32; }

    // Neither is known: 0.
    unsigned NUM_PADS() const { return m_numPads; }
    unsigned MAX_NUM_RESOURCES() const { return m_maxNumResources; }

    // The bits that exist in the status registers: of SR those of the SR_ fields in the table, of SSR a
    // constant. Neither is known: 0.
    unsigned SR_EXISTING_BITS() const;
    unsigned SSR_EXISTING_BITS() const { return m_ssrExistingBits; }

    // The bits of a port's counter, the same everywhere, and of its timer, whose width isn't known: 0.
    unsigned PORT_COUNTER_MASK() const { return 0x3f; }
    unsigned PORT_TIMER_MASK() const { return (1U << m_portTimerWidth) - 1; }

    // A resource identifier of its three fields.
    unsigned RES_ID(unsigned type, unsigned resnum, unsigned portwidth) const;

    // How many links a switch has that doesn't say so.
    unsigned m_defaultSwitchLinks = 0;

    const char* m_archName = "";
    const char* m_revision = "";
    const char* m_date = "";

    // A pair for each field: FIELD(word) is the field's value in the word; FIELD_SET(word, value) is the word
    // with the field set. A value too wide for its field is cut off.
#define ZELM_FIELD_ACCESSORS(name, ...)                                                                      \
    unsigned name(unsigned word) const {                                                                     \
        return m_##name.get(word);                                                                           \
    }                                                                                                        \
    unsigned name##_SET(unsigned word, unsigned value) const {                                               \
        return m_##name.set(word, value);                                                                    \
    }
    ZELM_REGISTER_FIELDS(ZELM_FIELD_ACCESSORS)
#undef ZELM_FIELD_ACCESSORS

protected:
    explicit AutoDefines(unsigned arch);

#define ZELM_FIELD_MEMBER(name, ...) RegisterField m_##name;
    ZELM_REGISTER_FIELDS(ZELM_FIELD_MEMBER)
#undef ZELM_FIELD_MEMBER

    // Ports by their width.
    unsigned m_numPorts1 = 0;
    unsigned m_numPorts4 = 0;
    unsigned m_numPorts8 = 0;
    unsigned m_numPorts16 = 0;
    unsigned m_numPorts32 = 0;
    unsigned m_numPeriphPorts16 = 0;
    unsigned m_numPeriphPorts32 = 0;

    unsigned m_numPads = 0;
    unsigned m_maxNumResources = 0;
    unsigned m_ssrExistingBits = 0;
    unsigned m_portTimerWidth = 0; // below 32

    const unsigned m_arch;
};
