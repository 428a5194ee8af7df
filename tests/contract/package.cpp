#include "tests/contract/package.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace contract {
namespace {

const std::filesystem::path kBuiltFiles = "package";
constexpr WCHAR kSourceFolder[] = TEXT("C:\\VelmoraPackage");
constexpr WCHAR kEnvironmentName[] = TEXT("Windows x64");
constexpr DWORD kDriverVersion = 3;  // DRIVER_INFO_3.cVersion: user-mode drivers

[[noreturn]] void ThrowRefused(const char* call, DWORD error) {
    throw std::runtime_error(std::string(call) + " failed with error " + std::to_string(error));
}

WideText Parameter(const WCHAR* text) {
    return WideText(text);
}

// Puts a package's file where the spooler copies it from, and returns its path there; empty for no file.
WideText PlaceFile(const ContractEnvironment& environment, const PackageFile& file) {
    if (file.name.empty()) {
        return {};
    }
    const WideText path = WideText(kSourceFolder) + TEXT("\\") + file.name;
    const std::filesystem::path target = environment.HostPath(path);
    std::filesystem::create_directories(target.parent_path());
    if (file.builtFile.empty()) {
        std::ofstream stream(target, std::ios::binary);
        stream << file.text;
        if (!stream.flush()) {
            throw std::runtime_error("can't write " + target.string());
        }
    } else {
        std::filesystem::copy_file(kBuiltFiles / file.builtFile, target,
                                   std::filesystem::copy_options::overwrite_existing);
    }
    return path;
}

WCHAR* PointerOrNull(WideText& text) {
    return text.empty() ? nullptr : text.data();
}

// Calls `query(buffer, size, &needed)` first for the size, then for the content.
template <class Query>
std::vector<BYTE> ReadSized(const char* call, Query query) {
    DWORD needed = 0;
    if (!query(nullptr, 0, &needed) && GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
        ThrowRefused(call, GetLastError());
    }
    std::vector<BYTE> buffer(needed);
    if (!query(buffer.data(), needed, &needed)) {
        ThrowRefused(call, GetLastError());
    }
    return buffer;
}

}  // namespace

DriverPackage PackageOf(const std::string& descriptionFile) {
    DriverPackage package;
    package.dataFile = {WideText(descriptionFile.begin(), descriptionFile.end()), descriptionFile, {}};
    package.dependentFiles = {{TEXT("KV62ENUS.DLL"), "KV62ENUS.DLL", {}},
                              {TEXT("KV62GERM.DLL"), "KV62GERM.DLL", {}},
                              {TEXT("KV62JAPA.DLL"), "KV62JAPA.DLL", {}},
                              // The render library, without an INI file and with one, and the image module beside it.
                              {TEXT("KVIME.DLL"), {}, "no library"},
                              {TEXT("KV62E.DLL"), {}, "no library"},
                              {TEXT("KV62im.dll"), "KV62im.dll", {}}};
    // Programs are built for Windows alone.
    const std::string program = "KV62WM.EXE";
    const bool isBuilt = std::filesystem::exists(kBuiltFiles / program);
    package.dependentFiles.push_back({TEXT("KV62WM.EXE"), isBuilt ? program : "", "no program"});
    return package;
}

std::vector<std::string> DescriptionFiles() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(kBuiltFiles)) {
        if (entry.path().extension() == ".XPI") {
            names.push_back(entry.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

InstalledPrinter::InstalledPrinter(ContractEnvironment& environment, const DriverPackage& package,
                                   const WideText& printerName)
    : environment_(environment), name_(printerName), driverName_(package.driverName) {
    try {
        WideText core = PlaceFile(environment, package.renderingCore);
        WideText configuration = PlaceFile(environment, package.configurationFile);
        WideText data = PlaceFile(environment, package.dataFile);
        WideText help = PlaceFile(environment, package.helpFile);
        WideText dependent;  // multi-string
        for (const PackageFile& file : package.dependentFiles) {
            dependent += PlaceFile(environment, file);
            dependent.push_back(0);
        }
        WideText environmentName = Parameter(kEnvironmentName);
        WideText dataType = Parameter(TEXT("RAW"));

        DRIVER_INFO_3W driver = {};
        driver.cVersion = kDriverVersion;
        driver.pName = driverName_.data();
        driver.pEnvironment = environmentName.data();
        driver.pDriverPath = core.data();
        driver.pDataFile = PointerOrNull(data);
        driver.pConfigFile = configuration.data();
        driver.pHelpFile = PointerOrNull(help);
        driver.pDependentFiles = PointerOrNull(dependent);
        driver.pDefaultDataType = dataType.data();
        if (!AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&driver),
                                 APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY)) {
            ThrowRefused("AddPrinterDriverExW", GetLastError());
        }
        driverAdded_ = true;

        WideText port = Parameter(TEXT("FILE:"));
        WideText processor = Parameter(TEXT("winprint"));
        PRINTER_INFO_2W info = {};
        info.pPrinterName = name_.data();
        info.pDriverName = driverName_.data();
        info.pPortName = port.data();
        info.pPrintProcessor = processor.data();
        info.pDatatype = dataType.data();
        const HANDLE added = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info));
        if (added == nullptr) {
            ThrowRefused("AddPrinterW", GetLastError());
        }
        ClosePrinter(added);
        PRINTER_DEFAULTSW access = {nullptr, nullptr, PRINTER_ALL_ACCESS};
        if (!OpenPrinterW(name_.data(), &printer_, &access)) {
            ThrowRefused("OpenPrinterW", GetLastError());
        }

        std::vector<BYTE> block = ReadSized("GetPrinterDriverW", [this](BYTE* buffer, DWORD size, DWORD* needed) {
            return GetPrinterDriverW(printer_, nullptr, 3, buffer, size, needed);
        });
        const auto* installed = reinterpret_cast<const DRIVER_INFO_3W*>(block.data());
        for (const WCHAR* path :
             {installed->pDriverPath, installed->pConfigFile, installed->pDataFile, installed->pHelpFile}) {
            if (path != nullptr && *path != 0) {
                files_.emplace_back(path);
            }
        }
        for (const WCHAR* path = installed->pDependentFiles; path != nullptr && *path != 0;
             path += files_.back().size() + 1) {
            files_.emplace_back(path);
        }

        module_ = LoadLibraryW(installed->pConfigFile);
        if (module_ == nullptr) {
            ThrowRefused("LoadLibraryW of the configuration file", GetLastError());
        }
        exports_ = ResolveExports(module_);
        environment_.PrepareDriver(module_, printer_);
    } catch (...) {
        Remove();
        throw;
    }
}

