// Files that are cut off, and files with one wrong field: whatever becomes of them, nothing crashes, and
// nothing ends the process but what is stated.

#include "infr_libs/ErrorHandler/CatchableErrorHandler.h"
#include "tests/infr_libs/ElfHandler/ElfSamples.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ElfBuilder.h"
#include "tests/support/ElfSeeds.h"
#include "tests/support/ElfWalk.h"
#include "tests/support/RecordingErrorHandler.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdio>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>

namespace {

using testing::HasSubstr;
using testing::Not;

std::string clangObject() {
    const TemporaryFolder folder;
    const std::string source = folder.write(
        "sample.cpp", "template<class T> inline T id(T t) { return t; } int x; int main() { return id(x); }");
    const std::string object = folder.file("sample.o");
    EXPECT_EQ(
        runProgram({"clang++", "-target", "i386", "-c", "-fno-addrsig", "-o", object, source}).exitStatus, 0);
    return readFile(object);
}

void readThrowing(const std::string& bytes) {
    CatchableErrorHandler errorHandler;
    try {
        walkReadElf(*readElf(errorHandler, bytes));
    } catch (const std::string&) {
        // the handler's message
    }
}

void readReturning(const std::string& bytes) {
    RecordingErrorHandler errorHandler;
    walkReadElf(*readElf(errorHandler, bytes));
}

// Reads all files in a child process. Where a file ends it as stated, another goes on behind that file.
void expectNothingUnstated(const std::vector<std::string>& files) {
    for (const auto& read : {readThrowing, readReturning}) {
        for (std::size_t next = 0; next < files.size();) {
            const ChildResult result = runInChild([&] {
                for (std::size_t i = next; i < files.size(); ++i) {
                    std::printf("%zu\n", i);
                    std::fflush(stdout);
                    read(files[i]);
                }
            });
            if (result.exitStatus == 0 && result.signal == 0)
                break;
            const std::size_t lineBefore = result.output.rfind('\n', result.output.size() - 2);
            const std::size_t last =
                std::stoul(result.output.substr(lineBefore == std::string::npos ? 0 : lineBefore + 1));
            ASSERT_THAT(result.error, Not(HasSubstr("Sanitizer"))) << "file " << last;
            ASSERT_THAT(result.error, Not(HasSubstr("runtime error"))) << "file " << last;
            if (result.signal == 0)
                ASSERT_EQ(result.exitStatus, 1)
                    << "file " << last; // a second table, or strings without memory
            else
                ASSERT_THAT(result.error, HasSubstr("`nullString != __null' failed")) << "file " << last;
            next = last + 1;
        }
    }
}

std::vector<std::string> cutsOf(const std::string& file) {
    std::vector<std::string> cuts;
    for (std::size_t i = 0; i < file.size(); ++i)
        cuts.push_back(file.substr(0, i));
    return cuts;
}

} // namespace

TEST(ElfHandlerFaults, AnImageMayEndAnywhere) {
    expectNothingUnstated(cutsOf(richElf().build().bytes));
}

TEST(ElfHandlerFaults, AnObjectOfAnotherToolChainMayEndAnywhere) {
    const std::string object = clangObject();
    ASSERT_FALSE(object.empty());
    expectNothingUnstated(cutsOf(object));
}

TEST(ElfHandlerFaults, AnyFieldMayBeAnything) {
    const LabelledBytes file = richElf().build();
    std::mt19937 random(1);
    std::vector<std::string> files;
    for (const LabelledBytes::Field& field : file.fields()) {
        for (const std::uint32_t value :
             {0U, 1U, field.maximum(), static_cast<std::uint32_t>(random()) & field.maximum()}) {
            LabelledBytes spoilt = file;
            spoilt.set(field, value);
            files.push_back(spoilt.bytes);
        }
    }
    expectNothingUnstated(files);
}

TEST(ElfHandlerFaults, TwoFieldsMayBeAnything) {
    const LabelledBytes file = richElf().build();
    std::mt19937 random(2);
    std::vector<std::string> files;
    for (int i = 0; i < 2000; ++i) {
        LabelledBytes spoilt = file;
        for (int j = 0; j < 2; ++j) {
            // Behind the first four bytes, which all else hangs on.
            const LabelledBytes::Field& field = file.fields()[4 + random() % (file.fields().size() - 4)];
            const std::uint32_t values[] = {0U, 1U, field.maximum(),
                                            static_cast<std::uint32_t>(random() % (2 * file.bytes.size()))};
            spoilt.set(field, values[random() % 4]);
        }
        files.push_back(spoilt.bytes);
    }
    expectNothingUnstated(files);
}
