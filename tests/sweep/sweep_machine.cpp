#include "tests/sweep/sweep_machine.h"

#include <objbase.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "driver/base/text.h"
#include "driver/devmode/default_devmode.h"
#include "driver/entry/driver_interface.h"
#include "driver/entry/stored_devmode.h"
#include "driver/ptprovider/class_factory.h"
#include "driver/settings/device_info.h"
#include "driver/settings/settings_folder.h"
#include "platform/kernel/text.h"
#include "tests/driver/built_modules.h"
#include "tests/driver/job_model.h"
#include "tests/driver/sheet_package.h"

namespace sweep_test {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit
using namespace velmora;      // NOLINT(google-build-using-namespace): what is swept

namespace {

constexpr uint16_t kCardEntry[] = {300, 1016, 1524};  // of the printer-data value PaperSizes
constexpr size_t kBaseDataSize = 500;                 // bytes of the printer data file as it is shipped
constexpr DWORD kTickCount = 0x01000000;
constexpr const WCHAR* kPrinterKey = TEXT("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Test Printer");
constexpr const WCHAR* kSpoolDirectory = TEXT("SpoolDirectory");

DescriptionBuilder FullModel(uint16_t pdlType, uint16_t colorCapability) {
    DescriptionBuilder builder = SmallModel(pdlType, colorCapability);
    builder.AddName("psk:ISOA4");
    builder.AddText("@PJL SET TRAY=1\r\n");
    BITMAPFILEHEADER bitmap = {};
    bitmap.bfSize = sizeof(bitmap);
    builder.AddImage({reinterpret_cast<const char*>(&bitmap), sizeof(bitmap)});
    builder.AddFont("font");
    builder.Table(offsetof(DeviceModel, fontGroups), std::vector<PackedU16>(4));
    builder.Table(offsetof(DeviceModel, colorModeTable), std::vector<ColorModeRecord>{{kColorModeHasDefaults, 1, 0}});
    builder.Table(offsetof(DeviceModel, presetSettings), std::vector<PresetSettingRecord>{{1, 0, 1}});
    builder.Table(offsetof(DeviceModel, textColorFeatures), std::vector<ColorFeatureRecord>{{1, 0}});
    builder.Table(offsetof(DeviceModel, colorOptionValues),
                  std::vector<ColorValueRecord>{{1, 1, 1, 0, 0}, {1, 2, 2, 0, 0}});
    return builder;
}

std::string DescriptionOf(Model model) {
    switch (model) {
        case Model::kPlain:
            return FullModel(kPdlPcl5, kColorNone).Build();
        case Model::kColor:
            return FullModel(kPdlPcl6, kColor).Build();
        case Model::kImage:
            return FullModel(kPdlImage, kColorNone).Build();
        case Model::kSheets:
            return SheetPackage().data.bytes;
        case Model::kLineJobs:
            return JobModel(kPdlPcl6, kColor).Build();
        case Model::kRecordJobs:
            return JobModel(kPdlImage).Build();
        default: {
            DescriptionBuilder builder = JobModel(kPdlImage);
            builder.fields.descriptionFlags = kDescriptionsAreText;
            return builder.Build();
        }
    }
}

DriverPackage PackageWithoutModel() {
    DriverPackage package = PackageOf("",
                                      "[CustomSizes]\r\nNumCustomSizes=1\r\nCustomName0=One\r\nCustomWidth0=12340\r\n"
                                      "CustomLength0=23450\r\nCustomMetric0=1\r\n[DeviceInfo]\r\nOptions=3\r\n");
    package.data.bytes = std::string(kBaseDataSize, 'd');
    UseBuiltModules(package);
    for (const char16_t* name : {u"KV62UMPD.DLL", u"KV62FONT.EXE", u"KV62PPR.DLL"}) {
        package.dependent.push_back({name, ""});
    }
    return package;
}

std::string BytesOf(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

bool IsIniFile(const std::string& path) {
    return path.ends_with(".ini") || path.ends_with(".INI");
}

}  // namespace

SweepMachine::SweepMachine(Model model, bool hasStoredSettings) : sheets(&machine, nullptr) {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    machine.SetLanguage(MAKELANGID(LANG_GERMAN, 1));
    machine.SetTickCount(kTickCount);
    machine.SetWaitsElapseAtOnce(true);
    FillMachine(model);
    if (hasStoredSettings) {
        SetString(Printer(), u"Settings", u"STORED.ini");
    }
    BuildDefaultDevMode(Printer(), Name(), &devMode_);
    SetPrinterDevMode(Printer(), &devMode_.publicPart);
    if (model == Model::kSheets) {
        // Where a page can't be opened, the sheet shows another; what pages store when they are first opened is there.
        for (int slot = kPaperSlot; slot <= kInformationSlot; ++slot) {
            ThenOnPage(slot, [](HWND) {});
        }
        ThenPressOk();
        RunDocumentSheet();
    }
    printerBefore_ = *host::FindPrinter(kPrinterName);
    formsBefore_ = host::Spooler().forms;
    processorsBefore_ = host::Spooler().processors;
    filesBefore_ = Files();
}

SweepMachine::~SweepMachine() {
    Forget();
    printer_.Close();
    CoUninitialize();
}

void SweepMachine::FillMachine(Model model) {
    static const DriverPackage withoutModel = PackageWithoutModel();
    DriverPackage package = withoutModel;
    package.dependent.push_back({u"KV62.XPI", DescriptionOf(model)});
    InstallPrinter(package);
    printer_ = OpenWithAllAccess(kPrinterName);
    sheets = SheetHost(&machine, Printer());
    WriteDriveFile(u"C:\\Windows\\System32\\spool\\prtprocs\\x64\\KV62PPR.DLL", "");
    machine.SetProgram(u"KV62FONT.EXE", [](const std::string&) {});
    // Renders watermarks: makes one file a call.
    machine.SetProgram(u"KV62WM.EXE", [](const std::string& command) {
        const std::string path = command.substr(command.find(".EXE ") + 5);
        const WideText file(path.begin(), path.end());
        WCHAR output[MAX_PATH];
        GetPrivateProfileStringW(TEXT("MAKEWM"), TEXT("OutputFile"), TEXT(""), output, MAX_PATH, file.c_str());
        if (output[0] != 0) {
            WriteDriveFile(output, "");
        }
        for (const WCHAR* key : {TEXT("Size.x"), TEXT("Size.y"), TEXT("Result")}) {
            WritePrivateProfileStringW(TEXT("MAKEWM"), key, TEXT("7"), file.c_str());
        }
    });
    constexpr char16_t kComputers[] = u"OTHER\0";
    SetData(Printer(), u"VMNetworkInstall", REG_MULTI_SZ, kComputers, sizeof(kComputers));
    SetData(Printer(), u"PaperSizes", REG_BINARY, kCardEntry, sizeof(kCardEntry));
    SetString(Printer(), u"DefaultSpoolDirectory", u"D:\\Spool");
    SetDeviceInfo(Printer(), {3, 1, 1, 0});
    WideText form = u"Form";
    FORM_INFO_1W info = {FORM_USER, form.data(), {100000, 200000}, {0, 0, 100000, 200000}};
    AddFormW(Printer(), 1, reinterpret_cast<BYTE*>(&info));
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, kPrinterKey, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr, &key,
                    nullptr);
    RegCloseKey(key);
}

// All files that a work may write: not the installed modules and the description file.
std::map<std::string, std::string> SweepMachine::Files() const {
    constexpr std::string_view kFixed[] = {".DLL", ".dll", ".EXE", ".XPI"};
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(machine.Drive())) {
        const std::string path = entry.path().lexically_relative(machine.Drive()).string();
        const std::string extension = entry.path().extension().string();
        const bool isWritten = !path.starts_with("Package") && std::ranges::find(kFixed, extension) == std::end(kFixed);
        if (entry.is_regular_file() && isWritten) {
            files[path] = BytesOf(entry.path());
        }
    }
    return files;
}

