// Boot sources and bootees, external devices, and the pass that binds them.

#include "tests/infr_libs/ZNLoader/ReadingTest.h"
#include "tests/support/GroupingLocale.h"

class ZNLoaderBoot : public ReadingTest {
protected:
    // Nodes and, on the second line, devices; then the references are resolved.
    void resolve(const std::string& nodes, const std::string& devices = "") {
        read("<Network><Nodes>" + nodes + "</Nodes>\n<ExternalDevices>" + devices +
             "</ExternalDevices></Network>");
        ASSERT_FALSE(loader.resolveBootReferences());
    }

    static std::string processor(const std::string& id, const std::string& boot) {
        return "<Node Id='" + id + "' Type='L1x2'><Core Number='0'/><Core Number='1'/><Boot>" + boot +
               "</Boot></Node>";
    }

    template<class Boot>
    const Boot& boot(std::size_t index) {
        return dynamic_cast<const Boot&>(*loader.m_nodes.at(index)->m_boot);
    }
};

using SpiMaster = ZNLoader::BootTypeSPIMaster;
using FromLink = ZNLoader::BootTypeFromLink;

constexpr char s_flash[] = "<Device NodeId='a' Name='flash' Class='spiflash'/>";

TEST_F(ZNLoaderBoot, IsFromANamedDevice) {
    resolve(processor("a", "<Source Location='SPI:flash'/>"), s_flash);
    EXPECT_EQ(boot<SpiMaster>(0).m_deviceName, "flash");
    EXPECT_FALSE(boot<SpiMaster>(0).m_isDefault);
    EXPECT_EQ(boot<SpiMaster>(0).m_device, loader.m_devices[0]);
}

TEST_F(ZNLoaderBoot, NamesADeviceSpiWithoutAColon) {
    resolve(processor("a", "<Source Location='spi'/>"), "<Device Name='spi'/>");
    EXPECT_EQ(boot<SpiMaster>(0).m_deviceName, "spi");
    EXPECT_EQ(boot<SpiMaster>(0).m_device, loader.m_devices[0]);
}

TEST_F(ZNLoaderBoot, NeedsTheDeviceThatItNames) {
    EXPECT_EQ(thrownBy([&] { resolve(processor("a", "<Source Location='spi'/>")); }),
              "zn:1 Error: ZN11130 Node \"a\" boot information does not specify an extant external device "
              "(\"spi\").\n");
}

TEST_F(ZNLoaderBoot, NeedsADeviceWithoutANameWhereItNamesNone) {
    EXPECT_EQ(
        thrownBy([&] { resolve(processor("a", "<Source Location='spi:'/>")); }),
        "zn:1 Error: ZN11130 Node \"a\" boot information does not specify an extant external device.\n");
    loader.m_devices.push_back(new ZNLoader::ExtDevice);
    EXPECT_FALSE(loader.resolveBootReferences());
    EXPECT_EQ(boot<SpiMaster>(0).m_device, loader.m_devices[0]);
}

TEST_F(ZNLoaderBoot, IsFromALink) {
    resolve(processor("a", "<Source Location='ZelmLink'/>"));
    EXPECT_EQ(boot<FromLink>(0).m_device, nullptr);
}

TEST_F(ZNLoaderBoot, KnowsNoLinkByName) {
    EXPECT_EQ(thrownBy([&] { resolve(processor("a", "<Source Location='zelmlink:x'/>")); }),
              "zn:1 Error: ZN11089 Boot location specifier \"zelmlink\" is not recognised.\n");
}

TEST_F(ZNLoaderBoot, TakesTheLastOfTwoSources) {
    resolve(processor("a", "<Source Location='spi:x'/><Source Location='zelmlink'/>"));
    EXPECT_EQ(loader.m_nodes[0]->m_boot->getBootStyle(), 2);
}

TEST_F(ZNLoaderBoot, BindsABooteesNodeAndCore) {
    resolve(processor("a", "<Source Location='spi:flash'/><Bootee NodeId='b' Core='1'/>") +
                processor("b", ""),
            s_flash);
    const ZNLoader::NodeCoreTuple& bootee = *loader.m_nodes[0]->m_bootees.at(0);
    EXPECT_EQ(bootee.m_node, loader.m_nodes[1]);
    EXPECT_EQ(bootee.m_core, &core(1, 1));
    EXPECT_EQ(boot<FromLink>(1).m_device, loader.m_devices[0]);
}

TEST_F(ZNLoaderBoot, LeavesABooteesCoreNullIfThereIsNone) {
    resolve(processor("a", "<Source Location='spi:flash'/><Bootee NodeId='b' Core='2'/>") +
                processor("b", ""),
            s_flash);
    EXPECT_EQ(loader.m_nodes[0]->m_bootees.at(0)->m_core, nullptr);
}

