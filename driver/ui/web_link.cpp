#include "driver/ui/web_link.h"

#include "driver/base/format.h"
#include "driver/base/handles.h"
#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/ui/controls.h"

namespace velmora {
namespace {

// The two controls of a link: its frame, which is pressed, and its text, which opens.
constexpr int kLinkArea = 1820;
constexpr int kLinkText = 1570;

constexpr DWORD kOpenCommandBytes = 520;
constexpr size_t kCommandLineBytes = 260;

// Where the user's browser is registered, the user's own choice first.
struct BrowserKey {
    HKEY root;
    const WCHAR* path;
};

bool IsOver(HWND dialog, int control, POINT point) {
    const RECT rect = ControlRect(dialog, control);
    return PtInRect(&rect, point) != FALSE;
}

OwnedRegistryKey OpenBrowserKey() {
    const BrowserKey keys[] = {
        {HKEY_CURRENT_USER, TEXT("SOFTWARE\\Classes\\http\\shell\\open\\command")},
        {HKEY_LOCAL_MACHINE, TEXT("SOFTWARE\\Classes\\http\\shell\\open\\command")},
        {HKEY_CLASSES_ROOT, TEXT("http\\shell\\open\\command")},
    };
    for (const BrowserKey& key : keys) {
        HKEY opened = nullptr;
        if (RegOpenKeyExW(key.root, key.path, 0, KEY_READ, &opened) == ERROR_SUCCESS) {
            return OwnedRegistryKey(opened);
        }
    }
    return {};
}

bool ReadOpenCommand(WCHAR (&command)[kOpenCommandBytes / sizeof(WCHAR) + 1]) {
    const OwnedRegistryKey key = OpenBrowserKey();
    DWORD type = REG_NONE;
    DWORD size = kOpenCommandBytes;
    ZeroMemory(command, sizeof(command));  // a value need not be terminated
    return key &&
           RegQueryValueExW(key.Get(), nullptr, nullptr, &type, reinterpret_cast<BYTE*>(command), &size) ==
               ERROR_SUCCESS &&
           type == REG_SZ;
}

// A link that ends the quotation around it, or the line, would be more than an argument.
bool IsOneArgument(const char* link) {
    char last = 0;
    for (; *link != 0; ++link) {
        last = *link;
        if (static_cast<unsigned char>(last) < ' ' || last == '"') {
            return false;
        }
    }
    return last != '\\';
}

}  // namespace

void UpdateLinkCursor(HWND dialog, SheetContext* context, POINT point) {
    const bool isOverLink = IsOver(dialog, kLinkArea, point) || IsOver(dialog, kLinkText, point);
    const bool isHand = GetCursor() == context->handCursor;
    if (isOverLink && !isHand) {
        context->replacedCursor = SetCursor(context->handCursor);
    } else if (!isOverLink && isHand) {
        SetCursor(context->replacedCursor ? context->replacedCursor : LoadCursorW(nullptr, IDC_ARROW));
    }
}

void OnLinkButton(HWND dialog, SheetContext* context, UINT message, POINT point) {
    if (message == WM_LBUTTONDOWN && IsOver(dialog, kLinkArea, point)) {
        SetCursor(context->handCursor);
    } else if (message == WM_LBUTTONUP && IsOver(dialog, kLinkText, point)) {
        OpenModelLink(*context);
    }
}

void OpenModelLink(const SheetContext& context) {
    WCHAR command[kOpenCommandBytes / sizeof(WCHAR) + 1];
    if (!context.model || context.model->linkRef == 0 || !ReadOpenCommand(command)) {
        return;
    }
    WCHAR link[kMessageCapacity];
    ReadLocalizedString(context.descriptionFile.Get(), context.locale.language, context.resources.Get(),
                        static_cast<int16_t>(context.model->linkRef), link, ARRAYSIZE(link));
    char line[kCommandLineBytes + 2];  // one more than may be used tells what would have been cut
    if (link[0] != 0 && BuildBrowserCommand(command, link, line, ARRAYSIZE(line))) {
        WinExec(line, SW_SHOWNORMAL);
    }
}

bool BuildBrowserCommand(const WCHAR* openCommand, const WCHAR* link, char* line, size_t capacity) {
    constexpr size_t kPlaceLength = 2;  // of "%1"
    // As the command line will have it: code pages have quotation marks for more than one character.
    const HeapOwner<char> argument = Narrow(link);
    if (!argument || !IsOneArgument(argument.Get())) {
        return false;
    }
    WCHAR before[kOpenCommandBytes / sizeof(WCHAR) + 1];
    CopyText(before, ARRAYSIZE(before), openCommand);
    size_t length = 0;
    if (WCHAR* const place = FindText<WCHAR>(before, TEXT("%1"))) {
        const WCHAR* const after = place + kPlaceLength;
        *place = 0;
        const char* const format = *after == TEXT('"') ? "%ls%s%ls" : "%ls \"%s\" %ls";
        length = FormatAnsi(line, capacity, format, static_cast<const WCHAR*>(before), argument.Get(), after);
    } else {
        length = FormatAnsi(line, capacity, "%ls \"%s\"", static_cast<const WCHAR*>(before), argument.Get());
    }
    return length < capacity - 1;  // a full line may have been cut
}

}  // namespace velmora
