#include "tests/contract/sheet_host.h"

#include <algorithm>

#include "tests/contract/transcript.h"

namespace contract {
namespace {

const char* NameOf(WORD reason) {
    switch (reason) {
        case PROPSHEETUI_REASON_INIT:
            return "INIT";
        case PROPSHEETUI_REASON_SET_RESULT:
            return "SET_RESULT";
        default:
            return "DESTROY";
    }
}

}  // namespace

SheetHost::SheetHost(SheetFunction function, void* header, HWND owner) : function_(function), owner_(owner) {
    info_.cbSize = sizeof(info_);
    info_.Version = PROPSHEETUI_INFO_VERSION;
    info_.Flags = PSUIINFO_UNICODE;
    info_.hComPropSheet = this;
    info_.pfnComPropSheet = Call;
    info_.lParamInit = reinterpret_cast<LPARAM>(header);
}

LONG SheetHost::Run() {
    result_ = CPSUI_CANCEL;
    LONG shown = Tell(PROPSHEETUI_REASON_INIT, info_.lParamInit);
    if (shown > 0 && !pages_.empty()) {
        PROPSHEETHEADERW sheet = {};
        sheet.dwSize = sizeof(sheet);
        sheet.hwndParent = owner_;
        sheet.pszCaption = TEXT("Contract");
        sheet.nPages = static_cast<UINT>(pages_.size());
        sheet.phpage = pages_.data();
        const INT_PTR ended = PropertySheetW(&sheet);
        shown = ended < 0 ? ERR_CPSUI_GETLASTERROR : ended > 0 ? CPSUI_OK : result_;
    } else {
        for (const HPROPSHEETPAGE page : pages_) {
            DestroyPropertySheetPage(page);
        }
        shown = ERR_CPSUI_NO_PROPSHEETPAGE;
    }
    pages_.clear();
    Tell(PROPSHEETUI_REASON_DESTROY, 0);
    return shown;
}

LONG SheetHost::Tell(WORD reason, LPARAM parameter) {
    info_.Reason = reason;
    info_.Result = 77;
    const LONG answer = function_(&info_, parameter);
    calls_.push_back(std::string(NameOf(reason)) + ": answer " + std::to_string(answer) + ", Result " +
                     (info_.Result == 77 ? "untouched" : std::to_string(info_.Result)) + ", UserData " +
                     (info_.UserData != 0 ? "set" : "0"));
    return answer;
}

LONG_PTR CALLBACK SheetHost::Call(HANDLE host, UINT function, LPARAM first, LPARAM second) {
    auto& self = *static_cast<SheetHost*>(host);
    switch (function) {
        case CPSFUNC_ADD_PROPSHEETPAGEW:
            return self.AddPage(*reinterpret_cast<const PROPSHEETPAGEW*>(first));
        case CPSFUNC_SET_RESULT:
            return self.SetResult(first, second);
        default:
            self.calls_.push_back("unknown function " + std::to_string(function));
            return ERR_CPSUI_FUNCTION_NOT_IMPLEMENTED;
    }
}

LONG_PTR SheetHost::AddPage(const PROPSHEETPAGEW& page) {
    std::string line = "page: size " + std::to_string(page.dwSize) + ", flags " + std::to_string(page.dwFlags) +
                       ", template " + std::to_string(LOWORD(reinterpret_cast<ULONG_PTR>(page.pszTemplate))) + ", \"" +
                       Printable(page.pszTitle) + '"';
    if (pages_.size() + 1 == refusedPage_) {
        calls_.push_back(line + ", refused");
        return 0;
    }
    calls_.push_back(line);
    const HPROPSHEETPAGE handle = CreatePropertySheetPageW(&page);
    if (handle != nullptr) {
        pages_.push_back(handle);
    }
    return reinterpret_cast<LONG_PTR>(handle);
}

// The first parameter is a page that the host gave, or its host itself.
LONG_PTR SheetHost::SetResult(LPARAM page, LPARAM result) {
    const auto found = std::ranges::find(pages_, reinterpret_cast<HPROPSHEETPAGE>(page));
    calls_.push_back(found == pages_.end() ? "result " + std::to_string(result) + " of no page"
                                           : "result " + std::to_string(result) + " of page " +
                                                 std::to_string(found - pages_.begin() + 1));
    result_ = static_cast<LONG>(result);
    SETRESULT_INFO set = {sizeof(set), 0, reinterpret_cast<HANDLE>(page), result};
    return Tell(PROPSHEETUI_REASON_SET_RESULT, reinterpret_cast<LPARAM>(&set)) > 0 ? 1 : 0;
}

}  // namespace contract