InstalledPrinter::~InstalledPrinter() {
    Remove();
}

void InstalledPrinter::Remove() {
    if (module_ != nullptr) {
        environment_.LeaveDriver(module_, printer_);
        FreeLibrary(module_);
    }
    if (printer_ != nullptr) {
        if (!DeletePrinter(printer_)) {
            std::cerr << "DeletePrinter failed with error " << GetLastError() << "\n";
        }
        ClosePrinter(printer_);
    }
    if (driverAdded_) {
        // Not every host removes the files with the driver.
        WideText environmentName = Parameter(kEnvironmentName);
        if (!DeletePrinterDriverExW(nullptr, environmentName.data(), driverName_.data(), DPD_DELETE_UNUSED_FILES, 0) &&
            !DeletePrinterDriverExW(nullptr, environmentName.data(), driverName_.data(), 0, 0)) {
            std::cerr << "DeletePrinterDriverExW failed with error " << GetLastError() << "\n";
        }
    }
    std::error_code ignored;
    for (const WideText& file : files_) {
        std::filesystem::remove(environment_.HostPath(file), ignored);
    }
    std::filesystem::remove_all(environment_.HostPath(kSourceFolder), ignored);
}

WideText InstalledPrinter::File(const WideText& fileName) const {
    for (const WideText& file : files_) {
        if (file.ends_with(TEXT("\\") + fileName)) {
            return file;
        }
    }
    throw std::runtime_error("no such file of the driver");
}

PrinterData InstalledPrinter::Data() const {
    DWORD longestName = 0;
    DWORD longestValue = 0;
    DWORD error = EnumPrinterDataW(printer_, 0, nullptr, 0, &longestName, nullptr, nullptr, 0, &longestValue);
    PrinterData data;
    for (DWORD index = 0; error == ERROR_SUCCESS; ++index) {
        WideText name(longestName / sizeof(WCHAR), 0);
        PrinterValue value = {REG_NONE, std::vector<BYTE>(longestValue)};
        DWORD nameSize = 0;
        DWORD size = 0;
        error = EnumPrinterDataW(printer_, index, name.data(), longestName, &nameSize, &value.type, value.bytes.data(),
                                 longestValue, &size);
        name = name.c_str();
        value.bytes.resize(size);
        if (error == ERROR_SUCCESS && name != TEXT("FontSubs")) {
            data[name] = value;
        }
    }
    if (error != ERROR_NO_MORE_ITEMS) {
        ThrowRefused("EnumPrinterDataW", error);
    }
    return data;
}

std::vector<BYTE> InstalledPrinter::Info() const {
    return ReadSized("GetPrinterW", [this](BYTE* buffer, DWORD size, DWORD* needed) {
        return GetPrinterW(printer_, 2, buffer, size, needed);
    });
}

void InstalledPrinter::SetDevMode(const DEVMODEW& devMode) {
    std::vector<BYTE> block = Info();
    auto* info = reinterpret_cast<PRINTER_INFO_2W*>(block.data());
    info->pDevMode = const_cast<DEVMODEW*>(&devMode);
    info->pSecurityDescriptor = nullptr;
    if (!SetPrinterW(printer_, 2, block.data(), 0)) {
        ThrowRefused("SetPrinterW", GetLastError());
    }
}

bool InstalledPrinter::Send(int event) {
    return exports_.DrvPrinterEvent(name_.data(), event, 0, 0) != FALSE;
}

void InstalledPrinter::SetData(const WideText& value, DWORD type, const void* data, size_t size) {
    WideText name = value;
    std::vector<BYTE> bytes(static_cast<const BYTE*>(data), static_cast<const BYTE*>(data) + size);
    const DWORD error = SetPrinterDataW(printer_, name.data(), type, bytes.data(), static_cast<DWORD>(size));
    if (error != ERROR_SUCCESS) {
        ThrowRefused("SetPrinterDataW", error);
    }
}

void InstalledPrinter::SetString(const WideText& value, const WideText& text) {
    SetData(value, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(WCHAR));
}

}  // namespace contract
