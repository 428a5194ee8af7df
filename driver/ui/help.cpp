#include "driver/ui/help.h"

#include <htmlhelp.h>

#include "driver/base/format.h"
#include "driver/base/handles.h"
#include "driver/ui/help_topics.h"

namespace velmora {
namespace {

constexpr const char* kEngineKey = "CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";
constexpr const char* kEngineFile = "hhctrl.ocx";
constexpr WORD kHtmlHelpOrdinal = 15;  // HtmlHelpW
constexpr size_t kEnginePathBytes = 260;

constexpr const WCHAR* kPageTopic = TEXT("::/80000000.htm");
constexpr const WCHAR* kPopupTexts = TEXT("::/KV62.txt");
constexpr size_t kTopicCapacity = MAX_PATH + 16;  // the help file's path and a topic

constexpr uint32_t kNoTopic = 0;

using HtmlHelpEntry = HWND(WINAPI*)(HWND, LPCWSTR, UINT, DWORD_PTR);

// The engine. Its module stays loaded: it may still show what it was asked for.
struct Engine {
    HMODULE module;
    HtmlHelpEntry entry;
    bool isMissing;    // looked for in vain
    DWORD_PTR cookie;  // of HH_INITIALIZE, 0 while its use hasn't begun
};
Engine engine;

HMODULE LoadRegisteredEngine() {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CLASSES_ROOT, kEngineKey, 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return nullptr;
    }
    const OwnedRegistryKey opened(key);
    char path[kEnginePathBytes + 1] = {};  // a value need not be terminated
    DWORD size = kEnginePathBytes;
    if (RegQueryValueExA(key, nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(path), &size) != ERROR_SUCCESS) {
        return nullptr;
    }
    return LoadLibraryA(path);
}

bool FindEngine() {
    if (engine.isMissing) {
        return false;
    }
    if (!engine.module) {
        engine.module = LoadRegisteredEngine();
    }
    if (!engine.module) {
        engine.module = LoadLibraryA(kEngineFile);
    }
    if (engine.module && !engine.entry) {
        engine.entry = reinterpret_cast<HtmlHelpEntry>(
            reinterpret_cast<void*>(GetProcAddress(engine.module, MAKEINTRESOURCEA(kHtmlHelpOrdinal))));
    }
    engine.isMissing = !engine.entry;
    return !engine.isMissing;
}

void BeginHelp() {
    if (engine.cookie == 0) {
        CallHtmlHelp(nullptr, nullptr, HH_INITIALIZE, reinterpret_cast<DWORD_PTR>(&engine.cookie));
    }
}

void FormTopic(const SheetContext& context, const WCHAR* topic, WCHAR (&file)[kTopicCapacity]) {
    FormatWide(file, ARRAYSIZE(file), TEXT("%s%s"), static_cast<const WCHAR*>(context.locale.helpPath), topic);
}

uint32_t FindTopic(int control) {
    for (const HelpTopicRange& range : kHelpTopics) {
        if (control >= static_cast<int>(range.firstControl) && control <= static_cast<int>(range.lastControl)) {
            return range.topic;
        }
    }
    return kNoTopic;
}

// Of the panels that lie over each other on a page only the shown one counts: ShowControl disables the others. The
// places of pictures are hidden, but can be reached.
bool CanBePointedAt(HWND control) {
    const LONG_PTR style = GetWindowLongPtrW(control, GWL_STYLE);
    return (style & WS_VISIBLE) != 0 || (style & WS_DISABLED) == 0;
}

// The first control with a topic whose window is at a point of the screen; 0 where there is none.
int ControlAt(HWND dialog, POINT point) {
    for (const HelpTopicRange& range : kHelpTopics) {
        for (uint32_t control = range.firstControl; control <= range.lastControl; ++control) {
            const HWND window = GetDlgItem(dialog, static_cast<int>(control));
            RECT rect;
            if (window && CanBePointedAt(window) && GetWindowRect(window, &rect) && PtInRect(&rect, point)) {
                return static_cast<int>(control);
            }
        }
    }
    return 0;
}

}  // namespace

HWND CallHtmlHelp(HWND window, const WCHAR* file, UINT command, DWORD_PTR data) {
    return FindEngine() ? engine.entry(window, file, command, data) : nullptr;
}

void ShowPageHelp(HWND dialog, const SheetContext& context) {
    WCHAR file[kTopicCapacity];
    FormTopic(context, kPageTopic, file);
    BeginHelp();
    CallHtmlHelp(dialog, file, HH_DISPLAY_TOPIC, 0);
}

void ShowControlHelp(const SheetContext& context, const HELPINFO& info) {
    const uint32_t topic = FindTopic(info.iCtrlId);
    if (topic == kNoTopic) {
        return;
    }
    WCHAR file[kTopicCapacity];
    FormTopic(context, kPopupTexts, file);
    HH_POPUP popup = {};
    popup.cbStruct = sizeof(popup);
    popup.idString = topic;
    GetCursorPos(&popup.pt);
    popup.clrForeground = static_cast<COLORREF>(-1);
    popup.clrBackground = static_cast<COLORREF>(-1);
    popup.rcMargins = {-1, -1, -1, -1};
    BeginHelp();
    CallHtmlHelp(static_cast<HWND>(info.hItemHandle), file, HH_DISPLAY_TEXT_POPUP, reinterpret_cast<DWORD_PTR>(&popup));
}

void ShowContextHelp(HWND dialog, const SheetContext& context, HWND window, POINT point) {
    const int control = window == dialog ? ControlAt(dialog, point) : GetDlgCtrlID(window);
    const uint32_t topic = FindTopic(control);
    if (topic == kNoTopic) {
        return;
    }
    WCHAR file[kTopicCapacity];
    FormTopic(context, kPopupTexts, file);
    DWORD topics[] = {static_cast<DWORD>(control), topic, 0, 0};
    BeginHelp();
    CallHtmlHelp(GetDlgItem(dialog, control), file, HH_TP_HELP_CONTEXTMENU, reinterpret_cast<DWORD_PTR>(topics));
}

void EndHelp() {
    if (engine.cookie != 0) {
        CallHtmlHelp(nullptr, nullptr, HH_UNINITIALIZE, engine.cookie);
        engine.cookie = 0;
    }
}

}  // namespace velmora
