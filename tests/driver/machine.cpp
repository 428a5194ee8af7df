#include "tests/driver/machine.h"

#include "platform/kernel/text.h"

namespace driver_test {

void MachineTest::TearDown() {
    printer_.Close();
    file_.Close();
    model_.Reset(nullptr);
    EXPECT_EQ(host::StillOpen(), keptOpen_);
}

void MachineTest::Install(const DriverPackage& package, const WideText& printerName) {
    InstallPrinter(package, printerName);
    printer_ = OpenWithAllAccess(printerName);
}

void MachineTest::AddForm(WideText name, DWORD flags, LONG width, LONG length) {
    FORM_INFO_1W form = {flags, name.data(), {width, length}, {0, 0, width, length}};
    ASSERT_TRUE(AddFormW(Printer(), 1, reinterpret_cast<BYTE*>(&form))) << GetLastError();
}

velmora::OwnedFile MachineTest::OpenDescription(const std::string& bytes) {
    WriteDriveFile(TEXT("C:\\test.xpi"), bytes);
    return velmora::OwnedFile(CreateFileW(TEXT("C:\\test.xpi"), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
}

velmora::HeapOwner<velmora::DeviceModel> MachineTest::Load(const std::string& bytes) {
    return velmora::LoadDeviceModel(OpenDescription(bytes).Get());
}

void ReadEverything(HANDLE file) {
    std::vector<char> bytes(70000);
    WCHAR wide[64];
    for (const int number : {-32768, -1, 0, 1, 2, 100, 32767}) {
        const auto reference = static_cast<int16_t>(number);
        velmora::ReadLocalizedString(file, LANG_ENGLISH, nullptr, reference, wide, ARRAYSIZE(wide));
        velmora::ReadLocalizedString(file, 1023, nullptr, reference, wide, ARRAYSIZE(wide));
        velmora::ReadName(file, reference, wide, ARRAYSIZE(wide));
        velmora::ReadName(file, reference, bytes.data(), 64);
        velmora::ReadText(file, reference, bytes.data());
        velmora::ReadShortText(file, reference, bytes.data());
        velmora::ReadImage(file, static_cast<uint16_t>(reference));
        velmora::ReadPatternBlock(file, reference, bytes.data(), bytes.size());
    }
    velmora::ReadBlob(file, bytes.data(), bytes.size());
    if (const auto model = velmora::LoadDeviceModel(file)) {
        velmora::GetFontDataSize(file, *model);
    }
}

std::string ToText(WideView text) {
    return host::ToUtf8(text);
}

}  // namespace driver_test
