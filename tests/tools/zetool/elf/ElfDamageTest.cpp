// Every command on every damaged file: a message and exit status 1 or 2, or a list that holds. In one process
// with the commands, so that thousands of files take seconds; what ends a command ends the test.

#include "tests/support/ElfBuilder.h"
#include "tests/support/ElfSeeds.h"
#include "tests/support/TemporaryFolder.h"
#include "tools/zetool/BrokenLimit.h"
#include "tools/zetool/CommandLine.h"
#include "tools/zetool/Commands.h"
#include "tools/zetool/Messages.h"

#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

constexpr const char* s_commands[] = {"header", "sections", "symbols", "functions", "relocations", "check"};

// A file in place of a stream of the process, which tells whether anything was written.
class StreamFile {
public:
    StreamFile(int stream, const std::string& path)
        : m_stream(stream),
          m_saved(dup(stream)),
          m_file(open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600)) {}
    ~StreamFile() {
        close(m_saved);
        close(m_file);
    }

    void begin() {
        EXPECT_EQ(ftruncate(m_file, 0), 0);
        dup2(m_file, m_stream);
    }
    bool end() {
        dup2(m_saved, m_stream);
        return lseek(m_file, 0, SEEK_END) > 0;
    }

private:
    int m_stream;
    int m_saved;
    int m_file;
};

class ElfDamage : public testing::Test {
protected:
    ElfDamage() { refuseBrokenLimits(); }
    ~ElfDamage() override { close(input); }

    struct Outcome {
        int status;
        bool hasMessage;
    };

    // As the program does, but with the command line read once.
    static int statusOf(const CommandLine& line) {
        try {
            return line.command->operation(line.invocation);
        } catch (const ToolFailure& failure) {
            printMessage(failure.what());
            return s_failed;
        }
    }

    Outcome run(const CommandLine& line) {
        std::fflush(stdout);
        output.begin();
        error.begin();
        const int status = statusOf(line);
        std::fflush(stdout);
        const bool hasOutput = output.end();
        // What `check` finds is its result.
        return {status, error.end() || (hasOutput && std::string_view(line.command->name) == "check")};
    }

    std::vector<CommandLine> linesWith(const char* option) const {
        std::vector<CommandLine> lines;
        for (const char* command : s_commands) {
            std::vector<const char*> words = {"elf", command, file.c_str()};
            if (option)
                words.push_back(option);
            lines.push_back(parseCommandLine(allNouns(), words));
        }
        return lines;
    }

    void expectOutcomes(const std::string& bytes, int least, const std::string& what, bool asJson = false) {
        // In place: a file system may bring a file to the disk that is cut to nothing first.
        const auto size = static_cast<ssize_t>(bytes.size());
        ASSERT_EQ(pwrite(input, bytes.data(), bytes.size(), 0), size);
        ASSERT_EQ(ftruncate(input, size), 0);
        for (const CommandLine& line : asJson ? jsonLines : lines) {
            const Outcome outcome = run(line);
            const char* command = line.command->name;
            EXPECT_GE(outcome.status, least) << command << " of " << what;
            EXPECT_LE(outcome.status, 2) << command << " of " << what;
            EXPECT_TRUE(outcome.status == 0 || outcome.hasMessage) << command << " of " << what;
        }
    }

    TemporaryFolder folder;
    std::string file = folder.file("a.o");
    int input = open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    std::vector<CommandLine> lines = linesWith(nullptr);
    std::vector<CommandLine> jsonLines = linesWith("--json");
    StreamFile output{STDOUT_FILENO, folder.file("output")};
    StreamFile error{STDERR_FILENO, folder.file("error")};
};

} // namespace

TEST_F(ElfDamage, OfAFileThatWasCutEveryCommandSaysSo) {
    for (const std::string& seed : elfSeeds()) {
        for (std::size_t length = 0; length < seed.size(); ++length)
            expectOutcomes(seed.substr(0, length), 1, "a file cut at " + std::to_string(length));
    }
}

TEST_F(ElfDamage, FlippedBytesEndNothing) {
    const std::string seed = richElf().build().bytes;
    for (std::size_t place = 0; place < seed.size(); ++place) {
        for (const int mask : {0xFF, 0x01, 0x80}) {
            std::string bytes = seed;
            bytes[place] = static_cast<char>(bytes[place] ^ mask);
            expectOutcomes(bytes, 0, "a file spoilt at " + std::to_string(place), mask == 0x01);
        }
    }
}

TEST_F(ElfDamage, FieldsOfAnyValueEndNothing) {
    ElfBuilder noSymbols;
    noSymbols.m_hasSymbols = false;
    for (const ElfBuilder& builder : {richElf(), ElfBuilder(), noSymbols}) {
        const LabelledBytes seed = builder.build();
        for (const LabelledBytes::Field& field : seed.fields()) {
            for (const std::uint32_t value : {0U, 1U, 2U, 3U, 17U, 0x7FFFFFFFU, 0xFFFFFFF0U, 0xFFFFFFFFU}) {
                LabelledBytes spoilt = seed;
                spoilt.set(field, value & field.maximum());
                expectOutcomes(spoilt.bytes, 0, field.label);
            }
        }
    }
}
