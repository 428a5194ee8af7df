// What a property sheet keeps from the host's INIT to its DESTROY: the device mode that its pages edit, what they read
// to do so, and their windows. One block of the process heap; user-interface thread only.
#pragma once

#include <windows.h>

#include <compstui.h>

#include <cstddef>
#include <cstdint>

#include "driver/base/handles.h"
#include "driver/base/heap.h"
#include "driver/devdesc/device_model.h"
#include "driver/devmode/private_devmode.h"
#include "driver/entry/resource_module.h"
#include "driver/settings/custom_sizes.h"
#include "driver/settings/device_info.h"
#include "driver/settings/font_list.h"
#include "driver/settings/watermark_list.h"
#include "driver/ui/paper_rules.h"
#include "driver/ui/preview_tools.h"
#include "driver/ui/watermark_choices.h"

namespace velmora {

inline constexpr size_t kPageCount = 6;   // pages of the page table
inline constexpr size_t kSlotCount = 16;  // dialogs and changed flags
inline constexpr int kNoSlot = -1;        // of dialogs and pages that have none
inline constexpr int kPaperSlot = 0;      // the pages that others look at, as the next ones
inline constexpr int kColorSlot = 1;      // its dialogs mark it as changed
inline constexpr int kWatermarkSlot = 2;
inline constexpr int kOutputSlot = 3;  // restored with the others
inline constexpr int kInformationSlot = 4;
inline constexpr int kColorDialogsSlot = 8;      // the Color page's dialogs that are no sheet
inline constexpr int kAboutSlot = 15;            // the About page's dialog
inline constexpr size_t kTitleCapacity = 128;    // characters of a page's title
inline constexpr size_t kMessageCapacity = 128;  // characters of a text of a module or model in a dialog

// The installed options as the device page shows them while it is open, each 1 installed, 0 not, -1 not applicable.
struct OptionStates {
    int8_t secondTray;
    int8_t duplexUnit;
};

// The last order of a sheet's pages that the Paper page's preview showed, for each layout that has orders.
struct PreviewOrders {
    size_t ofTwo;
    size_t ofFour;
};

struct SheetContext {
    // First: broadcasts to other programs name the printer by the record's address.
    WCHAR printerName[MAX_PATH];
    HANDLE printer;  // the host's
    bool isDeviceSheet;

    // Owned; given back in the reverse order.
    OwnedModule resources;  // empty: every text is empty and no dialog opens
    OwnedFile descriptionFile;
    CustomSizeList customSizes;
    HeapOwner<DeviceModel> model;  // empty: the printer's model isn't known
    CustomSizeList forms;          // their paper ids follow those of the custom sizes
    WatermarkList watermarks;
    FontList fonts;
    HeapOwner<VelmoraDevMode> ownDevMode;  // of the device sheet

    ResourceContext locale;
    VelmoraDevMode* devMode;          // edited in place: the host's output, or `ownDevMode`
    PrivateDevMode committedPrivate;  // as it was when the context was made or last committed; likewise
    DeviceInfo deviceInfo;
    DeviceInfo committedDeviceInfo;
    WCHAR settingsFolder[MAX_PATH];
    WCHAR renderLibrary[MAX_PATH];  // path; the module with the pictures lies beside it

    HANDLE host;
    PFNCOMPROPSHEET hostCallback;
    LONG_PTR hostPages[kPageCount];  // the host's handles of the pages, 0 or below where it has none
    WCHAR titles[kPageCount][kTitleCapacity];
    LONG_PTR aboutHostPage;
    WCHAR aboutTitle[kTitleCapacity];

    HWND dialogs[kSlotCount];  // 0 to 5 the pages, null while they aren't open
    bool isChanged[kSlotCount];
    LONG_PTR applyAnswer;  // of the PSN_APPLY that a page is answering (PSNRET_)
    OptionStates optionStates;
    PaperChoices paper;  // the open Paper page's
    PreviewOrders previewOrders;
    WatermarkEdit watermarkEdit;
    PreviewTools previewTools;
    WNDPROC replacedEditProc;  // what stands behind every filtered edit

    uint16_t noticeKind;        // a NoticeKind
    uint16_t noticeMessageRef;  // localised string of the model that the notice shows, 0 for none
    HCURSOR handCursor;
    HCURSOR replacedCursor;  // what the hand cursor took the place of over a link
};
static_assert(offsetof(SheetContext, printerName) == 0);

// Makes the context of a sheet for an open printer, over `devMode` or, on the device sheet, over the printer's own
// device mode (`devMode` null). `printerName` may be null: the spooler's name is then taken. Null where there is no
// memory; what else can't be had stays empty.
SheetContext* CreateSheetContext(HANDLE printer, const WCHAR* printerName, VelmoraDevMode* devMode);

// A context with nothing but the printer's language module, which is all that a notice needs. Null where there is no
// memory.
SheetContext* CreateNoticeContext(HANDLE printer);

// Frees a context with all that it holds, null included. Pages and dialogs that have a slot work on nothing from then
// on where they are still open. Modal dialogs without one must have ended: they run within calls of a page.
void DestroySheetContext(SheetContext* context);

struct SheetContextTraits {
    using Handle = SheetContext*;
    static Handle None() { return nullptr; }
    static void Close(Handle context) { DestroySheetContext(context); }
};
using OwnedSheetContext = HandleOwner<SheetContextTraits>;

// The context that a page or dialog works on, null before its WM_INITDIALOG and once the context is freed.
inline SheetContext* ContextOf(HWND dialog) {
    return reinterpret_cast<SheetContext*>(GetWindowLongPtrW(dialog, DWLP_USER));
}

// Reads a string of the language module into `text` (`capacity` characters); empty where it has none.
void LoadText(const SheetContext& context, UINT id, WCHAR* text, int capacity);

}  // namespace velmora
