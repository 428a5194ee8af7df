// Printers: names, rights, PRINTER_INFO_2, the list of printers.
#include <cstring>

#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

TEST_F(SpoolerTest, NamesThatOpenAPrinter) {
    machine_.SetComputerName(u"HOST-7");
    const struct {
        const char16_t* name;
        DWORD error;
    } cases[] = {
        {u"Probe", ERROR_SUCCESS},
        {u"pROBE", ERROR_SUCCESS},
        {u"\\\\HOST-7\\Probe", ERROR_SUCCESS},
        {u"\\\\host-7\\probe", ERROR_SUCCESS},
        {u"", ERROR_INVALID_PRINTER_NAME},
        {u"Prob", ERROR_INVALID_PRINTER_NAME},
        {u"Probe ", ERROR_INVALID_PRINTER_NAME},
        {u"Probe,LocalOnly", ERROR_INVALID_PRINTER_NAME},
        {u"\\\\HOST-8\\Probe", ERROR_INVALID_PRINTER_NAME},
        {u"\\\\HOST-7\\", ERROR_INVALID_PRINTER_NAME},
        {u"\\\\HOST-7", ERROR_INVALID_PRINTER_NAME},
        {u"\\Probe", ERROR_INVALID_PRINTER_NAME},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(test.name)));
        const HANDLE printer = Open(test.name);
        if (test.error != ERROR_SUCCESS) {
            EXPECT_EQ(printer, nullptr);
            EXPECT_EQ(GetLastError(), test.error);
        } else {
            ASSERT_NE(printer, nullptr);
            EXPECT_EQ(StillOpen().size(), 2u);
            EXPECT_TRUE(ClosePrinter(printer));
        }
    }
}

TEST_F(SpoolerTest, OpeningTellsNoHandleWhereItFails) {
    std::u16string name = u"None";
    HANDLE printer = INVALID_HANDLE_VALUE;
    EXPECT_FALSE(OpenPrinterW(name.data(), &printer, nullptr));
    EXPECT_EQ(printer, nullptr);
    name = u"Probe";
    EXPECT_FALSE(OpenPrinterW(name.data(), nullptr, nullptr));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PARAMETER});
    // Without defaults the handle may use the printer, not change it.
    ASSERT_TRUE(OpenPrinterW(name.data(), &printer, nullptr));
    EXPECT_EQ(SetPrinterDataW(printer, name.data(), REG_BINARY, nullptr, 0), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_TRUE(ClosePrinter(printer));
}

TEST_F(SpoolerTest, RightsGrantedAndRightsOfTheHandle) {
    const struct {
        DWORD granted;
        ACCESS_MASK wanted;
        bool opens;
        bool mayChange;
    } cases[] = {
        {0xFFFFFFFF, PRINTER_ALL_ACCESS, true, true},
        {0xFFFFFFFF, 0, true, false},
        {0xFFFFFFFF, PRINTER_ACCESS_USE, true, false},
        {0xFFFFFFFF, PRINTER_ACCESS_ADMINISTER, true, true},
        {PRINTER_ACCESS_USE, PRINTER_ALL_ACCESS, false, false},
        {PRINTER_ACCESS_USE, PRINTER_ACCESS_ADMINISTER, false, false},
        {PRINTER_ACCESS_USE, PRINTER_ACCESS_USE, true, false},
        {PRINTER_ACCESS_USE | PRINTER_ACCESS_ADMINISTER, PRINTER_ALL_ACCESS, false, false},
        {PRINTER_ACCESS_USE | PRINTER_ACCESS_ADMINISTER, PRINTER_ACCESS_ADMINISTER, true, true},
        {0, PRINTER_ACCESS_USE, false, false},
        {0, 0, false, false},
    };
    std::vector<BYTE> info = Info2();
    std::u16string name = u"x";
    FORM_INFO_1W form = {FORM_USER, name.data(), {1, 1}, {0, 0, 1, 1}};
    for (const auto& test : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << "granted " << test.granted << " wanted " << test.wanted);
        machine_.SetGrantedPrinterAccess(test.granted);
        const HANDLE printer = Open(u"Probe", test.wanted);
        EXPECT_EQ(printer != nullptr, test.opens);
        if (!printer) {
            EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
            continue;
        }
        DWORD needed = 0;
        std::vector<BYTE> read(info.size());
        EXPECT_TRUE(GetPrinterW(printer, 2, read.data(), static_cast<DWORD>(read.size()), &needed));
        const DWORD expected = test.mayChange ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
        const auto byLastError = [](BOOL result) { return result ? ERROR_SUCCESS : GetLastError(); };
        EXPECT_EQ(byLastError(SetPrinterW(printer, 2, info.data(), 0)), expected);
        EXPECT_EQ(SetPrinterDataW(printer, name.data(), REG_BINARY, nullptr, 0), expected);
        EXPECT_EQ(DeletePrinterDataW(printer, name.data()), expected);
        EXPECT_EQ(byLastError(AddFormW(printer, 1, reinterpret_cast<BYTE*>(&form))), expected);
        EXPECT_EQ(byLastError(DeleteFormW(printer, name.data())), expected);
        if (!test.mayChange) {
            EXPECT_EQ(byLastError(DeletePrinter(printer)), expected);
        }
        EXPECT_TRUE(ClosePrinter(printer));
    }
}

