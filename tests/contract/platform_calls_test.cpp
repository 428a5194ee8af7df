// The published calls that the driver stands on, at their edges: what they answer on one host they answer on the other.
#include <cstdint>
#include <cstring>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/contract/contract_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

class PlatformCalls : public ContractTest {
  protected:
    InstalledPrinter printer_{*environment_, PackageOf(DescriptionFiles().at(0))};
};

TEST_F(PlatformCalls, PrinterData) {
    const HANDLE printer = printer_.Handle();
    const struct {
        const char* what;
        DWORD type;
        std::vector<BYTE> bytes;
    } values[] = {
        {"string", REG_SZ, {'a', 0, 'b', 0, 0, 0}},
        {"number", REG_DWORD, {1, 2, 3, 4}},
        {"binary", REG_BINARY, std::vector<BYTE>(16, 0xEE)},
        {"multi-string", REG_MULTI_SZ, {'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0}},
    };
    WCHAR name[] = TEXT("Contract value");
    for (const auto& value : values) {
        SCOPED_TRACE(value.what);
        const DWORD size = static_cast<DWORD>(value.bytes.size());
        printer_.SetData(name, value.type, value.bytes.data(), size);

        DWORD type = 0;
        DWORD needed = 0;
        std::vector<BYTE> read(size + 10, 0x55);
        EXPECT_EQ(GetPrinterDataW(printer, name, &type, read.data(), size - 1, &needed), DWORD{ERROR_MORE_DATA});
        EXPECT_EQ(needed, size);
        EXPECT_EQ(GetPrinterDataW(printer, name, &type, read.data(), size, &needed), DWORD{ERROR_SUCCESS});
        EXPECT_EQ(needed, size);
        EXPECT_EQ(type, value.type);
        EXPECT_EQ(memcmp(read.data(), value.bytes.data(), size), 0);
        EXPECT_EQ(read[size], 0x55) << "written behind the value";
    }
    WCHAR otherCase[] = TEXT("CONTRACT VALUE");
    DWORD needed = 0;
    EXPECT_EQ(GetPrinterDataW(printer, otherCase, nullptr, nullptr, 0, &needed), DWORD{ERROR_MORE_DATA});
    EXPECT_EQ(DeletePrinterDataW(printer, name), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(GetPrinterDataW(printer, name, nullptr, nullptr, 0, &needed), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(DeletePrinterDataW(printer, name), DWORD{ERROR_FILE_NOT_FOUND});
}

// The forms as lines, and what a buffer that is a byte too small answers.
std::multiset<std::string> ReadForms(HANDLE printer) {
    DWORD needed = 0;
    DWORD count = 0;
    EXPECT_FALSE(EnumFormsW(printer, 1, nullptr, 0, &needed, &count));
    std::vector<BYTE> block(needed);
    EXPECT_FALSE(EnumFormsW(printer, 1, block.data(), needed - 1, &needed, &count));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_TRUE(EnumFormsW(printer, 1, block.data(), needed, &needed, &count));
    std::multiset<std::string> lines;
    const auto* forms = reinterpret_cast<const FORM_INFO_1W*>(block.data());
    for (DWORD i = 0; i < count; ++i) {
        lines.insert(Printable(forms[i].pName) + ' ' + std::to_string(forms[i].Flags) + ' ' +
                     std::to_string(forms[i].Size.cx) + ' ' + std::to_string(forms[i].ImageableArea.bottom));
    }
    return lines;
}

TEST_F(PlatformCalls, Forms) {
    const HANDLE printer = printer_.Handle();
    std::multiset<std::string> forms = ReadForms(printer);
    const std::multiset<std::string> builtIn = forms;
    EXPECT_GT(builtIn.size(), 0u);

    WCHAR name[] = TEXT("Contract form");
    FORM_INFO_1W form = {FORM_USER, name, {123000, 234000}, {1000, 2000, 122000, 232000}};
    EXPECT_TRUE(AddFormW(printer, 1, reinterpret_cast<BYTE*>(&form)));
    EXPECT_FALSE(AddFormW(printer, 1, reinterpret_cast<BYTE*>(&form)));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_EXISTS});
    forms.insert("Contract form 0 123000 232000");
    EXPECT_EQ(ReadForms(printer), forms);

    EXPECT_TRUE(DeleteFormW(printer, name));
    EXPECT_FALSE(DeleteFormW(printer, name));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_FORM_NAME});
    EXPECT_EQ(ReadForms(printer), builtIn);
}

