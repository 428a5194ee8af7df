// Every operation with every allocation, and every platform call that can fail, made to fail in turn: nothing crashes,
// nothing stays open, and the printer's data is as it was or as it was to become.
#include <functional>
#include <map>
#include <sstream>

#include "driver/base/text.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devmode/default_devmode.h"
#include "driver/devmode/validate_devmode.h"
#include "driver/entry/connection_marker.h"
#include "driver/entry/driver_interface.h"
#include "driver/entry/resource_module.h"
#include "driver/entry/spool_directory.h"
#include "driver/entry/stored_devmode.h"
#include "driver/install/printer_events.h"
#include "driver/job/job_hooks.h"
#include "driver/ptprovider/command_lists.h"
#include "driver/ptprovider/printer_snapshot.h"
#include "driver/settings/custom_sizes.h"
#include "driver/settings/device_info.h"
#include "driver/settings/printer_data_file.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"
#include "platform/spooler/state.h"
#include "tests/driver/job_model.h"
#include "tests/driver/machine.h"
#include "tests/driver/resource_file.h"
#include "tools/velmora/capability_formats.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

struct Operation {
    const char* name;
    std::function<void()> run;
    bool writesMuch = false;  // values of the printer's data, each of which may fail alone
};

// Published calls that the driver makes and that can fail. Those that close or free something aren't among them: where
// they fail, what they were to close stays open by nobody's fault.
constexpr const char* kCalls =
    "AddFormW AddPrintProcessorW CopyFileW CreateDirectoryW CreateFileW DeleteFileW DeleteFormW "
    "DeletePrinterDataW EnumFormsW EnumPrintProcessorsW FindFirstFileW FindNextFileW "
    "GetComputerNameW GetEnvironmentVariableW GetFileAttributesW GetFileSize GetFileSizeEx "
    "GetFileVersionInfoSizeW GetFileVersionInfoW GetPrinterDataW GetPrinterDriverW GetPrinterW "
    "GetProcAddress GetVersionExW HeapAlloc LoadLibraryW LoadStringW MultiByteToWideChar OpenPrinterW OpenSemaphoreW "
    "ReadFile RegOpenKeyExW RegSetValueExW SetCurrentDirectoryW SetFileAttributesW SetFilePointerEx SetPrinterDataW "
    "SetPrinterW VerQueryValueW WideCharToMultiByte WinExec WriteFile WritePrivateProfileStringW";

constexpr uint16_t kCardEntry[] = {300, 1016, 1524};  // of the printer-data value PaperSizes
const std::string kBaseData(500, 'd');                // of the printer data file

