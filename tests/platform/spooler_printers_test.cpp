// Printers: names, rights, PRINTER_INFO_2, the list of printers.
#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

TEST_F(SpoolerTest, NamesThatOpenAPrinter) {
    machine_->SetComputerName(u"HOST-7");
    for (std::u16string name : {u"pROBE", u"\\\\host-7\\probe"}) {
        const HANDLE printer = Open(name);
        EXPECT_EQ(StillOpen().size(), 2u) << Shown(name);
        EXPECT_TRUE(ClosePrinter(printer)) << Shown(name);
    }
    for (std::u16string name : {u"", u"Prob", u"Probe ", u"Probe,LocalOnly", u"\\\\HOST-8\\Probe", u"\\\\HOST-7\\",
                                u"\\\\HOST-7", u"\\Probe"}) {
        HANDLE printer = INVALID_HANDLE_VALUE;
        EXPECT_EQ(FailureOf([&] { return OpenPrinterW(name.data(), &printer, nullptr); }), ERROR_INVALID_PRINTER_NAME)
            << Shown(name);
        EXPECT_EQ(printer, nullptr) << Shown(name);
    }
    std::u16string name = u"Probe";
    EXPECT_EQ(FailureOf([&] { return OpenPrinterW(name.data(), nullptr, nullptr); }), ERROR_INVALID_PARAMETER);
    // Without defaults the handle may use the printer, not change it.
    HANDLE printer = nullptr;
    ASSERT_TRUE(OpenPrinterW(name.data(), &printer, nullptr));
    EXPECT_EQ(FailureOf([&] { return SetData(printer, u"x", REG_BINARY, ""); }), ERROR_ACCESS_DENIED);
    EXPECT_TRUE(ClosePrinter(printer));
}

TEST_F(SpoolerTest, RightsGrantedAndRightsOfTheHandle) {
    const struct {
        DWORD granted;
        ACCESS_MASK wanted;
        bool opens, mayChange;
    } cases[] = {
        {0xFFFFFFFF, 0, true, false},
        {0xFFFFFFFF, PRINTER_ACCESS_USE, true, false},
        {0xFFFFFFFF, PRINTER_ACCESS_ADMINISTER, true, true},
        {PRINTER_ACCESS_USE, PRINTER_ACCESS_ADMINISTER, false, false},
        {PRINTER_ACCESS_USE, PRINTER_ACCESS_USE, true, false},
        {PRINTER_ACCESS_USE | PRINTER_ACCESS_ADMINISTER, PRINTER_ALL_ACCESS, false, false},
        {PRINTER_ACCESS_USE | PRINTER_ACCESS_ADMINISTER, PRINTER_ACCESS_ADMINISTER, true, true},
        {0, 0, false, false},
    };
    auto info = Info2();
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << "granted " << c.granted << " wanted " << c.wanted);
        machine_->SetGrantedPrinterAccess(c.granted);
        HANDLE printer = nullptr;
        EXPECT_EQ(FailureOf([&] { return printer = Open(u"Probe", c.wanted); }),
                  c.opens ? ERROR_SUCCESS : ERROR_ACCESS_DENIED);
        if (printer) {
            const LONG error = c.mayChange ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
            ExpectErrors({
                {"read", [&] { return !Read<PRINTER_INFO_2W>(printer, "GetPrinterW").bytes.empty(); }},
                {"set", [&] { return SetPrinterW(printer, 2, info.bytes.data(), 0); }, error},
                {"set data", [&] { return SetData(printer, u"x", REG_BINARY, ""); }, error},
                {"delete data", [&] { return DeleteData(printer, u"x"); }, error},
                {"add a form", [&] { return AddForm(printer, u"x"); }, error},
                {"delete a form", [&] { return DeleteForm(printer, u"x"); }, error},
                {"delete", [&] { return c.mayChange || DeletePrinter(printer); }, error},
                {"close", [&] { return ClosePrinter(printer); }},
            });
        }
    }
}

