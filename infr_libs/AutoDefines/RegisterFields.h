#pragma once

// Where a field stands in its register. A field of no bits reads as 0 and is never set.
struct RegisterField {
    unsigned mask = 0;  // the field's bits, in place
    unsigned shift = 0; // of its lowest bit; below 32

    constexpr unsigned get(unsigned word) const { return (word & mask) >> shift; }
    constexpr unsigned set(unsigned word, unsigned value) const {
        return (word & ~mask) | ((value << shift) & mask);
    }
};

// The fields of the registers, one row each: its name, then its mask and shift on zs1b, on zs1c and on zs2a.
// A row is all that a field takes: the accessors of `AutoDefines` and the values of each architecture come
// from here. Names are resource, register, field. A field that one architecture lacks has a mask of 0 there.
//
// The fields of resource identifiers are at their places. Of the others the names alone are known here: they
// have no bits until the register documentation gives them some. Fields of the status register ("SR_...")
// that only zs2a has must have no bits on the others.
// clang-format off
#define ZELM_REGISTER_FIELDS(ROW)                                                                            \
    /*  name              zs1b            zs1c            zs2a        */                                     \
    ROW(RES_ID_TYPE,      0x000000ff,  0, 0x000000ff,  0, 0x000000ff,  0)                                    \
    ROW(RES_ID_RESNUM,    0x0000ff00,  8, 0x0000ff00,  8, 0x0000ff00,  8)                                    \
    ROW(RES_ID_PORTWIDTH, 0x003f0000, 16, 0x003f0000, 16, 0x003f0000, 16)                                    \
    ROW(CHANEND_CTRL0_INUSE,       0,  0,          0,  0,          0,  0)                                    \
    ROW(CLKBLK_CTRL0_STARTED,      0,  0,          0,  0,          0,  0)                                    \
    ROW(CHAN_ID_NODE,              0,  0,          0,  0,          0,  0)
// clang-format on