void SweepMachine::Restore() {
    machine.SetTickCount(kTickCount);  // files are named by it
    *host::FindPrinter(kPrinterName) = printerBefore_;
    host::Spooler().forms = formsBefore_;
    host::Spooler().processors = processorsBefore_;
    HKEY key = nullptr;
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, kPrinterKey, 0, KEY_SET_VALUE, &key);
    RegDeleteValueW(key, kSpoolDirectory);
    RegCloseKey(key);
    // The folders that works make go as well.
    std::filesystem::remove_all(DrivePath(u"C:\\Users\\User\\AppData"));
    const std::map<std::string, std::string> files = Files();
    for (const auto& [path, bytes] : files) {
        if (!filesBefore_.contains(path)) {
            std::filesystem::remove(machine.Drive() / path);
        }
    }
    for (const auto& [path, bytes] : filesBefore_) {
        const auto found = files.find(path);
        if (found == files.end() || found->second != bytes) {
            std::filesystem::create_directories((machine.Drive() / path).parent_path());
            std::ofstream(machine.Drive() / path, std::ios::binary) << bytes;
        }
    }
}

StoredPieces SweepMachine::Stored() const {
    StoredPieces pieces;
    const auto printer = host::FindPrinter(kPrinterName);
    const auto text = [](const std::vector<BYTE>& bytes) { return std::string(bytes.begin(), bytes.end()); };
    // Made of what can be read then: any whole one will do.
    VelmoraDevMode devMode = {};
    EXPECT_EQ(printer->deviceMode.size(), sizeof(devMode));
    memcpy(&devMode, printer->deviceMode.data(), std::min(printer->deviceMode.size(), sizeof(devMode)));
    CheckFrame(devMode);
    for (const host::DataValue& value : printer->data) {
        pieces["data " + host::ToUtf8(value.name)] = text(value.bytes);
    }
    for (const host::Form& form : host::Spooler().forms) {
        pieces["form " + host::ToUtf8(form.name)] = std::to_string(form.size.cx) + ' ' + std::to_string(form.size.cy);
    }
    for (const host::PrintProcessor& processor : host::Spooler().processors) {
        pieces["processor " + host::ToUtf8(processor.name)] = host::ToUtf8(processor.file);
    }
    HKEY key = nullptr;
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, kPrinterKey, 0, KEY_QUERY_VALUE, &key);
    WCHAR directory[MAX_PATH] = {};
    DWORD size = sizeof(directory);
    if (RegQueryValueExW(key, kSpoolDirectory, nullptr, nullptr, reinterpret_cast<BYTE*>(directory), &size) ==
        ERROR_SUCCESS) {
        pieces["registry SpoolDirectory"] = host::ToUtf8(directory);
    }
    RegCloseKey(key);
    for (const auto& [path, bytes] : Files()) {
        if (!IsIniFile(path)) {
            // What is appended to the printer data file is as much as can be.
            pieces[path] = path.ends_with(".DAT") ? bytes.substr(0, kBaseDataSize) : bytes;
            continue;
        }
        std::istringstream lines(bytes);
        std::string section;
        for (std::string line; std::getline(lines, line);) {
            line.resize(line.find_last_not_of('\r') + 1);
            if (line.starts_with('[')) {
                section = line;
            } else {
                pieces[path + ' ' + section + line.substr(0, line.find('='))] = line;
            }
        }
    }
    return pieces;
}

