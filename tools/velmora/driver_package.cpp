#include "tools/velmora/driver_package.h"

#include <windows.h>
#include <winspool.h>

#include <algorithm>
#include <cctype>
#include <fstream>

#include "driver/base/handles.h"
#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/entry/printer_access.h"
#include "driver/settings/custom_sizes.h"
#include "driver/settings/printer_data_file.h"
#include "driver/settings/settings_folder.h"
#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/printer_model.h"
#include "tools/velmora/spooler_client.h"
#include "tools/xpic/compile.h"
#include "tools/xpic/file_content.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

constexpr const char* kStagingFolder = "Velmora package";  // below the drive
constexpr DWORD kDriverVersion = 3;                        // DRIVER_INFO_3.cVersion: user-mode drivers
constexpr int16_t kFirstOwnPaper = 256;                    // papers from here on become forms
constexpr size_t kMostPrinterName = 127;                   // the driver knows no longer ones
constexpr size_t kMostStem = 64;  // keeps the installed path within the device mode's descriptionPath

// Names of files as they are installed. Language modules keep the names that the build gives them.
constexpr const char* kRenderingCore = "KV62R.DLL";
constexpr const char* kConfigurationFile = "KV62U.DLL";
constexpr const char* kPrintProcessorFile = "KV62PPR.DLL";
constexpr const char* kImageModule = "KV62im.dll";
constexpr const char* kWatermarkProgram = "KV62WM.EXE";  // run as a call; the rendering core stands for the file

// The render library, beside which the driver looks for the image module: the one that the printer's data name where
// the package has an INI file, and the one that is looked for without. Both names are as long as the driver takes them
// to be. The rendering core stands for them.
constexpr const char* kRenderLibraries[] = {"KV62E.DLL", "KVIME.DLL"};
constexpr const char16_t* kSystemPrintProcessor = u"winprint";

// Extensions that the driver's own name gets.
constexpr const char* kIniExtension = ".INI";
constexpr const char* kDataExtension = ".DAT";

// The language modules' paths from the program's folder.
constexpr const char* kLanguageModules[] = {VELMORA_LANGUAGE_MODULES};

std::string UpperCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

// A file name without extension that holds nothing the driver could take for another of its files: it looks for
// extensions anywhere in a path.
std::string DriverNameFrom(const fs::path& file) {
    std::string name = UpperCase(file.stem().string());
    if (name.size() > kMostStem) {
        throw CommandError(file.string() + ": the file's name becomes the driver's and has more than " +
                           std::to_string(kMostStem) + " characters; give it a shorter one");
    }
    for (char& c : name) {
        const auto byte = static_cast<unsigned char>(c);
        c = byte >= 0x80 || std::isalnum(byte) || c == '-' || c == '_' || c == ' ' ? c : '-';
    }
    return name;
}

std::vector<std::byte> ReadFile(const fs::path& file) {
    const std::optional<std::string> bytes = ReadFileContent(file);
    if (!bytes) {
        throw CommandError(file.string() + " can't be read");
    }
    const auto* const first = reinterpret_cast<const std::byte*>(bytes->data());
    return {first, first + bytes->size()};
}

[[noreturn]] void ThrowFaults(const fs::path& file, const std::vector<Diagnostic>& diagnostics) {
    std::string lines;
    for (const Diagnostic& diagnostic : diagnostics) {
        lines += FormatDiagnostic(diagnostic) + "\n";
    }
    const size_t count = diagnostics.size();
    throw CommandError(file.string() + " has " + std::to_string(count) + (count == 1 ? " fault" : " faults") +
                           "; nothing was installed",
                       lines);
}

