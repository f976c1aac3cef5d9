/*
 * The simulator's record: the table of callbacks that it hands to a trace plugin, and the state records
 * that the callbacks fill. It is the binary interface between two separately built programs, so every slot
 * and word stands at a fixed place. The header compiles as C and as C++, and needs nothing of the project.
 *
 * The table belongs to the simulator, stays valid from PluginInitialise to PluginTerminate, and is never
 * written by a plugin. All calls come from one thread. A state call has no side effect on the simulation,
 * never fails for a number below the resource's count, sets every word that has a name here, and may write
 * any other word of its record: a plugin's record must have the full size given here. A text that a record
 * points to belongs to the simulator, and is valid until the next callback.
 *
 * "pid" is a packed core id: node number in the high 16 bits, core number in the low 16 bits.
 *
 * On the 32-bit target a word is four bytes and pointers are words. A 64-bit build has the same fields in
 * the same order with natural pointers.
 */
#ifndef PLUGINS_WAVEPLUGIN_TRACEPLUGINCALLBACKS_H
#define PLUGINS_WAVEPLUGIN_TRACEPLUGINCALLBACKS_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* State of one port. */
typedef struct TracePortState {
    const char* name;                  /*  0: location, such as ZS1_PORT_1A; the same on every call */
    unsigned int width;                /*  1: in bits */
    unsigned int value;                /*  2: on the retimed pads of the port */
    unsigned int reserved3;            /*  3 */
    unsigned int inUse;                /*  4: 0 or 1 */
    unsigned int reserved5;            /*  5 */
    unsigned int reserved6;            /*  6 */
    unsigned int direction;            /*  7: 0 input, 1 output */
    unsigned int reserved8;            /*  8 */
    unsigned int threadsWaiting;       /*  9: 0 or 1 */
    unsigned int reserved10;           /* 10 */
    unsigned int reserved11;           /* 11 */
    unsigned int transferRegister;     /* 12 */
    unsigned int shiftRegister;        /* 13 */
    unsigned int reserved14;           /* 14 */
    unsigned int outputThreadPc;       /* 15: program counter of the thread that outputs */
    unsigned int details;              /* 16 */
    unsigned int counter;              /* 17: the port counter */
    unsigned int timeStamp;            /* 18 */
    unsigned int shiftRegisterCount;   /* 19 */
    unsigned int shiftRegisterValid;   /* 20: 0 or 1 */
    unsigned int shiftRegisterSize;    /* 21 */
    unsigned int transferRegisterFull; /* 22: 0 or 1 */
    unsigned int transferRegisterSize; /* 23 */
    unsigned int reserved24[8];        /* 24 to 31 */
} TracePortState;

/* State of one hardware thread. */
typedef struct TraceThreadState {
    unsigned int inUse;          /*  0: 0 or 1 */
    unsigned int reserved1[9];   /*  1 to 9 */
    unsigned int waiting;        /* 10: 0 or 1 */
    unsigned int resourceType;   /* 11: of the resource waited on, 0 to 11 */
    unsigned int resourceNumber; /* 12: of the resource waited on */
    unsigned int reserved13[19]; /* 13 to 31 */
} TraceThreadState;

/* State of one timer. */
typedef struct TraceTimerState {
    unsigned int time;           /* 0: the current time */
    unsigned int inUse;          /* 1: 0 or 1 */
    unsigned int reserved2[2];   /* 2, 3 */
    unsigned int threadsWaiting; /* 4: 0 or 1 */
    unsigned int reserved5[27];  /* 5 to 31 */
} TraceTimerState;

/* State of one clock block. */
typedef struct TraceClockBlockState {
    unsigned int inUse;          /* 0: 0 or 1 */
    unsigned int started;        /* 1: 0 or 1 */
    unsigned int threadsWaiting; /* 2: the low eight bits are shown */
    unsigned int reserved3;      /* 3 */
    unsigned int fallingEdge;    /* 4: in this clock, 0 or 1 */
    unsigned int risingEdge;     /* 5: in this clock, 0 or 1 */
    unsigned int reserved6[26];  /* 6 to 31 */
} TraceClockBlockState;

