// Printer drivers: their files in the driver directory, and the records that name them.
#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "platform/kernel/drive.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/objects.h"
#include "platform/kernel/text.h"
#include "platform/spooler/directories.h"
#include "platform/spooler/failures.h"
#include "platform/spooler/info_buffer.h"
#include "platform/spooler/printer_handle.h"
#include "platform/spooler/state.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kDriverVersion = 3;  // DRIVER_INFO_3.cVersion: user-mode drivers

constexpr DWORD kCopyModes = APD_STRICT_UPGRADE | APD_STRICT_DOWNGRADE | APD_COPY_ALL_FILES | APD_COPY_NEW_FILES;

void AddInfo3(InfoBuffer<DRIVER_INFO_3W>& buffer, const Driver& driver) {
    buffer.Add().cVersion = driver.version;
    buffer.Text(&DRIVER_INFO_3W::pEnvironment, kThisEnvironment);
    for (const auto& field : kDriverTexts) {
        buffer.OptionalText(field.published, driver.*field.text);
    }
    std::u16string dependentFiles;
    for (const std::u16string& file : driver.dependentFiles) {
        dependentFiles += file;
        dependentFiles.push_back(0);
    }
    buffer.OptionalText(&DRIVER_INFO_3W::pDependentFiles, dependentFiles);
}

std::u16string_view FileName(std::u16string_view path) {
    const size_t separator = path.find_last_of(u"\\/:");
    return separator == path.npos ? path : path.substr(separator + 1);
}

// Where the file that a DRIVER_INFO_3 names lies now: a path as it says, a bare name in the driver directory or among
// the installed files. Null where there is no such file.
std::optional<fs::path> FindSource(std::u16string_view named) {
    std::vector<std::u16string> candidates = {std::u16string(named)};
    if (FileName(named) == named) {
        candidates = {DriverDirectory() + u"\\" + std::u16string(named), InstalledDriverPath(named)};
    }
    for (const std::u16string& candidate : candidates) {
        const std::optional<fs::path> path = HostPath(candidate);
        std::error_code ignored;
        if (path && fs::is_regular_file(*path, ignored)) {
            return path;
        }
    }
    return std::nullopt;
}

DWORD ErrorNumber(const std::error_code& error) {
    if (error == std::errc::permission_denied || error == std::errc::read_only_file_system) {
        return ERROR_ACCESS_DENIED;
    }
    return error == std::errc::no_space_on_device ? ERROR_DISK_FULL : ERROR_WRITE_FAULT;
}

// Copies a file among the installed ones by way of a second name: whoever has the old file loaded keeps it whole. With
// `onlyNewer` a file there that is at least as new stays. False with the last error set.
bool CopyFileIn(const fs::path& source, std::u16string_view target, bool onlyNewer) {
    const std::optional<fs::path> path = HostPath(target);
    if (!path) {
        return Fail(ERROR_PATH_NOT_FOUND);
    }
    std::error_code error;
    if (fs::exists(*path, error)) {
        const bool isSame = fs::equivalent(source, *path, error);
        const bool isOlder = onlyNewer && fs::last_write_time(source, error) <= fs::last_write_time(*path, error);
        if (isSame || isOlder) {
            return true;
        }
    }
    fs::path fresh = *path;
    fresh += ".new";
    fs::create_directories(path->parent_path(), error);
    if (!error) {
        fs::copy_file(source, fresh, fs::copy_options::overwrite_existing, error);
    }
    if (!error) {
        fs::last_write_time(fresh, fs::last_write_time(source, error), error);
    }
    if (!error) {
        fs::rename(fresh, *path, error);
    }
    return !error || Fail(ErrorNumber(error));
}

// Every file of a driver, the configuration and data files included.
std::vector<std::u16string> FilesOf(const Driver& driver) {
    std::vector<std::u16string> files = driver.dependentFiles;
    for (const auto member : {&Driver::driverPath, &Driver::dataFile, &Driver::configFile, &Driver::helpFile}) {
        if (!(driver.*member).empty()) {
            files.push_back(driver.*member);
        }
    }
    return files;
}

