#pragma once

// The numbers and texts of the architectures, one row each: the member of `AutoDefines`, then its value on
// zs1b, on zs1c and on zs2a. 0 stands for what isn't known. Name and revision are the same everywhere:
// wanted; it is the identifier that tells the architectures apart.
// clang-format off
#define ZELM_DEVICE_CONSTANTS(ROW)                                                                           \
    /*  member                 zs1b    zs1c    zs2a    */                                                    \
    ROW(m_defaultSwitchLinks,  16,     8,      8)                                                            \
    ROW(m_archName,            "ZS1",  "ZS1",  "ZS1")                                                        \
    ROW(m_revision,            "REVB", "REVB", "REVB")                                                       \
    ROW(m_date,                "Wed Mar 21 20:26:48 2012",                                                   \
                               "Wed Mar 21 20:26:49 2012",                                                   \
                               "Wed Mar 21 20:26:49 2012")                                                   \
    ROW(m_numPorts1,           16,     0,      0)                                                            \
    ROW(m_numPorts4,           6,      0,      0)                                                            \
    ROW(m_numPorts8,           4,      0,      0)                                                            \
    ROW(m_numPorts16,          2,      0,      0)                                                            \
    ROW(m_numPorts32,          1,      0,      0)                                                            \
    ROW(m_numPeriphPorts16,    2,      0,      0)                                                            \
    ROW(m_numPeriphPorts32,    1,      0,      0)                                                            \
    ROW(m_numPads,             0,      0,      0)                                                            \
    ROW(m_maxNumResources,     0,      0,      0)                                                            \
    ROW(m_ssrExistingBits,     0,      0,      0)                                                            \
    ROW(m_portTimerWidth,      0,      0,      0)
// clang-format on
