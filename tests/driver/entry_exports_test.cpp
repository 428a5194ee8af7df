// The exports' answers that the contract tests don't ask for.
#include <gtest/gtest.h>

#include "driver/entry/driver_interface.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID);

namespace velmora {
namespace {

TEST(EntryRoutine, KnowsFourReasons) {
    for (const DWORD reason : {0u, 1u, 2u, 3u, 4u}) {
        EXPECT_EQ(DllMain(nullptr, reason, nullptr), reason < 4 ? TRUE : FALSE) << reason;
    }
}

TEST(Exports, AnswerWithoutTheirArguments) {
    EXPECT_EQ(DrvDocumentPropertySheets(nullptr, 0), 0);
    EXPECT_EQ(DrvDevicePropertySheets(nullptr, 0), 0);
    PROPSHEETUI_INFO info = {};
    for (const WORD reason : {PROPSHEETUI_REASON_INIT, PROPSHEETUI_REASON_DESTROY, PROPSHEETUI_REASON_SET_RESULT}) {
        info.Reason = reason;
        EXPECT_EQ(DrvDevicePropertySheets(&info, 0), reason == PROPSHEETUI_REASON_INIT ? 0 : 1) << reason;
    }
    for (const INT event : {1, 2, 3, 4, 5}) {
        EXPECT_EQ(DrvPrinterEvent(nullptr, event, 0, 0), event == PRINTER_EVENT_INITIALIZE ? FALSE : TRUE) << event;
    }
    EXPECT_EQ(GuiStartSheet(nullptr, nullptr), GuiEndJob(nullptr, nullptr, nullptr, nullptr));
    EXPECT_NE(GuiStartJob(nullptr, nullptr, nullptr, nullptr), GuiStartSheet(nullptr, nullptr));
}

}  // namespace
}  // namespace velmora
