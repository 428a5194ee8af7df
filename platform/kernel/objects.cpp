#include "platform/kernel/objects.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

#include "platform/host.h"
#include "platform/kernel/heap.h"

namespace host {
namespace {

struct Note {
    size_t size;
    uint64_t order;
};

struct Ledger {
    // Ordered: a handle's value rises with every object, so the map's order is the order of opening.
    std::map<uintptr_t, std::unique_ptr<Object>> objects;
    uintptr_t nextHandle = 0x100;
    std::map<std::pair<Resource, const void*>, Note> notes;
    uint64_t nextNote = 1;
    std::vector<OpenList> lists;
};

// Never destroyed: programs may close things while the process ends.
Ledger& TheLedger() {
    static Ledger& ledger = *new Ledger;
    return ledger;
}

}  // namespace

std::recursive_mutex& MachineMutex() {
    static std::recursive_mutex& mutex = *new std::recursive_mutex;
    return mutex;
}

const char* ResourceName(Resource kind) {
    switch (kind) {
        case Resource::kHeapBlock:
            return "heap block";
        case Resource::kTaskMemory:
            return "task memory";
        case Resource::kGlobalMemory:
            return "global memory";
        case Resource::kBstr:
            return "BSTR";
        case Resource::kComReference:
            return "COM reference";
        case Resource::kFile:
            return "file";
        case Resource::kSearch:
            return "file search";
        case Resource::kPrinter:
            return "printer";
        case Resource::kModule:
            return "module";
        case Resource::kRegistryKey:
            return "registry key";
        case Resource::kEvent:
            return "event";
        case Resource::kSemaphore:
            return "semaphore";
        case Resource::kGdiObject:
            return "GDI object";
        case Resource::kWindow:
            return "window";
        case Resource::kPropertyPage:
            return "property page";
        case Resource::kPropertySheetHost:
            return "property sheet host";
    }
    return "object";
}

HANDLE AddObject(std::unique_ptr<Object> object) {
    MachineLock lock;
    Ledger& ledger = TheLedger();
    const uintptr_t handle = ledger.nextHandle;
    ledger.nextHandle += 4;
    ledger.objects.emplace_hint(ledger.objects.end(), handle, std::move(object));
    return reinterpret_cast<HANDLE>(handle);
}

Object* FindObject(HANDLE handle, Resource kind) {
    MachineLock lock;
    const auto& objects = TheLedger().objects;
    const auto found = objects.find(reinterpret_cast<uintptr_t>(handle));
    if (found == objects.end() || found->second->kind != kind) {
        SetLastError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    return found->second.get();
}

bool RemoveObject(HANDLE handle, Resource kind) {
    MachineLock lock;
    if (!FindObject(handle, kind)) {
        return false;
    }
    // Out of the table first: an object's destructor may close others.
    const auto node = TheLedger().objects.extract(reinterpret_cast<uintptr_t>(handle));
    return !node.empty();
}

std::vector<HANDLE> ObjectsOfKind(Resource kind) {
    MachineLock lock;
    std::vector<HANDLE> handles;
    for (const auto& [handle, object] : TheLedger().objects) {
        if (object->kind == kind) {
            handles.push_back(reinterpret_cast<HANDLE>(handle));
        }
    }
    return handles;
}

void NoteOpened(Resource kind, const void* what, size_t size) {
    MachineLock lock;
    Ledger& ledger = TheLedger();
    ledger.notes[{kind, what}] = {size, ledger.nextNote++};
}

bool NoteClosed(Resource kind, const void* what) {
    MachineLock lock;
    return TheLedger().notes.erase({kind, what}) == 1;
}

void AddOpenList(const OpenList& list) {
    MachineLock lock;
    TheLedger().lists.push_back(list);
}

void CloseEverything() {
    MachineLock lock;
    Ledger& ledger = TheLedger();
    for (const OpenList& list : ledger.lists) {
        list.closeAll();
    }
    // Last opened, first closed: what was opened later may lean on what was opened before it.
    while (!ledger.objects.empty()) {
        const auto node = ledger.objects.extract(std::prev(ledger.objects.end()));
    }
    ledger.notes.clear();
}

std::vector<std::string> StillOpen() {
    MachineLock lock;
    std::vector<std::string> lines = OpenBlocks();
    const Ledger& ledger = TheLedger();
    for (const OpenList& list : ledger.lists) {
        for (std::string& line : list.lines()) {
            lines.push_back(std::move(line));
        }
    }
    std::vector<std::pair<uint64_t, std::string>> notes;
    for (const auto& [key, note] : ledger.notes) {
        std::string line = ResourceName(key.first);
        if (note.size != 0) {
            line += " of " + std::to_string(note.size) + " bytes";
        }
        notes.emplace_back(note.order, std::move(line));
    }
    std::sort(notes.begin(), notes.end());
    for (auto& note : notes) {
        lines.push_back(std::move(note.second));
    }
    for (const auto& [handle, object] : ledger.objects) {
        if (object->IsHeldByProgram()) {
            lines.push_back(std::string(ResourceName(object->kind)) + " " + object->Describe());
        }
    }
    return lines;
}

}  // namespace host
