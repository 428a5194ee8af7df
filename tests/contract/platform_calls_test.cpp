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
        EXPECT_EQ(GetPrinterDataW(printer, name, &type, nullptr, 0, &needed), DWORD{ERROR_MORE_DATA});
        EXPECT_EQ(needed, size);
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

std::vector<FORM_INFO_1W> ReadForms(HANDLE printer, std::vector<BYTE>* block) {
    DWORD needed = 0;
    DWORD count = 0;
    EXPECT_FALSE(EnumFormsW(printer, 1, nullptr, 0, &needed, &count));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    block->assign(needed, 0);
    EXPECT_FALSE(EnumFormsW(printer, 1, block->data(), needed - 1, &needed, &count));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_TRUE(EnumFormsW(printer, 1, block->data(), needed, &needed, &count));
    const auto* forms = reinterpret_cast<const FORM_INFO_1W*>(block->data());
    return std::vector<FORM_INFO_1W>(forms, forms + count);
}

TEST_F(PlatformCalls, Forms) {
    const HANDLE printer = printer_.Handle();
    std::vector<BYTE> block;
    const size_t builtIn = ReadForms(printer, &block).size();
    EXPECT_GT(builtIn, 0u);

    WCHAR name[] = TEXT("Contract form");
    FORM_INFO_1W form = {};
    form.Flags = FORM_USER;
    form.pName = name;
    form.Size = {123000, 234000};
    form.ImageableArea = {1000, 2000, 122000, 232000};
    EXPECT_TRUE(AddFormW(printer, 1, reinterpret_cast<BYTE*>(&form)));
    EXPECT_FALSE(AddFormW(printer, 1, reinterpret_cast<BYTE*>(&form)));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_EXISTS});

    const std::vector<FORM_INFO_1W> forms = ReadForms(printer, &block);
    ASSERT_EQ(forms.size(), builtIn + 1);
    size_t userForms = 0;
    for (const FORM_INFO_1W& kept : forms) {
        if (kept.Flags == FORM_USER) {
            ++userForms;
            EXPECT_EQ(WideText(kept.pName), WideText(name));
            EXPECT_EQ(kept.Size.cx, 123000);
            EXPECT_EQ(kept.Size.cy, 234000);
            EXPECT_EQ(kept.ImageableArea.bottom, 232000);
        }
    }
    EXPECT_EQ(userForms, 1u);

    EXPECT_TRUE(DeleteFormW(printer, name));
    EXPECT_FALSE(DeleteFormW(printer, name));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_FORM_NAME});
    EXPECT_EQ(ReadForms(printer, &block).size(), builtIn);
}

