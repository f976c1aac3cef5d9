#include "Plugins/WavePlugin/ResourceTracer.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/MemoryStream.h"
#include "tests/support/StubSimulator.h"
#include "tests/support/TemporaryFolder.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::HasSubstr;

namespace {

// The base with nothing of its own.
class PlainTracer : public ResourceTracer {
public:
    using ResourceTracer::ResourceTracer;

    void dumpSignalHierarchy(StructureFileWriter*) override {}
    void dumpSignalValueAliases(StructureFileWriter*, ElfHandler*, std::string) override {}
    void dumpSignalDocs(StructureFileWriter*) override {}
    void declareVariables(FILE*) override {}
    void initialiseVariables(FILE*) override {}
    void traceVariables(FILE*, bool*) override {}
};

class ResourceTracerTest : public testing::Test {
protected:
    StubSimulator simulator;
    PlainTracer tracer{simulator.callbacks(), 0x00000001, "stdcore[1]"};
    MemoryStream stream;
    bool firstChange = true;
};

} // namespace

// ---------------------------------------------------------------- names

TEST_F(ResourceTracerTest, TagIsNodeAndCoreInDecimal) {
    EXPECT_STREQ(tracer.getTag(), "01");
    EXPECT_STREQ(PlainTracer(simulator.callbacks(), 0x8000000f, "x").getTag(), "3276815");
}

TEST_F(ResourceTracerTest, TagsOfTwoCoresMayCollide) {
    EXPECT_STREQ(PlainTracer(simulator.callbacks(), 1U << 16 | 11, "x").getTag(), "111");
    EXPECT_STREQ(PlainTracer(simulator.callbacks(), 11U << 16 | 1, "y").getTag(), "111");
}

TEST_F(ResourceTracerTest, PrefixIsTheCoresNameAndAnUnderscore) {
    EXPECT_STREQ(tracer.getPrefix(), "stdcore[1]_");
}

TEST_F(ResourceTracerTest, PrefixTakesANameOfAnyLength) {
    const std::string name(5000, 'n');
    EXPECT_EQ(PlainTracer(simulator.callbacks(), 0, name).getPrefix(), name + "_");
}

TEST_F(ResourceTracerTest, OfNoCoreHasEmptyTagAndPrefix) {
    PlainTracer ofNoCore(simulator.callbacks());
    EXPECT_STREQ(ofNoCore.getTag(), "");
    EXPECT_STREQ(ofNoCore.getPrefix(), "");
    EXPECT_STREQ(ofNoCore.getTag("pa", "a", 5), "paa5");
}

TEST_F(ResourceTracerTest, IdentifierHasFourPieces) {
    EXPECT_STREQ(tracer.getTag("po", "a", 2), "po01a2");
}

TEST_F(ResourceTracerTest, IdentifierOfAnyLengthStaysWithinItsBuffer) {
    const std::string piece(5000, 'p');
    EXPECT_EQ(tracer.getTag(piece.c_str(), "a", 2), piece.substr(0, 1023));
}

TEST_F(ResourceTracerTest, WritingAValueLeavesTheIdentifierLastMadeAlone) {
    const char* const identifier = tracer.getTag("po", "a", 2);
    tracer.output(stream, 8, 1, "t", "d", 7);
    EXPECT_STREQ(identifier, "po01a2");
}

TEST_F(ResourceTracerTest, PidIsThatOfTheCore) {
    EXPECT_EQ(tracer.getPid(), 1U);
    EXPECT_EQ(tracer.getCallbacks(), simulator.callbacks());
}

TEST_F(ResourceTracerTest, PidOfNoCoreEndsTheProcess) {
    const ChildResult result = runInChild([&] { PlainTracer(simulator.callbacks()).getPid(); });
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_THAT(result.error, HasSubstr("Plugins/WavePlugin/ResourceTracer"));
    EXPECT_THAT(result.error, HasSubstr("unsigned int ResourceTracer::getPid()"));
    EXPECT_THAT(result.error, HasSubstr("Assertion `m_pid != 0xffffffff' failed."));
}

TEST_F(ResourceTracerTest, RationaliseNameLeavesANameWithoutColonAsItIs) {
    EXPECT_EQ(tracer.rationaliseName("Pad 0.x"), "Pad 0.x");
}

TEST_F(ResourceTracerTest, RationaliseNameReplacesEachColon) {
    EXPECT_EQ(tracer.rationaliseName("a::b:"), "a__b_");
}

