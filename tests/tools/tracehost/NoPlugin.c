/* Has four of the five names that make a trace plugin. */
#pragma GCC visibility push(default)

void PluginInitialise(void);
void PluginClock(void);
void PluginNotify(void);
void PluginTerminate(void);

void PluginInitialise(void) {}
void PluginClock(void) {}
void PluginNotify(void) {}
void PluginTerminate(void) {}