class FailureSweep : public MachineTest {
  protected:
    void SetUp() override {
        DescriptionBuilder builder = SmallModel(kPdlPcl5);
        builder.AddName("psk:ISOA4");
        builder.AddText("@PJL SET TRAY=1\r\n");
        BITMAPFILEHEADER bitmap = {};
        bitmap.bfSize = sizeof(bitmap);
        builder.AddImage({reinterpret_cast<const char*>(&bitmap), sizeof(bitmap)});
        builder.AddFont("font");
        builder.Table(offsetof(DeviceModel, fontGroups), std::vector<PackedU16>(4));
        builder.Table(offsetof(DeviceModel, colorModeTable),
                      std::vector<ColorModeRecord>{{kColorModeHasDefaults, 1, 0}});
        builder.Table(offsetof(DeviceModel, presetSettings), std::vector<PresetSettingRecord>{{1, 0, 1}});
        builder.Table(offsetof(DeviceModel, textColorFeatures), std::vector<ColorFeatureRecord>{{1, 0}});
        builder.Table(offsetof(DeviceModel, colorOptionValues),
                      std::vector<ColorValueRecord>{{1, 1, 1, 0, 0}, {1, 2, 2, 0, 0}});
        DriverPackage package =
            PackageOf("",
                      "[CustomSizes]\r\nNumCustomSizes=1\r\nCustomName0=One\r\nCustomWidth0=12340\r\n"
                      "CustomLength0=23450\r\nCustomMetric0=1\r\n[DeviceInfo]\r\nOptions=3\r\n");
        package.data.bytes = kBaseData;
        plainModel_ = builder.Build();
        package.dependent[0].bytes =
            StringModule({{2117, u"Custom size"}, {2420, u"ini"}, {2490, u"Draft"}, {2498, u"Arial"}, {2500, u"ENUS"}});
        package.dependent.push_back({u"KV62.XPI", plainModel_});
        for (const char16_t* name : {u"KV62UMPD.DLL", u"KV62FONT.EXE", u"KV62PPR.DLL"}) {
            package.dependent.push_back({name, ""});
        }
        package.dependent.push_back({u"KV62GERM.DLL", package.dependent[0].bytes});
        Install(package);
        machine_.SetLanguage(MAKELANGID(LANG_GERMAN, 1));
        builder.fields.pdlType = kPdlImage;
        imageModel_ = builder.Build();
        builder.fields.pdlType = kPdlPcl6;
        builder.fields.colorCapability = kColor;
        colorModel_ = builder.Build();
        lineJobModel_ = JobModel(kPdlPcl6, kColor).Build();
        builder = JobModel(kPdlImage);
        recordJobModel_ = builder.Build();
        builder.fields.descriptionFlags = kDescriptionsAreText;
        textJobModel_ = builder.Build();
        WriteDriveFile(u"C:\\Windows\\System32\\spool\\prtprocs\\x64\\KV62PPR.DLL", "");
        machine_.SetProgram(u"KV62FONT.EXE", [](const std::string&) {});
        constexpr char16_t kComputers[] = u"OTHER\0";
        SetData(Printer(), u"VMNetworkInstall", REG_MULTI_SZ, kComputers, sizeof(kComputers));
        SetData(Printer(), u"PaperSizes", REG_BINARY, kCardEntry, sizeof(kCardEntry));
        AddForm(u"Form", FORM_USER, 100000, 200000);
        SetString(Printer(), u"DefaultSpoolDirectory", u"D:\\Spool");
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE,
                                  TEXT("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\Test Printer"), 0, nullptr,
                                  REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        RegCloseKey(key);
        BuildDefaultDevMode(Printer(), kPrinterName, &storedDevMode_);
        ASSERT_TRUE(SetPrinterDevMode(Printer(), &storedDevMode_.publicPart));
        printerBefore_ = *host::FindPrinter(kPrinterName);
        formsBefore_ = host::Spooler().forms;
        processorsBefore_ = host::Spooler().processors;
        Prepare();
    }

    // The printer, its data and files before each run.
    void Prepare() {
        *host::FindPrinter(kPrinterName) = printerBefore_;
        host::Spooler().forms = formsBefore_;
        host::Spooler().processors = processorsBefore_;
        if (storedSettings_) {
            SetString(Printer(), u"Settings", u"STORED.ini");
        }
        std::filesystem::remove_all(DrivePath(u"C:\\Users\\User\\AppData"));
        WriteDriveFile(InstalledPath(u"KV62.XPI"), plainModel_);
        WriteDriveFile(InstalledPath(u"KV62.DAT"), kBaseData);
    }

    std::string State() const {
        std::string state;
        for (const WideText name :
             {u"Settings", u"DeviceInfo", u"FontSubs", u"Memory", u"DefaultSpoolDirectory", u"VMNetworkInstall"}) {
            const auto value = GetData(Printer(), name);
            state += value ? "[" + *value + "]" : "none";
        }
        const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(Printer());
        const size_t size = info && info->pDevMode ? sizeof(VelmoraDevMode) : 0;
        return state + (size > 0 ? std::string(reinterpret_cast<const char*>(info->pDevMode), size) : "");
    }

    std::vector<Operation> Operations();

    // Of the printer's data, whatever call is to fail; empty where there is none.
    static std::vector<BYTE> StoredValue(std::u16string_view name) {
        for (const host::DataValue& value : host::FindPrinter(kPrinterName)->data) {
            if (value.name == name) {
                return value.bytes;
            }
        }
        return {};
    }

