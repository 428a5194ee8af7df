#include "platform/sheet/page_template.h"

#include <cstring>

namespace host {
namespace {

constexpr DWORD kNoPageStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_DISABLED | WS_VISIBLE;
constexpr DWORD kPageStyle = WS_CHILD | DS_CONTROL | DS_3DLOOK;

// Reads a template's head from its start. What lies beyond the end reads as 0 and is noted.
class HeadReader {
  public:
    HeadReader(const BYTE* bytes, size_t size) : bytes_(bytes), size_(size) {}

    template <class Number>
    Number Take() {
        Number number = 0;
        if (sizeof(number) <= size_ - at_) {
            memcpy(&number, bytes_ + at_, sizeof(number));
            at_ += sizeof(number);
        } else {
            isWhole_ = false;
        }
        return number;
    }
    std::u16string TakeText() {
        std::u16string text;
        for (WORD c = Take<WORD>(); c != 0; c = Take<WORD>()) {
            text.push_back(c);
        }
        return text;
    }
    // A menu or a class: none, a number behind 0xFFFF, or a text.
    void SkipKey() {
        const WORD first = Take<WORD>();
        if (first == 0xFFFF) {
            Take<WORD>();
        } else if (first != 0) {
            TakeText();
        }
    }
    size_t Offset() const { return at_; }
    bool IsWhole() const { return isWhole_; }

  private:
    const BYTE* bytes_;
    size_t size_;
    size_t at_ = 0;
    bool isWhole_ = true;
};

std::optional<PageTemplate> ReadTemplate(const BYTE* bytes, size_t size) {
    HeadReader reader(bytes, size);
    PageTemplate read;
    DWORD style = reader.Take<DWORD>();
    const bool isExtended = style == 0xFFFF0001;  // version 1 behind 0xFFFF, in place of a style
    size_t styleAt = 0;
    size_t exStyleAt = sizeof(DWORD);
    if (isExtended) {
        reader.Take<DWORD>();  // help id
        exStyleAt = reader.Offset();
        styleAt = exStyleAt + sizeof(DWORD);
        reader.Take<DWORD>();
        style = reader.Take<DWORD>();
    } else {
        reader.Take<DWORD>();
    }
    reader.Take<WORD>();   // number of controls
    reader.Take<DWORD>();  // place
    read.units.cx = reader.Take<short>();
    read.units.cy = reader.Take<short>();
    reader.SkipKey();
    reader.SkipKey();
    read.title = reader.TakeText();
    if ((style & DS_SETFONT) != 0) {
        read.font.points = reader.Take<WORD>();
        if (isExtended) {
            read.font.weight = reader.Take<WORD>();
            read.font.isItalic = reader.Take<BYTE>();
            read.font.charSet = reader.Take<BYTE>();
        }
        read.font.face = reader.TakeText();
    }
    if (!reader.IsWhole()) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return std::nullopt;
    }
    read.words.resize((size + sizeof(DWORD) - 1) / sizeof(DWORD));
    memcpy(read.words.data(), bytes, size);
    DWORD& pageStyle = read.words[styleAt / sizeof(DWORD)];
    pageStyle = (pageStyle & ~kNoPageStyle) | kPageStyle;
    read.words[exStyleAt / sizeof(DWORD)] |= WS_EX_CONTROLPARENT;
    return read;
}

}  // namespace

std::optional<PageTemplate> LoadPageTemplate(HINSTANCE module, LPCWSTR name) {
    const HRSRC resource = FindResourceW(module, name, RT_DIALOG);
    const HGLOBAL loaded = resource ? LoadResource(module, resource) : nullptr;
    return loaded ? ReadTemplate(static_cast<const BYTE*>(LockResource(loaded)), SizeofResource(module, resource))
                  : std::nullopt;
}

}  // namespace host