TEST_F(SpoolerTest, PrinterInfoIsGivenAsItWasSet) {
    const auto first = Info2();
    EXPECT_EQ(first->pServerName, nullptr);
    EXPECT_EQ(std::u16string(first->pDriverName), u"Probe Driver");
    EXPECT_EQ(std::u16string(first->pDatatype), u"RAW");
    EXPECT_EQ(std::u16string(first->pComment), u"");
    EXPECT_EQ(first->pDevMode, nullptr);
    EXPECT_EQ(first->Attributes, DWORD{PRINTER_ATTRIBUTE_LOCAL});

    OddDevMode mode;
    std::u16string comment = u"by the window";
    std::u16string name = u"\\\\VELMORA-PC\\Probe";
    PRINTER_INFO_2W changed = *first.begin();
    changed.pPrinterName = name.data();
    changed.pComment = comment.data();
    changed.Priority = 9;
    changed.pDevMode = &mode.publicPart;
    ASSERT_TRUE(SetPrinterW(printer_, 2, reinterpret_cast<BYTE*>(&changed), 0)) << GetLastError();
    changed.pDevMode = nullptr;  // the printer keeps its own
    ASSERT_TRUE(SetPrinterW(printer_, 2, reinterpret_cast<BYTE*>(&changed), 0));
    const auto second = Info2();
    EXPECT_EQ(std::u16string(second->pPrinterName), u"Probe");
    EXPECT_EQ(std::u16string(second->pComment), comment);
    EXPECT_EQ(second->Priority, 9u);
    ASSERT_NE(second->pDevMode, nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(second->pDevMode) % alignof(void*), 0u);
    EXPECT_EQ(memcmp(second->pDevMode, &mode, sizeof(DEVMODEW) + sizeof(mode.privatePart)), 0);
}

TEST_F(SpoolerTest, SetPrinterRefusesWhatCantBe) {
    ASSERT_TRUE(ClosePrinter(PrinterRequest{.name = u"Other"}.Add()));
    auto info = Info2();
    const auto set = [&](LPWSTR PRINTER_INFO_2W::*member, std::u16string text) {
        PRINTER_INFO_2W changed = *info.begin();
        changed.*member = text.empty() ? nullptr : text.data();
        return SetPrinterW(printer_, 2, reinterpret_cast<BYTE*>(&changed), 0);
    };
    const auto setShortMode = [&] {
        DEVMODEW mode = {};
        mode.dmSize = 75;
        PRINTER_INFO_2W changed = *info.begin();
        changed.pDevMode = &mode;
        return SetPrinterW(printer_, 2, reinterpret_cast<BYTE*>(&changed), 0);
    };
    ExpectErrors({
        {"name of another", [&] { return set(&PRINTER_INFO_2W::pPrinterName, u"OTHER"); },
         ERROR_PRINTER_ALREADY_EXISTS},
        {"comma in the name", [&] { return set(&PRINTER_INFO_2W::pPrinterName, u"a,b"); }, ERROR_INVALID_PRINTER_NAME},
        {"no name", [&] { return set(&PRINTER_INFO_2W::pPrinterName, u""); }, ERROR_INVALID_PRINTER_NAME},
        {"driver", [&] { return set(&PRINTER_INFO_2W::pDriverName, u"x"); }, ERROR_UNKNOWN_PRINTER_DRIVER},
        {"port", [&] { return set(&PRINTER_INFO_2W::pPortName, u"x"); }, ERROR_UNKNOWN_PORT},
        {"no processor", [&] { return set(&PRINTER_INFO_2W::pPrintProcessor, u""); }, ERROR_UNKNOWN_PRINTPROCESSOR},
        {"short device mode", setShortMode, ERROR_INVALID_PARAMETER},
        {"command", [&] { return SetPrinterW(printer_, 2, info.bytes.data(), 1); }, ERROR_INVALID_PRINTER_COMMAND},
    });
    EXPECT_EQ(Info2().bytes.size(), info.bytes.size());
}

