// The sample device of the examples, read as it stands and compared whole.

#include "infr_libs/ZNLoader/NodeConfig.h"
#include "tests/infr_libs/ZNLoader/NetworkText.h"
#include "tests/support/ScopedVariable.h"

#include <gtest/gtest.h>

namespace {

constexpr char s_expected[] = R"(type Board kind 2
name Sample device
version 1.0
board sample-1
architecture 2 topology 1
core stdcore[4]
package 0 of ZS1-L02A-QF124: 0 is 0 1 is 1
node 0 of ZS1-L2 routing 0x0
  boot style 1 device bootFlash
  boots 1 core 0
  oscillator 25000000 system 500000000 reference 100000000 registers 0x2700 0x4
  core 0 stdcore[0]
    port ZS1_PORT_1A PORT_UART_TX
    port ZS1_PORT_4A PORT_LEDS
    port ZS1_PORT_1C PORT_SPI_SS
    port ZS1_PORT_1D PORT_SPI_CLK
  core 1 stdcore[1]
    port ZS1_PORT_1B PORT_UART_RX
node 1 of ZS1-L2 routing 0x8000
  boot style 2 device bootFlash
  oscillator 25000000 system 500000000 reference 100000000 registers 0x2700 0x4
  core 0 stdcore[2]
    port ZS1_PORT_8A PORT_BUTTONS
    port ZS1_PORT_32A PORT_DISPLAY
    service 0 void log fS{0}(chd,chd)
      chanend text end 2 remote 0
      chanend level end 3 remote 0
  core 1 stdcore[3]
link of 5 wires, flags 0
  end on 0 link 2 delays 2,4
  end on 1 link 3 delays 2,4
  users 0>1 1>0
link of 2 wires, flags 0
  end on 0 link 0 delays 3,3
  end on 1 link 1 delays 6,7
  users 0>1 1>0
chain 0 Hz: 0 1; space 0/0 ahead, 0/0 behind
external device bootFlash of 4Mbit class 1 on 0 core 0: PageSize=256
order: 0 1
)";

} // namespace

TEST(SampleDevice, IsReadWholeAndWithoutAWarning) {
    const ScopedVariable path("ZCC_DEVICE_PATH", SAMPLE_DEVICE_FOLDER);
    std::string warnings;
    const ZNLoader loader(SAMPLE_DEVICE_FOLDER "/sample.zn", &warnings);
    EXPECT_EQ(networkText(loader), s_expected);
    EXPECT_EQ(warnings, "");
}

TEST(SampleDevice, HasNodesOfTwoCores) {
    const ScopedVariable path("ZCC_DEVICE_PATH", SAMPLE_DEVICE_FOLDER);
    const ZNLoader loader(SAMPLE_DEVICE_FOLDER "/sample.zn", nullptr);
    for (const ZNLoader::Node* node : loader.m_procNodes)
        EXPECT_EQ(dynamic_cast<const ZNLoader::ProcNode*>(node)->m_config->getNumCores(), 2);
}
