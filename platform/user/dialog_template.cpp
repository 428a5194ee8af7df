#include "platform/user/dialog_template.h"

#include <iterator>

namespace host {
namespace {

constexpr WORD kOrdinal = 0xFFFF;  // a number follows instead of a text
constexpr WORD kExtendedVersion = 1;

// Classes that have numbers, from 0x80 on.
constexpr WORD kFirstClass = 0x80;
constexpr const char16_t* kClasses[] = {u"Button", u"Edit", u"Static", u"ListBox", u"ScrollBar", u"ComboBox"};

class Reader {
  public:
    Reader(const BYTE* bytes, size_t size) : bytes_(bytes), size_(size) {}

    template <class T>
    T Read() {
        T value = {};
        if (size_ - at_ < sizeof value) {
            good_ = false;
            at_ = size_;
            return value;
        }
        memcpy(&value, bytes_ + at_, sizeof value);
        at_ += sizeof value;
        return value;
    }
    int ReadShort() { return Read<SHORT>(); }
    std::u16string ReadText() {
        std::u16string text;
        while (const auto unit = Read<char16_t>()) {
            text += unit;
        }
        return text;
    }
    // A number, or a text; 0 for a text.
    WORD ReadOrdinal(std::u16string* text) {
        const size_t start = at_;
        if (Read<WORD>() == kOrdinal) {
            return Read<WORD>();
        }
        at_ = start;
        *text = ReadText();
        return 0;
    }
    void Align() { Skip((sizeof(DWORD) - at_ % sizeof(DWORD)) % sizeof(DWORD)); }
    void Skip(size_t count) {
        good_ &= count <= size_ - at_;
        at_ = good_ ? at_ + count : size_;
    }
    const BYTE* Here() const { return bytes_ + at_; }
    bool IsGood() const { return good_; }

  private:
    const BYTE* bytes_;
    size_t size_;
    size_t at_ = 0;
    bool good_ = true;
};

// A number in a text's place, as window procedures get it.
std::u16string NumberText(WORD number) {
    return {static_cast<char16_t>(kOrdinal), static_cast<char16_t>(number)};
}

DialogFont ReadFont(Reader& reader, bool extended) {
    DialogFont font;
    font.points = reader.Read<WORD>();
    if (extended) {
        font.weight = reader.Read<WORD>();
        font.italic = reader.Read<BYTE>() != 0;
        font.charSet = reader.Read<BYTE>();
    }
    font.face = reader.ReadText();
    return font;
}

// False where the class has an unknown number.
bool ReadItem(Reader& reader, bool extended, DialogItem* item) {
    reader.Align();
    if (extended) {
        reader.Read<DWORD>();  // help id
        item->exStyle = reader.Read<DWORD>();
        item->style = reader.Read<DWORD>();
    } else {
        item->style = reader.Read<DWORD>();
        item->exStyle = reader.Read<DWORD>();
    }
    item->x = reader.ReadShort();
    item->y = reader.ReadShort();
    item->width = reader.ReadShort();
    item->height = reader.ReadShort();
    item->id = extended ? reader.Read<DWORD>() : reader.Read<WORD>();
    if (const WORD number = reader.ReadOrdinal(&item->className)) {
        if (number < kFirstClass || number >= kFirstClass + std::size(kClasses)) {
            return false;
        }
        item->className = kClasses[number - kFirstClass];
    }
    if (const WORD id = reader.ReadOrdinal(&item->text)) {
        item->text = NumberText(id);
    }
    const BYTE* const data = reader.Here();
    const WORD bytes = reader.Read<WORD>();
    if (bytes != 0) {
        item->data = data;
        // The plain form counts the size itself.
        reader.Skip(extended ? bytes : bytes - sizeof bytes);
    }
    return reader.IsGood();
}

}  // namespace

std::optional<DialogTemplate> ParseDialogTemplate(const BYTE* bytes, size_t size) {
    Reader reader(bytes, size);
    DialogTemplate parsed;
    Reader head = reader;
    const bool extended = head.Read<WORD>() == kExtendedVersion && head.Read<WORD>() == kOrdinal;
    if (extended) {
        reader = head;
        reader.Read<DWORD>();  // help id
        parsed.exStyle = reader.Read<DWORD>();
        parsed.style = reader.Read<DWORD>();
    } else {
        parsed.style = reader.Read<DWORD>();
        parsed.exStyle = reader.Read<DWORD>();
    }
    const WORD items = reader.Read<WORD>();
    parsed.x = reader.ReadShort();
    parsed.y = reader.ReadShort();
    parsed.width = reader.ReadShort();
    parsed.height = reader.ReadShort();
    std::u16string menu;
    parsed.hasMenu = reader.ReadOrdinal(&menu) != 0 || !menu.empty();
    if (const WORD atom = reader.ReadOrdinal(&parsed.className)) {
        parsed.className = NumberText(atom);
    }
    if (const WORD id = reader.ReadOrdinal(&parsed.title)) {
        parsed.title = NumberText(id);
    }
    if ((parsed.style & DS_SETFONT) != 0) {
        parsed.font = ReadFont(reader, extended);
    }
    for (WORD i = 0; i < items; ++i) {
        DialogItem item;
        if (!ReadItem(reader, extended, &item)) {
            return std::nullopt;
        }
        parsed.items.push_back(std::move(item));
    }
    return reader.IsGood() ? std::make_optional(std::move(parsed)) : std::nullopt;
}

}  // namespace host
