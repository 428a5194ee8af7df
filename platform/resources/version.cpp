// Version resources: a tree of blocks, each {bytes of the whole, size of the value, kind, key, value, children}.
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "platform/kernel/drive.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/settings.h"
#include "platform/kernel/text.h"
#include "platform/resources/resource_file.h"

namespace host {
namespace {

constexpr size_t kBlockHeader = 6;  // what no block, and so no version, is shorter than

// A copy of the file's version resource. The last error says why there is none.
std::optional<std::vector<uint8_t>> ReadVersionBlock(LPCWSTR file) {
    const Place place = FindPlace(file);
    if (place.error != ERROR_SUCCESS) {
        SetLastError(place.error);
        return std::nullopt;
    }
    std::string bytes;
    if (!ReadWhole(place.file, bytes)) {
        SetLastError(ErrorFromErrno(errno));
        return std::nullopt;
    }
    const auto resources = ParseResourceFile(bytes);
    if (resources == nullptr) {
        SetLastError(ERROR_RESOURCE_DATA_NOT_FOUND);
        return std::nullopt;
    }
    const ResourceEntry* entry =
        resources->Find(ResourceKey::FromArgument(RT_VERSION), ResourceKey::FromArgument(MAKEINTRESOURCEW(1)),
                        CurrentSettings().language);
    if (entry != nullptr && entry->data.size() < kBlockHeader) {
        SetLastError(ERROR_RESOURCE_DATA_NOT_FOUND);
        entry = nullptr;
    }
    if (entry == nullptr) {
        return std::nullopt;
    }
    return entry->data;
}

// One block of the tree, within the bytes of its parent.
struct Block {
    const uint8_t* start = nullptr;
    size_t size = 0;
    std::u16string key;
    size_t valueAt = 0;
    size_t valueSize = 0;   // bytes
    size_t valueUnits = 0;  // as the block tells it: characters for texts, bytes otherwise
    size_t childrenAt = 0;
};

uint16_t WordAt(const uint8_t* bytes) {
    return static_cast<uint16_t>(bytes[0] | bytes[1] << 8);
}

size_t Aligned(size_t offset) {
    return (offset + 3) & ~static_cast<size_t>(3);
}

// Null where less than a block's header is left.
std::optional<Block> ReadBlock(const uint8_t* start, size_t available) {
    if (available < kBlockHeader) {
        return std::nullopt;
    }
    Block block;
    block.start = start;
    block.size = std::min<size_t>(WordAt(start), available);
    if (block.size < kBlockHeader) {
        return std::nullopt;
    }
    size_t at = kBlockHeader;
    for (; at + 2 <= block.size && WordAt(start + at) != 0; at += 2) {
        block.key += static_cast<char16_t>(WordAt(start + at));
    }
    block.valueAt = std::min(block.size, Aligned(at + 2));
    const bool isText = WordAt(start + 4) == 1;
    block.valueUnits = WordAt(start + 2);
    block.valueSize = std::min(block.size - block.valueAt, block.valueUnits * (isText ? 2 : 1));
    block.valueUnits = block.valueSize / (isText ? 2 : 1);
    block.childrenAt = std::min(block.size, Aligned(block.valueAt + block.valueSize));
    return block;
}

std::optional<Block> FindChild(const Block& parent, std::u16string_view key) {
    size_t at = parent.childrenAt;
    while (auto child = ReadBlock(parent.start + at, parent.size - at)) {
        if (EqualsIgnoringCase(child->key, key)) {
            return child;
        }
        at = std::min(parent.size, Aligned(at + child->size));
    }
    return std::nullopt;
}

}  // namespace
}  // namespace host

extern "C" {

DWORD WINAPI GetFileVersionInfoSizeW(LPCWSTR file, LPDWORD zero) {
    if (zero != nullptr) {
        *zero = 0;
    }
    if (host::FaultAsked("GetFileVersionInfoSizeW")) {
        return 0;
    }
    host::MachineLock lock;
    const auto block = host::ReadVersionBlock(file);
    return block ? static_cast<DWORD>(block->size()) : 0;
}

BOOL WINAPI GetFileVersionInfoW(LPCWSTR file, DWORD, DWORD bytes, LPVOID buffer) {
    if (host::FaultAsked("GetFileVersionInfoW")) {
        return FALSE;
    }
    host::MachineLock lock;
    if (buffer == nullptr) {
        SetLastError(ERROR_INVALID_DATA);
        return FALSE;
    }
    auto block = host::ReadVersionBlock(file);
    if (!block) {
        return FALSE;
    }
    // A shorter buffer gets as much as fits. The block's own size says then how much that is, so that queries stay
    // within it.
    const size_t length = std::min<size_t>(bytes, block->size());
    if (length >= 2) {
        const auto told = static_cast<uint16_t>(std::min<size_t>(host::WordAt(block->data()), length));
        (*block)[0] = static_cast<uint8_t>(told & 0xFF);
        (*block)[1] = static_cast<uint8_t>(told >> 8);
    }
    memcpy(buffer, block->data(), length);
    return TRUE;
}

BOOL WINAPI VerQueryValueW(LPCVOID block, LPCWSTR path, LPVOID* value, PUINT length) {
    if (host::FaultAsked("VerQueryValueW")) {
        return FALSE;
    }
    const auto* bytes = static_cast<const uint8_t*>(block);
    std::optional<host::Block> found = block != nullptr ? host::ReadBlock(bytes, host::WordAt(bytes)) : std::nullopt;
    std::u16string_view rest = path != nullptr ? path : u"";
    while (found && !rest.empty()) {
        const size_t end = std::min(rest.find(u'\\'), rest.size());
        if (end != 0) {
            found = host::FindChild(*found, rest.substr(0, end));
        }
        rest.remove_prefix(std::min(rest.size(), end + 1));
    }
    if (!found) {
        SetLastError(ERROR_RESOURCE_TYPE_NOT_FOUND);
        return FALSE;
    }
    *value = const_cast<uint8_t*>(found->start + found->valueAt);
    if (length != nullptr) {
        *length = static_cast<UINT>(found->valueUnits);
    }
    return TRUE;
}

}  // extern "C"