// ---------------------------------------------------------------- values as text

TEST_F(ResourceTracerTest, EightBlanksAreTheNumberOfTheirBytes) {
    EXPECT_EQ(tracer.bytesToInt64(reinterpret_cast<const unsigned char*>("        ")), 0x2020202020202020U);
}

TEST_F(ResourceTracerTest, BytesToInt64PutsTheFirstByteOnTopAndReadsPastATerminator) {
    const unsigned char bytes[] = {0x81, 0, 3, 4, 5, 6, 7, 0xff};
    EXPECT_EQ(tracer.bytesToInt64(bytes), 0x81000304050607ffU);
}

TEST_F(ResourceTracerTest, BinaryValueHasTheMostSignificantBitFirst) {
    EXPECT_STREQ(tracer.getBinaryValue(5, 4), "0101");
    EXPECT_STREQ(tracer.getBinaryValue(5, 1), "1");
    EXPECT_STREQ(tracer.getBinaryValue(5, 0), "");
    EXPECT_STREQ(tracer.getBinaryValue(0x8000000000000001, 64),
                 "1000000000000000000000000000000000000000000000000000000000000001");
}

TEST_F(ResourceTracerTest, BinaryValueBeyond64BitsRepeatsTheValue) {
    const std::string all = "0000000000000000000000000000000000000000000000000000000000000101";
    EXPECT_EQ(tracer.getBinaryValue(5, 66), "01" + all);
    EXPECT_EQ(tracer.getBinaryValue(5, 128), all + all);
    EXPECT_EQ(tracer.getBinaryValue(~0ULL, 1023), std::string(1023, '1'));
}

TEST_F(ResourceTracerTest, BinaryValueOf1024BitsEndsTheProcess) {
    const ChildResult result = runInChild([&] { tracer.getBinaryValue(0, 1024); });
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_THAT(result.error, HasSubstr("Assertion `numBits < 1024' failed."));
#if !defined(__clang__) // which spells functions in another way
    EXPECT_THAT(result.error, HasSubstr("char* ResourceTracer::getBinaryValue(uint64_t, unsigned int)"));
#endif
}

TEST_F(ResourceTracerTest, BinaryValueStringIsLeftJustifiedAndFilledWithZeros) {
    EXPECT_EQ(tracer.getBinaryValueString("ab", 8), "0110000101100010" + std::string(48, '0'));
}

TEST_F(ResourceTracerTest, BinaryValueStringEndsWithTheAskedBytes) {
    EXPECT_STREQ(tracer.getBinaryValueString("ab", 1), "01100001");
    EXPECT_STREQ(tracer.getBinaryValueString("\xff", 1), "11111111");
}

TEST_F(ResourceTracerTest, BinaryValueStringOf128BytesEndsTheProcess) {
    EXPECT_EQ(tracer.getBinaryValueString("", 127), std::string(1016, '0'));
    const ChildResult result = runInChild([&] { tracer.getBinaryValueString("", 128); });
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_THAT(result.error, HasSubstr("Assertion `(numBytes * 8) < 1024' failed."));
#if !defined(__clang__)
    EXPECT_THAT(result.error,
                HasSubstr("char* ResourceTracer::getBinaryValueString(const char*, unsigned int)"));
#endif
}

// ---------------------------------------------------------------- lines

TEST_F(ResourceTracerTest, TimeLineIsWrittenOnceAClock) {
    simulator.cycle = 12;
    tracer.printCycles(stream, &firstChange);
    tracer.printCycles(stream, &firstChange);
    EXPECT_EQ(stream.text(), "#12\n");
    EXPECT_FALSE(firstChange);
}

TEST_F(ResourceTracerTest, TimeLineIsSigned) {
    simulator.cycle = 0x80000000;
    tracer.printCycles(stream, &firstChange);
    EXPECT_EQ(stream.text(), "#-2147483648\n");
}

TEST_F(ResourceTracerTest, Width0And1GiveScalarLinesWithoutABlank) {
    tracer.output(stream, 1, 0, "po", "b", 0);
    tracer.output(stream, 0, 1, "po", "b", 0);
    EXPECT_EQ(stream.text(), "0po01b0\n1po01b0\n");
}