TEST_F(ZNLoaderBoot, ReadsABooteesCoreAsADecimal) {
    resolve(processor("a", "<Source Location='spi:flash'/><Bootee NodeId='b' Core='0x1'/>"
                           "<Bootee NodeId='b'/>") +
                processor("b", ""),
            s_flash);
    EXPECT_EQ(loader.m_nodes[0]->m_bootees.at(0)->m_core, &core(1, 0)); // "0x1" stops at the x
    EXPECT_EQ(loader.m_nodes[0]->m_bootees.at(1)->m_core, &core(1, 0));
}

TEST_F(ZNLoaderBoot, KnowsNoGroupsOfDigitsInABooteesCore) {
    const GroupingLocale locale;
    resolve(processor("a", "<Source Location='spi:flash'/><Bootee NodeId='b' Core='1,234'/>") +
                processor("b", ""),
            s_flash);
    EXPECT_EQ(loader.m_nodes[0]->m_bootees.at(0)->m_core, &core(1, 1));
}

TEST_F(ZNLoaderBoot, TakesTheLastCoreOfANumber) {
    resolve("<Node Id='b' Type='L1'><Core Number='3'/><Core Number='3'/></Node>" +
                processor("a", "<Source Location='spi:flash'/><Bootee NodeId='b' Core='3'/>"),
            s_flash);
    EXPECT_EQ(loader.m_nodes[1]->m_bootees.at(0)->m_core, &core(0, 1));
}

TEST_F(ZNLoaderBoot, PassesOverAnUnknownBooteeInSilence) {
    resolve(processor("a", "<Bootee NodeId='x'/>"));
    EXPECT_EQ(loader.m_nodes[0]->m_bootees.at(0)->m_node, nullptr);
    EXPECT_EQ(warnings, "");
}

TEST_F(ZNLoaderBoot, BootsADeviceNodeOverALink) {
    resolve(processor("a", "<Source Location='spi:flash'/><Bootee NodeId='d'/>") +
                "<Node Id='d' Type='device:x'/>",
            s_flash);
    EXPECT_EQ(boot<FromLink>(1).m_device, loader.m_devices[0]);
}

TEST_F(ZNLoaderBoot, OfABooteeIsNotFromADeviceOfItsOwn) {
    EXPECT_EQ(thrownBy([&] {
                  resolve(processor("a", "<Source Location='spi:flash'/><Bootee NodeId='b'/>") + "\n" +
                              processor("b", "<Source Location='spi:flash'/>"),
                          s_flash);
              }),
              "zn:2 Error: ZN11091 Node \"b\" has contradictory boot information.\n");
}

TEST_F(ZNLoaderBoot, OfABooteeMayBeALink) {
    resolve(processor("a", "<Source Location='spi:flash'/><Bootee NodeId='b'/>") +
                processor("b", "<Source Location='zelmlink'/>"),
            s_flash);
    EXPECT_EQ(boot<FromLink>(1).m_device, loader.m_devices[0]);
}

TEST_F(ZNLoaderBoot, ThatIsNotFromADeviceHasNoBootees) {
    EXPECT_EQ(thrownBy([&] {
                  resolve(processor("a", "<Source Location='zelmlink'/><Bootee NodeId='b'/>") + "\n" +
                          processor("b", ""));
              }),
              "zn:1 Error: ZN11091 Node \"a\" cannot support bootees.\n");
}

TEST_F(ZNLoaderBoot, ReferencesInACircleAreContradictory) {
    EXPECT_EQ(thrownBy([&] {
                  resolve(processor("a", "<Source Location='spi:flash'/><Bootee NodeId='b'/>") +
                              processor("b", "<Bootee NodeId='a'/>"),
                          s_flash);
              }),
              "zn:1 Error: ZN11091 Node \"a\" has contradictory boot information.\n");
}

TEST_F(ZNLoaderBoot, OfTheRestIsFromTheFlashAtCoreZero) {
    resolve("<Node Id='a' Type='L1'/><Node Id='b' Type='L1'/>",
            "<Device NodeId='a' Core='1' Name='other' Class='spiflash'/>" + std::string(s_flash));
    EXPECT_TRUE(boot<SpiMaster>(0).m_isDefault);
    EXPECT_EQ(boot<SpiMaster>(0).m_deviceName, "flash");
    EXPECT_EQ(boot<SpiMaster>(0).m_device, loader.m_devices[1]);
    EXPECT_TRUE(boot<SpiMaster>(1).m_isDefault);
    EXPECT_EQ(boot<SpiMaster>(1).m_deviceName, "");
    EXPECT_EQ(boot<SpiMaster>(1).m_device, nullptr);
}

