// The spooler of a machine that is kept in a folder: what one process stored, the next finds, and nothing half.
#include <stdlib.h>

#include <memory>
#include <nlohmann/json.hpp>

#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

namespace fs = std::filesystem;

class KeptSpoolerTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "kept-spooler-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
        Start();
        WriteOnDrive(*machine_, "Package/core.dll", "core");
        WriteOnDrive(*machine_, "Package/two.ini", "ini");
        WriteOnDrive(*machine_, "Windows/System32/spool/prtprocs/x64/mine.dll", "processor");
        DriverRequest driver = {.dataFile = u"C:\\Package\\core.dll",
                                .configFile = u"C:\\Package\\core.dll",
                                .dependentFiles = {u"C:\\Package\\core.dll", u"C:\\Package\\two.ini"}};
        ASSERT_TRUE(driver.Add()) << GetLastError();
        struct {
            DEVMODEW publicPart;
            BYTE privatePart[3];
        } mode = {};
        mode.publicPart.dmSize = sizeof(DEVMODEW);
        mode.publicPart.dmDriverExtra = sizeof(mode.privatePart);
        mode.privatePart[2] = 0xAB;
        PrinterRequest printer = {
            .name = u"Kept \u00E9\u4E2D", .comment = u"\"quoted\"\n", .deviceMode = &mode.publicPart};
        const HANDLE handle = printer.Add();
        ASSERT_NE(handle, nullptr) << GetLastError();
        EXPECT_EQ(SetData(handle, u"Value", std::string("\0\xFF\x80", 3)), DWORD{ERROR_SUCCESS});
        std::u16string form = u"Mine";
        FORM_INFO_1W info = {FORM_PRINTER, form.data(), {10, 20}, {1, 2, 9, 18}};
        EXPECT_TRUE(AddFormW(handle, 1, reinterpret_cast<BYTE*>(&info)));
        std::u16string processorFile = u"mine.dll";
        EXPECT_TRUE(AddPrintProcessorW(nullptr, nullptr, processorFile.data(), form.data()));
        EXPECT_TRUE(ClosePrinter(handle));
    }

    void TearDown() override {
        EXPECT_EQ(StillOpen(), std::vector<std::string>());
        machine_.reset();
        fs::remove_all(folder_);
    }

    void Start() {
        machine_.reset();
        machine_ = std::make_unique<Machine>(folder_);
    }

    fs::path StoreFile() const {
        for (const auto& entry : fs::directory_iterator(folder_)) {
            if (entry.path().extension() == ".json") {
                return entry.path();
            }
        }
        ADD_FAILURE() << "no store in " << folder_;
        return {};
    }

    static DWORD SetData(HANDLE printer, std::u16string name, std::string bytes) {
        return SetPrinterDataW(printer, name.data(), REG_BINARY, reinterpret_cast<BYTE*>(bytes.data()),
                               static_cast<DWORD>(bytes.size()));
    }

    // All that the spooler tells of the machine, pointers left out.
    static std::string Describe() {
        std::string text;
        const HANDLE printer = Open(u"Kept \u00E9\u4E2D");
        if (!printer) {
            return text;
        }
        const auto add = [&](const SizedCall& call, size_t structure, size_t firstPointerFree) {
            DWORD count = 0;
            const auto block = ReadSized(call, &count);
            ASSERT_TRUE(block);
            const size_t structures = structure * std::max<DWORD>(count, 1);
            for (size_t at = 0; at < structures; at += structure) {
                text.append(block->begin() + at + firstPointerFree, block->begin() + at + structure);
            }
            text.append(block->begin() + structures, block->end());
        };
        add([&](auto buffer, auto size, auto needed, auto) { return GetPrinterW(printer, 2, buffer, size, needed); },
            sizeof(PRINTER_INFO_2W), offsetof(PRINTER_INFO_2W, Attributes));
        add([&](auto buffer, auto size, auto needed,
                auto) { return GetPrinterDriverW(printer, nullptr, 3, buffer, size, needed); },
            sizeof(DRIVER_INFO_3W), sizeof(DRIVER_INFO_3W));
        add([&](auto buffer, auto size, auto needed,
                auto returned) { return EnumFormsW(printer, 1, buffer, size, needed, returned); },
            sizeof(FORM_INFO_1W), offsetof(FORM_INFO_1W, Size));
        add([&](auto buffer, auto size, auto needed,
                auto returned) { return EnumPrintProcessorsW(nullptr, nullptr, 1, buffer, size, needed, returned); },
            sizeof(PRINTPROCESSOR_INFO_1W), sizeof(PRINTPROCESSOR_INFO_1W));
        WCHAR name[32];
        BYTE data[32];
        DWORD nameSize = 0;
        DWORD dataSize = 0;
        DWORD type = 0;
        for (DWORD i = 0; EnumPrinterDataW(printer, i, name, sizeof(name), &nameSize, &type, data, sizeof(data),
                                           &dataSize) == ERROR_SUCCESS;
             ++i) {
            text.append(reinterpret_cast<char*>(name), nameSize);
            text.append(reinterpret_cast<char*>(data), dataSize);
            text += std::to_string(type);
        }
        EXPECT_TRUE(ClosePrinter(printer));
        return text;
    }

    fs::path folder_;
    std::unique_ptr<Machine> machine_;
};

