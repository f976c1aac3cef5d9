#include "tests/end_to_end/HostRun.h"

#include "tests/support/SampleImage.h"

const std::string HostRun::s_tracehost = TRACEHOST;

HostRun::HostRun() {
    m_folder.write("app.ze", sampleImage({{"stdcore[0]",
                                           0,
                                           0,
                                           "<Port Location=\"ZS1_PORT_1A\" Name=\"PORT_LED\"/>",
                                           {sampleProgram({"main", "mainloop", "run"})}},
                                          {"stdcore[1]", 0, 1}}));
}

std::string HostRun::arguments(const std::string& output, const std::string& words) const {
    return "-ze " + m_folder.file("app.ze") + (output.empty() ? "" : " -o " + m_folder.file(output)) + " " +
           words;
}

ChildResult HostRun::play(const std::string& scenario, const std::vector<std::string>& instances,
                          const std::vector<std::string>& options, const std::string& host) const {
    std::vector<std::string> words{host};
    words.insert(words.end(), options.begin(), options.end());
    for (const std::string& instance : instances)
        words.insert(words.end(), {"-i", instance});
    words.insert(words.end(), {WAVE_PLUGIN, m_folder.write("scenario", scenario)});
    return runProgram(words);
}

std::string HostRun::waveform(const std::string& output) const {
    return withoutDate(m_folder.read(output));
}

std::string withoutDate(std::string waveform) {
    const std::string before = "$date\n  ";
    if (!waveform.starts_with(before))
        return waveform;
    const std::string date =
        waveform.substr(before.size(), waveform.find('\n', before.size()) - before.size());
    for (std::size_t place = 0; (place = waveform.find(date, place)) != std::string::npos;)
        waveform.replace(place, date.size(), "DATE");
    return waveform;
}

std::string valuesOf(const std::string& waveform) {
    const std::string end = "$enddefinitions $end\n\n";
    const std::size_t place = waveform.find(end);
    return place == std::string::npos ? "" : waveform.substr(place + end.size());
}