VelmoraDevMode SweepMachine::Input() const {
    VelmoraDevMode input = devMode_;
    input.publicPart.dmDriverVersion = 0;
    return input;
}

void SweepMachine::CheckFrame(const VelmoraDevMode& devMode) {
    EXPECT_EQ(ValueOf(devMode.publicPart.dmSize), kPublicDevModeSize);
    EXPECT_EQ(ValueOf(devMode.publicPart.dmDriverExtra), kPrivateDevModeSize);
    EXPECT_EQ(ValueOf(devMode.privatePart.privateSignature), kPrivateSignature);
    EXPECT_EQ(ValueOf(devMode.privatePart.extensionMagicA), 2033u);
}

void SweepMachine::ThenOnPage(int slot, std::function<void(HWND page)> use) {
    sheets.Then([=, this](HWND sheet) {
        SendMessageW(sheet, PSM_SETCURSEL, 0, sheets.Context().hostPages[slot]);
        if (const HWND page = sheets.Context().dialogs[slot]) {
            UpdateWindow(page);
            use(page);
        }
    });
}

void SweepMachine::ThenInDialog(std::function<void(HWND dialog)> use) {
    sheets.Then([use](HWND sheet) {
        if (FrontDialog() != sheet) {
            UpdateWindow(FrontDialog());
            use(FrontDialog());
        }
    });
}

