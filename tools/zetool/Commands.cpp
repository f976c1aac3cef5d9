#include "tools/zetool/Commands.h"

#include "tools/zetool/config/ConfigCommands.h"
#include "tools/zetool/elf/ElfCommands.h"
#include "tools/zetool/generate/GenerateCommands.h"
#include "tools/zetool/image/ImageCommands.h"
#include "tools/zetool/pins/PinsCommands.h"
#include "tools/zetool/plan/PlanCommands.h"
#include "tools/zetool/pll/PllCommands.h"
#include "tools/zetool/target/TargetCommands.h"
#include "tools/zetool/wave/WaveCommands.h"
#include "tools/zetool/xml/XmlCommands.h"
#include "tools/zetool/zn/ZnCommands.h"

std::span<const NounRow> allNouns() {
    // Order is the order of help and man page.
    static const NounRow s_nouns[] = {
        {"image", "Image files: programs, network and configuration in one.", imageCommands()},
        {"elf", "ELF files: the programs of cores.", elfCommands()},
        {"zn", "Network descriptions: nodes, cores, ports and links.", znCommands()},
        {"config", "System configurations, the ZSystem documents.", configCommands()},
        {"pins", "Pin maps: pins of the package, ports and links.", pinsCommands()},
        {"pll", "Clocks: the dividers and registers of a device's PLL.", pllCommands()},
        {"xml", "XML documents as networks and configurations are read.", xmlCommands()},
        {"target", "Targets: what the paths of the environment hold.", targetCommands()},
        {"plan", "What a run of the wave plugin would show, before the run.", planCommands()},
        {"wave", "Waveforms: the viewers that people have, and their troubles.", waveCommands()},
        {"generate", "What packages ship beside the program.", generateCommands(), true},
    };
    return s_nouns;
}
