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
        std::filesystem::copy_file(VELMORA_PROBE_DRIVER, machine_->Drive() / "Package/probe.dll");
        DriverRequest driver = {.name = u"Library Driver", .configFile = u"C:\\Package\\probe.dll"};
        ASSERT_TRUE(driver.Add()) << GetLastError();
        library_ = PrinterRequest{.name = u"Probe 2", .driverName = u"Library Driver"}.Add();
        ASSERT_NE(library_, nullptr) << GetLastError();
    }

    void TearDown() override {
        EXPECT_TRUE(ClosePrinter(library_));
        SpoolerTest::TearDown();
    }

    static bool AddLibraryPrinter(const char16_t* name) {
        return PrinterRequest{.name = name, .driverName = u"Library Driver"}.Add() != nullptr;
    }

    HANDLE library_ = nullptr;
};

TEST_F(DriverCallsTest, PrinterEvents) {
    // Added: the driver was told (PRINTER_EVENT_INITIALIZE 3, PRINTER_EVENT_FLAG_NO_UI 1) and could open the printer.
    EXPECT_EQ(GetData(library_, u"Event"), std::string("\3\0\0\0\1\0\0\0\0\0\0\0", 12));
    FailCall("LoadLibraryW", ERROR_MOD_NOT_FOUND);
    ExpectErrors({
        {"doesn't load", [] { return AddLibraryPrinter(u"New"); }, ERROR_MOD_NOT_FOUND},
        {"refuses", [] { return AddLibraryPrinter(u"Refused"); }, ERROR_DISK_FULL},
        {"refuses silently", [] { return AddLibraryPrinter(u"Refused silently"); }, ERROR_CAN_NOT_COMPLETE},
        {"not added", [] { return Open(u"Refused"); }, ERROR_INVALID_PRINTER_NAME},
        {"no form yet", [&] { return DeleteForm(printer_, u"Probe 2"); }, ERROR_INVALID_FORM_NAME},
        {"delete", [&] { return DeletePrinter(library_); }},
        {"the driver was told", [&] { return DeleteForm(printer_, u"Probe 2"); }},
    });
}

TEST_F(DriverCallsTest, DocumentProperties) {
    constexpr LONG kSize = sizeof(DEVMODEW) + 16;
    DEVMODEW in = {};
    DEVMODEW out = {};
    in.dmCopies = 7;
    std::u16string name = u"Probe 2";
    const struct {
        DWORD mode;
        PDEVMODEW out, in;
        LONG result;
        SHORT copies;  // -1: the driver got no input
    } cases[] = {
        {0, &out, &in, kSize, 0},
        {DM_OUT_BUFFER, nullptr, &in, kSize, 0},
        {DM_OUT_BUFFER, &out, nullptr, 1, -1},
        {DM_OUT_BUFFER | DM_IN_BUFFER, &out, &in, 1, 7},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "row " << &c - cases);
        out = {};
        EXPECT_EQ(DocumentPropertiesW(nullptr, library_, name.data(), c.out, c.in, c.mode), c.result);
        EXPECT_EQ(out.dmCopies, c.copies);
        if (c.result == 1) {
            EXPECT_EQ(out.dmFields, c.mode);
            EXPECT_EQ(out.dmSize, kSize);
            EXPECT_EQ(out.dmColor, 1);      // the handle is a printer's
            EXPECT_EQ(out.dmDuplex, u'P');  // the name is passed on
        }
    }
    const auto ask = [&](HANDLE printer, DWORD mode) {
        return DocumentPropertiesW(nullptr, printer, name.data(), &out, &in, mode) >= 0;
    };
    FailCall("DocumentPropertiesW", ERROR_OUTOFMEMORY);
    EXPECT_EQ(FailureOf([&] { return ask(library_, 0); }), ERROR_OUTOFMEMORY);
    EXPECT_EQ(FailureOf([&] { return ask(printer_, 0); }), ERROR_BAD_EXE_FORMAT);
}

TEST_F(DriverCallsTest, SheetsOfADriverThatRefuses) {
    DEVMODEW modes[2] = {};  // as large as the driver's
    std::u16string name = u"Probe 2";
    EXPECT_EQ(DocumentPropertiesW(nullptr, library_, name.data(), modes, nullptr, DM_PROMPT | DM_OUT_BUFFER), -1);
    EXPECT_EQ(FailureOf([&] { return PrinterProperties(nullptr, printer_); }), ERROR_BAD_EXE_FORMAT);
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
    FailCall("DeviceCapabilitiesW", ERROR_OUTOFMEMORY);
    ExpectErrors({
        {"fault", [&] { return ask(u"Probe 2", nullptr) >= 0; }, ERROR_OUTOFMEMORY},
        {"unknown", [&] { return ask(u"None", nullptr) >= 0; }, ERROR_INVALID_PRINTER_NAME},
        {"no name", [&] { return ask(nullptr, nullptr) >= 0; }, ERROR_INVALID_PRINTER_NAME},
        {"no library", [&] { return ask(u"Probe", nullptr) >= 0; }, ERROR_BAD_EXE_FORMAT},
    });
    machine_->SetGrantedPrinterAccess(0);
    EXPECT_EQ(FailureOf([&] { return ask(u"Probe 2", nullptr) >= 0; }), ERROR_ACCESS_DENIED);
}

TEST_F(DriverCallsTest, DevQueryPrintAsksTheDriver) {
    DEVMODEW mode = {};
    DWORD resource = kUntouched;
    mode.dmCopies = 1;
    EXPECT_TRUE(DevQueryPrint(library_, &mode, &resource));
    EXPECT_EQ(resource, 0u);
    mode.dmCopies = 2;
    EXPECT_FALSE(DevQueryPrint(library_, &mode, &resource));
    ExpectErrors({
        {"no place", [&] { return DevQueryPrint(library_, &mode, nullptr); }, ERROR_INVALID_PARAMETER},
        {"no library", [&] { return DevQueryPrint(printer_, &mode, &resource); }, ERROR_BAD_EXE_FORMAT},
    });
}

}  // namespace
}  // namespace host
