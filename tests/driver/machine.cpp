#include "tests/driver/machine.h"

#include "platform/kernel/text.h"

namespace driver_test {

void MachineTest::TearDown() {
    printer_.Close();
    EXPECT_EQ(host::StillOpen(), std::vector<std::string>());
}

void MachineTest::Install(const DriverPackage& package, const WideText& printerName) {
    InstallPrinter(package, printerName);
    printer_ = OpenWithAllAccess(printerName);
}

std::string ToText(std::u16string_view text) {
    return host::ToUtf8(text);
}

}  // namespace driver_test
