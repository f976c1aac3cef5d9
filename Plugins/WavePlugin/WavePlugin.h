#pragma once

#include "Plugins/WavePlugin/TracePluginCallbacks.h"

// The five functions that a simulator finds in the plugin by name: its whole outside surface.
//
// All calls, for all instances, must come from one thread. The plugin has no way to report a failure to
// the simulator: it writes to standard error and ends the process with status 1. The stack need only be
// aligned to four bytes in 32-bit hosts.
extern "C" {

// Makes an instance from a text of option words and returns its number. Writes the head of the waveform:
// header, structure document, declarations and first values. The callbacks must stay valid until
// PluginTerminate.
unsigned int PluginInitialise(TracePluginCallbacks* callbacks, const char* arguments);

// Writes what changed; called once on each simulated clock.
void PluginClock(unsigned int instance);

// Turns the instance's tracing on (notification 0) or off (1). Other notifications mean nothing.
void PluginNotify(unsigned int instance, unsigned int notification);

// Ends the waveform and the instance. Its number isn't given out again.
void PluginTerminate(unsigned int instance);

// The options, as text for a user. Valid for ever.
const char* PluginHelp(void);
}
