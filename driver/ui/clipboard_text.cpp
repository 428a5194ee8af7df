#include "driver/ui/clipboard_text.h"

#include <algorithm>

namespace velmora {
namespace {

// What programs put there may lack its terminator: nothing beyond the memory's own size is read.
bool CopyMemoryText(HGLOBAL memory, WCHAR* text, size_t capacity) {
    const auto* const source = static_cast<const WCHAR*>(GlobalLock(memory));
    if (!source) {
        return false;
    }
    const size_t length = (std::min)(capacity - 1, GlobalSize(memory) / sizeof(WCHAR));
    *std::copy(source, std::find(source, source + length, WCHAR{0}), text) = 0;
    GlobalUnlock(memory);
    return true;
}

}  // namespace

bool ReadClipboardText(HWND window, WCHAR* text, size_t capacity) {
    text[0] = 0;
    if (!OpenClipboard(window)) {
        return false;
    }
    const HGLOBAL memory = GetClipboardData(CF_UNICODETEXT);
    const bool isText = memory && CopyMemoryText(memory, text, capacity);
    CloseClipboard();
    return isText;
}

}  // namespace velmora
