#include "infr_libs/ZCC/ZCCPaths.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/ThrownBy.h"

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

using Strings = std::vector<std::string>;

ZCCPaths pathsOfTargets(const std::string& value) {
    const ScopedVariable devices("ZCC_DEVICE_PATH");
    const ScopedVariable targets("ZCC_TARGET_PATH", value);
    ZCCPaths paths;
    paths.parseDeviceAndTargetPath();
    return paths;
}

} // namespace

// --- The environment ---

TEST(ZCCPaths, AVariableIsSplitAtColons) {
    // An opening colon belongs to its path, a closing one opens an empty path, an empty value is one path.
    const std::pair<const char*, Strings> rows[] = {
        {"a", {"a"}},
        {"a:b", {"a", "b"}},
        {":a:b", {":a", "b"}},
        {"a::b", {"a", ":b"}},
        {"a:", {"a", ""}},
        {"", {""}},
        {":", {":"}},
        {"::", {":", ""}},
        {"a:::b", {"a", ":", "b"}},
        {" a : b ", {" a ", " b "}},
    };
    for (const auto& [value, expected] : rows) {
        const ScopedVariable variable("ZCC_TEST_PATH", value);
        Strings paths;
        getPathsFromEnv("ZCC_TEST_PATH", paths);
        EXPECT_EQ(paths, expected) << value;
    }
}

TEST(ZCCPaths, AnUnsetVariableLeavesTheListAlone) {
    const ScopedVariable variable("ZCC_TEST_PATH");
    Strings paths{"before"};
    getPathsFromEnv("ZCC_TEST_PATH", paths);
    EXPECT_THAT(paths, ElementsAre("before"));
}

TEST(ZCCPaths, PathsAreAppended) {
    const ScopedVariable variable("ZCC_TEST_PATH", "a:b");
    Strings paths{"before"};
    getPathsFromEnv("ZCC_TEST_PATH", paths);
    EXPECT_THAT(paths, ElementsAre("before", "a", "b"));
}

TEST(ZCCPaths, AVariableWithoutANameFailsTheAssertion) {
    const ChildResult result = runInChild([] {
        Strings paths;
        getPathsFromEnv(nullptr, paths);
    });
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_NE(result.error.find("Assertion `varname != __null' failed."), std::string::npos) << result.error;
}

TEST(ZCCPaths, ANewObjectHasNoPaths) {
    const ZCCPaths paths;
    for (int type : {0, 1, 3, 4, 5, 6, 7})
        EXPECT_THAT(paths.getPaths(static_cast<ZCCPaths::PathType>(type)), IsEmpty());
}

TEST(ZCCPaths, ParseEnvFillsTheIncludeAndLibraryPaths) {
    const ScopedVariable variables[] = {
        {"ZCC_LIBRARY_PATH", "lib1:lib2"},
        {"ZCC_DEVICE_PATH", "device"},
        {"ZCC_INCLUDE_PATH", "include"},
        {"ZCC_ZC_INCLUDE_PATH", "zc"},
        {"ZCC_C_INCLUDE_PATH", "c"},
        {"ZCC_CPLUS_INCLUDE_PATH", "cplus"},
        {"ZCC_ASSEMBLER_INCLUDE_PATH", "assembler"},
    };
    ZCCPaths paths;
    paths.parseEnv();
    EXPECT_THAT(paths.getPaths(ZCCPaths::LIBRARY_PATH), ElementsAre("lib1", "lib2"));
    EXPECT_THAT(paths.getPaths(ZCCPaths::DEVICE_PATH), IsEmpty());
    EXPECT_THAT(paths.getPaths(ZCCPaths::INCLUDE_PATH), ElementsAre("include"));
    EXPECT_THAT(paths.getPaths(ZCCPaths::ZC_INCLUDE_PATH), ElementsAre("zc"));
    EXPECT_THAT(paths.getPaths(ZCCPaths::C_INCLUDE_PATH), ElementsAre("c"));
    EXPECT_THAT(paths.getPaths(ZCCPaths::CPLUS_INCLUDE_PATH), ElementsAre("cplus"));
    EXPECT_THAT(paths.getPaths(ZCCPaths::ASSEMBLER_INCLUDE_PATH), ElementsAre("assembler"));
}

TEST(ZCCPaths, ParsingTwiceDoublesTheLists) {
    const ScopedVariable devices("ZCC_DEVICE_PATH", "a:b");
    ZCCPaths paths;
    paths.parseDeviceAndTargetPath();
    paths.parseDeviceAndTargetPath();
    EXPECT_THAT(paths.getPaths(ZCCPaths::DEVICE_PATH), ElementsAre("a", "b", "a", "b"));
}

