#include "driver/settings/device_info.h"

#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class InstalledOptions : public MachineTest {
  protected:
    void InstallWithIni(const std::string& ini) { Install(PackageOf(SmallModel(kPdlPcl6).Build(), ini)); }

    std::string Read(bool withModel = true) const {
        const HeapOwner<DeviceModel> model = LoadDeviceModel(OpenDescriptionFile(Printer()).Get());
        const HeapOwner<DeviceInfo> info = GetDeviceInfo(Printer(), withModel ? model.Get() : nullptr);
        char text[64];
        snprintf(text, sizeof(text), "%X %X %X %u", info->installedOptions, info->secondTray, info->optionFlags,
                 info->memoryKey);
        return text;
    }
};

TEST_F(InstalledOptions, DefaultsOfTheModelOrAStoredRecord) {
    InstallWithIni("");
    EXPECT_EQ(Read(), "11 0 0 4");
    EXPECT_EQ(Read(false), "0 0 0 0");
    const std::string bytes(20, '\x01');
    for (const size_t size : {0u, 15u, 17u, 20u}) {  // no record
        SetData(Printer(), TEXT("DeviceInfo"), REG_BINARY, bytes.data(), size);
        EXPECT_EQ(Read(), "11 0 0 4") << size;
    }
    EXPECT_TRUE(SetDeviceInfo(Printer(), {1, 2, 0xFFFFFFFF, 3}));
    EXPECT_EQ(GetData(Printer(), TEXT("DeviceInfo"))->size(), 16u);
    machine_.SetMayWritePrinterData(false);
    EXPECT_FALSE(SetDeviceInfo(Printer(), {}));
    EXPECT_EQ(Read(), "1 2 FFFFFFFF 3");
    EXPECT_EQ(Read(false), "1 2 FFFFFFFF 3");
}

TEST_F(InstalledOptions, TheDriversIniFileOverridesTheDefaults) {
    InstallWithIni("[DeviceInfo]\r\nSources=1F3\r\nDestinations=0x2\r\nOptions=ffffffff\r\nTotalMemory=512\r\n");
    EXPECT_EQ(Read(), "1F3 2 FFFFFFFF 512");
    EXPECT_EQ(Read(false), "1F3 2 FFFFFFFF 512");
    WriteDriveFile(InstalledPath(TEXT("KV62.INI")), "[DeviceInfo]\r\nOptions=3\r\n[Other]\r\nSources=7\r\n");
    EXPECT_EQ(Read(), "11 0 3 4");  // what it lacks keeps its value
    EXPECT_TRUE(SetDeviceInfo(Printer(), {1, 2, 4, 3}));
    EXPECT_EQ(Read(), "1 2 4 3");
    DeviceInfo info = {0x80000001, 0xFFFFFFFF, 0, 0xFFFFFFFF};
    ReadDeviceInfoDefaults(TEXT("C:\\missing.ini"), &info);
    EXPECT_EQ(ValueOf(info.installedOptions), 0x80000001u);
    EXPECT_EQ(ValueOf(info.memoryKey), 0xFFFFFFFFu);
}

}  // namespace
}  // namespace velmora
