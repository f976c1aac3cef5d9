#include "tools/zetool/wave/WaveGtkw.h"

#include "tools/zetool/Command.h"
#include "tools/zetool/Messages.h"
#include "tools/zetool/OutputFile.h"
#include "tools/zetool/wave/GtkwaveSession.h"
#include "tools/zetool/wave/OpenWave.h"
#include "tools/zetool/wave/WaveNotes.h"

#include <algorithm>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

void writeFile(const fs::path& path, bool force, std::string_view text) {
    OutputFile output(path.string(), force);
    output.write(text);
    output.close();
}

// With --force the waveform itself could be what is replaced.
void refuseWaveform(const fs::path& waveform, const fs::path& path) {
    std::error_code error;
    if (fs::equivalent(waveform, path, error))
        throw ToolFailure(path.string(), "is the waveform itself; --output names another file");
}

void makeFolder(const fs::path& path, bool force) {
    std::error_code error;
    if (!fs::create_directory(path, error) && !error && !force)
        throw ToolFailure(path.string(), "exists; --force replaces what is in it");
    if (error)
        throw ToolFailure(path.string(), "can't be made: " + error.message());
}

} // namespace

int waveGtkw(const Invocation& invocation) {
    const fs::path path = invocation.value("FILE");
    if (path == "-")
        throw ToolFailure("-", "a session names its waveform: give a file");
    fs::path savePath = path;
    savePath.replace_extension(".gtkw");
    if (invocation.has("output"))
        savePath = invocation.value("output");
    if (savePath == "-")
        throw ToolFailure("(standard output)", "a session is several files: give a file");
    fs::path filterPath = savePath;
    filterPath.replace_extension(".filters");
    const bool force = invocation.has("force");

    const OpenWave wave(path.string());
    const VcdHeader& header = wave.header;
    const fs::path folder = fs::absolute(savePath).parent_path();
    const GtkwaveSession session(header, wave.signals, fs::absolute(path).lexically_relative(folder).string(),
                                 savePath.filename().string(), filterPath.filename().string());
    refuseWaveform(path, savePath);
    for (const auto& [name, content] : session.filters())
        refuseWaveform(path, filterPath / name);
    if (!force && fs::exists(savePath))
        throw ToolFailure(savePath.string(), "exists; --force replaces it");
    if (!session.filters().empty())
        makeFolder(filterPath, force);
    for (const auto& [name, content] : session.filters())
        writeFile(filterPath / name, force, content);
    writeFile(savePath, force, session.text());

    WaveNotes notes(path.string());
    notes.addHeader(header, wave.signals);
    const auto refused = std::ranges::find_if(
        header.variables, [](const VcdVariable& variable) { return !isPlainName(variable.name); });
    if (refused != header.variables.end())
        notes.add(refused->line, "GTKWave refuses a file with such a name: " + refused->name +
                                     "; 'zetool wave standard' makes one that it opens");
    if (session.numWithoutFilter() > 0)
        notes.add(header.lastLine, std::to_string(session.numWithoutFilter()) +
                                       " signals show numbers in place of texts: a session has at most " +
                                       std::to_string(GtkwaveSession::s_mostFilters) + " filters");
    return notes.any() ? s_foundWrong : s_fine;
}