TEST_F(KeptSpoolerTest, WhatWasStoredIsThereAgain) {
    const std::string before = Describe();
    EXPECT_GT(before.size(), 2000u);
    Start();
    EXPECT_EQ(Describe(), before);
    // The next change is stored on top of it.
    const HANDLE printer = Open(u"Kept \u00E9\u4E2D");
    EXPECT_EQ(SetData(printer, u"More", "more"), DWORD{ERROR_SUCCESS});
    EXPECT_TRUE(ClosePrinter(printer));
    const std::string after = Describe();
    EXPECT_NE(after, before);
    Start();
    EXPECT_EQ(Describe(), after);

    // A machine that isn't kept knows nothing of it.
    machine_.reset();
    const Machine fresh;
    EXPECT_EQ(Open(u"Kept \u00E9\u4E2D"), nullptr);
}

TEST_F(KeptSpoolerTest, AChangeThatCantBeWrittenIsNotMade) {
    const std::string before = Describe();
    const HANDLE printer = Open(u"Kept \u00E9\u4E2D");
    const auto info = ReadSized([&](LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD) {
        return GetPrinterW(printer, 2, buffer, size, needed);
    });
    ASSERT_TRUE(info);
    PRINTER_INFO_2W changed = *reinterpret_cast<const PRINTER_INFO_2W*>(info->data());
    std::u16string comment = u"changed";
    changed.pComment = comment.data();
    // A folder stands where the store is written to before it takes the old one's place.
    const fs::path inTheWay = StoreFile().string() + ".new";
    fs::create_directories(inTheWay / "x");

    EXPECT_EQ(SetData(printer, u"Value", "changed"), DWORD{ERROR_WRITE_FAULT});
    EXPECT_EQ(SetData(printer, u"New", "new"), DWORD{ERROR_WRITE_FAULT});
    std::u16string name = u"Value";
    EXPECT_EQ(DeletePrinterDataW(printer, name.data()), DWORD{ERROR_WRITE_FAULT});
    std::u16string form = u"Mine";
    const auto byLastError = [](BOOL result) { return result ? ERROR_SUCCESS : GetLastError(); };
    EXPECT_EQ(byLastError(DeleteFormW(printer, form.data())), DWORD{ERROR_WRITE_FAULT});
    EXPECT_EQ(byLastError(SetPrinterW(printer, 2, reinterpret_cast<BYTE*>(&changed), 0)), DWORD{ERROR_WRITE_FAULT});
    EXPECT_EQ(byLastError(PrinterRequest{.name = u"Other"}.Add() != nullptr), DWORD{ERROR_WRITE_FAULT});
    EXPECT_EQ(byLastError(DeletePrinter(printer)), DWORD{ERROR_WRITE_FAULT});
    EXPECT_EQ(Describe(), before);

    fs::remove_all(inTheWay);
    EXPECT_TRUE(ClosePrinter(printer));
    Start();
    EXPECT_EQ(Describe(), before);
}