/* The instruction that a core executed in this clock. */
typedef struct TraceInstructionState {
    unsigned int valid;         /* 0: non-zero when an instruction was executed */
    unsigned int thread;        /* 1: number of the thread that executed it */
    unsigned int pc;            /* 2: program counter */
    unsigned int reserved3;     /* 3 */
    const char* mnemonic;       /* 4: at least eight readable bytes */
    const char* functionName;   /* 5: of the function that holds the instruction */
    unsigned int reserved6[26]; /* 6 to 31 */
} TraceInstructionState;

/* State of one pad of the device. */
typedef struct TracePadState {
    const char* name;           /* 0: the same on every call */
    unsigned int value;         /* 1 */
    unsigned int reserved2[30]; /* 2 to 31 */
} TracePadState;

/* A slot that this interface doesn't use. The simulator may offer a service there. */
typedef void (*TraceReservedSlot)(void);

/* The table. Slots without a comment on their number are reserved. */
typedef struct TracePluginCallbacks {
    const char* (*getInterfaceVersion)(void); /*  0: text for the waveform's header */
    double (*getClockFrequency)(void);        /*  1: of the simulated clock, in MHz */
    unsigned int (*getCycleCount)(void);      /*  2: clocks so far, 32 bits; never falls */
    TraceReservedSlot reserved3[15];          /*  3 to 17 */
    void (*getInstructionState)(unsigned int pid, unsigned int index,
                                TraceInstructionState* state); /* 18: index is 0 */
    unsigned int (*getNumThreads)(unsigned int pid);           /* 19 */
    void (*getThreadState)(unsigned int pid, unsigned int thread, TraceThreadState* state); /* 20 */
    unsigned int (*getNumPorts)(unsigned int pid);                                          /* 21 */
    void (*getPortState)(unsigned int pid, unsigned int port, TracePortState* state);       /* 22 */
    TraceReservedSlot reserved23[3];                                                        /* 23 to 25 */
    unsigned int (*getNumTimers)(unsigned int pid);                                         /* 26 */
    void (*getTimerState)(unsigned int pid, unsigned int timer, TraceTimerState* state);    /* 27 */
    TraceReservedSlot reserved28[4];                                                        /* 28 to 31 */
    unsigned int (*getNumClockBlocks)(unsigned int pid);                                    /* 32 */
    void (*getClockBlockState)(unsigned int pid, unsigned int clockBlock,
                               TraceClockBlockState* state);     /* 33 */
    unsigned int (*getNumPads)(void);                            /* 34: of the whole device */
    void (*getPadState)(unsigned int pad, TracePadState* state); /* 35 */
} TracePluginCallbacks;

/* The numbers above, held against the compiler. */
#ifdef __cplusplus
#define TRACE_CHECK(condition) static_assert(condition, #condition)
#else
#define TRACE_CHECK(condition) _Static_assert(condition, #condition)
#endif
#define TRACE_CHECK_SLOT(field, slot)                                                                        \
    TRACE_CHECK(offsetof(TracePluginCallbacks, field) == (slot) * sizeof(TraceReservedSlot))

TRACE_CHECK_SLOT(getInterfaceVersion, 0);
TRACE_CHECK_SLOT(getClockFrequency, 1);
TRACE_CHECK_SLOT(getCycleCount, 2);
TRACE_CHECK_SLOT(getInstructionState, 18);
TRACE_CHECK_SLOT(getNumThreads, 19);
TRACE_CHECK_SLOT(getThreadState, 20);
TRACE_CHECK_SLOT(getNumPorts, 21);
TRACE_CHECK_SLOT(getPortState, 22);
TRACE_CHECK_SLOT(getNumTimers, 26);
TRACE_CHECK_SLOT(getTimerState, 27);
TRACE_CHECK_SLOT(getNumClockBlocks, 32);
TRACE_CHECK_SLOT(getClockBlockState, 33);
TRACE_CHECK_SLOT(getNumPads, 34);
TRACE_CHECK_SLOT(getPadState, 35);