void SweepMachine::ThenPressOk() {
    sheets.Then([](HWND sheet) { SendMessageW(sheet, PSM_PRESSBUTTON, PSBTN_OK, 0); });
}

void SweepMachine::RunDeviceSheet() {
    sheets.RunDeviceSheet();
    sheets.ForgetSteps();
}

void SweepMachine::RunDocumentSheet() {
    VelmoraDevMode input = devMode_;
    VelmoraDevMode output = {};
    if (sheets.RunDocumentSheet(&input.publicPart, &output) > 0) {
        CheckFrame(output);
    }
    sheets.ForgetSteps();
}

// A job that was started keeps what it has until its end is done.
void SweepMachine::StartJob() {
    VelmoraDevMode devMode = Input();
    job = {};
    job.printerName = kPrinterName;
    job.jobName = TEXT("Job");
    char block[2048] = {};
    DWORD size = sizeof(block);
    const int started = GuiStartJob(&devMode.publicPart, block, &size, &job);
    EXPECT_EQ(started == kJobDone, ValueOf(job.jobState) != nullptr);
    if (started != kJobImpossible) {
        CheckFrame(devMode);
    }
}

void SweepMachine::StartSheet() {
    char block[2048] = {};
    job.sheetBuffer = block;
    job.sheetSize = sizeof(block);
    GuiStartSheet(nullptr, &job);
    EXPECT_LE(ValueOf(job.sheetSize), sizeof(block));
}

void SweepMachine::EndJob() {
    VelmoraDevMode devMode = Input();
    for (int tries = 0; tries < 2 && ValueOf(job.jobState); ++tries) {
        char block[2048] = {};
        DWORD size = sizeof(block);
        GuiEndJob(&devMode.publicPart, block, &size, &job);
        EXPECT_LE(size, sizeof(block));
    }
    EXPECT_EQ(ValueOf(job.jobState), nullptr);
}

void SweepMachine::MakeProvider() {
    void* made = nullptr;
    const HRESULT found = DllGetClassObject(kProviderClass, IID_IClassFactory, &made);
    EXPECT_EQ(found, made ? S_OK : E_OUTOFMEMORY);
    const ComReference<IClassFactory> factory(static_cast<IClassFactory*>(made));
    if (factory) {
        void* object = nullptr;
        const HRESULT created = factory->CreateInstance(nullptr, IID_IPrintTicketProvider, &object);
        EXPECT_EQ(created, object ? S_OK : E_OUTOFMEMORY);
        provider = ComReference<IPrintTicketProvider>(static_cast<IPrintTicketProvider*>(object));
    }
}

void SweepMachine::Bind() {
    SHIMOPTS options = {};
    DWORD flags = 0;
    INT count = 77;
    BSTR* namespaces = nullptr;
    const HRESULT result = provider->BindPrinter(Printer(), 1, &options, &flags, &count, &namespaces);
    EXPECT_EQ(count, result == S_OK ? 6 : 0);
    EXPECT_EQ(namespaces != nullptr, result == S_OK);
    for (INT i = 0; i < count; ++i) {
        SysFreeString(namespaces[i]);
    }
    CoTaskMemFree(namespaces);
}

void SweepMachine::ReadTicket() {
    MakeProvider();
    Bind();
    ticketDevMode = devMode_;
    ticketDevMode.publicPart.dmFields |= DM_COPIES;
    ticket = LoadTicket(
        TicketText("<psf:Feature name='psk:PageOrientation'><psf:Option name='psk:Landscape'/></psf:Feature>"
                   "<psf:ParameterInit name='psk:JobCopiesAllDocuments'><psf:Value>3</psf:Value></psf:ParameterInit>"));
}

void SweepMachine::Forget() {
    ticket = {};
    provider = {};
}

}  // namespace sweep_test
