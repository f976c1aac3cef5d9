#include "infr_libs/ConfigurationHandler/Configuration.h"
#include "tests/infr_libs/XmlParser/XmlTestSupport.h"

#include <gtest/gtest.h>

// The words of the help texts are as they should be, misspelt ones included.
TEST(Configuration, DisplaysEveryElementWithItsHelpAsATemplate) {
    EXPECT_EQ(
        written([](FILE* file) { Configuration(nullptr).displayDefaultConfig(file); }),
        R"xml(<ZSystem xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xsi:noNamespaceSchemaLocation="ZSystem.xsd">
  <!-- displayStats: Simulator: If true, statistics are displayed when the simuation completes. -->
  <!-- maximumCycles: Simulator: If non-zero, exits when the given number of cycles are reached. -->
  <!-- gdbMiOutput: Simulator: If true, simulator output uses the gdb mi protocol. -->
  <!-- loadElves: Simulator: If false, simulator won't load elf files from the given ZE (to use only the config.xml found therein). -->
  <System displayStats="false" maximumCycles="0" gdbMiOutput="false" loadElves="true">
    <TraceConfig value="true">
      <!-- name: Simulator: Enables switch data tracing. -->
      <Trace name="TRACE_SWITCH_DATA" value="false"/>
      <!-- name: Simulator: Enables switch control tracing. -->
      <Trace name="TRACE_SWITCH_CTRL" value="false"/>
      <!-- name: Simulator: Enables istream tracing. -->
      <Trace name="TRACE_ISTREAM" value="false"/>
      <!-- name: Simulator: Enables async tracing. -->
      <Trace name="TRACE_ASYNC" value="false"/>
      <!-- name: Simulator: Enables checker tracing. -->
      <Trace name="TRACE_CHECKER" value="false"/>
    </TraceConfig>
    <Plugins>
      <!-- name: Simulator: Name of plugin e.g. 'LoopbackPort.dll' -->
      <!-- args: Simulator: The plugin arguments. -->
      <Plugin name="" args=""/>
    </Plugins>
    <TracePlugins>
      <!-- name: Simulator: Trace plugin dll name. -->
      <!-- args: Simulator: Arguments to the trace plugin dll. -->
      <TracePlugin name="" args=""/>
    </TracePlugins>
    <Nodes>
      <!-- bootMode: Simulator: Boot from RAM -->
      <!-- jtagId: Node JTAG identifier -->
      <!-- userId: Node user identifier -->
      <!-- interconnectMhz: Interconnect speed. -->
      <!-- processorMhz: Processor speed. -->
      <!-- referenceMhz: Refrence clock speed. -->
      <Node bootMode="0" number="0" jtagId="0x0fff1731" userId="0x0" interconnectMhz="400" processorMhz="400" referenceMhz="100">
        <Switch tracingOn="false" sLinks="16"/>
        <!-- number: Processor ID number. -->
        <!-- numThreads: Number of avaliable threads. -->
        <!-- numTimers: Number of avaliable timers. -->
        <!-- numLocks: Number of avaliable locks. -->
        <!-- numSyncs: Number of avaliable synchronisers. -->
        <!-- numChanEnds: Number of avaliable channels ends. -->
        <!-- numClkBlks: Number of avaliable clock blocks. -->
        <!-- numMemMaps: Number of avaliable memory maps. -->
        <!-- tracingOn: Simulator: Instruction stream tracing. -->
        <!-- traceFile: Simulator: Trace to the given file. -->
        <!-- profilingOn: Simulator: Enable (gprof) profiling output. -->
        <!-- traceFNops: Simulator: Print FNOPs in the trace. -->
        <!-- traceRamOnly: Simulator: Display only ram based instructions in the trace. -->
        <!-- traceUserModeOnly: Simulator: Display only user mode instructions in the trace. -->
        <!-- symbolsOn: Simulator: Enables symbols in the instruction trace. -->
        <!-- bootFromRom: Simulator: Boots from ROM rather than RAM - what the hardware does by default -->
        <!-- bootSecure: Simulator: If true, sets the SECURE_BOOT bit in the BOOT_CONFIG register. -->
        <!-- resourceWarnings: Simulator: Print warnings on improper resource usage. -->
        <!-- readBeforeWriteChecks: Simulator: Warn if a register is read before being written. -->
        <!-- stackCheck: Simulator: Warn if if one threads stack overlaps that of another. -->
        <!-- securityConfig: Simulator: Value of the security configuration register. -->
        <!-- startTime: Simulator: System time at reset - not supported on hardward. -->
        <!-- startPortTime: Simulator: Port time at reset, prevents clkblk resetting timers - not supported on hardward. -->
        <!-- resetAddress: Simulator: Sets the zcore boot address. -->
        <!-- syscallAddress: Simulator: Sets the default zcore syscall address. -->
        <!-- exceptionCallAddress: Simulator: Sets the default zcore exception call address. -->
        <!-- codeReference: Code reference to this core. -->
        <Processor number="0" numThreads="8" numTimers="10" numLocks="4" numSyncs="7" numChanEnds="32" numClkBlks="6" numMemMaps="16" tracingOn="false" traceFile="" profilingOn="false" traceFNops="false" traceRamOnly="false" traceUserModeOnly="false" symbolsOn="true" bootFromRom="false" bootSecure="false" resourceWarnings="false" readBeforeWriteChecks="true" stackCheck="false" securityConfig="0x0" startTime="0x0" startPortTime="0x0" resetAddress="0x10000" syscallAddress="0x0" exceptionCallAddress="0x0" codeReference="">
          <MemoryController>
            <!-- base: Memory controller ram base. -->
            <!-- size: Memory controller ram size. -->
            <Ram base="0x10000" size="0x10000"/>
            <!-- base: External Memory controller ram base. -->
            <!-- size: External Memory controller ram size. -->
            <ExtRam base="0x10000" size="0x4000000000"/>
            <!-- base: Memory controller rom base. -->
            <!-- size: Memory controller rom size. -->
            <Rom base="0xffffc000" size="0x2000"/>
          </MemoryController>
          <Otp name=""/>
          <Load name="">
            <Flags></Flags>
          </Load>
        </Processor>
      </Node>
      <GlxNode number="0"/>
    </Nodes>
    <Connections>
      <PLink width="9" pLink="0,0,0" outBufferBytes="16" inBufferBytes="16"/>
      <PLink width="9" pLink="0,0,1" outBufferBytes="16" inBufferBytes="16"/>
      <PLink width="9" pLink="0,0,2" outBufferBytes="16" inBufferBytes="16"/>
      <PLink width="9" pLink="0,0,3" outBufferBytes="16" inBufferBytes="16"/>
      <SLink width="9" end1="0,0" end2="0,1" outBufferBytes="16" inBufferBytes="16"/>
    </Connections>
    <JtagChain>
      <!-- id: NodeID in JTAG chain -->
      <Node id="0"/>
    </JtagChain>
    <Pins>
      <Pin name="" number="0">
        <ZLink node="0" number="0" bitNum="0" dir="in"/>
        <Port name="" node="0" core="0" priority="0" bitNum="0"/>
      </Pin>
    </Pins>
  </System>
</ZSystem>
)xml");
}
