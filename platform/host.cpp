#include "platform/host.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "platform/gdi/fonts.h"
#include "platform/kernel/drive.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/heap.h"
#include "platform/kernel/modules.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/programs.h"
#include "platform/kernel/settings.h"
#include "platform/kernel/store.h"
#include "platform/kernel/synchronization.h"
#include "platform/user/windows.h"

namespace host {
namespace {

bool machineExists = false;

constexpr const char* kDriveName = "drive_c";
constexpr const char* kStoreName = "machine.json";
constexpr const char* kLockName = "lock";

// Folders of a fresh drive.
constexpr const char* kFolders[] = {
    "Windows/System32",
    "Users/User/AppData/Roaming",
    "Users/User/AppData/Local/Temp",
};

// Folders of the system's earlier versions that lead to today's, relative to the folder they are in.
constexpr std::pair<const char*, const char*> kJunctions[] = {
    {"Users/User/Application Data", "AppData/Roaming"},
};

std::filesystem::path MakeTemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "velmora-machine-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    return name;
}

// Waits until no other process has the machine. The lock ends with the descriptor.
int LockFolder(const std::filesystem::path& folder) {
    const std::string name = (folder / kLockName).string();
    const int file = open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (file < 0) {
        throw std::runtime_error(name + ": " + std::generic_category().message(errno));
    }
    while (flock(file, LOCK_EX) != 0) {
        if (errno != EINTR) {
            const int error = errno;
            close(file);
            throw std::runtime_error(name + ": " + std::generic_category().message(error));
        }
    }
    return file;
}

}  // namespace

struct Machine::Parts {
    std::filesystem::path folder;
    std::filesystem::path drive;
    bool isKept = false;
    int lock = -1;

    explicit Parts(const std::filesystem::path* kept) {
        MachineLock machineLock;
        if (machineExists) {
            throw std::logic_error("there is a machine already");
        }
        isKept = kept != nullptr;
        if (isKept) {
            folder = std::filesystem::absolute(*kept);
            std::filesystem::create_directories(folder);
            lock = LockFolder(folder);
        } else {
            folder = MakeTemporaryFolder();
        }
        try {
            drive = folder / kDriveName;
            for (const char* name : kFolders) {
                std::filesystem::create_directories(drive / name);
            }
            for (const auto& [name, target] : kJunctions) {
                std::filesystem::path junction = drive / name;
                if (!std::filesystem::is_symlink(junction) && !std::filesystem::exists(junction)) {
                    std::filesystem::create_directory_symlink(target, junction);
                }
            }
            ClearSections();
            if (isKept) {
                KeepSections(folder / kStoreName);
                StoreChanged();
            }
        } catch (...) {
            Release();
            throw;
        }
        ForgetCalls();
        if (isKept) {
            SetHostFonts();
        } else {
            SetDisplayFonts(FreshFonts());
        }
        SetDriveFolder(drive);
        machineExists = true;
    }

    ~Parts() {
        MachineLock machineLock;
        UnloadModules();
        CloseEverything();
        FreeAllBlocks();
        ForgetPrograms();
        ForgetCalls();
        SetWaitsElapse(false);
        ClearSections();
        SetDriveFolder({});
        machineExists = false;
        Release();
    }

    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    // The folder goes, where it is only this machine's; another process may have it, where it is kept.
    void Release() {
        if (!isKept) {
            std::error_code ignored;  // what can't be removed stays in the temporary folder
            std::filesystem::remove_all(folder, ignored);
        }
        if (lock >= 0) {
            close(lock);
        }
    }

    // Changes a setting and keeps it.
    template <class Change>
    void Set(Change change) {
        MachineLock machineLock;
        change(CurrentSettings());
        if (!StoreChanged()) {
            throw std::runtime_error((folder / kStoreName).string() + ": can't be written");
        }
    }
};

Machine::Machine() : parts_(std::make_unique<Parts>(nullptr)) {}

Machine::Machine(const std::filesystem::path& folder) : parts_(std::make_unique<Parts>(&folder)) {}

Machine::~Machine() = default;

const std::filesystem::path& Machine::Drive() const {
    return parts_->drive;
}

void Machine::SetLanguage(LANGID language) {
    parts_->Set([=](Settings& settings) { settings.language = language; });
}

void Machine::SetMetric(bool metric) {
    parts_->Set([=](Settings& settings) { settings.metric = metric; });
}

void Machine::SetDecimalSeparator(std::u16string_view text) {
    parts_->Set([=](Settings& settings) { settings.decimalSeparator = text; });
}

void Machine::SetAnsiCodePage(UINT codePage) {
    if (codePage != 1252 && codePage != 932) {
        throw std::invalid_argument("code page " + std::to_string(codePage) + " is neither 1252 nor 932");
    }
    parts_->Set([=](Settings& settings) { settings.ansiCodePage = codePage; });
}

LANGID Machine::Language() const {
    return GetUserDefaultLangID();
}

bool Machine::IsMetric() const {
    MachineLock lock;
    return CurrentSettings().metric;
}

void Machine::SetComputerName(std::u16string_view name) {
    if (name.empty() || name.size() > MAX_COMPUTERNAME_LENGTH) {
        throw std::invalid_argument("a computer's name has 1 to 15 characters");
    }
    parts_->Set([=](Settings& settings) { settings.computerName = name; });
}

void Machine::SetSystemVersion(DWORD major, DWORD minor) {
    parts_->Set([=](Settings& settings) {
        settings.majorVersion = major;
        settings.minorVersion = minor;
    });
}

void Machine::SetTickCount(DWORD milliseconds) {
    parts_->Set([=](Settings& settings) { settings.tickCount = milliseconds; });
}

void Machine::SetWaitsElapseAtOnce(bool atOnce) {
    SetWaitsElapse(atOnce);
}

void Machine::SetVariable(std::u16string_view name, std::u16string_view value) {
    parts_->Set([=](Settings& settings) {
        for (auto* variables : {&settings.variables, &ProcessEnvironment()}) {
            if (value.empty()) {
                variables->erase(std::u16string(name));
            } else {
                (*variables)[std::u16string(name)] = value;
            }
        }
    });
}

void Machine::SetGrantedPrinterAccess(DWORD accessMask) {
    parts_->Set([=](Settings& settings) { settings.grantedPrinterAccess = accessMask; });
}

void Machine::SetMayWritePrinterData(bool may) {
    parts_->Set([=](Settings& settings) { settings.mayWritePrinterData = may; });
}

void Machine::SetFonts(std::vector<Font> fonts) {
    SetDisplayFonts(std::move(fonts));
}

void Machine::SetProgram(std::u16string_view fileName, Program program) {
    SetProgramFunction(fileName, std::move(program));
}

void Machine::SetUser(std::function<void()> user) {
    SetInputUser(std::move(user));
}

}  // namespace host
