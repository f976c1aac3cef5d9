#include "tests/support/TemporaryFolder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/ZetoolProgram.h"

namespace {

const std::string s_error = "zetool: ZNHandler: Error: ZN";
const std::string s_frequency = " isn't a frequency such as 20MHz, 400kHz or 12500000, below 2^32 Hz\n";

TEST(Pll, PlansAndEncodes) {
    const TemporaryFolder folder;
    const CommandCase cases[] = {
        {"zetool pll --device g4 --oscillator 20MHz --system 400MHz --reference 100MHz", 0,
         "device                g4\n"
         "oscillator            20000000 Hz\n"
         "input divider         1\n"
         "feedback divider      40\n"
         "output divider        1\n"
         "VCO                   800000000 Hz\n"
         "system frequency      400000000 Hz\n"
         "PLL register          0x1002700\n"
         "reference divider     4\n"
         "reference frequency   100000000 Hz\n"
         "reference register    0x3\n"},
        {"zetool pll -d g4 --oscillator 25m --system 333MHZ", 0,
         "device                g4\n"
         "oscillator            25000000 Hz\n"
         "input divider         3\n"
         "feedback divider      80\n"
         "output divider        1\n"
         "VCO                   666666666 Hz\n"
         "system frequency      333333333 Hz (wanted: 333000000 Hz)\n"
         "PLL register          0x1004f02\n"},
        {"zetool pll -d l1 --oscillator 25000khz --system 333000000Hz --reference 30k", 0,
         "device                l1\n"
         "oscillator            25000000 Hz\n"
         "input divider         25\n"
         "feedback divider      333 (666 half steps)\n"
         "output divider        1\n"
         "VCO                   333000000 Hz\n"
         "system frequency      333000000 Hz\n"
         "PLL register          0x29918\n"
         "reference divider     11100\n"
         "reference frequency   30000 Hz\n"
         "reference register    0x2b5b\n"},
        {"zetool pll -d l1 --oscillator 26000000 --input-div 1 --feedback-div 10.5 --output-div 1 "
         "--reference-div 3",
         0,
         "device                l1\n"
         "oscillator            26000000 Hz\n"
         "input divider         1\n"
         "feedback divider      10.5 (21 half steps)\n"
         "output divider        1\n"
         "VCO                   273000000 Hz\n"
         "system frequency      273000000 Hz\n"
         "PLL register          0x1400\n"
         "reference divider     3\n"
         "reference frequency   91000000 Hz\n"
         "reference register    0x2\n"},
        {"zetool pll -d g4 --oscillator 25MHz --input-div 2 --feedback-div 10 --output-div 3", 1,
         "device                g4\n"
         "oscillator            25000000 Hz\n"
         "input divider         2\n"
         "feedback divider      10\n"
         "output divider        3\n"
         "VCO                   125000000 Hz\n"
         "system frequency      20833333 Hz\n"
         "PLL register          0x20901\n",
         "zetool: the VCO would have 125000000 Hz, and can have 250000000 to 1000000000 Hz\n"},
        {"zetool pll -d g4 --oscillator 25MHz --input-div 8 --feedback-div 100 --output-div 1 | tail -n 1", 0,
         "PLL register          0x6307\n",
         "zetool: the phase detector would have 3125000 Hz, and can have 4000000 to 100000000 Hz\n"},
        {"zetool pll -d l1 --oscillator 25MHz --system 300MHz --min-feedback-div 40 | head -n 5", 0,
         "device                l1\n"
         "oscillator            25000000 Hz\n"
         "input divider         4\n"
         "feedback divider      48 (96 half steps)\n"
         "output divider        1\n"},
        {"zetool pll -d g4 --oscillator 22MHz --system 400MHz", 1, "",
         s_error + "11107 Input frequency (22000000) invalid.  Device cannot boot using this frequency.\n"},
        {"zetool pll -d g4 --oscillator 25MHz --system 499kHz", 1, "",
         s_error + "11107 Target frequency (998000) is too low. Minimum PLL frequency with maxumimum output "
                   "divide exceeds this frequency.\n"},
        {"zetool pll -d g4 --oscillator 25MHz --system 500000001", 1, "",
         s_error + "11107 Target frequency (1000000002) is too high. Maximum PLL frequency exceeded.\n"},
        {"zetool pll -d g4 --oscillator 25MHz --system 400MHz --min-feedback-div 255", 1, "",
         s_error + "11114 No valid configuration found to obtain target system frequency.  Try reducing the "
                   "PLL's minimum feedback divider (255).\n"},
        {"zetool pll -d g4 --oscillator 25MHz --system 400MHz --reference 1MHz", 1, "",
         s_error + "11116 Reference clock frequency (1000000) may not be lower than the PLL frequency / 256 "
                   "(1562500).\n"},
        {"zetool pll -d g4 --oscillator 25MHz --system 400MHz --reference 0", 1, "",
         s_error + "11116 Reference clock frequency (0) may not be lower than the PLL frequency / 256 "
                   "(1562500).\n"},
        {"zetool pll -d l1 --oscillator 25MHz --system 400MHz --reference 400MHz", 1, "",
         s_error + "11108 Reference clock frequency (400000000) may not be greater than or equal to the PLL "
                   "frequency (400000000).\n"},
        {"zetool pll -d l1 --oscillator 25MHz --system 400MHz --reference-div 0", 1, "",
         s_error + "11116 Reference clock divide cannot be 0.\n"},
        {"zetool pll -d g4 --oscillator 25MHz --input-div 1 --feedback-div 10.5 --output-div 1", 1, "",
         s_error + "11127 Illegal PLL feedback divider value (10.5).\n"},
        {"zetool pll -d g4 --oscillator 25MHz --input-div 0 --feedback-div 10 --output-div 1", 1, "",
         s_error + "11125 PLL input divider cannot be 0.\n"},
        {"zetool pll -d l1 --oscillator 25MHz --input-div 1 --feedback-div 10 --output-div 9", 1, "",
         s_error + "11126 PLL output divider (9) is too high (max is 8).\n"},
        {"zetool pll --oscillator 25MHz --system 400MHz", 2, "", "zetool: pll: --device is missing\n"},
        {"zetool pll -d g4 --system 400MHz", 2, "", "zetool: pll: --oscillator is missing\n"},
        {"zetool pll -d g4 --oscillator 25MHz", 2, "", "zetool: pll: --system is missing\n"},
        {"zetool pll -d g4 --oscillator 25MHz --input-div 1 --output-div 1", 2, "",
         "zetool: pll: --feedback-div is missing\n"},
        {"zetool pll -d g4 --oscillator 25MHz --system 1 --output-div 1", 2, "",
         "zetool: pll: --system and --output-div exclude each other\n"},
        {"zetool pll -d g4 --oscillator 25MHz --system 400MHz --reference 1 --reference-div 1", 2, "",
         "zetool: pll: --reference and --reference-div exclude each other\n"},
        {"zetool pll -d g4 --oscillator 4295MHz --system 1", 2, "",
         "zetool: pll: --oscillator: '4295MHz'" + s_frequency},
        {"zetool pll -d g4 --oscillator 4294967296 --system 1", 2, "",
         "zetool: pll: --oscillator: '4294967296'" + s_frequency},
        {"zetool pll -d g4 --oscillator 2.5MHz --system 1", 2, "",
         "zetool: pll: --oscillator: '2.5MHz'" + s_frequency},
        {"zetool pll -d g4 --oscillator 25MHz --system ''", 2, "", "zetool: pll: --system: ''" + s_frequency},
        {"zetool pll -d g4 --oscillator 25MHz --input-div x --feedback-div 1 --output-div 1", 2, "",
         "zetool: pll: --input-div: 'x' isn't a divider\n"},
        {"zetool pll -d g4 --oscillator 25MHz --input-div 1 --feedback-div 1.25 --output-div 1", 2, "",
         "zetool: pll: --feedback-div: '1.25' isn't a divider such as 10 or 10.5\n"},
        {"zetool pll -d g4 --oscillator 4294967295 --input-div 1 --feedback-div 255 --output-div 1 "
         "2>/dev/null",
         1,
         "device                g4\n"
         "oscillator            4294967295 Hz\n"
         "input divider         1\n"
         "feedback divider      255\n"
         "output divider        1\n"
         "VCO                   1095216660225 Hz\n"
         "system frequency      2147483520 Hz\n"
         "PLL register          0x100fe00\n"},
        {"zetool pll -d l1 --oscillator 25MHz --system 400MHz --json", 0,
         "{\n"
         "  \"type\": \"pll\",\n"
         "  \"version\": 1,\n"
         "  \"device\": \"l1\",\n"
         "  \"oscillatorHz\": 25000000,\n"
         "  \"inputDivider\": 1,\n"
         "  \"feedbackSteps\": 32,\n"
         "  \"feedbackStepsPerUnit\": 2,\n"
         "  \"outputDivider\": 1,\n"
         "  \"vcoHz\": 400000000,\n"
         "  \"wantedSystemHz\": 400000000,\n"
         "  \"systemHz\": 400000000,\n"
         "  \"pllRegister\": 7936,\n"
         "  \"reference\": null\n"
         "}\n"},
    };
    expectCommands(folder.path(), cases);
}

TEST(Pll, WritesJsonThatItsSchemaDescribes) {
    const TemporaryFolder folder;
    for (const char* const words :
         {"-d l1 --oscillator 25MHz --system 400MHz",
          "-d g4 --oscillator 25MHz --system 400MHz --reference 100M",
          "-d g4 --oscillator 25MHz --input-div 1 --feedback-div 20 --output-div 1 --reference-div 4"})
        EXPECT_EQ(schemaFaults("pll.schema.json",
                               zetoolShell(folder.path(), std::string("zetool pll --json ") + words).output),
                  "");
}

} // namespace
