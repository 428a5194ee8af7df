#include "platform/user/controls/clipboard.h"

#include <windows.h>

#include <memory>
#include <utility>
#include <vector>

#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"

namespace host {
namespace {

// The text as programs get it: the clipboard's own, not theirs to free.
class ClipboardMemory : public Object {
  public:
    explicit ClipboardMemory(std::u16string text) : Object(Resource::kGlobalMemory), text(std::move(text)) {}
    std::string Describe() const override { return "of the clipboard"; }
    bool IsHeldByProgram() const override { return false; }

    std::u16string text;
};

struct Clipboard {
    std::u16string text;
    HANDLE memory = nullptr;  // of the text; null while nobody has asked for it
    bool isOpen = false;
    HWND window = nullptr;  // whose it is while it is open; null: the task's
};

Clipboard& TheClipboard() {
    static Clipboard clipboard;
    static const bool known = [] {
        AddOpenList(
            {[] { return std::vector<std::string>(clipboard.isOpen ? 1 : 0, "clipboard"); }, [] { clipboard = {}; }});
        return true;
    }();
    static_cast<void>(known);
    return clipboard;
}

ClipboardMemory* FindMemory(HGLOBAL memory) {
    return FindObject<ClipboardMemory>(memory, Resource::kGlobalMemory);
}

}  // namespace

std::u16string ClipboardText() {
    const MachineLock lock;
    return TheClipboard().text;
}

void SetClipboardText(std::u16string text) {
    const MachineLock lock;
    Clipboard& clipboard = TheClipboard();
    if (clipboard.memory) {
        RemoveObject(std::exchange(clipboard.memory, nullptr), Resource::kGlobalMemory);
    }
    clipboard.text = std::move(text);
}

}  // namespace host

using namespace host;

extern "C" {

BOOL WINAPI OpenClipboard(HWND window) {
    if (FaultAsked("OpenClipboard")) {
        return FALSE;
    }
    const MachineLock lock;
    Clipboard& clipboard = TheClipboard();
    if (clipboard.isOpen && clipboard.window != window) {
        return Fail(ERROR_ACCESS_DENIED);
    }
    clipboard.isOpen = true;
    clipboard.window = window;
    return TRUE;
}

BOOL WINAPI CloseClipboard() {
    if (FaultAsked("CloseClipboard")) {
        return FALSE;
    }
    const MachineLock lock;
    Clipboard& clipboard = TheClipboard();
    return std::exchange(clipboard.isOpen, false) || Fail(ERROR_CLIPBOARD_NOT_OPEN);
}

HANDLE WINAPI GetClipboardData(UINT format) {
    if (FaultAsked("GetClipboardData")) {
        return nullptr;
    }
    const MachineLock lock;
    Clipboard& clipboard = TheClipboard();
    if (format != CF_UNICODETEXT) {
        FailUnsupported("GetClipboardData (of other formats than CF_UNICODETEXT)");
        return nullptr;
    }
    if (!clipboard.isOpen) {
        Fail(ERROR_CLIPBOARD_NOT_OPEN);
        return nullptr;
    }
    if (!clipboard.memory && !clipboard.text.empty()) {
        clipboard.memory = AddObject(std::make_unique<ClipboardMemory>(clipboard.text));
    }
    return clipboard.memory;
}

LPVOID WINAPI GlobalLock(HGLOBAL memory) {
    if (FaultAsked("GlobalLock")) {
        return nullptr;
    }
    const MachineLock lock;
    ClipboardMemory* const found = FindMemory(memory);
    return found ? found->text.data() : nullptr;
}

BOOL WINAPI GlobalUnlock(HGLOBAL memory) {
    const MachineLock lock;
    return FindMemory(memory) && Fail(ERROR_SUCCESS);  // the last lock is gone
}

SIZE_T WINAPI GlobalSize(HGLOBAL memory) {
    const MachineLock lock;
    const ClipboardMemory* const found = FindMemory(memory);
    return found ? (found->text.size() + 1) * sizeof(char16_t) : 0;
}

}  // extern "C"
