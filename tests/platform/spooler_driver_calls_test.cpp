// Calls that end in the printer's driver: its configuration file is loaded, asked and released.
#include <winsplp.h>

#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

// A printer "Probe 2" whose configuration file is a real library, beside that of SpoolerTest, whose file is plain text.
class DriverCallsTest : public SpoolerTest {
  protected:
    void SetUp() override {
        SpoolerTest::SetUp();
        std::filesystem::copy_file(VELMORA_PROBE_DRIVER, machine_.Drive() / "Package/probe.dll");
        DriverRequest driver = {.name = u"Library Driver", .configFile = u"C:\\Package\\probe.dll"};
        ASSERT_TRUE(driver.Add()) << GetLastError();
        library_ = PrinterRequest{.name = u"Probe 2", .driverName = u"Library Driver"}.Add();
        ASSERT_NE(library_, nullptr) << GetLastError();
    }

    void TearDown() override {
        EXPECT_TRUE(ClosePrinter(library_));
        SpoolerTest::TearDown();
    }

    bool HasForm(std::u16string name) {
        if (!DeleteFormW(printer_, name.data())) {
            EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_FORM_NAME});
            return false;
        }
        return true;
    }

    std::u16string name_ = u"Probe 2";
    HANDLE library_ = nullptr;
};

TEST_F(DriverCallsTest, PrinterEvents) {
    // Added: the driver was told (PRINTER_EVENT_INITIALIZE 3, PRINTER_EVENT_FLAG_NO_UI 1) and could open the printer.
    DWORD record[3] = {};
    DWORD needed = 0;
    std::u16string value = u"Event";
    EXPECT_EQ(
        GetPrinterDataW(library_, value.data(), nullptr, reinterpret_cast<BYTE*>(record), sizeof(record), &needed),
        DWORD{ERROR_SUCCESS});
    EXPECT_EQ(record[0], 3u);
    EXPECT_EQ(record[1], 1u);
    EXPECT_EQ(record[2], 0u);

    EXPECT_FALSE(HasForm(name_));
    EXPECT_TRUE(DeletePrinter(library_));
    EXPECT_TRUE(HasForm(name_));
    EXPECT_EQ(Open(name_), nullptr);
}

TEST_F(DriverCallsTest, ADriverMayRefuseAPrinter) {
    const struct {
        const char16_t* name;
        DWORD error;
    } cases[] = {{u"Refused", ERROR_DISK_FULL}, {u"Refused silently", ERROR_CAN_NOT_COMPLETE}};
    for (const auto& test : cases) {
        EXPECT_EQ((PrinterRequest{.name = test.name, .driverName = u"Library Driver"}.Add()), nullptr);
        EXPECT_EQ(GetLastError(), test.error);
        EXPECT_EQ(Open(test.name), nullptr);
    }
    // A library that doesn't load is a failure too.
    FailCall("LoadLibraryW", ERROR_MOD_NOT_FOUND);
    EXPECT_EQ((PrinterRequest{.name = u"New", .driverName = u"Library Driver"}.Add()), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
    EXPECT_EQ(Open(u"New"), nullptr);
}

TEST_F(DriverCallsTest, DocumentProperties) {
    constexpr LONG kSize = sizeof(DEVMODEW) + 16;
    DEVMODEW in = {};
    DEVMODEW out = {};
    in.dmCopies = 7;
    const struct {
        DWORD mode;
        PDEVMODEW out;
        PDEVMODEW in;
        LONG result;
        SHORT copies;  // -1: the driver got no input
    } cases[] = {
        {0, nullptr, nullptr, kSize, 0},
        {0, &out, &in, kSize, 0},
        {DM_OUT_BUFFER, nullptr, &in, kSize, 0},
        {DM_OUT_BUFFER, &out, nullptr, 1, -1},
        {DM_OUT_BUFFER | DM_IN_BUFFER, &out, &in, 1, 7},
    };
    for (const auto& test : cases) {
        out = {};
        EXPECT_EQ(DocumentPropertiesW(nullptr, library_, name_.data(), test.out, test.in, test.mode), test.result);
        EXPECT_EQ(out.dmCopies, test.copies);
        if (test.result == 1) {
            EXPECT_EQ(out.dmFields, test.mode);
            EXPECT_EQ(out.dmSize, kSize);
            EXPECT_EQ(out.dmColor, 1);      // the handle is a printer's
            EXPECT_EQ(out.dmDuplex, u'P');  // the name is passed on
        }
    }
    // Sheets aren't there.
    testing::internal::CaptureStderr();
    EXPECT_EQ(DocumentPropertiesW(nullptr, library_, name_.data(), &out, &in, DM_PROMPT | DM_OUT_BUFFER), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NOT_SUPPORTED});
    EXPECT_NE(testing::internal::GetCapturedStderr().find("DM_PROMPT"), std::string::npos);

    FailCall("DocumentPropertiesW", ERROR_OUTOFMEMORY);
    EXPECT_EQ(DocumentPropertiesW(nullptr, library_, name_.data(), nullptr, nullptr, 0), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_OUTOFMEMORY});
    FailCall("LoadLibraryW", ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(DocumentPropertiesW(nullptr, library_, name_.data(), nullptr, nullptr, 0), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_MOD_NOT_FOUND});
    // The other printer's driver has a text for a configuration file.
    EXPECT_EQ(DocumentPropertiesW(nullptr, printer_, name_.data(), nullptr, nullptr, 0), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_BAD_EXE_FORMAT});
}