#if defined(__i386__)
#define TRACE_CHECK_WORD(record, field, word) TRACE_CHECK(offsetof(record, field) == (word)*4)

TRACE_CHECK_WORD(TracePortState, name, 0);
TRACE_CHECK_WORD(TracePortState, width, 1);
TRACE_CHECK_WORD(TracePortState, value, 2);
TRACE_CHECK_WORD(TracePortState, inUse, 4);
TRACE_CHECK_WORD(TracePortState, direction, 7);
TRACE_CHECK_WORD(TracePortState, threadsWaiting, 9);
TRACE_CHECK_WORD(TracePortState, transferRegister, 12);
TRACE_CHECK_WORD(TracePortState, shiftRegister, 13);
TRACE_CHECK_WORD(TracePortState, outputThreadPc, 15);
TRACE_CHECK_WORD(TracePortState, details, 16);
TRACE_CHECK_WORD(TracePortState, counter, 17);
TRACE_CHECK_WORD(TracePortState, timeStamp, 18);
TRACE_CHECK_WORD(TracePortState, shiftRegisterCount, 19);
TRACE_CHECK_WORD(TracePortState, shiftRegisterValid, 20);
TRACE_CHECK_WORD(TracePortState, shiftRegisterSize, 21);
TRACE_CHECK_WORD(TracePortState, transferRegisterFull, 22);
TRACE_CHECK_WORD(TracePortState, transferRegisterSize, 23);
TRACE_CHECK(sizeof(TracePortState) == 32 * 4);

TRACE_CHECK_WORD(TraceThreadState, inUse, 0);
TRACE_CHECK_WORD(TraceThreadState, waiting, 10);
TRACE_CHECK_WORD(TraceThreadState, resourceType, 11);
TRACE_CHECK_WORD(TraceThreadState, resourceNumber, 12);
TRACE_CHECK(sizeof(TraceThreadState) == 32 * 4);

TRACE_CHECK_WORD(TraceTimerState, time, 0);
TRACE_CHECK_WORD(TraceTimerState, inUse, 1);
TRACE_CHECK_WORD(TraceTimerState, threadsWaiting, 4);
TRACE_CHECK(sizeof(TraceTimerState) == 32 * 4);

TRACE_CHECK_WORD(TraceClockBlockState, inUse, 0);
TRACE_CHECK_WORD(TraceClockBlockState, started, 1);
TRACE_CHECK_WORD(TraceClockBlockState, threadsWaiting, 2);
TRACE_CHECK_WORD(TraceClockBlockState, fallingEdge, 4);
TRACE_CHECK_WORD(TraceClockBlockState, risingEdge, 5);
TRACE_CHECK(sizeof(TraceClockBlockState) == 32 * 4);

TRACE_CHECK_WORD(TraceInstructionState, valid, 0);
TRACE_CHECK_WORD(TraceInstructionState, thread, 1);
TRACE_CHECK_WORD(TraceInstructionState, pc, 2);
TRACE_CHECK_WORD(TraceInstructionState, mnemonic, 4);
TRACE_CHECK_WORD(TraceInstructionState, functionName, 5);
TRACE_CHECK(sizeof(TraceInstructionState) == 32 * 4);

TRACE_CHECK_WORD(TracePadState, name, 0);
TRACE_CHECK_WORD(TracePadState, value, 1);
TRACE_CHECK(sizeof(TracePadState) == 32 * 4);

#undef TRACE_CHECK_WORD
#endif

#undef TRACE_CHECK_SLOT
#undef TRACE_CHECK

#ifdef __cplusplus
}
#endif

#endif