std::vector<BYTE> ReadPrinterInfo(HANDLE printer) {
    DWORD needed = 0;
    EXPECT_FALSE(GetPrinterW(printer, 2, nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    std::vector<BYTE> block(needed);
    EXPECT_TRUE(GetPrinterW(printer, 2, block.data(), needed, &needed));
    return block;
}

TEST_F(PlatformCalls, PrinterKeepsItsDeviceModeWhole) {
    DevModeBuffer devMode = DefaultDevMode(printer_, printer_.Name());
    auto* privateBytes = reinterpret_cast<BYTE*>(&devMode.content->privatePart);
    for (size_t i = 4; i < sizeof(devMode.content->privatePart); ++i) {
        privateBytes[i] = static_cast<BYTE>(i * 7);
    }
    devMode.Get()->dmDeviceName[CCHDEVICENAME - 1] = 0x1234;  // behind the name's end
    std::vector<BYTE> block = ReadPrinterInfo(printer_.Handle());
    auto* info = reinterpret_cast<PRINTER_INFO_2W*>(block.data());
    EXPECT_EQ(WideText(info->pPrinterName), printer_.Name());
    EXPECT_EQ(WideText(info->pDriverName), TEXT("Velmora Contract"));
    info->pDevMode = devMode.Get();
    info->pSecurityDescriptor = nullptr;
    ASSERT_TRUE(SetPrinterW(printer_.Handle(), 2, block.data(), 0));

    block = ReadPrinterInfo(printer_.Handle());
    info = reinterpret_cast<PRINTER_INFO_2W*>(block.data());
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

// The platform's own calls lead into the driver.
TEST_F(PlatformCalls, DocumentPropertiesAskTheDriver) {
    EXPECT_EQ(DocumentPropertiesW(nullptr, printer_.Handle(), printer_.NameArgument(), nullptr, nullptr, 0), 4088);
}

// The driver hands these two on to the platform, which asks the driver's DevQueryPrintEx in turn.
TEST_F(PlatformCalls, ForwardersReachThePlatform) {
    DevModeBuffer devMode = DefaultDevMode(printer_, printer_.Name());
    DWORD reason = 77;
    EXPECT_TRUE(printer_.Driver().DevQueryPrint(printer_.Handle(), devMode.Get(), &reason));
    EXPECT_EQ(reason, 0u);
    EXPECT_FALSE(printer_.Driver().PrinterProperties(nullptr, nullptr));
}

TEST_F(PlatformCalls, IniFiles) {
    const WCHAR* file = TEXT("C:\\contract.ini");
    const WCHAR* section = TEXT("Contract");
    const struct {
        const WCHAR* value;
        UINT number;
    } numbers[] = {{TEXT("-40"), static_cast<UINT>(-40)},
                   {TEXT("-2147483648"), 0x80000000},
                   {TEXT("4000000000"), 4000000000},
                   {TEXT("007070FF"), 7070},
                   {TEXT(""), 42},
                   {nullptr, 42}};
    for (const auto& c : numbers) {
        EXPECT_TRUE(WritePrivateProfileStringW(section, TEXT("Number"), c.value, file));
        EXPECT_EQ(GetPrivateProfileIntW(section, TEXT("Number"), 42, file), c.number);
    }
    const auto text = [&](const WCHAR* key) {
        WCHAR value[16];
        GetPrivateProfileStringW(section, key, TEXT("missing"), value, 16, file);
        return WideText(value);
    };
    // An empty value is one; a key goes without its neighbours.
    EXPECT_TRUE(WritePrivateProfileStringW(section, TEXT("Empty"), TEXT(""), file));
    EXPECT_TRUE(WritePrivateProfileStringW(section, TEXT("Key1"), TEXT("one"), file));
    EXPECT_TRUE(WritePrivateProfileStringW(section, TEXT("Key11"), TEXT("eleven"), file));
    EXPECT_TRUE(WritePrivateProfileStringW(section, TEXT("Key1"), nullptr, file));
    EXPECT_TRUE(WritePrivateProfileStringW(section, TEXT("Key1"), nullptr, file));
    EXPECT_EQ(text(TEXT("Empty")), TEXT(""));
    EXPECT_EQ(text(TEXT("Key1")), TEXT("missing"));
    EXPECT_EQ(text(TEXT("Key11")), TEXT("eleven"));
    EXPECT_TRUE(DeleteFileW(file));
    EXPECT_EQ(text(TEXT("Key11")), TEXT("missing"));
    // A file without name is none.
    EXPECT_FALSE(WritePrivateProfileStringW(section, TEXT("Key11"), TEXT("eleven"), TEXT("")));
    EXPECT_EQ(GetPrivateProfileIntW(section, TEXT("Key11"), 42, TEXT("")), 42u);
}

struct SeenFonts {
    std::vector<std::pair<WideText, BYTE>> fonts;  // faces and character sets
    size_t most;                                   // the callback ends the enumeration at this many
};

int CALLBACK SeeFont(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM data) {
    auto& seen = *reinterpret_cast<SeenFonts*>(data);
    seen.fonts.emplace_back(TextOf(font->lfFaceName), font->lfCharSet);
    EXPECT_LT(seen.fonts.back().first.size(), size_t{LF_FACESIZE});
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
    SeenFonts again = {{}, SIZE_MAX};
    EnumFontFamiliesW(display, nullptr, SeeFont, reinterpret_cast<LPARAM>(&again));
    EXPECT_TRUE(again.fonts == all.fonts);
    const std::set distinct(all.fonts.begin(), all.fonts.end());
    EXPECT_EQ(distinct.size(), all.fonts.size());
    for (const auto& [face, charSet] : distinct) {
        EXPECT_FALSE(face.empty()) << "character set " << int{charSet};
    }
    SeenFonts one = {{}, 1};
    EXPECT_EQ(EnumFontFamiliesW(display, nullptr, SeeFont, reinterpret_cast<LPARAM>(&one)), 0);
    EXPECT_EQ(one.fonts.size(), 1u);
    EXPECT_TRUE(DeleteDC(display));
    EXPECT_FALSE(DeleteDC(display));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    EXPECT_EQ(EnumFontFamiliesW(display, nullptr, SeeFont, reinterpret_cast<LPARAM>(&one)), 0);
    EXPECT_EQ(CreateDCW(TEXT("Nobody's driver"), nullptr, nullptr, nullptr), nullptr);
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
