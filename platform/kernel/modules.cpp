#include "platform/kernel/modules.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/kernel/code_pages.h"
#include "platform/kernel/drive.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/settings.h"
#include "platform/kernel/text.h"
#include "platform/resources/resource_file.h"

namespace host {
namespace {

// The system's modules whose calls the layer has. Every call of the layer is found in each of them.
constexpr std::u16string_view kSystemModules[] = {
    u"advapi32.dll", u"kernel32.dll", u"ole32.dll", u"user32.dll", u"version.dll", u"winspool.drv",
};

using EntryRoutine = BOOL(WINAPI*)(HINSTANCE, DWORD, LPVOID);

class Module final : public Object {
  public:
    Module() : Object(Resource::kModule) {}
    ~Module() override {
        if (library != nullptr) {
            dlclose(library);
        }
    }
    std::string Describe() const override {
        return ToUtf8(path) + (references > 1 ? " (" + std::to_string(references) + " times)" : "");
    }
    bool IsHeldByProgram() const override { return references > 0; }

    std::u16string path;
    std::string hostFile;     // empty: one of the system's
    unsigned references = 0;  // of programs
    void* library = nullptr;  // of the host's loader: the library, or the layer itself; null: resources only
    EntryRoutine entry = nullptr;
    std::shared_ptr<const ResourceFile> resources = std::make_shared<ResourceFile>();
};

HMODULE ToModule(HANDLE handle) {
    return static_cast<HMODULE>(handle);
}

// A symbol of that library itself, not of one that it needs.
void* FindOwnSymbol(void* library, const char* name) {
    void* symbol = dlsym(library, name);
    const link_map* map = nullptr;
    Dl_info info{};
    if (symbol == nullptr || dlinfo(library, RTLD_DI_LINKMAP, static_cast<void*>(&map)) != 0 ||
        dladdr(symbol, &info) == 0 || std::string_view(info.dli_fname) != map->l_name) {
        return nullptr;
    }
    return symbol;
}

// The layer's library, once more opened.
void* OpenLayer() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&GetProcessHeap), &info) == 0) {
        return nullptr;
    }
    return dlopen(info.dli_fname, RTLD_NOW | RTLD_NOLOAD);
}

template <class Predicate>
HMODULE FindModule(Predicate fits) {
    for (const HANDLE handle : ObjectsOfKind(Resource::kModule)) {
        if (fits(*FindObject<Module>(handle, Resource::kModule))) {
            return ToModule(handle);
        }
    }
    return nullptr;
}

// File name with ".dll" where it has no extension; a dot at the end says that there is none.
std::u16string WithExtension(std::u16string_view name) {
    std::u16string whole(name);
    const size_t nameAt = whole.find_last_of(u"\\/:") + 1;
    if (whole.find(u'.', nameAt) == whole.npos) {
        whole += u".dll";
    } else if (whole.back() == u'.') {
        whole.pop_back();
    }
    return whole;
}

// The name of the system's module that is meant: by its name alone or with the system folder. Empty: none.
std::u16string_view SystemModuleName(std::u16string_view name) {
    const std::u16string_view folder = kSystemFolder;
    if (name.size() > folder.size() + 1 && EqualsIgnoringCase(name.substr(0, folder.size()), folder) &&
        name[folder.size()] == u'\\') {
        name.remove_prefix(folder.size() + 1);
    }
    for (const std::u16string_view known : kSystemModules) {
        if (EqualsIgnoringCase(known, name)) {
            return known;
        }
    }
    return {};
}

// Null where the layer's library can't be opened.
HMODULE SystemModule(std::u16string_view name) {
    const std::u16string path = std::u16string(kSystemFolder) + u"\\" + std::u16string(name);
    if (const HMODULE known = FindModule([&path](const Module& m) { return m.hostFile.empty() && m.path == path; })) {
        return known;
    }
    auto module = std::make_unique<Module>();
    module->path = path;
    module->library = OpenLayer();
    return module->library != nullptr ? ToModule(AddObject(std::move(module))) : nullptr;
}

// A module's file: as it is named, or, where only a name is given, in the current, the system or the Windows folder.
Place FindModuleFile(const std::u16string& name) {
    if (name.find_first_of(u"\\/:") != name.npos) {
        return FindPlace(name.c_str());
    }
    Place place;
    for (const std::u16string_view folder : {std::u16string_view(CurrentDirectory()),
                                             std::u16string_view(kSystemFolder), std::u16string_view(kWindowsFolder)}) {
        place = FindPlace((std::u16string(folder) + u"\\" + name).c_str());
        if (place.error == ERROR_SUCCESS) {
            break;
        }
    }
    return place;
}

HMODULE Fail(DWORD error) {
    SetLastError(error);
    return nullptr;
}