    // Whatever failed of an installation or a connection: nothing that was there before is lost, and the printer's
    // device mode is one of the driver's.
    void CheckInstallation(const std::string& description, void (*run)(const WCHAR*)) {
        WriteDriveFile(InstalledPath(u"KV62.XPI"), description);
        run(kPrinterName);
        EXPECT_TRUE(ReadDriveFile(InstalledPath(u"KV62.DAT")).starts_with(kBaseData));
        const std::vector<BYTE> papers = StoredValue(u"PaperSizes");
        ASSERT_TRUE(!papers.empty() && papers.size() % sizeof(kCardEntry) == 0);
        EXPECT_EQ(memcmp(papers.data(), kCardEntry, sizeof(kCardEntry)), 0);
        if (storedSettings_) {
            EXPECT_EQ(StoredValue(u"Settings").size(), sizeof(u"STORED.ini"));
        }
        const std::vector<BYTE>& stored = host::FindPrinter(kPrinterName)->deviceMode;
        VelmoraDevMode devMode;
        ASSERT_EQ(stored.size(), sizeof(devMode));
        memcpy(&devMode, stored.data(), sizeof(devMode));
        CheckFrame(devMode);
    }

    // A whole job. A started one keeps what it has until its end is done.
    void RunJob(const std::string& description) {
        VelmoraDevMode devMode = InputFor(description);
        JobHookRecord record = {};
        record.printerName = kPrinterName;
        record.jobName = TEXT("Job");
        char block[2048] = {};
        DWORD size = sizeof(block);
        const int started = StartJob(&devMode, block, &size, &record);
        EXPECT_EQ(started == kJobDone, ValueOf(record.jobState) != nullptr);
        if (started != kJobImpossible) {
            CheckFrame(devMode);
        }
        char sheet[2048] = {};
        record.sheetBuffer = sheet;
        record.sheetSize = sizeof(sheet);
        StartSheet(nullptr, &record);
        EXPECT_LE(ValueOf(record.sheetSize), sizeof(sheet));
        for (int tries = 0; tries < 2 && ValueOf(record.jobState); ++tries) {
            memset(block, 0, sizeof(block));
            size = sizeof(block);
            EndJob(&devMode, block, &size, &record);
            EXPECT_LE(size, sizeof(block));
        }
        EXPECT_EQ(ValueOf(record.jobState), nullptr);
    }

    // A device mode that was written at all has the published frame.
    static void CheckFrame(const VelmoraDevMode& devMode) {
        EXPECT_EQ(ValueOf(devMode.publicPart.dmSize), kPublicDevModeSize);
        EXPECT_EQ(ValueOf(devMode.publicPart.dmDriverExtra), kPrivateDevModeSize);
        EXPECT_EQ(ValueOf(devMode.privatePart.privateSignature), kPrivateSignature);
        EXPECT_EQ(ValueOf(devMode.privatePart.extensionMagicA), 2033u);
    }

    // Chooses the model, and gives an input for it: the driver version is to be repaired.
    VelmoraDevMode InputFor(const std::string& description) {
        WriteDriveFile(InstalledPath(u"KV62.XPI"), description);
        VelmoraDevMode input = storedDevMode_;
        input.publicPart.dmDriverVersion = 0;
        return input;
    }

    // Document properties without a window, for this model and with a watermark.
    void AskDocumentProperties(const std::string& description) {
        VelmoraDevMode input = InputFor(description);
        VelmoraDevMode output = {};
        input.privatePart.watermarkFlags = kWatermarkIsImage;
        CopyText<WCHAR>(input.privatePart.watermarkFile, 96, TEXT("C:\\mark"));
        DOCUMENTPROPERTYHEADER header = {};
        header.hPrinter = Printer();
        header.pszPrinterName = name_.data();
        header.pdmIn = &input.publicPart;
        header.pdmOut = &output.publicPart;
        header.cbOut = sizeof(output);
        header.fMode = DM_IN_BUFFER | DM_OUT_BUFFER;
        EXPECT_EQ(DrvDocumentPropertySheets(nullptr, reinterpret_cast<LPARAM>(&header)), 1);
        if (output.publicPart.dmSize != 0) {
            CheckFrame(output);
        }
    }