// The package's files on the machine's drive, for as long as they are needed.
class StagedPackage {
  public:
    StagedPackage(const host::Machine& machine, const BuiltFiles& files, const PackagedModel& model,
                  const PackageExtras& extras)
        : folder_(machine.Drive() / kStagingFolder) {
        try {
            // What a command left that was killed.
            fs::remove_all(folder_);
            fs::create_directories(folder_);
            fs::copy_file(files.renderingCore, folder_ / kRenderingCore);
            fs::copy_file(files.configurationFile, folder_ / kConfigurationFile);
            fs::copy_file(files.printProcessor, folder_ / kPrintProcessorFile);
            fs::copy_file(files.imageModule, folder_ / kImageModule);
            fs::copy_file(files.renderingCore, folder_ / kWatermarkProgram);
            for (const char* library : kRenderLibraries) {
                fs::copy_file(files.renderingCore, folder_ / library);
            }
            for (const fs::path& module : files.languageModules) {
                fs::copy_file(module, folder_ / module.filename());
            }
            if (extras.iniFile) {
                fs::copy_file(*extras.iniFile, folder_ / (model.driverName + kIniExtension));
            }
            if (extras.dataFile) {
                fs::copy_file(*extras.dataFile, folder_ / (model.driverName + kDataExtension));
            }
            WriteFileAtomically(folder_ / model.dataFile, model.description);
        } catch (const fs::filesystem_error& error) {
            Remove();
            throw CommandError(std::string("the package can't be put on the machine's drive: ") + error.what());
        }
    }
    ~StagedPackage() { Remove(); }
    StagedPackage(const StagedPackage&) = delete;
    StagedPackage& operator=(const StagedPackage&) = delete;

    // As the machine names it.
    static std::u16string PathOf(const std::string& name) {
        return host::ToWide(std::string("C:\\") + kStagingFolder + "\\" + name);
    }

  private:
    void Remove() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    fs::path folder_;
};

// The page description language of the packaged model.
uint16_t CheckDescription(const PackagedModel& model) {
    const OwnedFile file(CreateFileW(StagedPackage::PathOf(model.dataFile).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                     nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    const HeapOwner<DeviceModel> loaded = LoadDeviceModel(file.Get());
    if (!loaded) {
        throw CommandError(model.file.string() +
                           ": the driver can't read a model from it; is it a compiled description file?");
    }
    return loaded->pdlType;
}

// Where the spooler looks for print processors.
void CopyPrintProcessor() {
    DWORD needed = 0;
    WCHAR folder[MAX_PATH] = {};
    if (!GetPrintProcessorDirectoryW(nullptr, nullptr, 1, reinterpret_cast<BYTE*>(folder), sizeof(folder), &needed)) {
        ThrowRefused("GetPrintProcessorDirectoryW");
    }
    const std::u16string target = std::u16string(folder) + u"\\" + host::ToWide(kPrintProcessorFile);
    if (!CopyFileW(StagedPackage::PathOf(kPrintProcessorFile).c_str(), target.c_str(), FALSE)) {
        ThrowRefused(std::string("CopyFileW of ") + kPrintProcessorFile);
    }
}

void AddDriver(const BuiltFiles& files, const PackagedModel& model, const PackageExtras& extras,
               bool withPrintProcessor) {
    std::u16string name = host::ToWide(model.driverName);
    std::u16string core = StagedPackage::PathOf(kRenderingCore);
    std::u16string configuration = StagedPackage::PathOf(kConfigurationFile);
    std::u16string data = StagedPackage::PathOf(extras.dataFile ? model.driverName + kDataExtension : model.dataFile);
    std::u16string dependent;  // multi-string
    const auto addDependent = [&](const std::string& file) { dependent += StagedPackage::PathOf(file) + u'\0'; };
    for (const fs::path& module : files.languageModules) {
        addDependent(module.filename().string());
    }
    for (const char* library : kRenderLibraries) {
        addDependent(library);
    }
    addDependent(kImageModule);
    addDependent(kWatermarkProgram);
    if (withPrintProcessor) {
        addDependent(kPrintProcessorFile);
    }
    if (extras.dataFile) {
        addDependent(model.dataFile);
    }
    if (extras.iniFile) {
        addDependent(model.driverName + kIniExtension);
    }
    std::u16string dataType = u"RAW";
    DRIVER_INFO_3W info = {};
    info.cVersion = kDriverVersion;
    info.pName = name.data();
    info.pDriverPath = core.data();
    info.pDataFile = data.data();
    info.pConfigFile = configuration.data();
    info.pDependentFiles = dependent.data();
    info.pDefaultDataType = dataType.data();
    if (!AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&info),
                             APD_COPY_ALL_FILES | APD_COPY_FROM_DIRECTORY)) {
        ThrowRefused("AddPrinterDriverExW of " + model.driverName);
    }
}