TEST_F(ResourceTracerTest, AScalarLineShowsTheLow32BitsUnmaskedAndSigned) {
    tracer.output(stream, 1, 2, "po", "b", 0);
    tracer.output(stream, 1, 12345, "po", "b", 0);
    tracer.output(stream, 1, 0x1ffffffff, "po", "b", 0);
    EXPECT_EQ(stream.text(), "2po01b0\n12345po01b0\n-1po01b0\n");
}

TEST_F(ResourceTracerTest, Width2GivesABinaryLineWithABlank) {
    tracer.output(stream, 2, 1, "po", "a", 3);
    EXPECT_EQ(stream.text(), "b01 po01a3\n");
}

TEST_F(ResourceTracerTest, AWidthBeyond64IsWrittenWhole) {
    tracer.output(stream, 1023, ~0ULL, "po", "a", 0);
    EXPECT_EQ(stream.text(), "b" + std::string(1023, '1') + " po01a0\n");
}

TEST_F(ResourceTracerTest, AWidthOf1024EndsTheProcess) {
    const ChildResult result = runInChild([&] { tracer.output(stream, 1024, 0, "po", "a", 0); });
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_THAT(result.error, HasSubstr("Assertion `numBits < 1024' failed."));
}

TEST_F(ResourceTracerTest, AnEqualValueWritesNothing) {
    std::uint64_t cached = 7;
    tracer.outputIfChanged(stream, 32, &cached, 7, &firstChange, "po", "e", 0);
    EXPECT_EQ(stream.text(), "");
    EXPECT_TRUE(firstChange);
    EXPECT_EQ(simulator.calls[2], 0U);
}

TEST_F(ResourceTracerTest, AChangeFrom0To1Writes32Digits) {
    std::uint64_t cached = 0;
    tracer.outputIfChanged(stream, 32, &cached, 1, &firstChange, "po", "e", 0);
    EXPECT_EQ(stream.text(), "#0\nb00000000000000000000000000000001 po01e0\n");
    EXPECT_EQ(cached, 1U);
}

TEST_F(ResourceTracerTest, AOneBitChangeTo0BeginsWithTheDigit) {
    std::uint64_t cached = 1;
    tracer.outputIfChanged(stream, 1, &cached, 0, &firstChange, "po", "b", 4);
    EXPECT_EQ(stream.text(), "#0\n0po01b4\n");
}

TEST_F(ResourceTracerTest, TwoChangesShareATimeLine) {
    std::uint64_t first = 1;
    std::uint64_t second = 0;
    simulator.cycle = 3;
    tracer.outputIfChanged(stream, 1, &first, 0, &firstChange, "po", "b", 0);
    tracer.outputIfChanged(stream, 2, &second, 3, &firstChange, "po", "a", 0);
    EXPECT_EQ(stream.text(), "#3\n0po01b0\nb11 po01a0\n");
}

TEST_F(ResourceTracerTest, TheUpperHalfOfAValueIsComparedToo) {
    std::uint64_t cached = 0;
    tracer.outputIfChanged(stream, 64, &cached, 1ULL << 63, &firstChange, "in", "c", 0);
    EXPECT_EQ(stream.text(), "#0\nb1" + std::string(63, '0') + " in01c0\n");
}

TEST_F(ResourceTracerTest, ATextIsWrittenAsItsBits) {
    tracer.outputString(stream, 2, "A", "fu", "a", 6);
    EXPECT_EQ(stream.text(), "b0100000100000000 fu01a6\n");
}

TEST_F(ResourceTracerTest, AChangedTextIsWrittenAndRemembered) {
    char cached[9] = {};
    tracer.outputIfChangedString(stream, 8, cached, "main.0\0", &firstChange, "fu", "a", 0);
    tracer.outputIfChangedString(stream, 8, cached, "main.0\0", &firstChange, "fu", "a", 0);
    EXPECT_EQ(stream.text(), "#0\n"
                             "b0110110101100001011010010110111000101110001100000000000000000000 fu01a0\n");
    EXPECT_STREQ(cached, "main.0");
}

TEST_F(ResourceTracerTest, ATextIsNotFlushedAndANumberIs) {
    const TemporaryFolder folder;
    FILE* const file = std::fopen(folder.file("wave").c_str(), "w");
    tracer.outputString(file, 1, "A", "fu", "a", 0);
    EXPECT_EQ(folder.read("wave"), "");
    tracer.output(file, 1, 0, "po", "b", 0);
    EXPECT_EQ(folder.read("wave"), "b01000001 fu01a0\n0po01b0\n");
    std::fclose(file);
}
