#include "platform/sheet/driver_sheets.h"

#include <algorithm>
#include <vector>

#include "platform/kernel/failures.h"
#include "platform/kernel/objects.h"

namespace host {
namespace {

// What a hComPropSheet leads to: the sheets of one call. The host's own, not the driver's to close.
class SheetHost final : public Object {
  public:
    explicit SheetHost(const DriverSheets& sheets) : Object(Resource::kPropertySheetHost), sheets_(sheets) {}
    std::string Describe() const override { return "of a driver"; }
    bool IsHeldByProgram() const override { return false; }

    LONG Run(HANDLE self);

    LONG_PTR Add(LPCPROPSHEETPAGEW page);
    LONG_PTR SetResult(HPROPSHEETPAGE page, LRESULT result);

  private:
    LONG Call(WORD reason, LPARAM parameter);
    LONG Show();

    const DriverSheets& sheets_;
    PROPSHEETUI_INFO info_ = {};
    std::vector<HPROPSHEETPAGE> pages_;
};

LONG_PTR CALLBACK ComPropSheet(HANDLE handle, UINT function, LPARAM first, LPARAM second) {
    SheetHost* host = nullptr;
    {
        const MachineLock lock;
        host = FindObject<SheetHost>(handle, Resource::kPropertySheetHost);
    }
    if (!host) {
        return ERR_CPSUI_INVALID_PDATA;
    }
    switch (function) {
        case CPSFUNC_ADD_PROPSHEETPAGEW:
            return host->Add(reinterpret_cast<LPCPROPSHEETPAGEW>(first));
        case CPSFUNC_SET_RESULT:
            return host->SetResult(reinterpret_cast<HPROPSHEETPAGE>(first), second);
        default:
            FailUnsupported(("function " + std::to_string(function) + " of the property-sheet host").c_str());
            return ERR_CPSUI_FUNCTION_NOT_IMPLEMENTED;
    }
}

LONG SheetHost::Run(HANDLE self) {
    info_.cbSize = sizeof(info_);
    info_.Version = PROPSHEETUI_INFO_VERSION;
    info_.Flags = PSUIINFO_UNICODE;
    info_.hComPropSheet = self;
    info_.pfnComPropSheet = ComPropSheet;
    info_.lParamInit = sheets_.header;
    SetLastError(ERROR_SUCCESS);
    LONG result = ERR_CPSUI_GETLASTERROR;
    if (Call(PROPSHEETUI_REASON_INIT, sheets_.header) > 0) {
        result = Show();
    } else {
        for (const HPROPSHEETPAGE page : pages_) {
            DestroyPropertySheetPage(page);
        }
    }
    // What failed is told, not what the driver's cleaning up leaves behind.
    const DWORD error = GetLastError() != ERROR_SUCCESS ? GetLastError() : ERROR_CAN_NOT_COMPLETE;
    Call(PROPSHEETUI_REASON_DESTROY, 0);
    if (result < 0) {
        SetLastError(error);
    }
    return result;
}

LONG SheetHost::Show() {
    PROPSHEETHEADERW header = {};
    header.dwSize = sizeof(header);
    header.hwndParent = sheets_.owner;
    header.pszCaption = sheets_.caption.c_str();
    header.nPages = static_cast<UINT>(pages_.size());
    header.phpage = pages_.data();
    info_.Result = CPSUI_CANCEL;  // whatever INIT says: nothing is changed yet
    const INT_PTR ended = PropertySheetW(&header);
    if (ended < 0) {
        return ERR_CPSUI_GETLASTERROR;
    }
    if (ended > 0) {
        sheets_.onAccepted();
    }
    return ended > 0 || info_.Result == CPSUI_OK ? CPSUI_OK : CPSUI_CANCEL;
}

LONG SheetHost::Call(WORD reason, LPARAM parameter) {
    info_.Reason = reason;
    return sheets_.entry(&info_, parameter);
}

LONG_PTR SheetHost::Add(LPCPROPSHEETPAGEW page) {
    const HPROPSHEETPAGE handle = CreatePropertySheetPageW(page);
    if (!handle) {
        return ERR_CPSUI_CREATEPROPPAGE_FAILED;
    }
    pages_.push_back(handle);
    return reinterpret_cast<LONG_PTR>(handle);
}

LONG_PTR SheetHost::SetResult(HPROPSHEETPAGE page, LRESULT result) {
    if (std::find(pages_.begin(), pages_.end(), page) == pages_.end()) {
        return ERR_CPSUI_INVALID_LPARAM;
    }
    SETRESULT_INFO set = {sizeof(set), 0, page, result};
    Call(PROPSHEETUI_REASON_SET_RESULT, reinterpret_cast<LPARAM>(&set));
    if (info_.Result == CPSUI_OK) {
        sheets_.onAccepted();
    }
    return 1;  // as many functions were told
}

}  // namespace

LONG RunDriverSheets(const DriverSheets& sheets) {
    auto host = std::make_unique<SheetHost>(sheets);
    SheetHost& running = *host;
    const HANDLE handle = AddObject(std::move(host));
    const LONG result = running.Run(handle);
    RemoveObject(handle, Resource::kPropertySheetHost);
    return result;
}

}  // namespace host