void AddPrinter(const std::string& printerName, const std::string& driverName) {
    std::u16string name = host::ToWide(printerName);
    std::u16string driver = host::ToWide(driverName);
    std::u16string port = u"FILE:";
    std::u16string processor = kSystemPrintProcessor;
    std::u16string dataType = u"RAW";
    PRINTER_INFO_2W info = {};
    info.pPrinterName = name.data();
    info.pDriverName = driver.data();
    info.pPortName = port.data();
    info.pPrintProcessor = processor.data();
    info.pDatatype = dataType.data();
    const HANDLE added = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info));
    if (!added) {
        ThrowRefused("AddPrinterW of \"" + printerName + "\"");
    }
    ClosePrinter(added);
}

bool DeleteDriver(const std::string& driverName) {
    std::u16string name = host::ToWide(driverName);
    return DeletePrinterDriverExW(nullptr, nullptr, name.data(), DPD_DELETE_UNUSED_FILES, 0) != FALSE;
}

std::vector<std::string> PrintersOf(const std::string& driverName) {
    std::vector<std::string> names;
    for (const PrinterEntry& printer : ListPrinters()) {
        if (SameName(printer.driver, driverName)) {
            names.push_back(printer.name);
        }
    }
    return names;
}

// The bytes that the driver appended to a separate printer data file; none where the data file isn't one.
std::optional<int64_t> AppendedBytes(HANDLE printer, const PackageExtras& extras) {
    if (!extras.dataFile) {
        return std::nullopt;
    }
    const auto base = static_cast<int64_t>(fs::file_size(*extras.dataFile));
    const DWORD size = MeasurePrinterDataFile(printer);
    return size == kNoPrinterDataFile ? 0 : int64_t{size} - base;
}

// Of the forms that drivers made those of the printer's own papers and of its custom sizes.
std::vector<std::string> FormsOf(const PrinterModel& model, const std::string& printerName) {
    std::vector<std::string> papers;
    for (const PaperRecord& paper : RecordList(model->paperTable)) {
        if (paper.paperId >= kFirstOwnPaper) {
            papers.push_back(model.Localized(static_cast<int16_t>(paper.nameRef)));
        }
    }
    const CustomSizeList sizes = LoadCustomSizes(host::ToWide(printerName).c_str());
    for (unsigned i = 0; i < sizes.count; ++i) {
        papers.push_back(host::ToUtf8(sizes.records.Get()[i].name));
    }
    std::vector<std::string> forms;
    for (const std::string& form : ListPrinterForms(model.Printer())) {
        if (std::ranges::find(papers, form) != papers.end()) {
            forms.push_back(form);
        }
    }
    return forms;
}

bool HasStoredSettings(const std::string& printerName) {
    WCHAR path[MAX_PATH];
    return GetSettingsFilePath(host::ToWide(printerName).c_str(), path, MAX_PATH) &&
           GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

// What the driver did when it was told of the printer.
void Survey(const std::string& printerName, const PackageExtras& extras, Installation* installation) {
    const PrinterModel model(printerName);
    installation->valueCount = ListPrinterData(model.Printer()).size();
    installation->forms = FormsOf(model, printerName);
    installation->appended = AppendedBytes(model.Printer(), extras);
    const std::string processor = PrintProcessorOf(model.Printer());
    installation->printProcessor = SameName(processor, host::ToUtf8(kSystemPrintProcessor)) ? "" : processor;
    installation->hasStoredSettings = HasStoredSettings(printerName);
}

void CheckExtra(const std::optional<fs::path>& file, const char* option) {
    if (file && !(fs::is_regular_file(*file) && std::ifstream(*file))) {
        throw CommandError(std::string(option) + ": " + file->string() + " isn't a file that can be read");
    }
}

void CheckPrinterName(const std::string& name) {
    if (name.empty() || name.find_first_of("\\,!") != name.npos || host::ToWide(name).size() > kMostPrinterName) {
        throw CommandError("\"" + name + "\" can't be a printer's name: that has 1 to " +
                           std::to_string(kMostPrinterName) +
                           " characters, none of them a backslash, a comma or an exclamation mark; choose another "
                           "with --name");
    }
    for (const PrinterEntry& printer : ListPrinters()) {
        if (SameName(printer.name, name)) {
            throw CommandError("there is a printer \"" + printer.name +
                               "\" already; remove it first (velmora remove \"" + printer.name +
                               "\") or choose another name with --name");
        }
    }
}

}  // namespace