bool Uses(const Driver& driver, std::u16string_view file) {
    return std::ranges::any_of(FilesOf(driver), [&](const auto& other) { return EqualsIgnoringCase(other, file); });
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

BOOL WINAPI GetPrinterDriverW(HANDLE hPrinter, LPWSTR pEnvironment, DWORD Level, LPBYTE pDriverInfo, DWORD cbBuf,
                              LPDWORD pcbNeeded) {
    if (FaultAsked("GetPrinterDriverW")) {
        return FALSE;
    }
    const MachineLock lock;
    const std::shared_ptr<Printer> printer = OpenedPrinter(hPrinter);
    if (!printer || !IsSupportedLevel("GetPrinterDriverW", Level, 3, 8) || !IsThisEnvironment(pEnvironment)) {
        return FALSE;
    }
    const Driver* const driver = FindDriver(printer->driverName);
    if (!driver) {
        return Fail(ERROR_UNKNOWN_PRINTER_DRIVER);
    }
    InfoBuffer<DRIVER_INFO_3W> buffer;
    AddInfo3(buffer, *driver);
    return buffer.CopyTo(pDriverInfo, cbBuf, pcbNeeded, nullptr, false);
}

BOOL WINAPI GetPrinterDriverDirectoryW(LPWSTR pName, LPWSTR pEnvironment, DWORD Level, LPBYTE pDriverDirectory,
                                       DWORD cbBuf, LPDWORD pcbNeeded) {
    if (FaultAsked("GetPrinterDriverDirectoryW") || !IsThisMachine(pName) || !IsThisEnvironment(pEnvironment)) {
        return FALSE;
    }
    return CopyDirectory(DriverDirectory(), Level, pDriverDirectory, cbBuf, pcbNeeded);
}

BOOL WINAPI AddPrinterDriverExW(LPWSTR pName, DWORD Level, LPBYTE pDriverInfo, DWORD dwFileCopyFlags) {
    if (FaultAsked("AddPrinterDriverExW") || !IsThisMachine(pName) ||
        !IsSupportedLevel("AddPrinterDriverExW", Level, 3, 8)) {
        return FALSE;
    }
    const DWORD copyMode = dwFileCopyFlags & kCopyModes;
    if (!pDriverInfo || (copyMode & (copyMode - 1)) != 0 || copyMode == 0 ||
        (dwFileCopyFlags & ~(kCopyModes | APD_COPY_FROM_DIRECTORY)) != 0) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    if (copyMode == APD_STRICT_UPGRADE || copyMode == APD_STRICT_DOWNGRADE) {
        return FailUnsupported("AddPrinterDriverExW with APD_STRICT_UPGRADE or APD_STRICT_DOWNGRADE");
    }
    const DRIVER_INFO_3W& info = *reinterpret_cast<const DRIVER_INFO_3W*>(pDriverInfo);
    if (!IsThisEnvironment(info.pEnvironment)) {
        return FALSE;
    }
    const auto isGiven = [](LPCWSTR text) { return text && *text; };
    if (!isGiven(info.pName) || !isGiven(info.pDriverPath) || !isGiven(info.pDataFile) || !isGiven(info.pConfigFile) ||
        info.cVersion != kDriverVersion) {
        return Fail(ERROR_INVALID_PARAMETER);
    }

    Driver driver;
    driver.version = info.cVersion;
    for (const auto& field : kDriverTexts) {
        driver.*field.text = info.*field.published ? info.*field.published : u"";
    }
    for (LPCWSTR file = info.pDependentFiles; isGiven(file); file += driver.dependentFiles.back().size() + 1) {
        driver.dependentFiles.emplace_back(file);
    }

    const MachineLock lock;
    // All must be there before the first is copied.
    std::vector<fs::path> sources;
    for (const std::u16string& file : FilesOf(driver)) {
        std::optional<fs::path> source = FindSource(file);
        if (!source) {
            return Fail(ERROR_FILE_NOT_FOUND);
        }
        sources.push_back(std::move(*source));
    }
    for (const auto member : {&Driver::driverPath, &Driver::dataFile, &Driver::configFile, &Driver::helpFile}) {
        if (!(driver.*member).empty()) {
            driver.*member = InstalledDriverPath(FileName(driver.*member));
        }
    }
    for (std::u16string& file : driver.dependentFiles) {
        file = InstalledDriverPath(FileName(file));
    }
    const std::vector<std::u16string> targets = FilesOf(driver);
    for (size_t i = 0; i < sources.size(); ++i) {
        if (!CopyFileIn(sources[i], targets[i], copyMode == APD_COPY_NEW_FILES)) {
            return FALSE;
        }
    }

    auto changed = Spooler().drivers;
    std::erase_if(changed, [&](const Driver& other) { return EqualsIgnoringCase(other.name, driver.name); });
    changed.push_back(std::move(driver));
    return Replace(Spooler().drivers, std::move(changed));
}

BOOL WINAPI EnumPrinterDriversW(LPWSTR pName, LPWSTR pEnvironment, DWORD Level, LPBYTE pDriverInfo, DWORD cbBuf,
                                LPDWORD pcbNeeded, LPDWORD pcReturned) {
    if (FaultAsked("EnumPrinterDriversW") || !IsThisMachine(pName) || !IsThisEnvironment(pEnvironment) ||
        !IsSupportedLevel("EnumPrinterDriversW", Level, 3, 8)) {
        return FALSE;
    }
    const MachineLock lock;
    InfoBuffer<DRIVER_INFO_3W> buffer;
    for (const Driver& driver : Spooler().drivers) {
        AddInfo3(buffer, driver);
    }
    return buffer.CopyTo(pDriverInfo, cbBuf, pcbNeeded, pcReturned, true);
}

BOOL WINAPI DeletePrinterDriverExW(LPWSTR pName, LPWSTR pEnvironment, LPWSTR pDriverName, DWORD dwDeleteFlag,
                                   DWORD dwVersionFlag) {
    if (FaultAsked("DeletePrinterDriverExW") || !IsThisMachine(pName) || !IsThisEnvironment(pEnvironment)) {
        return FALSE;
    }
    constexpr DWORD kDeleteFlags = DPD_DELETE_UNUSED_FILES | DPD_DELETE_SPECIFIC_VERSION | DPD_DELETE_ALL_FILES;
    if (!pDriverName || !*pDriverName || (dwDeleteFlag & ~kDeleteFlags) != 0) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    const MachineLock lock;
    const Driver* const found = FindDriver(pDriverName);
    if (!found || ((dwDeleteFlag & DPD_DELETE_SPECIFIC_VERSION) != 0 && found->version != dwVersionFlag)) {
        return Fail(ERROR_UNKNOWN_PRINTER_DRIVER);
    }
    const Driver driver = *found;
    if (std::ranges::any_of(Spooler().printers, [&](const auto& printer) {
            return EqualsIgnoringCase(printer->driverName, driver.name);
        })) {
        return Fail(ERROR_PRINTER_DRIVER_IN_USE);
    }
    auto left = Spooler().drivers;
    left.erase(left.begin() + (found - Spooler().drivers.data()));

    std::vector<std::u16string> unused = FilesOf(driver);
    const size_t shared = std::erase_if(unused, [&](const std::u16string& file) {
        return std::ranges::any_of(left, [&](const Driver& other) { return Uses(other, file); });
    });
    if ((dwDeleteFlag & DPD_DELETE_ALL_FILES) != 0 && shared != 0) {
        return Fail(ERROR_PRINTER_DRIVER_IN_USE);
    }
    if (!Replace(Spooler().drivers, std::move(left))) {
        return FALSE;
    }
    if ((dwDeleteFlag & (DPD_DELETE_UNUSED_FILES | DPD_DELETE_ALL_FILES)) != 0) {
        for (const std::u16string& file : unused) {
            const std::optional<fs::path> path = HostPath(file);
            std::error_code error;
            if (path && !fs::remove(*path, error) && error) {
                return Fail(ErrorNumber(error));
            }
        }
    }
    return TRUE;
}

}  // extern "C"
