#include "tests/driver/package.h"

#include <winspool.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "platform/kernel/drive.h"
#include "tests/driver/resource_file.h"

namespace driver_test {
namespace {

constexpr WCHAR kPackageFolder[] = TEXT("C:\\Package");
constexpr DWORD kDriverVersion = 3;  // DRIVER_INFO_3.cVersion: user-mode drivers

[[noreturn]] void ThrowRefused(const char* call, DWORD error) {
    throw std::runtime_error(std::string(call) + " failed with error " + std::to_string(error));
}

// Puts a file where the spooler copies it from, and returns its path there; empty for no file.
WideText Place(const PackageFile& file) {
    if (file.name.empty()) {
        return {};
    }
    const WideText path = WideText(kPackageFolder) + TEXT("\\") + file.name;
    WriteDriveFile(path, file.bytes);
    return path;
}

}  // namespace

DriverPackage PackageOf(const std::string& description, const std::string& iniFile) {
    DriverPackage package;
    package.core = {TEXT("KV62R.DLL"), VersionedFile(TEXT("10.0.5.3"))};
    package.configuration = {TEXT("KV62U.DLL"), "no library"};
    package.data = description.empty() ? PackageFile{TEXT("KV62.DAT"), ""} : PackageFile{TEXT("KV62.XPI"), description};
    package.dependent = {{TEXT("KV62ENUS.DLL"), StringModule({{2117, TEXT("Custom size")}, {2420, TEXT("ini")}})}};
    if (!iniFile.empty()) {
        package.dependent.push_back({TEXT("KV62.INI"), iniFile});
    }
    return package;
}

void InstallPrinter(const DriverPackage& package, const WideText& printerName) {
    WideText driverName = package.driverName;
    WideText core = Place(package.core);
    WideText configuration = Place(package.configuration);
    WideText data = Place(package.data);
    WideText help = Place(package.help);
    WideText dependent;  // multi-string
    for (const PackageFile& file : package.dependent) {
        dependent += Place(file);
        dependent.push_back(0);
    }
    WideText environment = TEXT("Windows x64");
    const auto pointerOrNull = [](WideText& text) { return text.empty() ? nullptr : text.data(); };
    DRIVER_INFO_3W driver = {};
    driver.cVersion = kDriverVersion;
    driver.pName = driverName.data();
    driver.pEnvironment = environment.data();
    driver.pDriverPath = core.data();
    driver.pConfigFile = configuration.data();
    driver.pDataFile = pointerOrNull(data);
    driver.pHelpFile = pointerOrNull(help);
    driver.pDependentFiles = pointerOrNull(dependent);
    if (!AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&driver),
                             APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY)) {
        ThrowRefused("AddPrinterDriverExW", GetLastError());
    }
    WideText name = printerName;
    WideText port = TEXT("FILE:");
    WideText processor = TEXT("winprint");
    PRINTER_INFO_2W info = {};
    info.pPrinterName = name.data();
    info.pDriverName = driverName.data();
    info.pPortName = port.data();
    info.pPrintProcessor = processor.data();
    const HANDLE added = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info));
    if (!added) {
        ThrowRefused("AddPrinterW", GetLastError());
    }
    ClosePrinter(added);
}

velmora::OwnedPrinter OpenWithAllAccess(WideText printerName) {
    PRINTER_DEFAULTSW defaults = {nullptr, nullptr, PRINTER_ALL_ACCESS};
    HANDLE printer = nullptr;
    if (!OpenPrinterW(printerName.data(), &printer, &defaults)) {
        ThrowRefused("OpenPrinterW", GetLastError());
    }
    return velmora::OwnedPrinter(printer);
}

WideText InstalledPath(const WideText& fileName) {
    WCHAR directory[MAX_PATH];
    DWORD needed = 0;
    if (!GetPrinterDriverDirectoryW(nullptr, nullptr, 1, reinterpret_cast<BYTE*>(directory), sizeof(directory),
                                    &needed)) {
        ThrowRefused("GetPrinterDriverDirectoryW", GetLastError());
    }
    return WideText(directory) + TEXT("\\3\\") + fileName;
}

std::filesystem::path DrivePath(const WideText& path) {
    const auto hostPath = host::HostPath(path);
    if (!hostPath) {
        throw std::runtime_error("no path of the drive");
    }
    return *hostPath;
}

void WriteDriveFile(const WideText& path, const std::string& bytes) {
    const std::filesystem::path file = DrivePath(path);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << bytes;
    if (!stream.flush()) {
        throw std::runtime_error("can't write " + file.string());
    }
}

std::string ReadDriveFile(const WideText& path) {
    std::ifstream stream(DrivePath(path), std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

bool DriveFileExists(const WideText& path) {
    return std::filesystem::exists(DrivePath(path));
}

std::optional<std::string> GetData(HANDLE printer, WideText name) {
    DWORD type = 0;
    DWORD needed = 0;
    const DWORD result = GetPrinterDataW(printer, name.data(), &type, nullptr, 0, &needed);
    if (result != ERROR_SUCCESS && result != ERROR_MORE_DATA) {
        return std::nullopt;
    }
    std::string value(needed, '\0');
    if (needed > 0 && GetPrinterDataW(printer, name.data(), &type, reinterpret_cast<BYTE*>(value.data()), needed,
                                      &needed) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    return value;
}

void SetData(HANDLE printer, WideText name, DWORD type, const void* data, size_t size) {
    std::string bytes(static_cast<const char*>(data), size);
    const DWORD error =
        SetPrinterDataW(printer, name.data(), type, reinterpret_cast<BYTE*>(bytes.data()), static_cast<DWORD>(size));
    if (error != ERROR_SUCCESS) {
        ThrowRefused("SetPrinterDataW", error);
    }
}

void SetString(HANDLE printer, const WideText& name, const WideText& text) {
    SetData(printer, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(WCHAR));
}

}  // namespace driver_test