BuiltFiles FindBuiltFiles(const fs::path& programFolder) {
    const auto find = [&](const char* fromProgram) {
        fs::path path = (programFolder / fromProgram).lexically_normal();
        if (!fs::is_regular_file(path)) {
            throw CommandError("the driver's file " + path.string() +
                               " isn't there; build the target velmora and run it from its build folder");
        }
        return path;
    };
    BuiltFiles files = {find(VELMORA_RENDERING_CORE),
                        find(VELMORA_CONFIGURATION_FILE),
                        {},
                        find(VELMORA_PRINT_PROCESSOR),
                        find(VELMORA_IMAGE_MODULE)};
    for (const char* module : kLanguageModules) {
        files.languageModules.push_back(find(module));
    }
    return files;
}

PackagedModel ReadModel(const fs::path& file) {
    const std::string extension = UpperCase(file.extension().string());
    const bool isSource = extension == ".JSON";
    if (!isSource && extension != ".XPI") {
        throw CommandError(file.string() + ": a model is a source (.json) or a compiled description (.XPI)");
    }
    PackagedModel model;
    model.file = file;
    model.driverName = DriverNameFrom(file);
    model.dataFile = model.driverName + ".XPI";
    if (isSource) {
        CompileResult result = CompileModel(file);
        if (!result.Succeeded()) {
            ThrowFaults(file, result.diagnostics);
        }
        model.description = std::move(result.bytes);
        model.modelName = result.ModelName();
    } else {
        model.description = ReadFile(file);
    }
    if (model.modelName.empty()) {
        model.modelName = model.driverName;
    }
    return model;
}

DWORD UnusedTickCount() {
    DWORD unused = GetTickCount();
    for (const PrinterEntry& printer : ListPrinters()) {
        WCHAR name[MAX_PATH];
        if (GetSettingsString(OpenNamedPrinter(printer.name).Get(), name, MAX_PATH)) {
            unused = std::max(unused, static_cast<DWORD>(ParseNumber(name, 16)) + 1);
        }
    }
    return unused;
}

Installation InstallPrinter(const host::Machine& machine, const BuiltFiles& files, const PackagedModel& model,
                            const std::string& printerName, const PackageExtras& extras) {
    CheckPrinterName(printerName);
    CheckExtra(extras.iniFile, "--ini");
    CheckExtra(extras.dataFile, "--data-file");
    Installation installation = {printerName, model.driverName, false, PrintersOf(model.driverName)};
    for (const DriverEntry& driver : ListDrivers()) {
        installation.renewedDriver |= SameName(driver.name, model.driverName);
    }
    const StagedPackage package(machine, files, model, extras);
    const bool isImageModel = CheckDescription(model) == kPdlImage;
    AddDriver(files, model, extras, isImageModel);
    try {
        if (isImageModel) {
            CopyPrintProcessor();
        }
        AddPrinter(printerName, model.driverName);
    } catch (...) {
        if (!installation.renewedDriver) {
            DeleteDriver(model.driverName);
        }
        throw;
    }
    Survey(printerName, extras, &installation);
    return installation;
}

bool HasBuiltDriver(HANDLE printer, const BuiltFiles& files) {
    const std::vector<std::byte> built = ReadFile(files.configurationFile);
    const OwnedFile installed(CreateFileW(DriverOf(printer).configFile.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size = {};
    if (!installed || !GetFileSizeEx(installed.Get(), &size) || size.QuadPart != static_cast<LONGLONG>(built.size())) {
        return false;
    }
    std::vector<std::byte> bytes(built.size());
    DWORD arrived = 0;
    return ::ReadFile(installed.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &arrived, nullptr) &&
           arrived == bytes.size() && bytes == built;
}

Removal RemovePrinter(const std::string& printerName) {
    const OwnedPrinter printer = OpenNamedPrinter(printerName);
    const std::string driver = DriverOf(printer.Get()).name;
    WCHAR settings[MAX_PATH];
    const bool hadSettings =
        HasStoredSettings(printerName) && GetSettingsFilePath(host::ToWide(printerName).c_str(), settings, MAX_PATH);
    if (!DeletePrinter(printer.Get())) {
        ThrowRefused("DeletePrinter of \"" + printerName + "\"");
    }
    const bool settingsRemoved = hadSettings && GetFileAttributesW(settings) == INVALID_FILE_ATTRIBUTES;
    return {PrintersOf(driver).empty() && DeleteDriver(driver), settingsRemoved};
}

}  // namespace velmora
