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

void PutText(std::string* bytes, WideView text) {
    bytes->append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(WCHAR));
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
std::string VersionBlock(WideView key, bool isText, const std::string& value, size_t valueLength,
                         const std::string& children) {
    std::string block;
    PutU16(&block, 0);
    PutU16(&block, valueLength);
    PutU16(&block, isText ? 1 : 0);
    PutText(&block, WideText(key) + TEXT('\0'));
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

std::string StringModule(const std::map<unsigned, WideText>& strings) {
    std::string file = EmptyResourceFile();
    std::map<unsigned, std::string> tables;
    for (const auto& [id, text] : strings) {
        tables[id / kStringsPerTable];
    }
    for (auto& [table, data] : tables) {
        for (unsigned i = 0; i < kStringsPerTable; ++i) {
            const auto found = strings.find(table * kStringsPerTable + i);
            const WideText text = found != strings.end() ? found->second : WideText();
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
        PutText(&value, table.fileVersion + TEXT('\0'));
        const std::string entry = VersionBlock(TEXT("FileVersion"), true, value, table.fileVersion.size() + 1, "");
        texts += VersionBlock(table.key, true, "", 0, entry);
    }
    std::string pairs;
    for (const Translation& translation : translations) {
        PutU16(&pairs, translation.language);
        PutU16(&pairs, translation.codePage);
    }
    std::string children = VersionBlock(TEXT("StringFileInfo"), true, "", 0, texts);
    if (!pairs.empty()) {
        children += VersionBlock(TEXT("VarFileInfo"), true, "", 0,
                                 VersionBlock(TEXT("Translation"), false, pairs, pairs.size(), ""));
    }
    std::string fixed;
    PutU32(&fixed, 0xFEEF04BD);
    PutU32(&fixed, 0x10000);
    fixed.resize(52);
    std::string file = EmptyResourceFile();
    PutResource(&file, kVersion, 1, VersionBlock(TEXT("VS_VERSION_INFO"), false, fixed, fixed.size(), children));
    return file;
}

std::string VersionedFile(WideView fileVersion) {
    return VersionedFile({{0x0409, 1252}}, {{TEXT("040904E4"), WideText(fileVersion)}});
}

}  // namespace driver_test
