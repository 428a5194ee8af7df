#include "platform/user/controls/clipboard.h"

#include "platform/kernel/objects.h"

namespace host {
namespace {

std::u16string& Contents() {
    static std::u16string contents;
    static const bool known = [] {
        AddOpenList({[] { return std::vector<std::string>(); }, [] { Contents().clear(); }});
        return true;
    }();
    static_cast<void>(known);
    return contents;
}

}  // namespace

std::u16string ClipboardText() {
    const MachineLock lock;
    return Contents();
}

void SetClipboardText(std::u16string text) {
    const MachineLock lock;
    Contents() = std::move(text);
}

}  // namespace host
