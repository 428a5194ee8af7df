#include "platform/sheet/pages.h"

#include <cstring>

#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

// What of a page's flags sheets act on.
constexpr DWORD kKnownFlags = PSP_USETITLE | PSP_HASHELP | PSP_PREMATURE;

bool IsText(LPCWSTR textOrId) {
    return !IS_INTRESOURCE(textOrId);
}

}  // namespace

PropertyPage::PropertyPage(const PROPSHEETPAGEW& page) : Object(Resource::kPropertyPage) {
    memcpy(&given, &page, page.dwSize);
    if (IsText(given.pszTemplate)) {
        template_ = given.pszTemplate;
        given.pszTemplate = template_.c_str();
    }
    if ((given.dwFlags & PSP_USETITLE) != 0 && IsText(given.pszTitle)) {
        title_ = given.pszTitle;
        given.pszTitle = title_.c_str();
    }
}

std::string PropertyPage::Describe() const {
    return title_.empty() ? "without a title" : "\"" + ToUtf8(title_) + "\"";
}

PropertyPage* FindPage(HPROPSHEETPAGE page) {
    return FindObject<PropertyPage>(page, Resource::kPropertyPage);
}

std::u16string TextOrString(HINSTANCE module, LPCWSTR textOrId) {
    if (IsText(textOrId)) {
        return textOrId;
    }
    LPCWSTR text = nullptr;
    const int length = LoadStringW(module, static_cast<UINT>(reinterpret_cast<ULONG_PTR>(textOrId)),
                                   reinterpret_cast<LPWSTR>(&text), 0);
    return {text, static_cast<size_t>(length)};
}

}  // namespace host

using namespace host;

extern "C" {

HPROPSHEETPAGE WINAPI CreatePropertySheetPageW(LPCPROPSHEETPAGEW page) {
    if (FaultAsked("CreatePropertySheetPageW")) {
        return nullptr;
    }
    if (!page || (page->dwSize != PROPSHEETPAGEW_V1_SIZE && page->dwSize != PROPSHEETPAGEW_V2_SIZE &&
                  page->dwSize != sizeof(PROPSHEETPAGEW))) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    if ((page->dwFlags & ~kKnownFlags) != 0) {
        FailUnsupported("a property page with flags other than PSP_USETITLE, PSP_HASHELP and PSP_PREMATURE");
        return nullptr;
    }
    if (AllocationFails()) {
        SetLastError(ERROR_OUTOFMEMORY);
        return nullptr;
    }
    return static_cast<HPROPSHEETPAGE>(AddObject(std::make_unique<PropertyPage>(*page)));
}

BOOL WINAPI DestroyPropertySheetPage(HPROPSHEETPAGE page) {
    return !FaultAsked("DestroyPropertySheetPage") && RemoveObject(page, Resource::kPropertyPage);
}

}  // extern "C"
