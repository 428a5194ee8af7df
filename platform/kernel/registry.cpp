// The registry: a tree of keys with typed values, kept with the machine.
#include "platform/kernel/registry.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/kernel/code_pages.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/store.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

struct RegistryValue {
    std::u16string name;
    DWORD type = REG_NONE;
    std::vector<BYTE> data;
};

// Keys and values by folded name.
struct RegistryNode {
    std::u16string name;
    std::map<std::u16string, std::shared_ptr<RegistryNode>> keys;
    std::map<std::u16string, RegistryValue> values;
};

// The longest name of one key.
constexpr size_t kMaximumKeyName = 255;

// The first component of a path, which it is cut from; empty at the end.
std::u16string_view TakeComponent(std::u16string_view& path) {
    while (!path.empty() && path.front() == u'\\') {
        path.remove_prefix(1);
    }
    const std::u16string_view name = path.substr(0, path.find(u'\\'));
    path.remove_prefix(name.size());
    return name;
}

std::shared_ptr<RegistryNode> FindKey(std::shared_ptr<RegistryNode> node, std::u16string_view path) {
    for (std::u16string_view name = TakeComponent(path); node != nullptr && !name.empty(); name = TakeComponent(path)) {
        const auto found = node->keys.find(FoldCase(name));
        node = found != node->keys.end() ? found->second : nullptr;
    }
    return node;
}

std::shared_ptr<RegistryNode> MakeKey(std::shared_ptr<RegistryNode> node, std::u16string_view path) {
    for (std::u16string_view name = TakeComponent(path); !name.empty(); name = TakeComponent(path)) {
        std::shared_ptr<RegistryNode>& child = node->keys[FoldCase(name)];
        if (child == nullptr) {
            child = std::make_shared<RegistryNode>();
            child->name = name;
        }
        node = child;
    }
    return node;
}

struct Registry {
    std::shared_ptr<RegistryNode> localMachine;
    std::shared_ptr<RegistryNode> currentUser;
};

Registry MakeFreshRegistry() {
    Registry registry{std::make_shared<RegistryNode>(), std::make_shared<RegistryNode>()};
    MakeKey(registry.localMachine, u"SOFTWARE\\Classes");
    MakeKey(registry.localMachine, u"SYSTEM\\CurrentControlSet\\Control\\Print\\Printers");
    MakeKey(registry.currentUser, u"Software");
    return registry;
}

Registry& TheRegistry() {
    static Registry& registry = *new Registry(MakeFreshRegistry());
    return registry;
}

// A program's key. The node lives as long as a handle leads to it.
class OpenKey final : public Object {
  public:
    OpenKey(std::shared_ptr<RegistryNode> node, std::string path, REGSAM access)
        : Object(Resource::kRegistryKey), node(std::move(node)), path(std::move(path)), access(access) {}
    std::string Describe() const override { return path; }

    const std::shared_ptr<RegistryNode> node;
    const std::string path;
    const REGSAM access;
};

struct KeyAccess {
    std::shared_ptr<RegistryNode> node;  // null: no such key
    std::string path;
    REGSAM access = 0;
};

KeyAccess ResolveKey(HKEY key) {
    if (key == HKEY_LOCAL_MACHINE) {
        return {TheRegistry().localMachine, "HKEY_LOCAL_MACHINE", KEY_ALL_ACCESS};
    }
    if (key == HKEY_CURRENT_USER) {
        return {TheRegistry().currentUser, "HKEY_CURRENT_USER", KEY_ALL_ACCESS};
    }
    if (key == HKEY_CLASSES_ROOT) {
        return {MakeKey(TheRegistry().localMachine, u"SOFTWARE\\Classes"), "HKEY_CLASSES_ROOT", KEY_ALL_ACCESS};
    }
    const DWORD before = GetLastError();
    const auto* open = FindObject<OpenKey>(key, Resource::kRegistryKey);
    SetLastError(before);
    return open != nullptr ? KeyAccess{open->node, open->path, open->access} : KeyAccess{};
}

// Generic rights and MAXIMUM_ALLOWED as rights of a key.
REGSAM SpecificRights(REGSAM access) {
    if ((access & (GENERIC_ALL | MAXIMUM_ALLOWED)) != 0) {
        access |= KEY_ALL_ACCESS;
    }
    if ((access & (GENERIC_READ | GENERIC_EXECUTE)) != 0) {
        access |= KEY_READ;
    }
    if ((access & GENERIC_WRITE) != 0) {
        access |= KEY_WRITE;
    }
    return access;
}

std::u16string_view TextOf(LPCWSTR text) {
    return text != nullptr ? text : u"";
}

LSTATUS CheckPath(std::u16string_view path) {
    if (!path.empty() && path.front() == u'\\') {
        return ERROR_BAD_PATHNAME;
    }
    for (std::u16string_view name = TakeComponent(path); !name.empty(); name = TakeComponent(path)) {
        if (name.size() > kMaximumKeyName) {
            return ERROR_INVALID_PARAMETER;
        }
    }
    return ERROR_SUCCESS;
}