    void BuildWith(const std::string& description) {
        WriteDriveFile(InstalledPath(u"KV62.XPI"), description);
        VelmoraDevMode devMode;
        BuildDefaultDevMode(Printer(), kPrinterName, &devMode);
        CheckFrame(devMode);
    }

    // Whatever fails, a list's entries are as many as the answer says.
    void CheckCapability(const CapabilityFormat& format) {
        constexpr size_t kMostEntries = 16;
        BYTE output[kMostEntries * kPaperNameCapacity * sizeof(WCHAR) + 1];
        memset(output, 0x55, sizeof(output));
        WriteDriveFile(InstalledPath(u"KV62.XPI"), format.index == DC_VERSION ? imageModel_ : plainModel_);
        DrvDeviceCapabilities(Printer(), name_.data(), format.index, nullptr, nullptr);
        const DWORD answer = DrvDeviceCapabilities(Printer(), name_.data(), format.index, output, nullptr);
        const size_t size = EntrySize(format) * answer;
        ASSERT_LT(size, sizeof(output));
        EXPECT_EQ(output[size], 0x55);
        EXPECT_TRUE(size == 0 || output[size - 1] != 0x55);
    }

    bool storedSettings_ = false;
    VelmoraDevMode storedDevMode_;
    WideText name_ = kPrinterName;
    std::string plainModel_;
    std::string imageModel_;
    std::string colorModel_;
    std::string lineJobModel_;
    std::string textJobModel_;
    std::string recordJobModel_;
    host::Printer printerBefore_;
    std::vector<host::Form> formsBefore_;
    std::vector<host::PrintProcessor> processorsBefore_;
};