TEST_F(KeptSpoolerTest, ADamagedStoreIsRefused) {
    const fs::path file = StoreFile();
    machine_.reset();
    std::stringstream whole;
    whole << std::ifstream(file).rdbuf();
    const nlohmann::json store = nlohmann::json::parse(whole.str());
    const auto changed = [&](const char* place, const nlohmann::json& value) {
        nlohmann::json copy = store;
        copy[nlohmann::json::json_pointer(place)] = value;
        return copy.dump();
    };
    const auto without = [&](const char* place, const char* key) {
        nlohmann::json copy = store;
        copy[nlohmann::json::json_pointer(place)].erase(key);
        return copy.dump();
    };
    const std::string damaged[] = {
        "",
        whole.str().substr(0, whole.str().size() / 2),
        changed("/printers", "text"),
        changed("/printers/0", 5),
        changed("/printers/0/name", 5),
        changed("/printers/0/priority", -1),
        changed("/printers/0/priority", 4294967296),
        changed("/printers/0/priority", 1.5),
        changed("/printers/0/deviceMode", "abc"),
        changed("/printers/0/deviceMode", "ag"),
        changed("/printers/0/deviceMode", "abcd"),
        changed("/printers/0/deviceMode", std::string(2 * sizeof(DEVMODEW), '0')),
        changed("/printers/0/data/0/bytes", nullptr),
        without("/printers/0", "data"),
        without("/printers/0/data/0", "type"),
        changed("/drivers/0/dependentFiles/0", 1),
        without("/drivers/0", "configFile"),
        changed("/forms/0/size", nlohmann::json::array({1})),
        changed("/forms/0/imageableArea/3", 2147483648),
        without("/printProcessors/0", "file"),
    };
    for (const std::string& text : damaged) {
        std::ofstream(file, std::ios::binary | std::ios::trunc) << text;
        try {
            Start();
            ADD_FAILURE() << "loaded: " << text.substr(0, 200);
        } catch (const std::runtime_error& error) {
            EXPECT_NE(std::string(error.what()).find(file.filename().string()), std::string::npos) << error.what();
        }
        std::stringstream left;
        left << std::ifstream(file).rdbuf();
        EXPECT_EQ(left.str(), text);
    }
    std::ofstream(file, std::ios::binary | std::ios::trunc) << whole.str();
    Start();
    EXPECT_FALSE(Describe().empty());
}

// A store may name a driver that it doesn't have: the printer says so, and can be deleted.
TEST_F(KeptSpoolerTest, APrinterWithoutItsDriver) {
    const fs::path file = StoreFile();
    machine_.reset();
    nlohmann::json store = nlohmann::json::parse(std::ifstream(file));
    store["drivers"] = nlohmann::json::array();
    std::ofstream(file, std::ios::binary | std::ios::trunc) << store.dump();
    Start();
    const HANDLE printer = Open(u"Kept \u00E9\u4E2D");
    DWORD needed = 0;
    EXPECT_FALSE(GetPrinterDriverW(printer, nullptr, 3, nullptr, 0, &needed));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_UNKNOWN_PRINTER_DRIVER});
    std::u16string name = u"x";
    EXPECT_EQ(DocumentPropertiesW(nullptr, printer, name.data(), nullptr, nullptr, 0), -1);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_UNKNOWN_PRINTER_DRIVER});
    EXPECT_TRUE(DeletePrinter(printer));
    EXPECT_TRUE(ClosePrinter(printer));
}

}  // namespace
}  // namespace host