TEST_F(PlatformCalls, PrinterKeepsItsDeviceModeWhole) {
    DevModeBuffer devMode = DefaultDevMode(printer_, printer_.Name());
    auto* privateBytes = reinterpret_cast<BYTE*>(&devMode.content->privatePart);
    for (size_t i = 4; i < sizeof(devMode.content->privatePart); ++i) {
        privateBytes[i] = static_cast<BYTE>(i * 7);
    }
    devMode.Get()->dmDeviceName[CCHDEVICENAME - 1] = 0x1234;  // behind the name's end
    printer_.SetDevMode(*devMode.Get());

    const std::vector<BYTE> block = printer_.Info();
    const auto* info = reinterpret_cast<const PRINTER_INFO_2W*>(block.data());
    EXPECT_EQ(WideText(info->pPrinterName), printer_.Name());
    EXPECT_EQ(WideText(info->pDriverName), TEXT("Velmora Contract"));
    ASSERT_NE(info->pDevMode, nullptr);
    EXPECT_EQ(memcmp(info->pDevMode, devMode.Get(), sizeof(velmora::VelmoraDevMode)), 0);
}

TEST_F(PlatformCalls, DriverInfo) {
    DWORD needed = 0;
    EXPECT_FALSE(GetPrinterDriverW(printer_.Handle(), nullptr, 3, nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    std::vector<BYTE> block(needed);
    ASSERT_TRUE(GetPrinterDriverW(printer_.Handle(), nullptr, 3, block.data(), needed, &needed));
    const auto* info = reinterpret_cast<const DRIVER_INFO_3W*>(block.data());
    Record("version " + std::to_string(info->cVersion) + ", " + Printable(info->pName) + ", " +
           Printable(info->pEnvironment));
    for (const WCHAR* path : {info->pDriverPath, info->pDataFile, info->pConfigFile}) {
        Record(Printable(FileName(path)));
    }
    EXPECT_TRUE(info->pHelpFile == nullptr || *info->pHelpFile == 0);
    const WCHAR* dependent = info->pDependentFiles;
    ASSERT_NE(dependent, nullptr);
    for (; *dependent != 0; dependent += WideText(dependent).size() + 1) {
        Record("dependent " + Printable(FileName(dependent)));
        EXPECT_NE(GetFileAttributesW(dependent), INVALID_FILE_ATTRIBUTES);
    }
}

// The driver hands these two on to the platform, which asks the driver's DevQueryPrintEx in turn.
TEST_F(PlatformCalls, ForwardersReachThePlatform) {
    DevModeBuffer devMode = DefaultDevMode(printer_, printer_.Name());
    DWORD reason = 77;
    EXPECT_TRUE(printer_.Driver().DevQueryPrint(printer_.Handle(), devMode.Get(), &reason));
    EXPECT_EQ(reason, 0u);
    EXPECT_FALSE(printer_.Driver().PrinterProperties(nullptr, nullptr));
}

struct SeenFonts {
    std::vector<std::pair<WideText, BYTE>> fonts;  // faces and character sets
    size_t most;                                   // the callback ends the enumeration at this many
};

int CALLBACK SeeFont(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM data) {
    auto& seen = *reinterpret_cast<SeenFonts*>(data);
    seen.fonts.emplace_back(TextOf(font->lfFaceName), font->lfCharSet);
    EXPECT_NE(*font->lfFaceName, 0);
    return seen.fonts.size() < seen.most ? static_cast<int>(seen.fonts.size()) : 0;
}

// Which fonts there are is the host's matter; a face may come once for each of its character sets.
TEST_F(PlatformCalls, FontFamiliesOfTheDisplay) {
    const HDC display = CreateDCW(TEXT("DISPLAY"), nullptr, nullptr, nullptr);
    ASSERT_NE(display, nullptr);
    SeenFonts all = {{}, SIZE_MAX};
    const int result = EnumFontFamiliesW(display, nullptr, SeeFont, reinterpret_cast<LPARAM>(&all));
    EXPECT_EQ(static_cast<size_t>(result), all.fonts.size());
    EXPECT_GT(result, 0);
    const std::set distinct(all.fonts.begin(), all.fonts.end());
    EXPECT_EQ(distinct.size(), all.fonts.size());
    SeenFonts one = {{}, 1};
    EXPECT_EQ(EnumFontFamiliesW(display, nullptr, SeeFont, reinterpret_cast<LPARAM>(&one)), 0);
    EXPECT_EQ(one.fonts.size(), 1u);
    EXPECT_TRUE(DeleteDC(display));
}

TEST_F(PlatformCalls, UnknownPrinter) {
    HANDLE handle = nullptr;
    for (const WCHAR* unknown : {TEXT("Nobody"), TEXT("Contract,Local"), TEXT("\\\\VELMORA-ELSEWHERE\\Contract")}) {
        WideText name = unknown;
        EXPECT_FALSE(OpenPrinterW(name.data(), &handle, nullptr));
        EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
    }
}

}  // namespace
}  // namespace contract