std::vector<Operation> FailureSweep::Operations() {
    std::vector<Operation> operations = {
        {"open and load",
         [this] {
             const OwnedPrinter printer = OpenPrinterLocal(TEXT("\\\\VELMORA-PC\\Test Printer,Local"));
             const HeapOwner<DeviceModel> model = LoadDeviceModel(OpenDescriptionFile(printer.Get()).Get());
             if (model) {
                 CountRecords(model->paperTable);
             }
         }},
        {"snapshot and command lists",
         [this] {
             WriteDriveFile(InstalledPath(u"KV62.XPI"), colorModel_);
             const OwnedSnapshot snapshot = LoadPrinterSnapshot(Printer());
             if (!snapshot) {
                 return;
             }
             EXPECT_NE(snapshot.Get()->ownNamespace[0], 0);
             for (const FeatureEntry& feature : snapshot.Get()->features) {
                 EXPECT_LE(feature.options.first + feature.options.count, snapshot.Get()->options.count);
             }
             for (const ColorFeatureEntry& feature : snapshot.Get()->colorFeatures[0]) {
                 EXPECT_LE(feature.values.first + feature.values.count, snapshot.Get()->colorValues.count);
             }
             TextList list;
             AppendCommandSlice(*snapshot.Get(), 0, 10, &list);
             AppendTextLines("a\nb", 3, &list);
             EXPECT_LE(list.count, 3);
         }},
        {"printer and driver information",
         [this] {
             WCHAR text[MAX_PATH];
             GetPrinterDriverName(Printer(), text);
             GetDriverInfo3(Printer());
             FindDriverFile(Printer(), TEXT("XPI"), TEXT(".XPI"), text);
             GetRenderCorePath(Printer(), text);
             GetDriverVersion(InstalledPath(u"KV62R.DLL").c_str());
         }},
        {"reader", [this] { ReadEverything(OpenDescriptionFile(Printer()).Get()); }},
        {"papers and margins",
         [this] {
             const HeapOwner<DeviceModel> model = LoadDeviceModel(OpenDescriptionFile(Printer()).Get());
             for (const int id : {9, 448, 449, 450}) {
                 EXPECT_GT(LookupPaperSize(Printer(), model.Get(), id).width, 0);
                 EXPECT_GT(GetPrintableMargins(Printer(), model.Get(), id, kPortraitMargins, 600).horizontal, 0);
             }
         }},
        {"default device mode", [this] { BuildWith(plainModel_); }},
        {"default device mode in colour", [this] { BuildWith(colorModel_); }},
        {"default device mode of an image printer", [this] { BuildWith(imageModel_); }},
        {"stored device mode",
         [this] {
             VelmoraDevMode devMode;
             if (GetPrinterDevMode(Printer(), &devMode) == 1) {
                 CheckFrame(devMode);
             }
             SetPrinterDevMode(Printer(), &storedDevMode_.publicPart);
         }},
        {"DrvConvertDevMode",
         [this] {
             VelmoraDevMode devMode;
             LONG needed = sizeof(devMode);
             if (DrvConvertDevMode(name_.data(), nullptr, &devMode.publicPart, &needed, 0)) {
                 CheckFrame(devMode);
             }
             EXPECT_EQ(needed, 4088);
         }},
        {"DrvConvertDevMode with an input",
         [this] {
             VelmoraDevMode input = InputFor(plainModel_);
             LONG needed = sizeof(input);
             if (DrvConvertDevMode(name_.data(), &input.publicPart, &input.publicPart, &needed, 0)) {
                 CheckFrame(input);
             }
         }},
        {"connection to another machine",
         [this] {
             LONG needed = 0;
             WideText connection = u"\\\\velmora-pc\\Test Printer";
             machine_.SetSystemVersion(4, 0);
             DrvConvertDevMode(connection.data(), nullptr, nullptr, &needed, 0);
             machine_.SetSystemVersion(10, 0);
         }},
        {"document properties in colour", [this] { AskDocumentProperties(colorModel_); }},
        {"document properties of an image printer", [this] { AskDocumentProperties(imageModel_); }},
        {"validations",
         [this] {
             VelmoraDevMode input = InputFor(plainModel_);
             ValidatePublicDevMode(Printer(), &input.publicPart, nullptr);
             ValidatePrivateDevMode(Printer(), &input.privatePart, INVALID_HANDLE_VALUE, nullptr);
             CheckFrame(input);
         }},
        {"spool directory",
         [this] {
             WriteDriveFile(InstalledPath(u"KV62.XPI"), imageModel_);
             RegisterSpoolDirectory(Printer(), kPrinterName);
         }},
        {"custom sizes",
         [this] {
             const CustomSizeList list = LoadCustomSizes(kPrinterName);
             EXPECT_TRUE(list.count == 0 || list.records);
             SaveCustomSizes(kPrinterName, list.records.Get(), list.count);
             EXPECT_LE(EnumUserForms(Printer()).count, 1);
         }},
        {"watermarks",
         [this] {
             const WatermarkList list = LoadWatermarkList(kPrinterName);
             EXPECT_TRUE(list.count <= 1 && (list.count == 0 || list.records));
             SaveWatermarkList(kPrinterName, list.records.Get(), list.count);
             BuildDefaultWatermarkList(LoadResourceModule(Printer(), nullptr).Get());
             WCHAR file[MAX_PATH];
             if (GetSettingsFilePath(kPrinterName, file, ARRAYSIZE(file))) {
                 DeleteWatermarkFiles(file);
             }
         }},
        {"installed options",
         [this] {
             const HeapOwner<DeviceModel> model = LoadDeviceModel(OpenDescriptionFile(Printer()).Get());
             if (const HeapOwner<DeviceInfo> info = GetDeviceInfo(Printer(), model.Get())) {
                 SetDeviceInfo(Printer(), {1, 2, 3, 4});
             }
             GetDeviceInfo(Printer(), nullptr);
         }},
        {"resource module",
         [this] {
             ResourceContext context;
             const OwnedModule module = LoadResourceModule(Printer(), &context);
             EXPECT_TRUE(context.language == LANG_GERMAN || context.language == LANG_ENGLISH);
         }},
        {"settings file", [] { PrepareSettingsFile(kPrinterName); }},
        {"settings keys",
         [] {
             WCHAR text[64];
             ReadProfileName(kPrinterName, text, ARRAYSIZE(text));
             WriteScreenProfileName(kPrinterName, TEXT("screen"));
         }},
        {"printer data",
         [this] {
             HeapOwner<WCHAR> table;
             TestPrinterDataAccess(Printer());
             SetFontSubs(Printer(), TEXT("a\0b\0"), 5);
             GetFontSubs(Printer(), &table);
             SetMemorySetting(Printer(), 64);
             GetMemorySetting(Printer());
         }},
        {"files",
         [this] {
             WCHAR path[MAX_PATH] = TEXT("C:\\Windows\\System32\\missing");
             GetShortPath(path, ARRAYSIZE(path));
             OpenPrinterDataFile(kPrinterName, GENERIC_READ);
             GetPrinterDataFileSize(kPrinterName);
             GetBasePdfSize(Printer());
             SyncPrinterDataFileCopies(kPrinterName);
         }},
    };
    const std::pair<const char*, const std::string*> installed[] = {{"installation", &colorModel_},
                                                                    {"installation of an image printer", &imageModel_}};
    for (const auto& [name, description] : installed) {
        operations.push_back({name,
                              [this, description] {
                                  CheckInstallation(*description, [](const WCHAR* printer) { OnInitialize(printer); });
                              },
                              true});
    }
    operations.push_back({"connection", [this] { CheckInstallation(colorModel_, OnAddConnection); }, true});
    operations.push_back({"computers of a connection", [this] { AddNetworkInstall(Printer()); }});
    operations.push_back({"computers of a connection that ends", [this] {
                              machine_.SetComputerName(u"OTHER");
                              RemoveNetworkInstall(Printer());
                              machine_.SetComputerName(u"VELMORA-PC");
                          }});
    operations.push_back({"end of a connection", [] { OnDeleteConnection(kPrinterName); }});
    operations.push_back({"deletion", [] { OnDelete(kPrinterName); }});
    operations.push_back({"job of lines", [this] { RunJob(lineJobModel_); }});
    operations.push_back({"job of text descriptions", [this] { RunJob(textJobModel_); }});
    operations.push_back({"job of records", [this] { RunJob(recordJobModel_); }});
    for (const CapabilityFormat& format : kCapabilityFormats) {
        operations.push_back({format.name, [this, &format] { CheckCapability(format); }});
    }
    return operations;
}