TEST_F(SpoolerTest, PrinterInfoIsGivenAsItWasSet) {
    const std::vector<BYTE> first = Info2();
    const auto* info = reinterpret_cast<const PRINTER_INFO_2W*>(first.data());
    EXPECT_EQ(info->pServerName, nullptr);
    EXPECT_EQ(std::u16string(info->pPrinterName), u"Probe");
    EXPECT_EQ(std::u16string(info->pDriverName), u"Probe Driver");
    EXPECT_EQ(std::u16string(info->pDatatype), u"RAW");
    EXPECT_EQ(std::u16string(info->pComment), u"");
    EXPECT_EQ(info->pDevMode, nullptr);
    EXPECT_EQ(info->Attributes, DWORD{PRINTER_ATTRIBUTE_LOCAL});
    EXPECT_EQ(info->cJobs, 0u);

    // A private part of an odd size, so that what follows has to be aligned again.
    struct {
        DEVMODEW publicPart;
        BYTE privatePart[7];
    } mode = {};
    mode.publicPart.dmSize = sizeof(DEVMODEW);
    mode.publicPart.dmDriverExtra = sizeof(mode.privatePart);
    mode.publicPart.dmCopies = 42;
    memcpy(mode.privatePart, "private", sizeof(mode.privatePart));
    std::u16string comment = u"by the window";
    std::u16string name = u"\\\\VELMORA-PC\\Probe";
    PRINTER_INFO_2W changed = *info;
    changed.pPrinterName = name.data();
    changed.pComment = comment.data();
    changed.Priority = 9;
    changed.pDevMode = &mode.publicPart;
    ASSERT_TRUE(SetPrinterW(printer_, 2, reinterpret_cast<BYTE*>(&changed), 0)) << GetLastError();

    // Without a device mode the printer keeps its own.
    changed.pDevMode = nullptr;
    ASSERT_TRUE(SetPrinterW(printer_, 2, reinterpret_cast<BYTE*>(&changed), 0));
    const std::vector<BYTE> second = Info2();
    info = reinterpret_cast<const PRINTER_INFO_2W*>(second.data());
    EXPECT_EQ(std::u16string(info->pPrinterName), u"Probe");
    EXPECT_EQ(std::u16string(info->pComment), comment);
    EXPECT_EQ(info->Priority, 9u);
    ASSERT_NE(info->pDevMode, nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(info->pDevMode) % alignof(void*), 0u);
    EXPECT_EQ(memcmp(info->pDevMode, &mode, sizeof(DEVMODEW) + sizeof(mode.privatePart)), 0);
}

TEST_F(SpoolerTest, SetPrinterRefusesWhatCantBe) {
    PrinterRequest other = {.name = u"Other"};
    ASSERT_TRUE(ClosePrinter(other.Add()));
    const std::vector<BYTE> before = Info2();
    DEVMODEW shortMode = {};
    shortMode.dmSize = 75;
    std::u16string otherName = u"OTHER";
    std::u16string comma = u"a,b";
    std::u16string empty;
    const struct {
        const char* what;
        std::function<void(PRINTER_INFO_2W&)> change;
        DWORD error;
    } cases[] = {
        {"name of another", [&](auto& info) { info.pPrinterName = otherName.data(); }, ERROR_PRINTER_ALREADY_EXISTS},
        {"comma in the name", [&](auto& info) { info.pPrinterName = comma.data(); }, ERROR_INVALID_PRINTER_NAME},
        {"no name", [&](auto& info) { info.pPrinterName = nullptr; }, ERROR_INVALID_PRINTER_NAME},
        {"unknown driver", [&](auto& info) { info.pDriverName = comma.data(); }, ERROR_UNKNOWN_PRINTER_DRIVER},
        {"unknown port", [&](auto& info) { info.pPortName = comma.data(); }, ERROR_UNKNOWN_PORT},
        {"no processor", [&](auto& info) { info.pPrintProcessor = empty.data(); }, ERROR_UNKNOWN_PRINTPROCESSOR},
        {"short device mode", [&](auto& info) { info.pDevMode = &shortMode; }, ERROR_INVALID_PARAMETER},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        PRINTER_INFO_2W info = *reinterpret_cast<const PRINTER_INFO_2W*>(before.data());
        test.change(info);
        EXPECT_FALSE(SetPrinterW(printer_, 2, reinterpret_cast<BYTE*>(&info), 0));
        EXPECT_EQ(GetLastError(), test.error);
    }
    std::vector<BYTE> info = before;
    EXPECT_FALSE(SetPrinterW(printer_, 2, info.data(), 1));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_PRINTER_COMMAND});
    EXPECT_EQ(Info2().size(), before.size());
}

