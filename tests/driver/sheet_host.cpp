#include "tests/driver/sheet_host.h"

#include <gtest/gtest.h>

#include "platform/kernel/text.h"

namespace driver_test {

SheetHost::SheetHost(host::Machine* machine, HANDLE printer, WideText printerName)
    : machine_(machine), printer_(printer), printerName_(std::move(printerName)) {}

LONG SheetHost::RunDeviceSheet() {
    DEVICEPROPERTYHEADER header = {sizeof(header), 0, printer_, printerName_.data()};
    return Run(DrvDevicePropertySheets, &header);
}

LONG SheetHost::RunDocumentSheet(DEVMODEW* input, velmora::VelmoraDevMode* output) {
    DOCUMENTPROPERTYHEADER header = {};
    header.cbSize = sizeof(header);
    header.hPrinter = printer_;
    header.pszPrinterName = printerName_.data();
    header.pdmIn = input;
    header.pdmOut = &output->publicPart;
    header.cbOut = sizeof(*output);
    header.fMode = DM_IN_BUFFER | DM_OUT_BUFFER | DM_PROMPT;
    return Run(DrvDocumentPropertySheets, &header);
}

HWND SheetHost::Page() const {
    return reinterpret_cast<HWND>(SendMessageW(sheet_, PSM_GETCURRENTPAGEHWND, 0, 0));
}

LONG_PTR CALLBACK SheetHost::Callback(HANDLE host, UINT function, LPARAM first, LPARAM second) {
    auto* const self = static_cast<SheetHost*>(host);
    if (function == CPSFUNC_SET_RESULT) {
        self->results.emplace_back(first, second);
        return 1;
    }
    if (function != CPSFUNC_ADD_PROPSHEETPAGEW) {
        ADD_FAILURE() << "function " << function;
        return ERR_CPSUI_FUNCTION_NOT_IMPLEMENTED;
    }
    const HPROPSHEETPAGE handle = CreatePropertySheetPageW(reinterpret_cast<const PROPSHEETPAGEW*>(first));
    if (handle) {
        self->handles_.push_back(handle);
    }
    return reinterpret_cast<LONG_PTR>(handle);
}

LONG SheetHost::Run(Entry entry, void* header) {
    results.clear();
    handles_.clear();
    info_ = {};
    info_.cbSize = sizeof(info_);
    info_.Version = PROPSHEETUI_INFO_VERSION;
    info_.Flags = PSUIINFO_UNICODE;
    info_.Reason = PROPSHEETUI_REASON_INIT;
    info_.hComPropSheet = this;
    info_.pfnComPropSheet = Callback;
    info_.lParamInit = reinterpret_cast<LPARAM>(header);
    const LONG result = entry(&info_, 0);
    if (result > 0) {
        machine_->SetUser([this] { Act(); });
        PROPSHEETHEADERW sheet = {};
        sheet.dwSize = sizeof(sheet);
        sheet.pszCaption = TEXT("Sheet");
        sheet.nStartPage = startPage;
        sheet.nPages = static_cast<UINT>(handles_.size());
        sheet.phpage = handles_.data();
        PropertySheetW(&sheet);
        machine_->SetUser(nullptr);
        sheet_ = nullptr;
        info_.Reason = PROPSHEETUI_REASON_SET_RESULT;
        EXPECT_EQ(entry(&info_, 0), 1);
    } else {
        for (const HPROPSHEETPAGE page : handles_) {
            DestroyPropertySheetPage(page);
        }
    }
    info_.Reason = PROPSHEETUI_REASON_DESTROY;
    EXPECT_EQ(entry(&info_, 0), 1);
    return result;
}

void SheetHost::Act() {
    if (!sheet_) {
        sheet_ = FrontDialog();
    }
    if (steps_.empty()) {
        SendMessageW(FrontDialog(), WM_COMMAND, IDCANCEL, 0);
        return;
    }
    const std::function<void(HWND)> step = std::move(steps_.front());
    steps_.pop_front();
    step(sheet_);
}

WideText TextOf(HWND window) {
    WideText text(static_cast<size_t>(GetWindowTextLengthW(window)), u'\0');
    GetWindowTextW(window, text.data(), static_cast<int>(text.size() + 1));
    return text;
}

WideText TextOf(HWND dialog, int control) {
    return TextOf(GetDlgItem(dialog, control));
}

void Click(HWND dialog, int control) {
    SendDlgItemMessageW(dialog, control, BM_CLICK, 0, 0);
}

std::vector<std::string> ItemsOf(HWND dialog, int control) {
    std::vector<std::string> items;
    const LRESULT count = SendDlgItemMessageW(dialog, control, LB_GETCOUNT, 0, 0);
    for (WPARAM i = 0; i < static_cast<WPARAM>(count); ++i) {
        WideText text(static_cast<size_t>(SendDlgItemMessageW(dialog, control, LB_GETTEXTLEN, i, 0)), u'\0');
        SendDlgItemMessageW(dialog, control, LB_GETTEXT, i, reinterpret_cast<LPARAM>(text.data()));
        items.push_back(host::ToUtf8(text));
    }
    return items;
}

HWND FrontDialog() {
    return GetActiveWindow();
}

}  // namespace driver_test
