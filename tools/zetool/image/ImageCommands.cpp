#include "tools/zetool/image/ImageCommands.h"

#include "tools/zetool/image/ImageBuild.h"

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

constexpr CommandRow s_commands[] = {
    {"build",
     "an image from a network, a configuration and programs",
     "Packs a network description, a system configuration and ELF files into an image that the plugin and "
     "the simulator open. Each part is checked first: the network as the plugin loads it, the "
     "configuration's "
     "root, the ELF files as a whole. A program goes to a core by the core's name in the network, or by the "
     "position of its node in the scan chain and its number, as in 0:1. Programs of one core stay in the "
     "order given. Node types and packages of the network are looked up along ZCC_DEVICE_PATH.",
     {},
     s_buildOptions,
     "a part has a fault",
     imageBuild,
     s_buildExamples},
};

} // namespace

std::span<const CommandRow> imageCommands() {
    return s_commands;
}