TEST_F(SpoolerTest, AddingAndDeletingPrinters) {
    const std::u16string longName(221, u'n');
    ExpectErrors({
        {"again", [] { return PrinterRequest{.name = u"PROBE"}.Add(); }, ERROR_PRINTER_ALREADY_EXISTS},
        {"a path", [] { return PrinterRequest{.name = u"a\\b"}.Add(); }, ERROR_INVALID_PRINTER_NAME},
        {"a long name", [&] { return PrinterRequest{.name = longName}.Add(); }, ERROR_INVALID_PRINTER_NAME},
        {"driver", [] { return PrinterRequest{.name = u"x", .driverName = u"x"}.Add(); }, ERROR_UNKNOWN_PRINTER_DRIVER},
        {"port", [] { return PrinterRequest{.name = u"x", .portName = u"LPT9:"}.Add(); }, ERROR_UNKNOWN_PORT},
        {"processor", [] { return PrinterRequest{.name = u"x", .printProcessor = u"x"}.Add(); },
         ERROR_UNKNOWN_PRINTPROCESSOR},
    });
    const auto names = [] {
        std::u16string names;
        const auto printers = Read<PRINTER_INFO_2W>(nullptr, "EnumPrintersW");
        for (const PRINTER_INFO_2W& printer : printers) {
            names += std::u16string(printer.pPrinterName) + u";";
        }
        return names;
    };
    machine_->SetGrantedPrinterAccess(PRINTER_ACCESS_USE);
    const HANDLE added = PrinterRequest{.name = u"New"}.Add();
    const HANDLE watching = Open(u"New", PRINTER_ACCESS_USE);
    EXPECT_EQ(names(), u"Probe;New;");
    // Who added it may delete it, whatever is granted; open handles notice.
    DWORD needed = 0;
    ExpectErrors({
        {"delete", [&] { return DeletePrinter(added); }},
        {"use", [&] { return GetPrinterW(watching, 2, nullptr, 0, &needed); }, ERROR_PRINTER_DELETED},
        {"close", [&] { return ClosePrinter(watching) && ClosePrinter(added); }},
        {"open", [] { return Open(u"New", PRINTER_ACCESS_USE); }, ERROR_INVALID_PRINTER_NAME},
    });
    EXPECT_EQ(names(), u"Probe;");
}

TEST_F(SpoolerTest, ServersAndEnvironmentsThatAreNotThisOne) {
    DWORD needed = 0;
    const auto directory = [&needed](std::u16string server, std::u16string environment) {
        return GetPrinterDriverDirectoryW(PointerOrNull(server), PointerOrNull(environment), 1, nullptr, 0, &needed);
    };
    std::u16string arm = u"Windows ARM64";
    ExpectErrors({
        {"server", [&] { return directory(u"\\\\elsewhere", u""); }, RPC_S_SERVER_UNAVAILABLE},
        {"own server", [&] { return directory(u"\\\\velmora-pc", u""); }, ERROR_INSUFFICIENT_BUFFER},
        {"environment", [&] { return directory(u"", arm); }, ERROR_INVALID_ENVIRONMENT},
        {"driver's", [&] { return GetPrinterDriverW(printer_, arm.data(), 3, nullptr, 0, &needed); },
         ERROR_INVALID_ENVIRONMENT},
    });
}

// What is published but not supported says so, on the standard error stream and by the last error.
TEST_F(SpoolerTest, UnsupportedCallsFailLoudly) {
    DWORD needed = 0;
    HANDLE server = nullptr;
    const CallRow cases[] = {
        {"GetPrinterW at level 1", [&] { return GetPrinterW(printer_, 1, nullptr, 0, &needed); }},
        {"OpenPrinterW", [&] { return OpenPrinterW(nullptr, &server, nullptr); }},
        {"EnumPrintersW", [&] { return EnumPrintersW(8, nullptr, 2, nullptr, 0, &needed, &needed); }},
        {"APD_STRICT_UPGRADE", [] { return DriverRequest().Add(APD_STRICT_UPGRADE); }},
    };
    for (const CallRow& c : cases) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(FailureOf(c.call), ERROR_NOT_SUPPORTED) << c.what;
        EXPECT_NE(testing::internal::GetCapturedStderr().find(c.what), std::string::npos) << c.what;
    }
}

}  // namespace
}  // namespace host
