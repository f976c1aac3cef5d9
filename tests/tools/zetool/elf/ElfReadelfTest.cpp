// What the tool lists of objects that another compiler made, held against what readelf lists of them.

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

struct SourceRow {
    const char* file;
    const char* text;
    const char* options;
};

constexpr SourceRow s_sources[] = {
    {"kinds.c",
     "__thread int threadLocal; int common[3]; static int local = 3; char big[200000];\n"
     "int function(void) { return local + threadLocal; }\n"
     "__attribute__((weak)) void weak(void) {}\n"
     "__attribute__((visibility(\"hidden\"))) int hidden = 1;\n"
     "__attribute__((visibility(\"protected\"))) int isProtected;\n"
     "__attribute__((visibility(\"internal\"))) int internal;\n"
     "extern int outside(int); int caller(void) { return outside(2); }\n"
     "static void* resolver(void) { return caller; }\n"
     "int indirect(void) __attribute__((ifunc(\"resolver\")));\n"
     "int control __asm__(\"c\\x01trl\");\n",
     "-c -fcommon"},
    {"sections.cpp",
     "struct Base { virtual ~Base(); virtual int f(); };\n"
     "Base::~Base() {}\n"
     "int Base::f() { return 1; }\n"
     "template<class T> struct Holder { T value; T get() { return value; } };\n"
     "inline int shared() { static int count = Base().f(); return ++count; }\n"
     "int use(Holder<Base*>& h) { return h.get()->f() + shared(); }\n"
     "static Base atStart;\n"
     "const char* texts[] = {\"one\", \"two\"};\n",
     "-c -ffunction-sections -fdata-sections -g"},
    {"assembler.s",
     ".globl start\n.type start,@function\nstart: nop\n.size start, 1\n.set absolute, 0x1234\n.globl "
     "absolute\n"
     ".comm room, 64, 16\n.weak maybe\n.long maybe - .\n.hidden far\n.long far\n.section .odd,\"ax\",@note\n"
     "inOdd: .long start + 4\n",
     "-c"},
    {"empty.c", "", "-c -fno-addrsig"},
    // Linked, with section names in a table of their own.
    {"linked.c", "static int local; int data = 1; int _start(void) { return local + data; }\n",
     "-nostdlib -static"},
};

std::string reduced(const std::string& line) {
    std::istringstream words(line);
    std::string all;
    for (std::string word; words >> word;)
        all += (all.empty() ? "" : " ") + word;
    return all;
}

// The lines of a list with single blanks, from the one behind its head on.
std::vector<std::string> linesBehind(const std::string& text, const std::string& head) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    bool isInside = false;
    for (std::string line; std::getline(stream, line);) {
        line = reduced(line);
        if (line.starts_with(head))
            isInside = true;
        else if (line.empty() || line.starts_with("Key to Flags"))
            isInside = false;
        else if (isInside)
            lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> readelfLines(const std::string& option, const std::string& file,
                                      const std::string& head) {
    const ChildResult result = runProgram({"env", "LC_ALL=C", "readelf", option, "-W", file});
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    return linesBehind(result.output, head);
}

std::vector<std::string> ourLines(const std::string& command, const std::string& file,
                                  const std::string& head) {
    const ChildResult result = zetool({"elf", command, file});
    EXPECT_EQ(result.exitStatus, 0) << result.error;
    EXPECT_EQ(result.error, "");
    return linesBehind(result.output, head);
}

class ElfReadelf : public testing::TestWithParam<SourceRow> {
protected:
    ElfReadelf() {
        folder.write(GetParam().file, GetParam().text);
        const ChildResult result = zetoolShell(folder.path(), std::string("clang -m32 -o a.o ") +
                                                                  GetParam().options + " " + GetParam().file);
        EXPECT_EQ(result.exitStatus, 0) << result.error;
    }

    TemporaryFolder folder;
    std::string file = folder.file("a.o");
};

} // namespace

TEST_P(ElfReadelf, SymbolsAgreeInEveryField) {
    std::vector<std::string> expected = readelfLines("-s", file, "Num:");
    for (std::string& line : expected)
        line.erase(line.find(':'), 1); // behind the number
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(ourLines("symbols", file, "Num "), expected);
}

TEST_P(ElfReadelf, SectionsAgreeInEveryField) {
    std::vector<std::string> expected = readelfLines("-S", file, "[Nr]");
    for (std::string& line : expected) {
        line.erase(std::remove_if(line.begin(), line.end(), [](char c) { return c == '[' || c == ']'; }),
                   line.end());
        line = reduced(line);
    }
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(ourLines("sections", file, "Nr "), expected);
}

TEST_P(ElfReadelf, RelocationsAgreeInEveryField) {
    EXPECT_EQ(ourLines("relocations", file, "Offset "), readelfLines("-r", file, "Offset "));
}

TEST_P(ElfReadelf, HeadersAgree) {
    const ChildResult ours = zetool({"elf", "header", file});
    std::string theirs = runProgram({"env", "LC_ALL=C", "readelf", "-hW", file}).output;
    for (const char* field :
         {"Class", "Data", "OS/ABI", "Type", "Machine", "Flags", "Start of section headers",
          "Number of section headers", "Section header string table index"}) {
        const auto valueOf = [&](const std::string& text, const std::string& name) {
            const std::size_t start = text.find("\n" + name);
            const std::size_t end = text.find('\n', start + 1);
            std::string value = reduced(text.substr(start + 1 + name.size(), end - start - 1 - name.size()));
            return value.substr(0, value.find(" (bytes"));
        };
        EXPECT_EQ(valueOf(ours.output, field), valueOf(theirs, "  " + std::string(field) + ":")) << field;
    }
}

INSTANTIATE_TEST_SUITE_P(Sources, ElfReadelf, testing::ValuesIn(s_sources), [](const auto& info) {
    const std::string file = info.param.file;
    return file.substr(0, file.find('.'));
});

TEST(ElfCheckOfObjects, FindsNothingInWhatThePluginReads) {
    const TemporaryFolder folder;
    folder.write("a.cpp", "struct Base { virtual ~Base(); virtual int f(); };\n"
                          "Base::~Base() {}\n"
                          "int Base::f() { return 1; }\n"
                          "inline int shared() { static int count = Base().f(); return ++count; }\n"
                          "thread_local int local;\n"
                          "int use() { return shared() + ++local; }\n");
    for (const char* options : {"-O0", "-O2 -g", "-ffunction-sections -fdata-sections", "-fpic"}) {
        const std::string compile = "clang -m32 -c -fno-addrsig -o a.o a.cpp ";
        ASSERT_EQ(zetoolShell(folder.path(), compile + options).exitStatus, 0);
        const ChildResult result = zetoolShell(folder.path(), "zetool elf check a.o");
        EXPECT_EQ(result.output, "a.o: nothing is wrong\n") << options;
        EXPECT_EQ(result.exitStatus, 0) << options;
    }
}
