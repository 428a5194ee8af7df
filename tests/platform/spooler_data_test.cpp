// Printer data: types, sizes, missing values, enumeration.
#include <atomic>
#include <cstring>
#include <set>
#include <thread>

#include "tests/platform/spooler_fixture.h"

namespace host {
namespace {

class PrinterDataTest : public SpoolerTest {
  protected:
    DWORD Set(std::u16string name, DWORD type, std::string bytes) {
        return SetPrinterDataW(printer_, name.data(), type, reinterpret_cast<BYTE*>(bytes.data()),
                               static_cast<DWORD>(bytes.size()));
    }

    // The value and, where asked for, its type; nothing where it isn't there.
    std::optional<std::string> Get(std::u16string name, DWORD* type = nullptr) {
        char bytes[256];
        DWORD needed = kUntouched;
        const DWORD result =
            GetPrinterDataW(printer_, name.data(), type, reinterpret_cast<BYTE*>(bytes), sizeof(bytes), &needed);
        if (result != ERROR_SUCCESS) {
            EXPECT_EQ(result, DWORD{ERROR_FILE_NOT_FOUND});
            EXPECT_EQ(needed, 0u);
            return std::nullopt;
        }
        return std::string(bytes, needed);
    }
};

TEST_F(PrinterDataTest, ValuesKeepTypeAndBytes) {
    const struct {
        const char16_t* name;
        DWORD type;
        std::string bytes;
    } values[] = {
        {u"Text", REG_SZ, std::string("a\0b\0\0\0", 6)},
        {u"Unterminated", REG_SZ, std::string("a\0", 2)},
        {u"List", REG_MULTI_SZ, std::string("a\0\0\0b\0\0\0\0\0", 10)},
        {u"Number", REG_DWORD, std::string("\x01\x02\x03\x04", 4)},
        {u"Bytes", REG_BINARY, std::string("\xFF\x00\x80", 3)},
        {u"Empty", REG_BINARY, ""},
        {u"Strange type", 1234, "x"},
    };
    for (const auto& value : values) {
        EXPECT_EQ(Set(value.name, value.type, value.bytes), DWORD{ERROR_SUCCESS});
    }
    for (const auto& value : values) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(value.name)));
        DWORD type = kUntouched;
        EXPECT_EQ(Get(value.name, &type), value.bytes);
        EXPECT_EQ(type, value.type);

