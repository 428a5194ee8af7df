#include "tests/driver/resource_file.h"

#include <cstring>

namespace driver_test {
namespace {

constexpr uint16_t kStringTable = 6;  // RT_STRING (winuser.h)
constexpr uint16_t kVersion = 16;     // RT_VERSION
constexpr unsigned kStringsPerTable = 16;

void PutU16(std::string* bytes, size_t value) {
    const auto number = static_cast<uint16_t>(value);
    bytes->append(reinterpret_cast<const char*>(&number), sizeof(number));
}

void PutU32(std::string* bytes, size_t value) {
    const auto number = static_cast<uint32_t>(value);
    bytes->append(reinterpret_cast<const char*>(&number), sizeof(number));
}

void PutText(std::string* bytes, std::u16string_view text) {
    bytes->append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
}

void PadToFour(std::string* bytes) {
    bytes->resize((bytes->size() + 3) / 4 * 4);
}

// A resource of a numbered type and name behind the ones that `file` holds.
void PutResource(std::string* file, uint16_t type, uint16_t name, const std::string& data) {
    PutU32(file, data.size());
    PutU32(file, 32);  // bytes of this header
    PutU16(file, 0xFFFF);
    PutU16(file, type);
    PutU16(file, 0xFFFF);
    PutU16(file, name);
    PutU32(file, 0);
    PutU16(file, type != 0 ? 0x1030 : 0);  // memory flags, as compilers write them
    PutU16(file, type != 0 ? 0x0409 : 0);
    PutU32(file, 0);
    PutU32(file, 0);
    *file += data;
    PadToFour(file);
}

// What every file begins with: an entry of nothing.
std::string EmptyResourceFile() {
    std::string file;
    PutResource(&file, 0, 0, "");
    return file;
}

// A block of a version resource: {bytes, value length, is text, key, value, children}, each part on 4 bytes.
std::string VersionBlock(std::u16string_view key, bool isText, const std::string& value, size_t valueLength,
                         const std::string& children) {
    std::string block;
    PutU16(&block, 0);
    PutU16(&block, valueLength);
    PutU16(&block, isText ? 1 : 0);
    PutText(&block, std::u16string(key) + u'\0');
    PadToFour(&block);
    block += value;
    if (!children.empty()) {
        PadToFour(&block);
        block += children;
    }
    const auto length = static_cast<uint16_t>(block.size());
    memcpy(block.data(), &length, sizeof(length));
    PadToFour(&block);
    return block;
}

}  // namespace

std::string StringModule(const std::map<unsigned, std::u16string>& strings) {
    std::string file = EmptyResourceFile();
    std::map<unsigned, std::string> tables;
    for (const auto& [id, text] : strings) {
        tables[id / kStringsPerTable];
    }
    for (auto& [table, data] : tables) {
        for (unsigned i = 0; i < kStringsPerTable; ++i) {
            const auto found = strings.find(table * kStringsPerTable + i);
            const std::u16string text = found != strings.end() ? found->second : std::u16string();
            PutU16(&data, text.size());
            PutText(&data, text);
        }
        PutResource(&file, kStringTable, static_cast<uint16_t>(table + 1), data);
    }
    return file;
}

std::string VersionedFile(const std::vector<Translation>& translations, const std::vector<VersionTable>& tables) {
    std::string texts;
    for (const VersionTable& table : tables) {
        std::string value;
        PutText(&value, table.fileVersion + u'\0');
        const std::string entry = VersionBlock(u"FileVersion", true, value, table.fileVersion.size() + 1, "");
        texts += VersionBlock(table.key, true, "", 0, entry);
    }
    std::string pairs;
    for (const Translation& translation : translations) {
        PutU16(&pairs, translation.language);
        PutU16(&pairs, translation.codePage);
    }
    std::string children = VersionBlock(u"StringFileInfo", true, "", 0, texts);
    if (!pairs.empty()) {
        children +=
            VersionBlock(u"VarFileInfo", true, "", 0, VersionBlock(u"Translation", false, pairs, pairs.size(), ""));
    }
    std::string fixed;
    PutU32(&fixed, 0xFEEF04BD);
    PutU32(&fixed, 0x10000);
    fixed.resize(52);
    std::string file = EmptyResourceFile();
    PutResource(&file, kVersion, 1, VersionBlock(u"VS_VERSION_INFO", false, fixed, fixed.size(), children));
    return file;
}

std::string VersionedFile(std::u16string_view fileVersion) {
    return VersionedFile({{0x0409, 1252}}, {{u"040904E4", std::u16string(fileVersion)}});
}

}  // namespace driver_test
