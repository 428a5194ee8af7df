// The hooks of a job, on printers of the project's models whose description files may be damaged, by any device mode,
// in buffers of any size. A block that doesn't fit does fit at the size that is told, and is text that ends within it
// or the whole record; nothing is written beyond it; a job's end gives back what its start took.
//
// An input is a header, the job's name, and edits of the device mode and of the description file.
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "driver/entry/driver_interface.h"
#include "driver/job/image_job_record.h"
#include "driver/job/job_hooks.h"
#include "fuzz/model_printers.h"
#include "fuzz/stop.h"
#include "platform/host.h"

namespace {

using namespace fuzz;     // NOLINT(google-build-using-namespace): the targets' kit
using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test

#pragma pack(push, 1)
struct Header {
    uint8_t model;
    uint8_t flags;
    uint16_t startSize;
    uint16_t sheetSize;
    uint16_t endSize;
    uint8_t nameLength;  // characters
};
#pragma pack(pop)

enum Flags : uint8_t {
    kWithoutDevMode = 0x01,   // the printer's own is used
    kWithoutName = 0x02,      // of the job
    kWithoutPrinter = 0x04,   // its name is null
    kWithoutSheets = 0x08,    // the job ends at once
    kJapanese = 0x10,         // the ANSI code page
    kFileIsMended = 0x20,     // between the job's start and its sheets
    kEachHookEdits = 0x40,    // the device mode comes unrepaired each time
    kLargeCapacities = 0x80,  // most blocks fit at once
};

constexpr uint8_t kFileEdit = 0x80;  // a bit of an edit's kind: four bytes of the description file
constexpr DWORD kLargeCapacity = 0x8000;

struct JobTarget : ModelPrinter {
    explicit JobTarget(const std::filesystem::path& source)
        : ModelPrinter(source),
          file(driver_test::InstalledPath(name + u".XPI")),
          bytes(driver_test::ReadDriveFile(file)) {}

    driver_test::WideText file;  // the description file, and what is in it
    std::string bytes;
};

struct Printers {
    host::Machine machine;
    std::vector<JobTarget> models;

    Printers() {
        for (const std::filesystem::path& source : ModelSources()) {
            models.emplace_back(source);
        }
    }
};

// A block of memory of just this size, so that no access beyond it goes unseen.
struct Buffer {
    explicit Buffer(DWORD size) : bytes(size != 0 ? new char[size]() : nullptr), capacity(size) {}
    std::unique_ptr<char[]> bytes;
    DWORD capacity;
};

// Runs a hook, with the size that it tells where the first one is too small. Returns its result.
template <class Hook>
int RunHook(DWORD capacity, const Hook& hook) {
    Buffer buffer(capacity);
    DWORD size = capacity;
    int result = hook(buffer, &size);
    if (result == kJobBlockTooLarge) {
        if (size <= capacity) {
            Stop("a block that is told to fit doesn't");
        }
        const DWORD needed = size;
        buffer = Buffer(needed);
        result = hook(buffer, &size);
        if (result != kJobDone || size > needed) {
            Stop("a block doesn't fit at the size that was told");
        }
    }
    if (result == kJobDone && size != 0 && size != sizeof(ImageJobRecord) && size <= buffer.capacity &&
        std::find(buffer.bytes.get(), buffer.bytes.get() + size, '\0') == buffer.bytes.get() + size) {
        Stop("a block without an end");
    }
    return result;
}

class Job {
  public:
    Job(JobTarget* target, const Header& header, std::u16string jobName, const VelmoraDevMode& edited)
        : header_(header), jobName_(std::move(jobName)), edited_(edited), devMode_(new VelmoraDevMode(edited)) {
        record_.printerName = Has(kWithoutPrinter) ? nullptr : target->name.c_str();
        record_.jobName = Has(kWithoutName) ? nullptr : jobName_.c_str();
    }

    bool Start() {
        const int result = RunHook(Capacity(header_.startSize), [this](Buffer& buffer, DWORD* size) {
            return GuiStartJob(NextDevMode(), buffer.bytes.get(), size, &record_);
        });
        if (result != kJobDone && result != kJobImpossible) {
            Stop("a job neither starts nor fails to");
        }
        return result == kJobDone;
    }

    void Sheet() {
        RunHook(Capacity(header_.sheetSize), [this](Buffer& buffer, DWORD* size) {
            record_.sheetBuffer = buffer.bytes.get();
            record_.sheetSize = *size;
            const int result = GuiStartSheet(NextDevMode(), &record_);
            *size = record_.sheetSize;
            return result;
        });
    }

    void End() {
        const int result = RunHook(Capacity(header_.endSize), [this](Buffer& buffer, DWORD* size) {
            return GuiEndJob(NextDevMode(), buffer.bytes.get(), size, &record_);
        });
        if (result != kJobDone || record_.jobState != nullptr) {
            Stop("a job doesn't end");
        }
    }

  private:
    bool Has(uint8_t flag) const { return (header_.flags & flag) != 0; }
    DWORD Capacity(uint16_t size) const { return Has(kLargeCapacities) ? kLargeCapacity : size % kLargeCapacity; }
    DEVMODEW* NextDevMode() {
        if (Has(kWithoutDevMode)) {
            return nullptr;
        }
        if (Has(kEachHookEdits)) {
            *devMode_ = edited_;
        }
        return &devMode_->publicPart;
    }

    Header header_;
    std::u16string jobName_;
    VelmoraDevMode edited_;
    std::unique_ptr<VelmoraDevMode> devMode_;
    JobHookRecord record_ = {};
};

void Damage(std::string* bytes, const Edit& edit) {
    if (bytes->size() >= sizeof(edit.value)) {
        memcpy(bytes->data() + edit.place % (bytes->size() - sizeof(edit.value) + 1), &edit.value, sizeof(edit.value));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Printers printers;
    Header header;
    if (size < sizeof(header)) {
        return 0;
    }
    memcpy(&header, data, sizeof(header));
    size_t at = sizeof(header);
    std::u16string jobName(std::min<size_t>(header.nameLength, (size - at) / sizeof(char16_t)), u'\0');
    memcpy(jobName.data(), data + at, jobName.size() * sizeof(char16_t));
    at += jobName.size() * sizeof(char16_t);

    JobTarget& target = printers.models[header.model % printers.models.size()];
    auto devMode = std::make_unique<VelmoraDevMode>(target.valid);
    std::string bytes = target.bytes;
    for (; at + sizeof(Edit) <= size; at += sizeof(Edit)) {
        Edit edit;
        memcpy(&edit, data + at, sizeof(edit));
        if ((edit.kind & kFileEdit) != 0) {
            Damage(&bytes, edit);
        } else {
            Apply(edit, devMode.get());
        }
    }
    const bool isDamaged = bytes != target.bytes;
    printers.machine.SetAnsiCodePage((header.flags & kJapanese) != 0 ? 932 : 1252);
    const OpenCheck open;
    if (isDamaged) {
        driver_test::WriteDriveFile(target.file, bytes);
    }
    Job job(&target, header, std::move(jobName), *devMode);
    const bool isStarted = job.Start();
    if (isDamaged && (header.flags & kFileIsMended) != 0) {
        driver_test::WriteDriveFile(target.file, target.bytes);
    }
    if (isStarted) {
        for (int sheet = 0; (header.flags & kWithoutSheets) == 0 && sheet < 2; ++sheet) {
            job.Sheet();
        }
        job.End();
    }
    if (isDamaged) {
        driver_test::WriteDriveFile(target.file, target.bytes);
    }
    return 0;
}