        // The size query and a buffer one byte short tell type and size, and leave the buffer alone.
        std::u16string name = value.name;
        const DWORD size = static_cast<DWORD>(value.bytes.size());
        std::vector<BYTE> buffer(size + 1, 0xEE);
        for (DWORD shorter = 1; shorter <= size; shorter += size == 1 ? 1 : size - 1) {
            DWORD needed = 0;
            type = kUntouched;
            EXPECT_EQ(GetPrinterDataW(printer_, name.data(), &type, shorter == size ? nullptr : buffer.data(),
                                      size - shorter, &needed),
                      DWORD{ERROR_MORE_DATA});
            EXPECT_EQ(needed, size);
            EXPECT_EQ(type, value.type);
            EXPECT_EQ(buffer, std::vector<BYTE>(size + 1, 0xEE));
        }
    }
    // A value is replaced, type and all, whatever the case of its name.
    EXPECT_EQ(Set(u"tEXT", REG_DWORD, "1234"), DWORD{ERROR_SUCCESS});
    DWORD type = 0;
    EXPECT_EQ(Get(u"Text", &type), "1234");
    EXPECT_EQ(type, DWORD{REG_DWORD});

    EXPECT_EQ(Get(u"Missing"), std::nullopt);
    std::u16string name = u"BYTES";
    EXPECT_EQ(DeletePrinterDataW(printer_, name.data()), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(Get(u"Bytes"), std::nullopt);
    EXPECT_EQ(DeletePrinterDataW(printer_, name.data()), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_F(PrinterDataTest, NullParameters) {
    std::u16string name = u"x";
    DWORD needed = 0;
    BYTE byte = 0;
    ASSERT_EQ(Set(name, REG_BINARY, "12"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(GetPrinterDataW(printer_, name.data(), nullptr, &byte, 1, nullptr), DWORD{RPC_X_NULL_REF_POINTER});
    EXPECT_EQ(GetPrinterDataW(printer_, nullptr, nullptr, &byte, 1, &needed), DWORD{RPC_X_NULL_REF_POINTER});
    EXPECT_EQ(GetPrinterDataW(printer_, name.data(), nullptr, nullptr, 2, &needed), DWORD{ERROR_INVALID_USER_BUFFER});
    EXPECT_EQ(SetPrinterDataW(printer_, name.data(), REG_BINARY, nullptr, 1), DWORD{ERROR_INVALID_USER_BUFFER});
    EXPECT_EQ(SetPrinterDataW(printer_, nullptr, REG_BINARY, &byte, 1), DWORD{RPC_X_NULL_REF_POINTER});
    EXPECT_EQ(DeletePrinterDataW(printer_, nullptr), DWORD{RPC_X_NULL_REF_POINTER});
    EXPECT_EQ(Get(u"x"), "12");
}

TEST_F(PrinterDataTest, WritingMayBeForbidden) {
    ASSERT_EQ(Set(u"Old", REG_BINARY, "1"), DWORD{ERROR_SUCCESS});
    machine_.SetMayWritePrinterData(false);
    std::u16string name = u"Old";
    EXPECT_EQ(Set(u"New", REG_BINARY, "2"), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(Set(u"Old", REG_BINARY, "2"), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(DeletePrinterDataW(printer_, name.data()), DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(Get(u"New"), std::nullopt);
    EXPECT_EQ(Get(u"Old"), "1");
}

TEST_F(PrinterDataTest, Enumeration) {
    WCHAR name[32];
    BYTE data[32];
    DWORD nameSize = kUntouched;
    DWORD type = 0;
    DWORD dataSize = kUntouched;
    // Sizes for all values; a printer without data needs nothing.
    EXPECT_EQ(EnumPrinterDataW(printer_, 5, nullptr, 0, &nameSize, nullptr, nullptr, 0, &dataSize),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(nameSize, 0u);
    EXPECT_EQ(dataSize, 0u);
    ASSERT_EQ(Set(u"Short", REG_BINARY, "0123456789"), DWORD{ERROR_SUCCESS});
    ASSERT_EQ(Set(u"A longer name", REG_DWORD, "1234"), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(EnumPrinterDataW(printer_, 0, nullptr, 0, &nameSize, nullptr, nullptr, 0, &dataSize),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(nameSize, 28u);  // "A longer name" and its terminator, in bytes
    EXPECT_EQ(dataSize, 10u);

    EXPECT_EQ(EnumPrinterDataW(printer_, 1, name, sizeof(name), &nameSize, &type, data, sizeof(data), &dataSize),
              DWORD{ERROR_SUCCESS});
    EXPECT_EQ(std::u16string(name), u"A longer name");
    EXPECT_EQ(nameSize, 28u);
    EXPECT_EQ(type, DWORD{REG_DWORD});
    EXPECT_EQ(std::string(reinterpret_cast<char*>(data), dataSize), "1234");

    EXPECT_EQ(EnumPrinterDataW(printer_, 0, name, 12, &nameSize, &type, data, 10, &dataSize), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(EnumPrinterDataW(printer_, 0, name, 11, &nameSize, &type, data, 10, &dataSize), DWORD{ERROR_MORE_DATA});
    EXPECT_EQ(nameSize, 12u);
    EXPECT_EQ(EnumPrinterDataW(printer_, 0, name, 12, &nameSize, &type, data, 9, &dataSize), DWORD{ERROR_MORE_DATA});
    EXPECT_EQ(dataSize, 10u);
    EXPECT_EQ(EnumPrinterDataW(printer_, 0, name, 12, &nameSize, &type, nullptr, 0, nullptr), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(std::u16string(name), u"Short");
    EXPECT_EQ(EnumPrinterDataW(printer_, 2, name, sizeof(name), &nameSize, &type, data, sizeof(data), &dataSize),
              DWORD{ERROR_NO_MORE_ITEMS});
}

// Programs call from several threads: no write is lost, and a thread's last error is its own.
TEST_F(PrinterDataTest, CallsFromSeveralThreads) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 50;
    std::vector<std::thread> threads;
    std::atomic<int> failures = 0;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&failures, thread] {
            std::u16string name = u"x";
            for (int round = 0; round < kRounds; ++round) {
                const HANDLE printer = Open(u"Probe");
                SetLastError(static_cast<DWORD>(1000 + thread));
                name[0] = static_cast<WCHAR>(0xE000 + thread * kRounds + round);
                BYTE byte = static_cast<BYTE>(round);
                DWORD needed = 0;
                const bool isRight =
                    SetPrinterDataW(printer, name.data(), REG_BINARY, &byte, 1) == ERROR_SUCCESS &&
                    GetPrinterDataW(printer, name.data(), nullptr, &byte, 1, &needed) == ERROR_SUCCESS &&
                    byte == round && GetLastError() == static_cast<DWORD>(1000 + thread) && ClosePrinter(printer);
                failures += !isRight;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
    WCHAR name[8];
    DWORD nameSize = 0;
    std::set<std::u16string> names;
    for (DWORD i = 0;
         EnumPrinterDataW(printer_, i, name, sizeof(name), &nameSize, nullptr, nullptr, 0, nullptr) == ERROR_SUCCESS;
         ++i) {
        names.insert(name);
    }
    EXPECT_EQ(names.size(), size_t{kThreads * kRounds});
}

}  // namespace
}  // namespace host
