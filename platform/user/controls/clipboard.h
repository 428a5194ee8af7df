// The machine's clipboard. It holds text, or nothing.
#pragma once

#include <string>

namespace host {

std::u16string ClipboardText();
void SetClipboardText(std::u16string text);

}  // namespace host
