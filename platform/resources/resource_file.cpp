#include "platform/resources/resource_file.h"

#include <algorithm>

#include "platform/kernel/text.h"

namespace host {
namespace {

// Reads a .res file from its begin; every read is bounded, and the first that fails makes all later ones fail.
class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    bool Ok() const { return ok_; }
    bool AtEnd() const { return at_ >= bytes_.size(); }
    size_t Position() const { return at_; }

    uint16_t Word() {
        if (!ok_ || bytes_.size() - at_ < 2) {
            ok_ = false;
            return 0;
        }
        const auto low = static_cast<uint8_t>(bytes_[at_]);
        const auto high = static_cast<uint8_t>(bytes_[at_ + 1]);
        at_ += 2;
        return static_cast<uint16_t>(low | high << 8);
    }

    uint32_t DoubleWord() {
        const uint32_t low = Word();
        return low | static_cast<uint32_t>(Word()) << 16;
    }

    ResourceKey Key() {
        ResourceKey key;
        uint16_t unit = Word();
        if (unit == 0xFFFF) {
            key.id = Word();
            return key;
        }
        for (; ok_ && unit != 0; unit = Word()) {
            key.text += static_cast<char16_t>(unit);
        }
        return key;
    }

    std::string_view Bytes(size_t count) {
        if (!ok_ || bytes_.size() - at_ < count) {
            ok_ = false;
            return {};
        }
        at_ += count;
        return bytes_.substr(at_ - count, count);
    }

    // The last entry's padding may be missing.
    void Align() { at_ = std::min(bytes_.size(), (at_ + 3) & ~static_cast<size_t>(3)); }

  private:
    std::string_view bytes_;
    size_t at_ = 0;
    bool ok_ = true;
};

// An empty entry stands first; it tells such a file from others.
constexpr std::string_view kFirstEntry("\0\0\0\0\x20\0\0\0\xFF\xFF\0\0\xFF\xFF\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0",
                                       32);

}  // namespace

ResourceKey ResourceKey::FromArgument(LPCWSTR argument) {
    ResourceKey key;
    if (IS_INTRESOURCE(argument)) {
        key.id = static_cast<uint16_t>(reinterpret_cast<ULONG_PTR>(argument));
        return key;
    }
    const std::u16string_view text(argument);
    if (text.size() > 1 && text.front() == u'#') {
        for (const char16_t c : text.substr(1)) {
            key.id = static_cast<uint16_t>(key.id * 10 + (c - u'0'));
        }
        return key;
    }
    key.text = text;
    return key;
}

bool ResourceKey::operator==(const ResourceKey& other) const {
    return EqualsIgnoringCase(text, other.text) && (!text.empty() || id == other.id);
}

const ResourceEntry* ResourceFile::Find(const ResourceKey& type, const ResourceKey& name, LANGID language) const {
    std::vector<const ResourceEntry*> found;
    bool typeExists = false;
    for (const ResourceEntry& entry : entries_) {
        if (entry.type == type) {
            typeExists = true;
            if (entry.name == name) {
                found.push_back(&entry);
            }
        }
    }
    if (found.empty()) {
        SetLastError(entries_.empty() ? ERROR_RESOURCE_DATA_NOT_FOUND
                     : typeExists     ? ERROR_RESOURCE_NAME_NOT_FOUND
                                      : ERROR_RESOURCE_TYPE_NOT_FOUND);
        return nullptr;
    }
    for (const LANGID wanted :
         {language, MAKELANGID(PRIMARYLANGID(language), SUBLANG_NEUTRAL), MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL),
          MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US)}) {
        for (const ResourceEntry* entry : found) {
            if (entry->language == wanted) {
                return entry;
            }
        }
    }
    return found.front();
}

const ResourceEntry* ResourceFile::FromHandle(HRSRC handle) const {
    for (const ResourceEntry& entry : entries_) {
        if (reinterpret_cast<HRSRC>(const_cast<ResourceEntry*>(&entry)) == handle) {
            return &entry;
        }
    }
    SetLastError(ERROR_INVALID_HANDLE);
    return nullptr;
}

std::shared_ptr<const ResourceFile> ParseResourceFile(std::string_view bytes) {
    if (bytes.substr(0, kFirstEntry.size()) != kFirstEntry) {
        return nullptr;
    }
    Reader reader(bytes.substr(kFirstEntry.size()));
    std::vector<ResourceEntry> entries;
    while (reader.Ok() && !reader.AtEnd()) {
        const size_t start = reader.Position();
        const uint32_t dataSize = reader.DoubleWord();
        const uint32_t headerSize = reader.DoubleWord();
        ResourceEntry entry;
        entry.type = reader.Key();
        entry.name = reader.Key();
        reader.Align();
        reader.DoubleWord();  // version of the data
        reader.Word();        // memory flags
        entry.language = reader.Word();
        reader.DoubleWord();  // version of the resource
        reader.DoubleWord();  // characteristics
        if (!reader.Ok() || reader.Position() - start != headerSize) {
            return nullptr;
        }
        const std::string_view data = reader.Bytes(dataSize);
        entry.data.assign(data.begin(), data.end());
        reader.Align();
        entries.push_back(std::move(entry));
    }
    return reader.Ok() ? std::make_shared<const ResourceFile>(std::move(entries)) : nullptr;
}

}  // namespace host
