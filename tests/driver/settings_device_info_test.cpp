#include "driver/settings/device_info.h"

#include <cstring>

#include "driver/devdesc/description_file.h"
#include "tests/driver/description_builder.h"
#include "tests/driver/machine.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

class InstalledOptions : public MachineTest {
  protected:
    void InstallWithIni(const std::string& ini) {
        DriverPackage package = PackageOf(SmallModel(kPdlPcl6).Build());
        if (!ini.empty()) {
            package.dependent.push_back({u"KV62.INI", ini});
        }
        Install(package);
    }

    std::string Read(bool withModel = true) const {
        const HeapOwner<DeviceModel> model = LoadDeviceModel(OpenDescriptionFile(Printer()).Get());
        const HeapOwner<DeviceInfo> info = GetDeviceInfo(Printer(), withModel ? model.Get() : nullptr);
        EXPECT_TRUE(info);
        char text[64];
        snprintf(text, sizeof(text), "%X %X %X %u", info->installedOptions, info->secondTray, info->optionFlags,
                 info->memoryKey);
        return text;
    }
};

TEST_F(InstalledOptions, DefaultsOfTheModel) {
    InstallWithIni("");
    EXPECT_EQ(Read(), "11 0 0 4");
    EXPECT_EQ(Read(false), "0 0 0 0");
}

TEST_F(InstalledOptions, AStoredRecordIsTakenWhole) {
    InstallWithIni("[DeviceInfo]\r\nSources=FF\r\n");
    EXPECT_TRUE(SetDeviceInfo(Printer(), {1, 2, 0xFFFFFFFF, 3}));
    EXPECT_EQ(Read(), "1 2 FFFFFFFF 3");
    EXPECT_EQ(Read(false), "1 2 FFFFFFFF 3");
    EXPECT_EQ(GetData(Printer(), u"DeviceInfo")->size(), 16u);
    machine_.SetMayWritePrinterData(false);
    EXPECT_FALSE(SetDeviceInfo(Printer(), {}));
    EXPECT_EQ(Read(), "1 2 FFFFFFFF 3");
}

TEST_F(InstalledOptions, RecordsOfAnotherSizeAreIgnored) {
    InstallWithIni("");
    const std::string bytes(20, '\x01');
    for (const size_t size : {0u, 4u, 12u, 15u, 17u, 20u}) {
        SetData(Printer(), u"DeviceInfo", REG_BINARY, bytes.data(), size);
        EXPECT_EQ(Read(), "11 0 0 4") << size;
    }
}

TEST_F(InstalledOptions, TheDriversIniFileOverridesTheDefaults) {
    InstallWithIni("[DeviceInfo]\r\nSources=1F3\r\nDestinations=0x2\r\nOptions=ffffffff\r\nTotalMemory=512\r\n");
    EXPECT_EQ(Read(), "1F3 2 FFFFFFFF 512");
    EXPECT_EQ(Read(false), "1F3 2 FFFFFFFF 512");
}

TEST_F(InstalledOptions, KeysThatTheIniFileLacksKeepTheirValue) {
    InstallWithIni("[DeviceInfo]\r\nOptions=3\r\n[Other]\r\nSources=7\r\n");
    EXPECT_EQ(Read(), "11 0 3 4");
    DeviceInfo info = {0x80000001, 0xFFFFFFFF, 0, 0xFFFFFFFF};
    ReadDeviceInfoDefaults(TEXT("C:\\missing.ini"), &info);
    EXPECT_EQ(ValueOf(info.installedOptions), 0x80000001u);
    EXPECT_EQ(ValueOf(info.secondTray), 0xFFFFFFFFu);
    EXPECT_EQ(ValueOf(info.optionFlags), 0u);
    EXPECT_EQ(ValueOf(info.memoryKey), 0xFFFFFFFFu);
}

}  // namespace
}  // namespace velmora