HKEY GiveKey(const KeyAccess& parent, std::shared_ptr<RegistryNode> node, std::u16string_view path, REGSAM access) {
    std::string full = parent.path;
    if (!path.empty()) {
        full += "\\" + ToUtf8(path);
    }
    return static_cast<HKEY>(
        AddObject(std::make_unique<OpenKey>(std::move(node), std::move(full), SpecificRights(access))));
}

// The body of RegOpenKeyEx.
LSTATUS OpenSubKey(HKEY key, std::u16string_view path, REGSAM access, PHKEY opened) {
    const MachineLock lock;
    if (opened == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    const KeyAccess parent = ResolveKey(key);
    if (parent.node == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    if (const LSTATUS error = CheckPath(path); error != ERROR_SUCCESS) {
        return error;
    }
    auto node = FindKey(parent.node, path);
    if (node == nullptr) {
        return ERROR_FILE_NOT_FOUND;
    }
    *opened = GiveKey(parent, std::move(node), path, access);
    return ERROR_SUCCESS;
}

// A text's bytes in the ANSI code page.
std::vector<BYTE> AnsiBytes(const std::vector<BYTE>& wide) {
    std::u16string text(wide.size() / sizeof(char16_t), u'\0');
    memcpy(text.data(), wide.data(), text.size() * sizeof(char16_t));
    const std::string ansi = ToAnsi(text);
    return {ansi.begin(), ansi.end()};
}

// The body of RegQueryValueEx. `ansi`: texts are wanted in the ANSI code page.
LSTATUS QueryValue(HKEY key, std::u16string_view name, bool ansi, LPDWORD reserved, LPDWORD type, LPBYTE data,
                   LPDWORD bytes) {
    const MachineLock lock;
    if ((data != nullptr && bytes == nullptr) || reserved != nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    const KeyAccess source = ResolveKey(key);
    if (source.node == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    if ((source.access & KEY_QUERY_VALUE) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    const auto found = source.node->values.find(FoldCase(name));
    if (found == source.node->values.end()) {
        return ERROR_FILE_NOT_FOUND;
    }
    const RegistryValue& value = found->second;
    const bool isText = value.type == REG_SZ || value.type == REG_EXPAND_SZ || value.type == REG_MULTI_SZ;
    const std::vector<BYTE> answer = ansi && isText ? AnsiBytes(value.data) : value.data;
    if (type != nullptr) {
        *type = value.type;
    }
    LSTATUS result = ERROR_SUCCESS;
    if (data != nullptr) {
        if (*bytes < answer.size()) {
            result = ERROR_MORE_DATA;
        } else {
            std::copy(answer.begin(), answer.end(), data);
        }
    }
    if (bytes != nullptr) {
        *bytes = static_cast<DWORD>(answer.size());
    }
    return result;
}

nlohmann::json SaveNode(const RegistryNode& node) {
    nlohmann::json keys = nlohmann::json::object();
    for (const auto& [folded, child] : node.keys) {
        keys[ToUtf8(child->name)] = SaveNode(*child);
    }
    nlohmann::json values = nlohmann::json::object();
    for (const auto& [folded, value] : node.values) {
        values[ToUtf8(value.name)] = {{"type", value.type}, {"data", value.data}};
    }
    return {{"keys", keys}, {"values", values}};
}

std::shared_ptr<RegistryNode> LoadNode(const nlohmann::json& saved) {
    auto node = std::make_shared<RegistryNode>();
    for (const auto& [name, child] : saved.at("keys").items()) {
        std::shared_ptr<RegistryNode> loaded = LoadNode(child);
        loaded->name = ToWide(name);
        node->keys[FoldCase(loaded->name)] = std::move(loaded);
    }
    for (const auto& [name, value] : saved.at("values").items()) {
        RegistryValue loaded{ToWide(name), value.at("type").get<DWORD>(), value.at("data").get<std::vector<BYTE>>()};
        node->values[FoldCase(loaded.name)] = std::move(loaded);
    }
    return node;
}

[[maybe_unused]] const bool registered = [] {
    RegisterSection({"registry", [] { TheRegistry() = MakeFreshRegistry(); },
                     [] {
                         return nlohmann::json{{"localMachine", SaveNode(*TheRegistry().localMachine)},
                                               {"currentUser", SaveNode(*TheRegistry().currentUser)}};
                     },
                     [](const nlohmann::json& saved) {
                         TheRegistry() = {LoadNode(saved.at("localMachine")), LoadNode(saved.at("currentUser"))};
                     }});
    return true;
}();

}  // namespace

void MakeMachineKey(std::u16string_view path) {
    const MachineLock lock;
    MakeKey(TheRegistry().localMachine, path);
}

void RemoveMachineKey(std::u16string_view path) {
    const MachineLock lock;
    const size_t nameAt = path.rfind(u'\\') + 1;
    if (const auto parent = FindKey(TheRegistry().localMachine, path.substr(0, nameAt))) {
        parent->keys.erase(FoldCase(path.substr(nameAt)));
    }
}

}  // namespace host

using host::FaultAsked;
using host::KeyAccess;
using host::MachineLock;

// The calls of the registry return their error; a fault that a test asks for has it in the last error.
namespace {

LSTATUS AskedError() {
    return static_cast<LSTATUS>(GetLastError());
}

LSTATUS StoreError() {
    return host::StoreChanged() ? ERROR_SUCCESS : static_cast<LSTATUS>(GetLastError());
}

}  // namespace

extern "C" {

LSTATUS WINAPI RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD, REGSAM access, PHKEY opened) {
    return FaultAsked("RegOpenKeyExW") ? AskedError() : host::OpenSubKey(key, host::TextOf(subKey), access, opened);
}

LSTATUS WINAPI RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD, REGSAM access, PHKEY opened) {
    return FaultAsked("RegOpenKeyExA")
               ? AskedError()
               : host::OpenSubKey(key, host::FromAnsi(subKey != nullptr ? subKey : ""), access, opened);
}

LSTATUS WINAPI RegCreateKeyExW(HKEY key, LPCWSTR subKey, DWORD, LPWSTR, DWORD options, REGSAM access,
                               const SECURITY_ATTRIBUTES*, PHKEY opened, LPDWORD disposition) {
    if (FaultAsked("RegCreateKeyExW")) {
        return AskedError();
    }
    MachineLock lock;
    if (opened == nullptr || subKey == nullptr || options != REG_OPTION_NON_VOLATILE) {
        return ERROR_INVALID_PARAMETER;
    }
    const KeyAccess parent = host::ResolveKey(key);
    if (parent.node == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    const std::u16string_view path = subKey;
    if (const LSTATUS error = host::CheckPath(path); error != ERROR_SUCCESS) {
        return error;
    }
    auto node = host::FindKey(parent.node, path);
    const bool isNew = node == nullptr;
    if (isNew) {
        if ((parent.access & KEY_CREATE_SUB_KEY) == 0) {
            return ERROR_ACCESS_DENIED;
        }
        node = host::MakeKey(parent.node, path);
        if (const LSTATUS error = StoreError(); error != ERROR_SUCCESS) {
            return error;
        }
    }
    *opened = host::GiveKey(parent, std::move(node), path, access);
    if (disposition != nullptr) {
        *disposition = isNew ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
    }
    return ERROR_SUCCESS;
}

LSTATUS WINAPI RegSetValueExW(HKEY key, LPCWSTR name, DWORD, DWORD type, const BYTE* data, DWORD bytes) {
    if (FaultAsked("RegSetValueExW")) {
        return AskedError();
    }
    MachineLock lock;
    const KeyAccess target = host::ResolveKey(key);
    if (target.node == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    if ((target.access & KEY_SET_VALUE) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    if (data == nullptr && bytes != 0) {
        return ERROR_NOACCESS;
    }
    host::RegistryValue value{std::u16string(host::TextOf(name)), type, {}};
    if (bytes != 0) {
        value.data.assign(data, data + bytes);
    }
    target.node->values[host::FoldCase(value.name)] = std::move(value);
    return StoreError();
}

LSTATUS WINAPI RegQueryValueExW(HKEY key, LPCWSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD bytes) {
    return FaultAsked("RegQueryValueExW")
               ? AskedError()
               : host::QueryValue(key, host::TextOf(name), false, reserved, type, data, bytes);
}

LSTATUS WINAPI RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD bytes) {
    return FaultAsked("RegQueryValueExA")
               ? AskedError()
               : host::QueryValue(key, host::FromAnsi(name != nullptr ? name : ""), true, reserved, type, data, bytes);
}

LSTATUS WINAPI RegDeleteValueW(HKEY key, LPCWSTR name) {
    if (FaultAsked("RegDeleteValueW")) {
        return AskedError();
    }
    MachineLock lock;
    const KeyAccess target = host::ResolveKey(key);
    if (target.node == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    if ((target.access & KEY_SET_VALUE) == 0) {
        return ERROR_ACCESS_DENIED;
    }
    if (target.node->values.erase(host::FoldCase(host::TextOf(name))) == 0) {
        return ERROR_FILE_NOT_FOUND;
    }
    return StoreError();
}

LSTATUS WINAPI RegCloseKey(HKEY key) {
    MachineLock lock;
    if (key == HKEY_LOCAL_MACHINE || key == HKEY_CURRENT_USER || key == HKEY_CLASSES_ROOT) {
        return ERROR_SUCCESS;
    }
    const DWORD before = GetLastError();
    const bool closed = host::RemoveObject(key, host::Resource::kRegistryKey);
    SetLastError(before);
    return closed ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

}  // extern "C"
