// FindResourceW and its fellows, and the string tables.
#include <windows.h>

#include <algorithm>
#include <optional>
#include <string_view>

#include "platform/kernel/faults.h"
#include "platform/kernel/modules.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/settings.h"
#include "platform/resources/resource_file.h"

namespace host {
namespace {

constexpr UINT kStringsInBlock = 16;

// A string table comes in blocks of 16 strings, each a count of characters and the characters.
// The string is in the module's memory, without a NUL behind it. Null: its block isn't there.
std::optional<std::u16string_view> FindString(const ResourceFile& resources, UINT id) {
    id &= 0xFFFF;
    ResourceKey type;
    type.id = 6;
    ResourceKey block;
    block.id = static_cast<uint16_t>(id / kStringsInBlock + 1);
    const ResourceEntry* entry = resources.Find(type, block, CurrentSettings().language);
    if (entry == nullptr) {
        return std::nullopt;
    }
    const auto* units = reinterpret_cast<const char16_t*>(entry->data.data());
    const size_t count = entry->data.size() / sizeof(char16_t);
    size_t at = 0;
    for (UINT i = 0; i < id % kStringsInBlock && at < count; ++i) {
        at += 1u + units[at];
    }
    if (at >= count || count - at - 1 < units[at]) {
        return u"";
    }
    return std::u16string_view(units + at + 1, units[at]);
}

}  // namespace
}  // namespace host

using host::FaultAsked;
using host::MachineLock;
using host::ResourceEntry;
using host::ResourceKey;

extern "C" {

HRSRC WINAPI FindResourceW(HMODULE module, LPCWSTR name, LPCWSTR type) {
    if (FaultAsked("FindResourceW")) {
        return nullptr;
    }
    MachineLock lock;
    const auto resources = host::ResourcesOf(module);
    const ResourceEntry* entry = resources == nullptr
                                     ? nullptr
                                     : resources->Find(ResourceKey::FromArgument(type), ResourceKey::FromArgument(name),
                                                       host::CurrentSettings().language);
    return reinterpret_cast<HRSRC>(const_cast<ResourceEntry*>(entry));
}

HGLOBAL WINAPI LoadResource(HMODULE module, HRSRC resource) {
    if (FaultAsked("LoadResource")) {
        return nullptr;
    }
    MachineLock lock;
    const auto resources = host::ResourcesOf(module);
    const ResourceEntry* entry = resources == nullptr ? nullptr : resources->FromHandle(resource);
    return entry != nullptr ? const_cast<uint8_t*>(entry->data.data()) : nullptr;
}

LPVOID WINAPI LockResource(HGLOBAL resource) {
    return resource;
}

DWORD WINAPI SizeofResource(HMODULE module, HRSRC resource) {
    if (FaultAsked("SizeofResource")) {
        return 0;
    }
    MachineLock lock;
    const auto resources = host::ResourcesOf(module);
    const ResourceEntry* entry = resources == nullptr ? nullptr : resources->FromHandle(resource);
    return entry != nullptr ? static_cast<DWORD>(entry->data.size()) : 0;
}

int WINAPI LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int size) {
    if (FaultAsked("LoadStringW")) {
        return 0;
    }
    MachineLock lock;
    if (buffer == nullptr || size < 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    const auto resources = host::ResourcesOf(module);
    const auto found = resources != nullptr ? host::FindString(*resources, id) : std::nullopt;
    if (!found) {
        return 0;  // the buffer stays as it was
    }
    if (size == 0) {
        *reinterpret_cast<LPCWSTR*>(buffer) = found->data();
        return static_cast<int>(found->size());
    }
    const size_t length = std::min(found->size(), static_cast<size_t>(size) - 1);
    std::copy_n(found->data(), length, buffer);
    buffer[length] = 0;
    return static_cast<int>(length);
}

}  // extern "C"