TEST_F(DriverCallsTest, DeviceCapabilities) {
    DEVMODEW mode = {};
    mode.dmCopies = 5;
    WORD output = 0;
    const auto ask = [&](const char16_t* name, const DEVMODEW* devMode) {
        return DeviceCapabilitiesW(name, u"any port", DC_BINS, reinterpret_cast<LPWSTR>(&output), devMode);
    };
    EXPECT_EQ(DeviceCapabilitiesW(u"probe 2", nullptr, DC_COPIES, nullptr, nullptr), 1018);
    EXPECT_EQ(ask(u"Probe 2", nullptr), 1006);
    EXPECT_EQ(output, u'P');
    EXPECT_EQ(ask(u"Probe 2", &mode), 1006);
    EXPECT_EQ(output, 5);

    EXPECT_EQ(ask(u"None", nullptr), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(ask(nullptr, nullptr), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(ask(u"Probe", nullptr), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_BAD_EXE_FORMAT});
    machine_.SetGrantedPrinterAccess(0);
    EXPECT_EQ(ask(u"Probe 2", nullptr), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    machine_.SetGrantedPrinterAccess(0xFFFFFFFF);
    FailCall("DeviceCapabilitiesW", ERROR_OUTOFMEMORY);
    EXPECT_EQ(ask(u"Probe 2", nullptr), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_OUTOFMEMORY});
}

TEST_F(DriverCallsTest, DevQueryPrintAsksTheDriver) {
    DEVMODEW mode = {};
    DWORD resource = kUntouched;
    mode.dmCopies = 1;
    EXPECT_TRUE(DevQueryPrint(library_, &mode, &resource));
    EXPECT_EQ(resource, 0u);
    mode.dmCopies = 2;
    EXPECT_FALSE(DevQueryPrint(library_, &mode, &resource));
    EXPECT_FALSE(DevQueryPrint(library_, &mode, nullptr));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_FALSE(DevQueryPrint(printer_, &mode, &resource));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_BAD_EXE_FORMAT});
}

TEST_F(DriverCallsTest, ThereIsNoClientToImpersonate) {
    EXPECT_EQ(RevertToPrinterSelf(), nullptr);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_NO_TOKEN});
    EXPECT_FALSE(ImpersonatePrinterClient(library_));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

}  // namespace
}  // namespace host
