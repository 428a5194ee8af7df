// The published calls that the driver stands on, at their edges: what they answer on one host they answer on the other.
#include <cstring>
#include <vector>

#include "tests/contract/contract_test.h"

namespace contract {
namespace {

class PlatformCalls : public ContractTest {
  protected:
    InstalledPrinter printer_{*environment_, PackageOf(DescriptionFiles().at(0))};
};

TEST_F(PlatformCalls, PrinterData) {
    const HANDLE printer = printer_.Handle();
    const std::vector<BYTE> bytes = {'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0};
    const DWORD size = static_cast<DWORD>(bytes.size());
    WCHAR name[] = TEXT("Contract value");
    WCHAR otherCase[] = TEXT("CONTRACT VALUE");
    printer_.SetData(name, REG_MULTI_SZ, bytes.data(), size);

    DWORD type = 0;
    DWORD needed = 0;
    std::vector<BYTE> read(size + 10, 0x55);
    EXPECT_EQ(GetPrinterDataW(printer, name, &type, read.data(), size - 1, &needed), DWORD{ERROR_MORE_DATA});
    EXPECT_EQ(needed, size);
    EXPECT_EQ(GetPrinterDataW(printer, otherCase, &type, read.data(), size, &needed), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(needed, size);
    EXPECT_EQ(type, DWORD{REG_MULTI_SZ});
    EXPECT_EQ(memcmp(read.data(), bytes.data(), size), 0);
    EXPECT_EQ(read[size], 0x55) << "written behind the value";
    EXPECT_EQ(DeletePrinterDataW(printer, name), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(GetPrinterDataW(printer, name, nullptr, nullptr, 0, &needed), DWORD{ERROR_FILE_NOT_FOUND});
    EXPECT_EQ(DeletePrinterDataW(printer, name), DWORD{ERROR_FILE_NOT_FOUND});
}

// The driver hands these two on to the platform, which asks the driver's DevQueryPrintEx in turn.
TEST_F(PlatformCalls, ForwardersReachThePlatform) {
    DevModeBuffer devMode = DefaultDevMode(printer_, printer_.Name());
    DWORD reason = 77;
    EXPECT_TRUE(printer_.Driver().DevQueryPrint(printer_.Handle(), devMode.Get(), &reason));
    EXPECT_EQ(reason, 0u);
    EXPECT_FALSE(printer_.Driver().PrinterProperties(nullptr, nullptr));
}

}  // namespace
}  // namespace contract