TEST_F(ZNLoaderBoot, IsGivenToNodesOfAnyKind) {
    resolve("<Node Id='d' Type='device:x'/><Node Id='z' Type='periph:ZS1-SU'/>");
    EXPECT_TRUE(boot<SpiMaster>(0).m_isDefault);
    EXPECT_TRUE(boot<SpiMaster>(1).m_isDefault);
}

// ---- External devices ----

class ZNLoaderDevices : public ReadingTest {
protected:
    void readDevices(const std::string& devices) {
        read("<Network><Nodes><Node Id='a' Type='L1'/></Nodes>\n<ExternalDevices>" + devices +
             "</ExternalDevices></Network>");
    }
};

TEST_F(ZNLoaderDevices, HaveAllTheirAttributes) {
    readDevices("<Device NodeId='a' Core='0x1' Class='SpiFlash' Name='n' Type='t'>"
                "<Attribute Name='size' Value='8'/></Device>");
    const ZNLoader::ExtDevice& device = *loader.m_devices.at(0);
    EXPECT_EQ(device.m_node, loader.m_nodes[0]);
    EXPECT_EQ(device.m_core, 1);
    EXPECT_EQ(device.m_class, ZNLoader::ExtDeviceSpiFlash);
    EXPECT_EQ(device.m_name, "n");
    EXPECT_EQ(device.m_type, "t");
    EXPECT_EQ(device.m_attributes.at(0)->m_name, "size");
    EXPECT_EQ(device.m_attributes.at(0)->m_value, "8");
    EXPECT_EQ(device.m_attributes.at(0)->m_element->getLineNum(), 2u);
    EXPECT_EQ(device.m_element->getLineNum(), 2u);
}

TEST_F(ZNLoaderDevices, MayBeCalledExternalDevice) {
    readDevices("<ExternalDevice Name='n'/>");
    EXPECT_EQ(loader.m_devices.at(0)->m_name, "n");
}

TEST_F(ZNLoaderDevices, OfAnotherElementNameArePassedOverInSilence) {
    readDevices("<Oddity Name='n'/>");
    EXPECT_TRUE(loader.m_devices.empty());
    EXPECT_EQ(warnings, "");
}

TEST_F(ZNLoaderDevices, OfAnUnknownClassAreLeftOutWithTheirChildren) {
    readDevices("\n<Device Name='n' Class='x'><Oddity/></Device><Device Name='n'/>");
    ASSERT_EQ(loader.m_devices.size(), 1u);
    EXPECT_EQ(loader.m_devices[0]->m_class, ZNLoader::ExtDeviceNone);
    EXPECT_EQ(warnings, "zn:3 Warning: ZN11058 Unrecognised device class \"x\"; ignoring.\n");
}

TEST_F(ZNLoaderDevices, OfAnUnknownClassAreLeftOutAlsoIfAnotherClassFollows) {
    readDevices("<Device Name='n' Class='x' Class='spiflash'/>");
    EXPECT_TRUE(loader.m_devices.empty());
}

TEST_F(ZNLoaderDevices, ShowTheirOwnNameForAnUnknownChild) {
    readDevices("<Device Name='n'>\n<Oddity/></Device>");
    EXPECT_EQ(warnings, "zn:3 Warning: ZN11056 Unrecognised node \"Device\" in Device node; ignoring.\n");
}

TEST_F(ZNLoaderDevices, HaveNamesOfTheirOwn) {
    EXPECT_EQ(thrownBy([&] { readDevices("<Device Name='n'/>\n<Device Name='m'/>\n<Device Name='n'/>"); }),
              "zn:4 Error: ZN11105 Duplicate device name \"n\".\n");
}

TEST_F(ZNLoaderDevices, MayHaveNoNameOnlyOnce) {
    EXPECT_EQ(thrownBy([&] { readDevices("<Device/>\n<Device/>"); }),
              "zn:3 Error: ZN11105 Duplicate device name \"\".\n");
}

TEST_F(ZNLoaderDevices, ReportTheNameThatWasThereFirst) {
    EXPECT_EQ(thrownBy([&] {
                  readDevices(
                      "<Device Name='n'/>\n<Device Name='m'/>\n<Device Name='m'/>\n<Device Name='n'/>");
              }),
              "zn:5 Error: ZN11105 Duplicate device name \"n\".\n");
}

TEST_F(ZNLoaderDevices, AreComparedWithThoseOfEarlierElements) {
    EXPECT_EQ(thrownBy([&] {
                  read("<Network><ExternalDevices><Device Name='n'/></ExternalDevices>\n"
                       "<ExternalDevices><Device Name='n'/></ExternalDevices></Network>");
              }),
              "zn:2 Error: ZN11105 Duplicate device name \"n\".\n");
}
