/*
 * A trace plugin in C that writes each call which reaches it to standard output. The words of its argument
 * text say what it asks and how it misbehaves:
 *
 *   pid N        the core to ask about; 0 without it
 *   port N, thread N, timer N, clockBlock N, pad N, instruction
 *                print this record on initialise and on each clock
 *   counts       print all counts on initialise
 *   exit N, abort, overflow, reserved, badCore, badPort
 *                do so on the first clock (exit also: "exitInitialise N", "exitTerminate N")
 */
#include "Plugins/WavePlugin/TracePluginCallbacks.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { MAX_INSTANCES = 8, FIRST_NUMBER = 10 }; /* numbers of its own: the host must use those */

typedef struct {
    char arguments[256];
    unsigned int pid;
} Instance;

static Instance s_instances[MAX_INSTANCES];
static unsigned int s_numInstances;
static TracePluginCallbacks* s_callbacks;

/* The number behind a word of the arguments, or -1 when the word isn't there. */
static int numberBehind(const Instance* instance, const char* word) {
    const size_t length = strlen(word);
    const char* place = instance->arguments;
    while ((place = strstr(place, word)) != NULL) {
        const int begins = place == instance->arguments || place[-1] == ' ';
        if (begins && (place[length] == ' ' || place[length] == '\0'))
            return (int)strtol(place + length, NULL, 0);
        place += length;
    }
    return -1;
}

static int has(const Instance* instance, const char* word) {
    return numberBehind(instance, word) >= 0;
}

/* Whether all of some words are 0: what the host leaves in them when it isn't asked for garbage. */
static const char* reserved(const unsigned int* words, size_t count) {
    size_t i;
    for (i = 0; i < count; ++i) {
        if (words[i] != 0)
            return "garbage";
    }
    return "zero";
}
#define RESERVED(words) reserved(words, sizeof(words) / sizeof((words)[0]))

static void printPort(const Instance* instance) {
    TracePortState s;
    memset(&s, 0, sizeof s);
    s_callbacks->getPortState(instance->pid, (unsigned int)numberBehind(instance, "port"), &s);
    printf("  port %s %u: %u %u %u %u %u %u %u %u %u %u %u %u %u %u %u, %s\n", s.name, s.width, s.value,
           s.inUse, s.direction, s.threadsWaiting, s.transferRegister, s.shiftRegister, s.outputThreadPc,
           s.details, s.counter, s.timeStamp, s.shiftRegisterCount, s.shiftRegisterValid, s.shiftRegisterSize,
           s.transferRegisterFull, s.transferRegisterSize, RESERVED(s.reserved24));
}

static void printThread(const Instance* instance) {
    TraceThreadState s;
    memset(&s, 0, sizeof s);
    s_callbacks->getThreadState(instance->pid, (unsigned int)numberBehind(instance, "thread"), &s);
    printf("  thread %u %u %u %u, %s\n", s.inUse, s.waiting, s.resourceType, s.resourceNumber,
           RESERVED(s.reserved1));
}

static void printTimer(const Instance* instance) {
    TraceTimerState s;
    memset(&s, 0, sizeof s);
    s_callbacks->getTimerState(instance->pid, (unsigned int)numberBehind(instance, "timer"), &s);
    printf("  timer %u %u %u, %s\n", s.time, s.inUse, s.threadsWaiting, RESERVED(s.reserved5));
}

static void printClockBlock(const Instance* instance) {
    TraceClockBlockState s;
    memset(&s, 0, sizeof s);
    s_callbacks->getClockBlockState(instance->pid, (unsigned int)numberBehind(instance, "clockBlock"), &s);
    printf("  clockBlock %u %u %u %u %u, %s\n", s.inUse, s.started, s.threadsWaiting, s.fallingEdge,
           s.risingEdge, RESERVED(s.reserved6));
}

static void printInstruction(const Instance* instance) {
    TraceInstructionState s;
    memset(&s, 0, sizeof s);
    s_callbacks->getInstructionState(instance->pid, 0, &s);
    printf("  instruction %u %u 0x%x '%.8s' '%s', %s\n", s.valid, s.thread, s.pc, s.mnemonic, s.functionName,
           RESERVED(s.reserved6));
}

static void printPad(const Instance* instance) {
    TracePadState s;
    memset(&s, 0, sizeof s);
    s_callbacks->getPadState((unsigned int)numberBehind(instance, "pad"), &s);
    printf("  pad %s %u, %s\n", s.name, s.value, RESERVED(s.reserved2));
}

static void printStates(const Instance* instance) {
    if (has(instance, "port"))
        printPort(instance);
    if (has(instance, "thread"))
        printThread(instance);
    if (has(instance, "timer"))
        printTimer(instance);
    if (has(instance, "clockBlock"))
        printClockBlock(instance);
    if (has(instance, "instruction"))
        printInstruction(instance);
    if (has(instance, "pad"))
        printPad(instance);
}

/* Uses up the stack long before it comes to its end. */
static int recurse(int depth, const volatile char* previous) {
    volatile char frame[4096];
    frame[0] = previous[0];
    return depth == 0 ? frame[0] : recurse(depth - 1, frame) + frame[0];
}

static void misbehave(const Instance* instance) {
    TracePortState port;
    if (has(instance, "exit"))
        exit(numberBehind(instance, "exit"));
    if (has(instance, "abort"))
        abort();
    if (has(instance, "overflow"))
        printf("%d\n", recurse(1000000000, "x"));
    if (has(instance, "reserved"))
        s_callbacks->reserved23[1]();
    if (has(instance, "badCore"))
        s_callbacks->getNumPorts(0x00070003);
    if (has(instance, "badPort"))
        s_callbacks->getPortState(instance->pid, 99, &port);
}

#pragma GCC visibility push(default)

unsigned int PluginInitialise(TracePluginCallbacks* callbacks, const char* arguments) {
    Instance* instance = &s_instances[s_numInstances];
    snprintf(instance->arguments, sizeof instance->arguments, "%s", arguments);
    instance->pid = has(instance, "pid") ? (unsigned int)numberBehind(instance, "pid") : 0;
    s_callbacks = callbacks;
    printf("initialise '%s' version %s frequency %g cycle %u\n", arguments, callbacks->getInterfaceVersion(),
           callbacks->getClockFrequency(), callbacks->getCycleCount());
    if (has(instance, "counts"))
        printf("  counts %u %u %u %u %u\n", callbacks->getNumPorts(instance->pid),
               callbacks->getNumThreads(instance->pid), callbacks->getNumTimers(instance->pid),
               callbacks->getNumClockBlocks(instance->pid), callbacks->getNumPads());
    printStates(instance);
    if (has(instance, "exitInitialise"))
        exit(numberBehind(instance, "exitInitialise"));
    return FIRST_NUMBER + s_numInstances++;
}

void PluginClock(unsigned int instance) {
    printf("clock %u cycle %d\n", instance, (int)s_callbacks->getCycleCount());
    printStates(&s_instances[instance - FIRST_NUMBER]);
    misbehave(&s_instances[instance - FIRST_NUMBER]);
}

void PluginNotify(unsigned int instance, unsigned int notification) {
    printf("notify %u %u\n", instance, notification);
}

void PluginTerminate(unsigned int instance) {
    printf("terminate %u cycle %d\n", instance, (int)s_callbacks->getCycleCount());
    if (has(&s_instances[instance - FIRST_NUMBER], "exitTerminate"))
        exit(numberBehind(&s_instances[instance - FIRST_NUMBER], "exitTerminate"));
}

const char* PluginHelp(void) {
    return "  words that the recording plugin knows\n";
}
