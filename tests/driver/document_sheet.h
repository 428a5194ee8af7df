// What tests of the document sheet's pages share: the sheet in windows of the layer, and the user in front of it.
#pragma once

#include <memory>
#include <utility>

#include "driver/devmode/default_devmode.h"
#include "driver/ui/controls.h"
#include "tests/driver/machine.h"
#include "tests/driver/sheet_host.h"
#include "tests/driver/sheet_package.h"

namespace driver_test {

class DocumentSheetTest : public MachineTest {
  protected:
    void SetUp() override { Prepare(SheetPackage()); }
    void Prepare(const DriverPackage& package) {
        Install(package);
        host_ = std::make_unique<SheetHost>(&machine_, Printer());
        velmora::BuildDefaultDevMode(Printer(), kPrinterName, &input_);
    }

    // A step that uses a page.
    void ThenUse(int slot, std::function<void(HWND page)> use) {
        host_->Then([=, this](HWND sheet) {
            SendMessageW(sheet, PSM_SETCURSEL, 0, Context().hostPages[slot]);
            UpdateWindow(Context().dialogs[slot]);
            use(Context().dialogs[slot]);
        });
    }
    // A step that presses a button of the sheet.
    void ThenPress(int button) {
        host_->Then([=](HWND sheet) { SendMessageW(sheet, PSM_PRESSBUTTON, static_cast<WPARAM>(button), 0); });
    }
    // Takes the steps over the input. What the sheet left of it.
    const velmora::PrivateDevMode& Run() {
        EXPECT_EQ(host_->RunDocumentSheet(&input_.publicPart, &output_), 1);
        return output_.privatePart;
    }
    velmora::SheetContext& Context() const { return host_->Context(); }

    std::unique_ptr<SheetHost> host_;
    velmora::VelmoraDevMode input_;
    velmora::VelmoraDevMode output_ = {};
};

// The user's choice of an item of a combo box, which the page is told of as by the keyboard.
inline void Choose(HWND page, int control, uint32_t value) {
    EXPECT_GE(velmora::SelectComboByData(page, control, value), 0) << control << " has no " << value;
    SendMessageW(page, WM_COMMAND, MAKEWPARAM(control, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(page, control)));
}

}  // namespace driver_test
