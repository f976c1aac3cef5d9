#pragma once

#include "tests/support/NetworkBuilder.h"
#include "tests/tools/zetool/CommandTable.h"
#include "tests/tools/zetool/ZetoolProgram.h"

#include <gmock/gmock.h>
#include <string>

// Networks with something of everything, and the folder that they are looked at in.

// Two processors, a device on the network, a flash memory, a scan chain with a space.
inline constexpr const char* s_twoNodes = R"--(<Network>
  <Type>Board</Type>
  <Name>Two nodes</Name>
  <ZNVersion>1.1</ZNVersion>
  <BoardId>b-2</BoardId>
  <Declarations>
    <Declaration>core left</Declaration>
    <Declaration>core right[4]</Declaration>
  </Declarations>
  <Packages>
    <Package Id="p" Type="Package">
      <Nodes>
        <Node Id="a" InPackageId="0" Type="L1" Oscillator="25MHz" SystemFrequency="400MHz">
          <Boot>
            <Source Location="spi:flash"/>
            <Bootee NodeId="b"/>
          </Boot>
          <Core Reference="left">
            <Port Location="ZS1_PORT_1A" Name="PORT_LED" Mods="out"/>
          </Core>
        </Node>
        <Node Id="b" InPackageId="1" Type="proc:L1" Oscillator="25" RefDiv="4"
              PllInputDiv="1" PllFeedbackDiv="16.5" PllOutputDiv="1">
          <Core Reference="right[3]">
            <Service Id="7" Proto="void f(chanend x, chanend y)">
              <Chanend Identifier="y" End="2:5"/>
              <Chanend Identifier="x" End="4"/>
            </Service>
          </Core>
        </Node>
      </Nodes>
      <Component NodeId="d" InPackage="2"/>
    </Package>
  </Packages>
  <Nodes>
    <Node Id="d" Type="device:display" Flags="postboot"/>
  </Nodes>
  <Links>
    <Link Encoding="5wire" Delays="5clk,6CLK">
      <LinkEndpoint NodeId="a" Link="Z0LA"/>
      <LinkEndpoint NodeId="b" Link="Z3LD" Delays="9"/>
    </Link>
    <Link Encoding="2wire" Flags="sod">
      <LinkEndpoint NodeId="b" Link="4"/>
      <LinkEndpoint NodeId="d" RoutingId="0x10" Chanend="2"/>
    </Link>
  </Links>
  <JTAGChain MaxFrequency="10MHz">
    <JTAGDevice NodeId="b"/>
    <JTAGDevice NodeId="a"/>
    <JTAGSpace Devices="1" BitLength="4"/>
  </JTAGChain>
  <ExternalDevices>
    <Device NodeId="a" Core="0" Class="SPIFlash" Name="flash" Type="4Mbit">
      <Attribute Name="PageSize" Value="256"/>
    </Device>
  </ExternalDevices>
</Network>
)--";

// A processor behind a switch and controller node, and an element that nobody knows.
inline constexpr const char* s_switchNode = R"--(<Network>
  <Declarations><Declaration>core a</Declaration></Declarations>
  <Packages>
    <Package Id="p" Type="Package">
      <Nodes>
        <Node Id="a" InPackageId="0" Type="L1" OscillatorSrc="z" SystemFrequency="400MHz">
          <Core Reference="a"/>
        </Node>
        <Node Id="z" InPackageId="1" Type="periph:ZS1-SU" Reference="su[1]" Oscillator="25MHz">
          <Service Id="1" Proto="int g(chanend c)" Flags="SOD">
            <Chanend Identifier="c" End="3" Remote="2:1"/>
          </Service>
        </Node>
      </Nodes>
    </Package>
  </Packages>
  <Links>
    <Link Encoding="5wire" Flags="noinit">
      <LinkEndpoint NodeId="a" Link="Z0LA"/>
      <LinkEndpoint NodeId="z" Link="0"/>
    </Link>
  </Links>
  <JTAGChain><JTAGDevice NodeId="a"/><JTAGDevice NodeId="z"/></JTAGChain>
  <Lanks/>
</Network>
)--";

// What the loader itself writes for the chain's one attribute.
inline constexpr const char* s_chainLine = "readJTAGChain attrs : 0\n";

inline constexpr const char* s_lanksWarning =
    "zetool: switch.zn:1 Warning: ZN11128 Node <Lanks> is not recognised; ignoring.\n";

// A folder with the networks two.zn and switch.zn, bad.zn, which doesn't load, and the files that they name.
class ZnCommands : public testing::Test {
protected:
    ZnCommands() {
        folder().write("two.zn", s_twoNodes);
        folder().write("switch.zn", s_switchNode);
        folder().write("bad.zn", "<Network>\n<Lanks/>\n</Network>\n");
    }

    const TemporaryFolder& folder() const { return m_devices.folder(); }

    ChildResult run(const std::string& line) const { return zetoolShell(folder().path(), line); }

    DeviceFolder m_devices;
    // Node types are found in the folder itself, so that their names are the same everywhere.
    ScopedVariable m_here{"ZCC_DEVICE_PATH", "."};
};
