// A machine per test. When the test is over, nothing may be open on it.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

#include "driver/devdesc/description_file.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/entry/printer_access.h"
#include "platform/host.h"
#include "tests/driver/description_builder.h"
#include "tests/driver/package.h"

namespace driver_test {

using Texts = std::vector<std::string>;

class MachineTest : public testing::Test {
  protected:
    void TearDown() override;

    // Installs a printer that the test holds open, with full access, to its end.
    void Install(const DriverPackage& package, const WideText& printerName = kPrinterName);
    // The same with this description file only; empty: with none.
    void Install(const std::string& description) { Install(PackageOf(description)); }
    // Gives the installed printer another description file.
    static void Describe(const DescriptionBuilder& builder) {
        WriteDriveFile(InstalledPath(TEXT("KV62.XPI")), builder.Build());
    }

    HANDLE Printer() const { return printer_.Get(); }
    void AddForm(WideText name, DWORD flags, LONG width, LONG length);

    // Opens and loads these bytes as a description file, without a printer.
    static velmora::OwnedFile OpenDescription(const std::string& bytes);
    static velmora::HeapOwner<velmora::DeviceModel> Load(const std::string& bytes);

    host::Machine machine_;
    // For a test's description file; closed and freed with the test.
    velmora::OwnedFile file_;
    velmora::HeapOwner<velmora::DeviceModel> model_;
    // What the driver keeps open by design, as host::StillOpen tells it.
    Texts keptOpen_;

  private:
    velmora::OwnedPrinter printer_;
};

// Runs every operation that takes a description file, with references of all kinds; what they give doesn't matter.
void ReadEverything(HANDLE file);

// A copy of a byte-packed record's field: expectations take references, which such fields can't be bound to.
template <class T>
T ValueOf(T value) {
    return value;
}

// The names of what a validation repaired.
inline Texts RepairsOf(const velmora::ValidationReport& report) {
    return {report.RepairedNames().begin(), report.RepairedNames().end()};
}

// For messages of failed expectations.
std::string ToText(WideView text);

}  // namespace driver_test
