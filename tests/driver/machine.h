// A machine per test. When the test is over, nothing may be open on it.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "driver/entry/printer_access.h"
#include "platform/host.h"
#include "tests/driver/package.h"

namespace driver_test {

class MachineTest : public testing::Test {
  protected:
    void TearDown() override;

    // Installs a printer that the test holds open, with full access, to its end.
    void Install(const DriverPackage& package, const WideText& printerName = kPrinterName);
    // The same with this description file only; empty: with none.
    void Install(const std::string& description) { Install(PackageOf(description)); }

    HANDLE Printer() const { return printer_.Get(); }

    host::Machine machine_;

  private:
    velmora::OwnedPrinter printer_;
};

// A copy of a byte-packed record's field: expectations take references, which such fields can't be bound to.
template <class T>
T ValueOf(T value) {
    return value;
}

// For messages of failed expectations.
std::string ToText(std::u16string_view text);

}  // namespace driver_test