HMODULE LoadFile(const Place& place) {
    if (place.error != ERROR_SUCCESS || S_ISDIR(place.status.st_mode)) {
        return Fail(ERROR_MOD_NOT_FOUND);
    }
    if (const HMODULE known =
            FindModule([&](const Module& m) { return m.hostFile == place.file && m.references > 0; })) {
        ++FindObject<Module>(known, Resource::kModule)->references;
        return known;
    }
    std::string bytes;
    if (!ReadWhole(place.file, bytes)) {
        return Fail(ErrorFromErrno(errno));
    }
    auto module = std::make_unique<Module>();
    module->path = place.full;
    module->hostFile = place.file;
    module->references = 1;
    if (auto resources = ParseResourceFile(bytes)) {
        module->resources = std::move(resources);
        return ToModule(AddObject(std::move(module)));
    }
    if (bytes.substr(0, 4) !=
        "\x7F"
        "ELF") {
        return Fail(ERROR_BAD_EXE_FORMAT);
    }
    module->library = dlopen(place.file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module->library == nullptr) {
        return Fail(ERROR_MOD_NOT_FOUND);  // something that it needs isn't there
    }
    module->entry = reinterpret_cast<EntryRoutine>(FindOwnSymbol(module->library, "DllMain"));
    const EntryRoutine entry = module->entry;
    const HMODULE handle = ToModule(AddObject(std::move(module)));
    if (entry != nullptr && !entry(handle, DLL_PROCESS_ATTACH, nullptr)) {
        RemoveObject(handle, Resource::kModule);
        return Fail(ERROR_DLL_INIT_FAILED);
    }
    return handle;
}

void Unload(HMODULE handle, Module& module) {
    if (module.entry != nullptr) {
        module.entry(handle, DLL_PROCESS_DETACH, nullptr);
    }
    RemoveObject(handle, Resource::kModule);
}

HMODULE Load(LPCWSTR name) {
    MachineLock lock;
    if (name == nullptr || *name == 0) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    const std::u16string whole = WithExtension(name);
    const Place place = FindModuleFile(whole);
    if (const std::u16string_view system = SystemModuleName(whole); place.error != ERROR_SUCCESS && !system.empty()) {
        const HMODULE handle = SystemModule(system);
        if (handle == nullptr) {
            return Fail(ERROR_MOD_NOT_FOUND);
        }
        ++FindObject<Module>(handle, Resource::kModule)->references;
        return handle;
    }
    return LoadFile(place);
}

}  // namespace

std::shared_ptr<const ResourceFile> ResourcesOf(HMODULE module) {
    const auto* found = FindObject<Module>(module, Resource::kModule);
    return found != nullptr ? found->resources : nullptr;
}

void UnloadModules() {
    MachineLock lock;
    std::vector<HANDLE> modules = ObjectsOfKind(Resource::kModule);
    std::reverse(modules.begin(), modules.end());
    for (const HANDLE handle : modules) {
        Unload(ToModule(handle), *FindObject<Module>(handle, Resource::kModule));
    }
}

}  // namespace host

using host::FaultAsked;
using host::MachineLock;
using host::Module;
using host::Resource;

extern "C" {

HMODULE WINAPI LoadLibraryW(LPCWSTR name) {
    return FaultAsked("LoadLibraryW") ? nullptr : host::Load(name);
}

HMODULE WINAPI LoadLibraryA(LPCSTR name) {
    return FaultAsked("LoadLibraryA") ? nullptr : host::Load(name ? host::FromAnsi(name).c_str() : nullptr);
}

BOOL WINAPI FreeLibrary(HMODULE module) {
    MachineLock lock;
    auto* found = host::FindObject<Module>(module, Resource::kModule);
    if (found == nullptr) {
        SetLastError(module == nullptr ? ERROR_INVALID_HANDLE : ERROR_MOD_NOT_FOUND);
        return FALSE;
    }
    if (found->references == 0) {
        return TRUE;  // the system's own, which stays
    }
    if (--found->references == 0 && !found->hostFile.empty()) {
        host::Unload(module, *found);
    }
    return TRUE;
}

FARPROC WINAPI GetProcAddress(HMODULE module, LPCSTR name) {
    if (FaultAsked("GetProcAddress")) {
        return nullptr;
    }
    MachineLock lock;
    const auto* found = host::FindObject<Module>(module, Resource::kModule);
    if (found == nullptr) {
        return nullptr;
    }
    const std::string symbolName =
        IS_INTRESOURCE(name) ? "Ordinal" + std::to_string(reinterpret_cast<uintptr_t>(name)) : name;
    // Names that begin with an underscore are the compiler's.
    void* symbol = found->library != nullptr && symbolName.front() != '_'
                       ? host::FindOwnSymbol(found->library, symbolName.c_str())
                       : nullptr;
    if (symbol == nullptr) {
        SetLastError(ERROR_PROC_NOT_FOUND);
    }
    return reinterpret_cast<FARPROC>(symbol);
}

HMODULE WINAPI GetModuleHandleW(LPCWSTR name) {
    if (FaultAsked("GetModuleHandleW")) {
        return nullptr;
    }
    MachineLock lock;
    if (name == nullptr) {
        return host::Fail(ERROR_MOD_NOT_FOUND);  // the program itself is no module of the machine
    }
    const std::u16string whole = host::WithExtension(name);
    const bool nameOnly = whole.find_first_of(u"\\/:") == whole.npos;
    const HMODULE found = host::FindModule([&](const Module& module) {
        const std::u16string_view path = module.path;
        return module.references > 0 &&
               host::EqualsIgnoringCase(nameOnly ? path.substr(path.rfind(u'\\') + 1) : path, whole);
    });
    if (found != nullptr) {
        return found;
    }
    const std::u16string_view system = host::SystemModuleName(whole);
    const HMODULE handle = system.empty() ? nullptr : host::SystemModule(system);
    return handle != nullptr ? handle : host::Fail(ERROR_MOD_NOT_FOUND);
}

}  // extern "C"
