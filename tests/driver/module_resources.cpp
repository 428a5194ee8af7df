#include "tests/driver/module_resources.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "platform/kernel/text.h"
#include "platform/resources/resource_file.h"

namespace driver_test {
namespace {

constexpr uint16_t kDialogType = 5;    // RT_DIALOG (winuser.h)
constexpr uint16_t kStringType = 6;    // RT_STRING
constexpr uint16_t kVersionType = 16;  // RT_VERSION
constexpr unsigned kStringsPerBlock = 16;

std::string NameOf(const host::ResourceKey& key) {
    return key.text.empty() ? std::to_string(key.id) : "\"" + host::ToUtf8(key.text) + "\"";
}

class Reader {
  public:
    explicit Reader(const std::vector<uint8_t>& bytes) : bytes_(bytes) {}

    template <class Number>
    Number Take() {
        Number number;
        if (bytes_.size() - at_ < sizeof(number)) {
            throw std::runtime_error("a resource ends too early");
        }
        memcpy(&number, bytes_.data() + at_, sizeof(number));
        at_ += sizeof(number);
        return number;
    }

    std::u16string TakeCharacters(size_t count) {
        std::u16string text;
        while (text.size() < count) {
            text += Take<char16_t>();
        }
        return text;
    }

    // A text up to its end; of a number in its place, {0xFFFF, number}.
    std::u16string TakeTextOrNumber() {
        std::u16string text;
        for (char16_t c = Take<char16_t>(); c != 0; c = Take<char16_t>()) {
            text += c;
            if (text == u"\xFFFF") {
                return text + Take<char16_t>();
            }
        }
        return text;
    }

    RECT TakePlace() {
        const int left = Take<int16_t>();
        const int top = Take<int16_t>();
        const int width = Take<int16_t>();
        const int height = Take<int16_t>();
        return {left, top, left + width, top + height};
    }

    void AlignToFour() { at_ = (at_ + 3) / 4 * 4; }
    void Skip(size_t bytes) { at_ += bytes; }
    bool AtEnd() const { return at_ >= bytes_.size(); }

  private:
    const std::vector<uint8_t>& bytes_;
    size_t at_ = 0;
};

// A block of strings: each its length and its characters. An id without a string has length 0.
void ReadStrings(const host::ResourceEntry& block, std::map<unsigned, std::u16string>& strings) {
    const unsigned first = (block.name.id - 1u) * kStringsPerBlock;
    Reader reader(block.data);
    for (unsigned i = 0; i < kStringsPerBlock && !reader.AtEnd(); ++i) {
        const std::u16string text = reader.TakeCharacters(reader.Take<uint16_t>());
        if (!text.empty()) {
            strings[first + i] = text;
        }
    }
}

// Templates may give these window classes by number, from 0x80 on.
std::u16string ClassName(const std::u16string& name) {
    constexpr const char16_t* kClasses[] = {u"BUTTON", u"EDIT", u"STATIC", u"LISTBOX", u"SCROLLBAR", u"COMBOBOX"};
    if (name.size() == 2 && name[0] == 0xFFFF) {
        const size_t index = name[1] - 0x80u;
        return index < std::size(kClasses) ? kClasses[index] : u"";
    }
    std::u16string upper = name;
    std::ranges::transform(upper, upper.begin(), host::UpperCase);
    return upper;
}

// A template of the extended kind (DLGTEMPLATEEX), with a font.
Dialog ReadDialog(const std::vector<uint8_t>& data) {
    Reader reader(data);
    if (reader.Take<uint32_t>() != 0xFFFF0001) {
        throw std::runtime_error("a dialog isn't of the extended kind");
    }
    reader.Skip(2 * sizeof(uint32_t));  // help id, extended style
    Dialog dialog = {};
    dialog.style = reader.Take<uint32_t>();
    const unsigned count = reader.Take<uint16_t>();
    const RECT place = reader.TakePlace();
    dialog.width = place.right - place.left;
    dialog.height = place.bottom - place.top;
    reader.TakeTextOrNumber();  // menu
    reader.TakeTextOrNumber();  // window class
    dialog.title = reader.TakeTextOrNumber();
    dialog.pointSize = reader.Take<uint16_t>();
    reader.Skip(sizeof(uint16_t) + sizeof(uint8_t));  // weight, italic
    dialog.charSet = reader.Take<uint8_t>();
    reader.TakeTextOrNumber();  // face
    for (unsigned i = 0; i < count; ++i) {
        reader.AlignToFour();
        reader.Skip(2 * sizeof(uint32_t));
        DialogItem item = {};
        item.style = reader.Take<uint32_t>();
        item.place = reader.TakePlace();
        item.id = reader.Take<int32_t>();
        item.windowClass = ClassName(reader.TakeTextOrNumber());
        item.text = reader.TakeTextOrNumber();
        reader.Skip(reader.Take<uint16_t>());
        dialog.items.push_back(item);
    }
    return dialog;
}

}  // namespace

ModuleResources ReadModuleResources(std::string_view module) {
    const auto file = host::ParseResourceFile(module);
    if (!file) {
        throw std::runtime_error("no compiled resources");
    }
    ModuleResources resources;
    for (const host::ResourceEntry& entry : file->Entries()) {
        const uint16_t type = entry.type.text.empty() ? entry.type.id : uint16_t{0};
        resources.languages.push_back(entry.language);
        if (type == kStringType) {
            ReadStrings(entry, resources.strings);
        } else if (type == kDialogType) {
            resources.dialogs[entry.name.id] = ReadDialog(entry.data);
        } else if (type != kVersionType) {
            resources.others.push_back("type " + NameOf(entry.type) + ", " + NameOf(entry.name));
        }
    }
    return resources;
}

}  // namespace driver_test
