#include "driver/ui/sheet_pages.h"

#include <prsht.h>

#include <clocale>

#include "driver/ui/about_page.h"
#include "driver/ui/color_page.h"
#include "driver/ui/device_page.h"
#include "driver/ui/information_page.h"
#include "driver/ui/output_page.h"
#include "driver/ui/paper_page.h"
#include "driver/ui/watermark_page.h"

namespace velmora {
namespace {

struct PageDescriptor {
    int16_t index;
    uint16_t title;             // string of the language module; 0 ends the table
    uint16_t documentTemplate;  // dialog of the language module; 0: not a page of that sheet
    uint16_t deviceTemplate;
    DLGPROC proc;
};
constexpr uint16_t kPaperTitle = 5001;
constexpr PageDescriptor kPages[] = {
    {kPaperSlot, kPaperTitle, 5000, 0, PaperPageProc},
    {kColorSlot, 6001, 6000, 0, ColorPageProc},
    {kWatermarkSlot, 7001, 7000, 0, WatermarkPageProc},
    {kOutputSlot, 9001, 9000, 0, OutputPageProc},
    {kInformationSlot, 10001, 10000, 0, InformationPageProc},
    {5, 11001, 0, 11000, DevicePageProc},
    {},
};
constexpr PageDescriptor kAboutPage = {kAboutSlot, 1099, 1004, 1004, AboutPageProc};

// The host's structure has grown since; these are its members up to the activation context.
constexpr DWORD kPageSize = 96;

// The Paper page has nothing to offer for a printer that takes no custom sizes.
bool IsOffered(const SheetContext& context, const PageDescriptor& page) {
    return page.title != kPaperTitle ||
           (context.model && context.model->customMaxWidth != 0 && context.model->customMaxLength != 0);
}

// The host's handle of the added page, 0 or an error below it where it refuses it.
LONG_PTR AddPage(SheetContext* context, const PageDescriptor& page, uint16_t dialogTemplate, WCHAR* title) {
    LoadText(*context, page.title, title, kTitleCapacity);
    PROPSHEETPAGEW sheetPage = {};
    sheetPage.dwSize = kPageSize;
    sheetPage.dwFlags = PSP_USETITLE | PSP_HASHELP;
    sheetPage.hInstance = context->resources.Get();
    sheetPage.pszTemplate = MAKEINTRESOURCEW(dialogTemplate);
    sheetPage.pszTitle = title;
    sheetPage.pfnDlgProc = page.proc;
    sheetPage.lParam = reinterpret_cast<LPARAM>(context);
    return context->hostCallback(context->host, CPSFUNC_ADD_PROPSHEETPAGEW, reinterpret_cast<LPARAM>(&sheetPage), 0);
}

LONG Refused(PROPSHEETUI_INFO* info) {
    info->Result = 0;
    return 0;
}

}  // namespace

LONG AddSheetPages(SheetContext* context, PROPSHEETUI_INFO* info) {
    setlocale(LC_CTYPE, ".ACP");
    context->host = info->hComPropSheet;
    context->hostCallback = info->pfnComPropSheet;
    info->UserData = reinterpret_cast<ULONG_PTR>(context);
    info->Result = 1;
    if (!context->hostCallback) {
        return Refused(info);
    }
    size_t added = 0;
    for (const PageDescriptor* page = kPages; page->title != 0; ++page) {
        const uint16_t dialogTemplate = context->isDeviceSheet ? page->deviceTemplate : page->documentTemplate;
        if (dialogTemplate == 0 || !IsOffered(*context, *page)) {
            continue;
        }
        LONG_PTR& handle = context->hostPages[page->index];
        handle = AddPage(context, *page, dialogTemplate, context->titles[page->index]);
        if (handle <= 0) {
            return Refused(info);
        }
        ++added;
    }
    if (added > 0) {
        return 1;
    }
    context->aboutHostPage = AddPage(context, kAboutPage, kAboutPage.documentTemplate, context->aboutTitle);
    return context->aboutHostPage > 0 ? 1 : Refused(info);
}

}  // namespace velmora