TEST_F(SpoolerTest, AddingAndDeletingPrinters) {
    const struct {
        PrinterRequest request;
        DWORD error;
    } refused[] = {
        {{.name = u"PROBE"}, ERROR_PRINTER_ALREADY_EXISTS},
        {{.name = u""}, ERROR_INVALID_PRINTER_NAME},
        {{.name = u"a\\b"}, ERROR_INVALID_PRINTER_NAME},
        {{.name = std::u16string(221, u'n')}, ERROR_INVALID_PRINTER_NAME},
        {{.name = u"New", .driverName = u"None"}, ERROR_UNKNOWN_PRINTER_DRIVER},
        {{.name = u"New", .portName = u"LPT9:"}, ERROR_UNKNOWN_PORT},
        {{.name = u"New", .printProcessor = u"other"}, ERROR_UNKNOWN_PRINTPROCESSOR},
    };
    for (const auto& test : refused) {
        PrinterRequest request = test.request;
        EXPECT_EQ(request.Add(), nullptr);
        EXPECT_EQ(GetLastError(), test.error) << testing::PrintToString(request.name);
    }
    const auto names = [] {
        DWORD count = 0;
        const auto list = ReadSized(
            [](LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned) {
                return EnumPrintersW(PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS, nullptr, 2, buffer, size, needed,
                                     returned);
            },
            &count);
        std::vector<std::u16string> found;
        for (DWORD i = 0; i < count; ++i) {
            found.emplace_back(reinterpret_cast<const PRINTER_INFO_2W*>(list->data())[i].pPrinterName);
        }
        return found;
    };
    EXPECT_EQ(names(), std::vector<std::u16string>{u"Probe"});

    machine_.SetGrantedPrinterAccess(PRINTER_ACCESS_USE);
    const HANDLE added = PrinterRequest{.name = u"New"}.Add();
    ASSERT_NE(added, nullptr);
    const HANDLE watching = Open(u"New", PRINTER_ACCESS_USE);
    EXPECT_EQ(names(), (std::vector<std::u16string>{u"Probe", u"New"}));

    // Who added it may delete it, whatever is granted; open handles notice.
    EXPECT_TRUE(DeletePrinter(added));
    EXPECT_EQ(names(), std::vector<std::u16string>{u"Probe"});
    DWORD needed = 0;
    EXPECT_FALSE(GetPrinterW(watching, 2, nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_PRINTER_DELETED});
    EXPECT_TRUE(ClosePrinter(watching));
    EXPECT_TRUE(ClosePrinter(added));
    EXPECT_EQ(Open(u"New", PRINTER_ACCESS_USE), nullptr);
}

TEST_F(SpoolerTest, ServersAndEnvironmentsThatAreNotThisOne) {
    std::u16string server = u"\\\\elsewhere";
    std::u16string own = u"\\\\velmora-pc";
    std::u16string arm = u"Windows ARM64";
    DWORD needed = 0;
    EXPECT_FALSE(GetPrinterDriverDirectoryW(server.data(), nullptr, 1, nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), DWORD{RPC_S_SERVER_UNAVAILABLE});
    EXPECT_FALSE(GetPrinterDriverDirectoryW(own.data(), nullptr, 1, nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_FALSE(GetPrinterDriverDirectoryW(nullptr, arm.data(), 1, nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_ENVIRONMENT});
    EXPECT_FALSE(GetPrinterDriverW(printer_, arm.data(), 3, nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_ENVIRONMENT});
}

// What is published but not supported says so, on the standard error stream and by the last error.
TEST_F(SpoolerTest, UnsupportedCallsFailLoudly) {
    DWORD needed = 0;
    HANDLE server = nullptr;
    const struct {
        const char* named;
        std::function<BOOL()> call;
    } cases[] = {
        {"PrinterProperties", [&] { return PrinterProperties(nullptr, printer_); }},
        {"GetPrinterW at level 1", [&] { return GetPrinterW(printer_, 1, nullptr, 0, &needed); }},
        {"OpenPrinterW", [&] { return OpenPrinterW(nullptr, &server, nullptr); }},
        {"EnumPrintersW", [&] { return EnumPrintersW(8, nullptr, 2, nullptr, 0, &needed, &needed); }},
        {"APD_STRICT_UPGRADE", [] { return BOOL{DriverRequest().Add(APD_STRICT_UPGRADE)}; }},
    };
    for (const auto& test : cases) {
        testing::internal::CaptureStderr();
        const BOOL result = test.call();
        const DWORD error = GetLastError();
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_FALSE(result) << test.named;
        EXPECT_EQ(error, DWORD{ERROR_NOT_SUPPORTED}) << test.named;
        EXPECT_NE(said.find(test.named), said.npos) << said;
    }
}

}  // namespace
}  // namespace host