TEST(ZCCPaths, TheDefaultTargetAndTheToolsPlaceComeFromTheEnvironment) {
    const ScopedVariable target("ZCC_DEFAULT_TARGET", "ZS1-L1A-LQ64");
    const ScopedVariable place("ZCC_EXEC_PREFIX", "tools:here");
    EXPECT_EQ(ZCCPaths::parseDefaultTarget(), "ZS1-L1A-LQ64");
    EXPECT_EQ(ZCCPaths::parseExecPath(), "tools:here");
}

TEST(ZCCPaths, AnUnsetDefaultTargetOrToolsPlaceIsEmpty) {
    const ScopedVariable target("ZCC_DEFAULT_TARGET");
    const ScopedVariable place("ZCC_EXEC_PREFIX");
    EXPECT_EQ(ZCCPaths::parseDefaultTarget(), "");
    EXPECT_EQ(ZCCPaths::parseExecPath(), "");
}

// --- The lists ---

TEST(ZCCPaths, AddPathAppendsToTheListOfItsType) {
    ZCCPaths paths;
    paths.addPath("a", ZCCPaths::INCLUDE_PATH);
    paths.addPath("b", ZCCPaths::INCLUDE_PATH);
    EXPECT_THAT(paths.getPaths(ZCCPaths::INCLUDE_PATH), ElementsAre("a", "b"));
    paths.getPaths(ZCCPaths::INCLUDE_PATH).clear();
    EXPECT_THAT(std::as_const(paths).getPaths(ZCCPaths::INCLUDE_PATH), IsEmpty());
}

TEST(ZCCPaths, ATypeWithoutAListFailsTheAssertion) {
    for (int type : {2, 8, -1}) {
        const ChildResult result =
            runInChild([type] { ZCCPaths().addPath("a", static_cast<ZCCPaths::PathType>(type)); });
        EXPECT_EQ(result.signal, SIGABRT) << type;
        EXPECT_NE(result.error.find("Assertion `0 && \"Unknown file type\"' failed."), std::string::npos)
            << result.error;
    }
}

TEST(ZCCPaths, MultilibDirectoriesStandInFrontOfTheirPathLastOneFirst) {
    ZCCPaths paths;
    paths.addPath("A", ZCCPaths::LIBRARY_PATH);
    paths.addPath("B", ZCCPaths::LIBRARY_PATH);
    paths.addMultilibDirectories(Strings{"x", "y"});
    EXPECT_THAT(paths.getPaths(ZCCPaths::LIBRARY_PATH), ElementsAre("A/y", "A/x", "A", "B/y", "B/x", "B"));
}

TEST(ZCCPaths, OneMultilibDirectoryIsAsAListOfOne) {
    ZCCPaths paths;
    paths.addPath("A", ZCCPaths::LIBRARY_PATH);
    paths.addMultilibDirectories("x");
    EXPECT_THAT(paths.getPaths(ZCCPaths::LIBRARY_PATH), ElementsAre("A/x", "A"));
}

// --- Files ---

TEST(ZCCPaths, FindFileInPathsWithTheReservedTypeFailsTheAssertion) {
    const ChildResult result =
        runInChild([] { ZCCPaths().findFileInPaths("a", static_cast<ZCCPaths::PathType>(2), false); });
    EXPECT_EQ(result.signal, SIGABRT);
    EXPECT_NE(result.error.find("Assertion `0 && \"Unknown file type\"' failed."), std::string::npos)
        << result.error;
}

TEST(ZCCPaths, TheFirstDeviceFolderThatHasTheFileWins) {
    const TemporaryFolder folder;
    folder.write("none/other.xml", "");
    folder.write("first/config_g4.xml", "");
    folder.write("second/config_g4.xml", "");
    const ScopedVariable devices("ZCC_DEVICE_PATH", folder.file("none") + ":" + folder.file("first") + ":" +
                                                        folder.file("second"));
    ZCCPaths paths;
    paths.parseDeviceAndTargetPath();
    EXPECT_EQ(paths.findFileInPaths("config_g4.xml", ZCCPaths::DEVICE_PATH, true),
              folder.file("first/config_g4.xml"));
}

TEST(ZCCPaths, AFolderCountsAsAFile) {
    const TemporaryFolder folder;
    folder.write("path/name/inside", "");
    EXPECT_EQ(ZCCPaths().findFileInPaths("name", {folder.file("path")}, true), folder.file("path/name"));
}

