// What handles lead to, and the ledger of everything that a program holds. Every folder of the layer hands its objects
// out through here, so that one list says at any time what is still open.
#pragma once

#include <windows.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace host {

// The machine's one lock. Every published call that reads or changes what threads share holds it; the functions of this
// header take it themselves. An object found under it stays while it is held.
std::recursive_mutex& MachineMutex();

class MachineLock {
  public:
    MachineLock() : guard_(MachineMutex()) {}

  private:
    std::lock_guard<std::recursive_mutex> guard_;
};

// Kinds of things that a program opens and must close again.
enum class Resource {
    kHeapBlock,
    kTaskMemory,
    kGlobalMemory,
    kBstr,
    kComReference,
    kFile,
    kSearch,
    kPrinter,
    kModule,
    kRegistryKey,
    kEvent,
    kSemaphore,
    kGdiObject,
    kWindow,
    kPropertyPage,
    kPropertySheetHost,
};

// "file", "heap block", …: as the ledger's report names the kind.
const char* ResourceName(Resource kind);

// What a handle stands for. Objects are owned by the handle table; a handle is closed by RemoveObject.
class Object {
  public:
    explicit Object(Resource kind) : kind(kind) {}
    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    // What this is, such as a file's path or a printer's name; the report puts the kind's name before it.
    virtual std::string Describe() const = 0;

    // False for what the machine itself keeps (the system's modules): not the program's to close.
    virtual bool IsHeldByProgram() const { return true; }

    const Resource kind;
};

// Hands the object to the table and returns its handle, never null and never INVALID_HANDLE_VALUE. Handles are not
// reused while the process runs, so that a stale one is always noticed.
HANDLE AddObject(std::unique_ptr<Object> object);

// The object, or null (last error ERROR_INVALID_HANDLE) where the handle is none of this kind.
Object* FindObject(HANDLE handle, Resource kind);

template <class T>
T* FindObject(HANDLE handle, Resource kind) {
    return static_cast<T*>(FindObject(handle, kind));
}

// Destroys the object. False (last error ERROR_INVALID_HANDLE) where the handle is none of this kind.
bool RemoveObject(HANDLE handle, Resource kind);

// Handles of this kind, in the order in which they were opened.
std::vector<HANDLE> ObjectsOfKind(Resource kind);

// Memory and reference counts that aren't objects of the table: BSTRs, COM references. `what` is the address that
// identifies the thing, `size` its bytes for the report (0: not told).
void NoteOpened(Resource kind, const void* what, size_t size);
// False where it was not open: a double free or a foreign address.
bool NoteClosed(Resource kind, const void* what);

// What a folder of the layer keeps a list of by itself, as a note for each would cost too much.
struct OpenList {
    std::vector<std::string> (*lines)();  // a line each
    void (*closeAll)();                   // for the machine's end
};
// For the life of the process.
void AddOpenList(const OpenList& list);

// For the machine's end: destroys every object, closes what the lists have and forgets every note.
void CloseEverything();

}  // namespace host
