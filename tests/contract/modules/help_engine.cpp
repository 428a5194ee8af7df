#include "tests/contract/modules/help_engine.h"

#include <htmlhelp.h>

#include <string>
#include <utility>

namespace {

constexpr DWORD kCookie = 4711;

std::string requests;

// The file's name without its folder, and the topic in it.
std::string TopicOf(LPCWSTR file) {
    std::string name;
    for (; file != nullptr && *file != 0; ++file) {
        if (*file == '\\') {
            name.clear();
        } else {
            name += static_cast<char>(*file);
        }
    }
    return name;
}

bool IsAtCursor(POINT point) {
    POINT cursor = {};
    return GetCursorPos(&cursor) && cursor.x == point.x && cursor.y == point.y;
}

std::string Popup(const HH_POPUP& popup) {
    const RECT& margins = popup.rcMargins;
    const bool isPlain = popup.cbStruct == sizeof(popup) && popup.hinst == nullptr && popup.pszText == nullptr &&
                         popup.pszFont == nullptr && popup.clrForeground == static_cast<COLORREF>(-1) &&
                         popup.clrBackground == static_cast<COLORREF>(-1) && margins.left == -1 && margins.top == -1 &&
                         margins.right == -1 && margins.bottom == -1;
    return "topic " + std::to_string(popup.idString) + (isPlain ? "" : ", not plain") +
           (IsAtCursor(popup.pt) ? " at the cursor" : " elsewhere");
}

}  // namespace

extern "C" {

HWND WINAPI Ordinal15(HWND window, LPCWSTR file, UINT command, DWORD_PTR data) {
    const std::string control = std::to_string(window != nullptr ? GetDlgCtrlID(window) : 0);
    switch (command) {
        case HH_INITIALIZE:
            *reinterpret_cast<DWORD*>(data) = kCookie;
            requests += "begin\n";
            break;
        case HH_UNINITIALIZE:
            requests += data == kCookie ? "end\n" : "end with a wrong cookie\n";
            break;
        case HH_DISPLAY_TOPIC:
            requests += "page: " + TopicOf(file) + (data == 0 ? "\n" : " with data\n");
            break;
        case HH_DISPLAY_TEXT_POPUP:
            requests += "control " + control + ": " + TopicOf(file) + ' ' +
                        Popup(*reinterpret_cast<const HH_POPUP*>(data)) + '\n';
            break;
        case HH_TP_HELP_CONTEXTMENU: {
            const auto* topics = reinterpret_cast<const DWORD*>(data);
            requests += "context " + control + ": " + TopicOf(file);
            for (int i = 0; i < 4; ++i) {
                requests += ' ' + std::to_string(topics[i]);
            }
            requests += '\n';
            break;
        }
        default:
            requests += "unknown command " + std::to_string(command) + '\n';
    }
    return nullptr;
}

const char* WINAPI TakeHelpRequests() {
    static std::string taken;
    taken = std::exchange(requests, {});
    return taken.c_str();
}
}
