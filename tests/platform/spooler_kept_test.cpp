// The spooler of a machine that is kept in a folder: what one process stored, the next finds, and nothing half.
#include <nlohmann/json.hpp>

#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

constexpr char16_t kName[] = u"Kept \u00E9\u4E2D";

class KeptSpoolerTest : public KeptTest {
  protected:
    void SetUp() override {
        Put("Package/core.dll", "core");
        Put("Package/two.ini", "ini");
        Put(std::string(kProcessorFolder) + "/mine.dll", "processor");
        DriverRequest driver = {.dataFile = u"C:\\Package\\core.dll",
                                .configFile = u"C:\\Package\\core.dll",
                                .dependentFiles = {u"C:\\Package\\core.dll", u"C:\\Package\\two.ini"}};
        ASSERT_TRUE(driver.Add()) << GetLastError();
        OddDevMode mode;
        PrinterRequest printer = {.name = kName, .comment = u"\"quoted\"\n", .deviceMode = &mode.publicPart};
        const HANDLE handle = printer.Add();
        ASSERT_NE(handle, nullptr) << GetLastError();
        EXPECT_TRUE(SetData(handle, u"Value", REG_BINARY, std::string("\0\xFF\x80", 3)) &&
                    AddForm(handle, u"Mine", FORM_PRINTER) && AddProcessor(u"mine.dll", u"Mine"));
        EXPECT_TRUE(ClosePrinter(handle));
        for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
            store_ = entry.path().extension() == ".json" ? entry.path() : store_;
        }
    }

    // All that the spooler tells of the machine, pointers as offsets.
    static std::string Describe() {
        const HANDLE printer = Open(kName);
        std::string text;
        for (const SizedCall& sized : kSizedCalls) {
            auto block = Read<uintptr_t>(printer, sized.name);
            const auto start = reinterpret_cast<uintptr_t>(block.begin());
            for (size_t at = 0; at + sizeof(start) <= block.bytes.size(); at += sizeof(start)) {
                uintptr_t& word = *reinterpret_cast<uintptr_t*>(block.bytes.data() + at);
                word -= word >= start && word < start + block.bytes.size() ? start : 0;
            }
            text.append(block.bytes.begin(), block.bytes.end());
        }
        for (const char16_t* name : {u"Value", u"More", u"New"}) {
            DWORD type = 0;
            text += GetData(printer, name, &type).value_or("none") + std::to_string(type);
        }
        EXPECT_TRUE(ClosePrinter(printer));
        return text;
    }

    std::filesystem::path store_;
};

TEST_F(KeptSpoolerTest, WhatWasStoredIsThereAgain) {
    const std::string before = Describe();
    Start();
    EXPECT_EQ(Describe(), before);
    // The next change is stored on top of it.
    const HANDLE printer = Open(kName);
    EXPECT_TRUE(SetData(printer, u"More", REG_BINARY, "more") && ClosePrinter(printer));
    const std::string after = Describe();
    EXPECT_NE(after, before);
    Start();
    EXPECT_EQ(Describe(), after);
}

TEST_F(KeptSpoolerTest, AChangeThatCantBeWrittenIsNotMade) {
    const std::string before = Describe();
    const HANDLE printer = Open(kName);
    auto info = Read<PRINTER_INFO_2W>(printer, "GetPrinterW");
    std::u16string comment = u"changed";
    reinterpret_cast<PRINTER_INFO_2W*>(info.bytes.data())->pComment = comment.data();
    // A folder stands where the store is written to before it takes the old one's place.
    const std::filesystem::path inTheWay = store_.string() + ".new";
    std::filesystem::create_directories(inTheWay / "x");
    ExpectErrors({
        {"set data", [&] { return SetData(printer, u"Value", REG_BINARY, "changed"); }, ERROR_WRITE_FAULT},
        {"add data", [&] { return SetData(printer, u"New", REG_BINARY, "new"); }, ERROR_WRITE_FAULT},
        {"delete data", [&] { return DeleteData(printer, u"Value"); }, ERROR_WRITE_FAULT},
        {"delete a form", [&] { return DeleteForm(printer, u"Mine"); }, ERROR_WRITE_FAULT},
        {"set", [&] { return SetPrinterW(printer, 2, info.bytes.data(), 0); }, ERROR_WRITE_FAULT},
        {"add", [&] { return PrinterRequest{.name = u"Other"}.Add(); }, ERROR_WRITE_FAULT},
        {"delete", [&] { return DeletePrinter(printer); }, ERROR_WRITE_FAULT},
    });
    EXPECT_EQ(Describe(), before);
    std::filesystem::remove_all(inTheWay);
    EXPECT_TRUE(ClosePrinter(printer));
    Start();
    EXPECT_EQ(Describe(), before);
}

TEST_F(KeptSpoolerTest, ADamagedStoreIsRefused) {
    const std::string whole = ReadHostFile(store_);
    ExpectRefused(store_, "");
    ExpectRefused(store_, whole.substr(0, whole.size() / 2));
    // Another value of a place; nothing: the place is missing.
    const std::pair<const char*, std::optional<nlohmann::json>> cases[] = {
        {"/printers", "text"},
        {"/printers/0", 5},
        {"/printers/0/name", 5},
        {"/printers/0/priority", -1},
        {"/printers/0/priority", 4294967296},
        {"/printers/0/priority", 1.5},
        {"/printers/0/deviceMode", "abc"},
        {"/printers/0/deviceMode", "ag"},
        {"/printers/0/deviceMode", "abcd"},
        {"/printers/0/deviceMode", std::string(2 * sizeof(DEVMODEW), '0')},
        {"/printers/0/data/0/bytes", nlohmann::json()},
        {"/printers/0/data", std::nullopt},
        {"/printers/0/data/0/type", std::nullopt},
        {"/drivers/0/dependentFiles/0", 1},
        {"/forms/0/size", nlohmann::json::array({1})},
        {"/forms/0/imageableArea/3", 2147483648},
        {"/printProcessors/0/file", std::nullopt},
    };
    for (const auto& [place, value] : cases) {
        SCOPED_TRACE(place);
        nlohmann::json store = nlohmann::json::parse(whole);
        const nlohmann::json::json_pointer pointer(place);
        if (value) {
            store[pointer] = *value;
        } else {
            store[pointer.parent_pointer()].erase(pointer.back());
        }
        ExpectRefused(store_, store.dump());
    }
}

// A store may name a driver that it doesn't have: the printer says so, and can be deleted.
TEST_F(KeptSpoolerTest, APrinterWithoutItsDriver) {
    nlohmann::json store = nlohmann::json::parse(ReadHostFile(store_));
    store["drivers"] = nlohmann::json::array();
    machine_.reset();
    std::ofstream(store_, std::ios::binary) << store.dump();
    Start();
    const HANDLE printer = Open(kName);
    DWORD needed = 0;
    std::u16string name = kName;
    ExpectErrors({
        {"driver", [&] { return GetPrinterDriverW(printer, nullptr, 3, nullptr, 0, &needed); },
         ERROR_UNKNOWN_PRINTER_DRIVER},
        {"properties", [&] { return DocumentPropertiesW(nullptr, printer, name.data(), nullptr, nullptr, 0) >= 0; },
         ERROR_UNKNOWN_PRINTER_DRIVER},
        {"delete", [&] { return DeletePrinter(printer) && ClosePrinter(printer); }},
    });
}

}  // namespace
}  // namespace host
