#include "Plugins/WavePlugin/LineStream.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/MemoryStream.h"
#include "tests/support/TemporaryFolder.h"

#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <string_view>
#include <sys/resource.h>

namespace {

struct Close {
    void operator()(FILE* stream) const { std::fclose(stream); }
};
using File = std::unique_ptr<FILE, Close>;

void writeThrough(LineStream& stream, std::string_view text) {
    stream.writeThrough(text.data(), text.size());
}

void writeLater(LineStream& stream, std::string_view text) {
    stream.writeLater(text.data(), text.size());
}

} // namespace

TEST(LineStream, ATextWrittenThroughIsInTheFileAtOnce) {
    const TemporaryFolder folder;
    const File file(std::fopen(folder.file("wave").c_str(), "w"));
    LineStream stream(file.get());
    writeThrough(stream, "1a\n");
    EXPECT_EQ(folder.read("wave"), "1a\n");
    writeThrough(stream, "0a\n");
    EXPECT_EQ(folder.read("wave"), "1a\n0a\n");
}

TEST(LineStream, ATextForLaterWaitsForOneWrittenThroughAndStaysInFrontOfIt) {
    const TemporaryFolder folder;
    const File file(std::fopen(folder.file("wave").c_str(), "w"));
    LineStream stream(file.get());
    writeThrough(stream, "1a\n");
    writeLater(stream, "#1\n");
    EXPECT_EQ(folder.read("wave"), "1a\n");
    writeThrough(stream, "0a\n");
    EXPECT_EQ(folder.read("wave"), "1a\n#1\n0a\n");
    writeThrough(stream, "1a\n");
    EXPECT_EQ(folder.read("wave"), "1a\n#1\n0a\n1a\n");
}

TEST(LineStream, WhatTheStreamHeldBeforeStaysInFront) {
    const TemporaryFolder folder;
    const File file(std::fopen(folder.file("wave").c_str(), "w"));
    std::fputs("head\n", file.get());
    LineStream stream(file.get());
    writeThrough(stream, "1a\n");
    EXPECT_EQ(folder.read("wave"), "head\n1a\n");
}

TEST(LineStream, WhatTheStreamGetsAfterwardsStandsBehind) {
    const TemporaryFolder folder;
    {
        const File file(std::fopen(folder.file("wave").c_str(), "w"));
        LineStream stream(file.get());
        writeThrough(stream, "1a\n");
        std::fputs("tail\n", file.get());
    }
    EXPECT_EQ(folder.read("wave"), "1a\ntail\n");
}

TEST(LineStream, AStreamWithoutDescriptorGetsTheSameText) {
    const MemoryStream memory;
    LineStream stream(memory);
    writeThrough(stream, "1a\n");
    writeLater(stream, "#1\n");
    writeThrough(stream, "0a\n");
    writeThrough(stream, "1a\n");
    EXPECT_EQ(memory.text(), "1a\n#1\n0a\n1a\n");
}

TEST(LineStream, AFullDeviceLeavesAnErrorInTheStream) {
    const File file(std::fopen("/dev/full", "w"));
    ASSERT_TRUE(file);
    LineStream stream(file.get());
    writeThrough(stream, "1a\n");
    writeThrough(stream, "0a\n");
    EXPECT_NE(std::ferror(file.get()), 0);
}

TEST(LineStream, AShortWriteIsCarriedOnThroughTheStream) {
    // A file may grow to ten bytes: the second text is taken in part, and its rest is an error.
    const TemporaryFolder folder;
    const std::string name = folder.file("wave");
    const ChildResult result = runInChild([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        FILE* const file = std::fopen(name.c_str(), "w");
        const rlimit limit = {10, 10};
        setrlimit(RLIMIT_FSIZE, &limit);
        LineStream stream(file);
        writeThrough(stream, "1234567\n");
        writeThrough(stream, "abcdefg\n");
        std::_Exit(std::ferror(file) ? 0 : 1);
    });
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(folder.read("wave"), "1234567\nab");
}

TEST(LineStream, AClosedDescriptorLeavesAnErrorInTheStream) {
    const TemporaryFolder folder;
    const std::string name = folder.file("wave");
    const ChildResult result = runInChild([&] {
        FILE* const file = std::fopen(name.c_str(), "w");
        close(fileno(file));
        LineStream stream(file);
        writeThrough(stream, "1a\n");
        std::_Exit(std::ferror(file) ? 0 : 1);
    });
    EXPECT_EQ(result.exitStatus, 0);
}
