#include "tools/zetool/image/ImageCommands.h"

#include "tools/zetool/image/ImageBuild.h"
#include "tools/zetool/image/ImageCheck.h"
#include "tools/zetool/image/ImageExtract.h"
#include "tools/zetool/image/ImageFlatten.h"
#include "tools/zetool/image/ImageList.h"
#include "tools/zetool/image/ImageShow.h"

namespace {

constexpr OptionRow s_buildOptions[] = {
    {"network", 'n', "FILE", "the network description (.zn)"},
    {"config", 'c', "FILE", "the system configuration (ZSystem)"},
    {"elf", 'e', "CORE=FILE", "a core's program, by core name or POSITION:CORE", {}, true},
    s_outputOption,
    s_forceOption,
};

constexpr ExampleRow s_buildExamples[] = {
    {"zetool image build -n device.zn -c system.xml -e 'stdcore[0]=main.o' -o app.ze",
     "Packs the program main.o for the core stdcore[0] into app.ze."},
};

constexpr const char* s_fileHelp = "an image (.ze), or - for standard input";
constexpr const char* s_sectorHelp = "a sector's number, or a type such as network for the first of it";

constexpr ArgumentRow s_file[] = {{"FILE", s_fileHelp}};
constexpr ArgumentRow s_fileAndSector[] = {{"FILE", s_fileHelp}, {"SECTOR", s_sectorHelp, Count::Optional}};

constexpr OptionRow s_listOptions[] = {
    {"check", 'c', nullptr, "read the payloads too, and compute their CRC"},
    s_jsonOption,
    s_outputOption,
    s_forceOption,
};
constexpr OptionRow s_extractOptions[] = {
    {"all", 'a', nullptr, "every sector, each as a file in a folder"},
    {"raw", 0, nullptr, "of images the record of node, core and address too"},
    {"output", 'o', "FILE", "write to FILE, with --all to files in this folder; - is standard output"},
    s_forceOption,
};
constexpr OptionRow s_flattenOptions[] = {s_outputOption, s_forceOption};

constexpr ExampleRow s_listExamples[] = {
    {"zetool image list app.ze", "Shows what app.ze is made of."},
    {"zetool image list --check app.ze", "The same, with the CRC of each sector computed."},
};
constexpr ExampleRow s_showExamples[] = {
    {"zetool image show app.ze", "Shows every field of the header and of all sectors."},
    {"zetool image show app.ze network", "Shows the sector of the network description."},
};
constexpr ExampleRow s_checkExamples[] = {
    {"zetool image check app.ze", "Says what is wrong with app.ze, and what looks so."},
};
constexpr ExampleRow s_extractExamples[] = {
    {"zetool image extract app.ze network -o device-of-app.zn", "Takes the network description out."},
    {"zetool image extract app.ze --all -o parts", "Takes everything out, into the folder parts."},
};
constexpr ExampleRow s_flattenExamples[] = {
    {"zetool image flatten app.ze -o flat.ze", "Makes an image of the memory contents of app.ze."},
};

constexpr CommandRow s_commands[] = {
    {"list", "the sectors: type, size, node, core, address, part number, CRC",
     "Shows a row for each sector of an image: its number, its offset in the file, its type, the size of its "
     "payload, and what the type has of node, core, address and part number. The node is a position in the "
     "scan chain. The CRC is the stored one; 0 waives the check. Payloads are passed over, however large "
     "they are, unless --check asks for their CRC. Where the file is cut or a length can't hold, the rows "
     "before it are shown and a message says what is wrong.",
     s_file, s_listOptions, "the file is cut or damaged, or with --check a CRC is wrong", imageList,
     s_listExamples},
    {"show", "every field of the header and the sectors",
     "Shows the header of an image and all fields of each sector, or of the one asked for. As with list, "
     "payloads are passed over unless --check asks for their CRC.",
     s_fileAndSector, s_listOptions, "the file is cut or damaged, or with --check a CRC is wrong", imageShow,
     s_showExamples},
    {"build",
     "an image from a network, a configuration and programs",
     "Packs a network description, a system configuration and ELF files into an image that the plugin and "
     "the simulator open. Each part is checked first: the network as the plugin loads it, the "
     "configuration's root, the ELF files as a whole. A program goes to a core by the core's name in the "
     "network, or by the position of its node in the scan chain and its number, as in 0:1. Programs of one "
     "core stay in the order given. Node types and packages of the network are looked up along "
     "ZCC_DEVICE_PATH.",
     {},
     s_buildOptions,
     "a part has a fault",
     imageBuild,
     s_buildExamples},
    {"check", "what opening would say, and what it wouldn't notice",
     "Opens an image as the plugin does, and says what it says. Then looks at what opening doesn't notice: "
     "checks waived by a CRC of 0, programs and control records of cores that the network doesn't have, "
     "configurations and networks beside the first, warnings on the network, a missing end sector, sectors "
     "behind it, unknown types, and padding and reserved bytes that aren't 0. Every program is read, and its "
     "faults are told with its sector. Node types and packages of the network are looked up along "
     "ZCC_DEVICE_PATH.",
     s_file, s_showOptions, "anything was found", imageCheck, s_checkExamples},
    {"extract", "what a sector holds",
     "Writes what a sector holds, byte for byte: documents and ELF files as they were packed. With --raw the "
     "whole payload, which in an image begins with a record of node, core and address. With --all every "
     "sector becomes a file of the folder, by names such as 2-elf-node0-core1.elf. A sector whose CRC is "
     "wrong is written, one that is cut isn't.",
     s_fileAndSector, s_extractOptions, "the file is cut or damaged, or a CRC is wrong", imageExtract,
     s_extractExamples},
    {"flatten", "ELF sectors to binary ones",
     "Makes an image whose ELF files are flat memory contents: the file bytes of their segments at their "
     "addresses, with zeros between. The entry point goes to the next goto sector of the same core. Symbols "
     "are lost, and the plugin doesn't open an image without an ELF file. Flat contents of more than 64 MB "
     "aren't made.",
     s_file, s_flattenOptions, "the image can't be loaded, or an ELF file can't be flattened", imageFlatten,
     s_flattenExamples},
};

} // namespace

std::span<const CommandRow> imageCommands() {
    return s_commands;
}