TEST_F(FailureSweep, EveryAllocationAndEveryCall) {
    for (const bool stored : {false, true}) {
        storedSettings_ = stored;
        for (const Operation& operation : Operations()) {
            SCOPED_TRACE(operation.name);
            if (operation.writesMuch && !stored) {
                continue;  // once is enough, with a file's name that must not be lost
            }
            // Runs the operation with a fault; after it nothing more is open, and the printer is as before or after.
            const std::vector<std::string> open = host::StillOpen();
            Prepare();
            Texts states = {State()};
            const auto run = [&] {
                operation.run();
                host::ClearFaults();
                ASSERT_EQ(host::StillOpen(), open);
            };
            run();
            states.push_back(State());
            uint64_t used = 1;
            for (uint64_t n = 1; n <= used; ++n) {
                SCOPED_TRACE(testing::Message() << "allocation " << n);
                Prepare();
                host::FailAllocation(n);
                operation.run();
                used = host::AllocationsSoFar();
                host::ClearFaults();
                ASSERT_EQ(host::StillOpen(), open);
                const std::string state = State();
                EXPECT_TRUE(operation.writesMuch || state == states[0] || state == states[1]);
            }
            Prepare();
            std::map<std::string, uint64_t> counts;
            std::istringstream calls(kCalls);
            for (std::string call; calls >> call;) {
                counts[call] = host::CallsSoFar(call);
            }
            run();
            for (auto& [call, count] : counts) {
                count = host::CallsSoFar(call) - count;
            }
            for (const auto& [call, count] : counts) {
                for (uint64_t n = 1; n <= count; ++n) {
                    SCOPED_TRACE(testing::Message() << call << " " << n);
                    Prepare();
                    host::FailCall(call, ERROR_ACCESS_DENIED, n);
                    run();
                }
            }
        }
    }
}

}  // namespace
}  // namespace velmora
