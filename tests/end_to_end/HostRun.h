#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/NetworkBuilder.h"
#include "tests/support/TemporaryFolder.h"

#include <string>
#include <vector>

// A run of a host program with the plugin as it ships. An image stands in the folder as `app.ze`: one node
// with two cores, stdcore[0] and stdcore[1]. Core 0 names a port and has the functions main, mainloop, run.
class HostRun {
public:
    HostRun();

    const TemporaryFolder& folder() const { return m_folder; }

    // The argument text of an instance: the image, this file of the folder for output (none: standard
    // output), and the words.
    std::string arguments(const std::string& output, const std::string& words) const;

    // Plays a scenario with one instance for each argument text, by tracehost or by another host that takes
    // the same options.
    ChildResult play(const std::string& scenario, const std::vector<std::string>& instances,
                     const std::vector<std::string>& options = {},
                     const std::string& host = s_tracehost) const;

    // A waveform in the folder, its date replaced by "DATE" in both places that show it.
    std::string waveform(const std::string& output) const;

private:
    static const std::string s_tracehost;

    DeviceFolder m_devices;
    TemporaryFolder m_folder;
};

// Replaces the date of a waveform, wherever it stands, by "DATE".
std::string withoutDate(std::string waveform);

// A waveform from the end of its declarations on: first values and clocks.
std::string valuesOf(const std::string& waveform);
