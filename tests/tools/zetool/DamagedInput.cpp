#include "tests/tools/zetool/DamagedInput.h"

#include "tests/support/ChildProcess.h"
#include "tools/zetool/BrokenLimit.h"
#include "tools/zetool/Command.h"
#include "tools/zetool/CommandLine.h"
#include "tools/zetool/Commands.h"
#include "tools/zetool/Messages.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

// A file that is written again and again: in place, since a file system may bring one to the disk that is cut
// to nothing first.
class Rewritten {
public:
    explicit Rewritten(const std::string& file)
        : m_descriptor(open(file.c_str(), O_WRONLY | O_CREAT, 0600)) {}

    void write(const std::string& bytes) const {
        const auto size = static_cast<ssize_t>(bytes.size());
        if (pwrite(m_descriptor, bytes.data(), bytes.size(), 0) != size || ftruncate(m_descriptor, size) != 0)
            std::_Exit(3);
    }

private:
    int m_descriptor;
};

// As the program does, but with the command line read once.
int run(const CommandLine& line) {
    try {
        return line.command->operation(line.invocation);
    } catch (const std::exception& failure) {
        printMessage(failure.what());
    } catch (const std::string& text) {
        printMessage(text);
    }
    return s_failed;
}

// Runs a command with its messages in a file, and returns what is wrong with how it ended.
std::string failureOf(const CommandLine& line, int messages) {
    if (ftruncate(messages, 0) != 0 || lseek(messages, 0, SEEK_SET) != 0)
        return "the messages can't be kept";
    const int status = run(line);
    std::fflush(stdout);
    std::fflush(stderr);
    if (status < s_fine || status > s_failed)
        return "status " + std::to_string(status);
    if (status != s_fine && lseek(messages, 0, SEEK_CUR) == 0)
        return "status " + std::to_string(status) + " without a message";
    return "";
}

} // namespace

std::string damageFailures(const TemporaryFolder& folder, const std::string& name, const std::string& bytes,
                           const std::vector<std::vector<const char*>>& commands, std::size_t step) {
    const std::string file = folder.file(name);
    std::vector<CommandLine> lines;
    for (const std::vector<const char*>& words : commands) {
        lines.push_back(parseCommandLine(allNouns(), words));
        if (lines.back().wanted != CommandLine::Run)
            return lines.back().message;
    }
    const std::string placeFile = folder.file("place");
    const ChildResult result = runInChild([&] {
        refuseBrokenLimits();
        const int results = dup(STDOUT_FILENO);
        const int nowhere = open("/dev/null", O_WRONLY);
        const int messages = open(folder.file("messages").c_str(), O_RDWR | O_CREAT | O_APPEND, 0600);
        if (chdir(folder.path().c_str()) != 0 || results < 0 || nowhere < 0 || messages < 0)
            std::exit(3);
        dup2(nowhere, STDOUT_FILENO);
        dup2(messages, STDERR_FILENO);
        refuseBrokenLimits();
        const Rewritten input(file);
        const Rewritten place(placeFile);
        const auto tryAll = [&](const std::string& damage, const std::string& damaged) {
            input.write(damaged);
            for (std::size_t command = 0; command < lines.size(); ++command) {
                const std::string where = damage + ", command " + std::to_string(command);
                place.write(where);
                const std::string failure = failureOf(lines[command], messages);
                if (!failure.empty())
                    dprintf(results, "%s: %s\n", where.c_str(), failure.c_str());
            }
        };
        for (std::size_t length = 0; length < bytes.size(); length += step)
            tryAll("cut at " + std::to_string(length), bytes.substr(0, length));
        for (std::size_t at = 0; at < bytes.size(); at += step)
            for (const unsigned char flip : {0x01, 0x80, 0xff}) {
                std::string damaged = bytes;
                damaged[at] = static_cast<char>(static_cast<unsigned char>(damaged[at]) ^ flip);
                tryAll("byte " + std::to_string(at) + " flipped by " + std::to_string(flip), damaged);
            }
        std::_Exit(0);
    });
    if (result.exitStatus == 0)
        return result.output;
    return result.output + "the tool ended: " + readFile(placeFile) + "\n" +
           readFile(folder.file("messages"));
}