TEST(ZCCPaths, AFileThatCantBeOpenedIsPassedOver) {
    const TemporaryFolder folder;
    folder.write("second/name", "");
    std::filesystem::create_directory(folder.path() / "first");
    std::filesystem::create_symlink(folder.path() / "nowhere", folder.path() / "first" / "name");
    EXPECT_EQ(ZCCPaths().findFileInPaths("name", {folder.file("first"), folder.file("second")}, true),
              folder.file("second/name"));
}

TEST(ZCCPaths, AFileThatIsNowhereGivesAnEmptyName) {
    EXPECT_EQ(ZCCPaths().findFileInPaths("missing.pkg", {"nowhere"}, false), "");
}

TEST(ZCCPaths, AFileThatMustExistAndDoesntIsThrown) {
    EXPECT_EQ(thrownBy([] { ZCCPaths().findFileInPaths("missing.pkg", ZCCPaths::DEVICE_PATH, true); }),
              "cannot find missing.pkg");
}

TEST(ZCCPaths, AnEmptyListFindsNothingNotEvenInTheRootFolder) {
    EXPECT_EQ(ZCCPaths().findFileInPaths("", Strings{}, false), "");
    EXPECT_EQ(ZCCPaths().findFileInPaths("", Strings{""}, false), "/"); // an empty path is the root
}

// --- Targets ---

TEST(ZCCPaths, WithoutATargetPathAKnownOldNameGivesAnEmptyString) {
    const ScopedVariable targets("ZCC_TARGET_PATH");
    ZCCPaths paths;
    paths.parseDeviceAndTargetPath();
    EXPECT_EQ(paths.findTarget("ZS1-L1A-LQ64", false), "");
}

TEST(ZCCPaths, ATargetThatMustExistAndDoesntIsThrown) {
    const ScopedVariable targets("ZCC_TARGET_PATH");
    ZCCPaths paths;
    paths.parseDeviceAndTargetPath();
    EXPECT_EQ(thrownBy([&] { paths.findTarget("X", true); }), "cannot find target X");
}

TEST(ZCCPaths, ThrowsTheNameAsAskedNotItsAlias) {
    EXPECT_EQ(thrownBy([] { ZCCPaths().findTarget("ZS1-L1A-LQ64", true); }),
              "cannot find target ZS1-L1A-LQ64");
}

TEST(ZCCPaths, ATargetIsFoundByItsOldName) {
    const TemporaryFolder folder;
    const std::string file = folder.write("p/ZS1-L01A-LQ64-C4/ZS1-L01A-LQ64-C4.zn", "");
    EXPECT_EQ(pathsOfTargets(folder.file("p")).findTarget("ZS1-L1A-LQ64", true), file);
}

TEST(ZCCPaths, ATargetThatHasTheOldNameComesBeforeTheAlias) {
    const TemporaryFolder folder;
    folder.write("p/ZS1-L01A-LQ64-C4/ZS1-L01A-LQ64-C4.zn", "");
    const std::string file = folder.write("q/ZS1-L1A-LQ64/ZS1-L1A-LQ64.zn", "");
    EXPECT_EQ(pathsOfTargets(folder.file("p") + ":" + folder.file("q")).findTarget("ZS1-L1A-LQ64", true),
              file);
}

TEST(ZCCPaths, TheFirstTargetPathWins) {
    const TemporaryFolder folder;
    const std::string file = folder.write("p/T/T.zn", "");
    folder.write("q/T/T.zn", "");
    EXPECT_EQ(pathsOfTargets(folder.file("p") + ":" + folder.file("q")).findTarget("T", true), file);
}

TEST(ZCCPaths, TheTargetsOfEveryPathAreListedAlsoTwice) {
    const TemporaryFolder folder;
    const std::string first = folder.write("p/T/T.zn", "");
    const std::string second = folder.write("q/T/T.zn", "");
    const std::string other = folder.write("q/U/U.zn", "");
    folder.write("q/V/W.zn", ""); // no description of its own name
    folder.write("q/X.zn", "");   // no folder of its own
    folder.write("file", "");
    std::vector<ZCCPaths::TargetInfo> targets{{"before", "x"}};
    pathsOfTargets(folder.file("p") + ":" + folder.file("nowhere") + ":" + folder.file("file") + ":" +
                   folder.file("q"))
        .getTargets(targets);
    ASSERT_EQ(targets.size(), 4U);
    EXPECT_THAT(targets[0], Pair("before", "x"));
    EXPECT_THAT(targets[1], Pair("T", first));
    // Within a folder the order is the system's.
    EXPECT_THAT((std::vector{targets[2], targets[3]}),
                UnorderedElementsAre(Pair("T", second), Pair("U", other)));
}
