// The life of a printer as the spooler tells the driver of it: what installing, connecting and deleting leave behind.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "driver/devdesc/description_format.h"
#include "tests/contract/contract_test.h"
#include "tests/contract/transcript.h"

namespace contract {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<WideText>;

// A form of the driver's making, as a line; compares by value.
std::string FormLine(const FORM_INFO_1W& form) {
    std::ostringstream line;
    line << Printable(form.pName) << ": " << form.Size.cx << " x " << form.Size.cy << ", printed "
         << form.ImageableArea.left << ' ' << form.ImageableArea.top << ' ' << form.ImageableArea.right << ' '
         << form.ImageableArea.bottom;
    return line.str();
}

PrinterValue MultiString(const Names& strings) {
    WideText text;
    for (const WideText& string : strings) {
        text += string;
        text.push_back(0);
    }
    text.push_back(0);
    const auto* bytes = reinterpret_cast<const BYTE*>(text.data());
    return {REG_MULTI_SZ, std::vector<BYTE>(bytes, bytes + text.size() * sizeof(WCHAR))};
}

// A string of the printer's data; empty where there is none.
WideText StringOf(const PrinterData& data, const WideText& name) {
    const auto value = data.find(name);
    return value == data.end() ? WideText() : reinterpret_cast<const WCHAR*>(value->second.bytes.data());
}

void PutFile(const fs::path& path, const std::string& content) {
    fs::create_directories(path.parent_path());
    std::ofstream stream(path, std::ios::binary);
    stream << content;
    ASSERT_TRUE(stream.flush()) << path;
}

// The patterns and fonts of a description file as a printer data file has them at its end, read from the file's
// records.
std::string DeviceDataOf(const fs::path& descriptionFile) {
    const std::string file = ContentOf(descriptionFile);
    const auto at = [&file]<class T>(size_t offset, T value) {
        memcpy(&value, file.data() + offset, sizeof(value));
        return value;
    };
    const auto header = at(0, velmora::DescriptionFileHeader{});
    const size_t resolutions =
        header.deviceBlockOffset +
        at(header.deviceBlockOffset + offsetof(velmora::DeviceModel, resolutionTable), uint32_t{});
    std::string data;
    for (size_t place = resolutions;; place += sizeof(velmora::ResolutionRecord)) {
        const auto resolution = at(place, velmora::ResolutionRecord{});
        if (resolution.mark == 0) {
            break;
        }
        const auto side = static_cast<size_t>(resolution.patternSize);
        const auto index = static_cast<size_t>(resolution.patternIndex);
        if (side != 0) {
            data += file.substr(header.patternPoolOffset + at(header.patternIndexOffset + index * 4, uint32_t{}),
                                32 * side * side);
        }
    }
    const auto fonts =
        static_cast<size_t>(at(header.deviceBlockOffset + offsetof(velmora::DeviceModel, fontCount), int16_t{}));
    const size_t end = at(header.fontIndexOffset + fonts * 4, uint32_t{});
    return data + file.substr(header.fontPoolOffset, end);
}

class PrinterEvents : public ContractTest {
  protected:
    // Lines of the printer forms, in the order of their names.
    std::vector<std::string> DriverForms(const InstalledPrinter& printer) {
        DWORD needed = 0;
        DWORD count = 0;
        EnumFormsW(printer.Handle(), 1, nullptr, 0, &needed, &count);
        std::vector<BYTE> block(needed);
        EXPECT_TRUE(EnumFormsW(printer.Handle(), 1, block.data(), needed, &needed, &count));
        const auto* forms = reinterpret_cast<const FORM_INFO_1W*>(block.data());
        std::vector<std::string> lines;
        for (DWORD i = 0; i < count; ++i) {
            if (forms[i].Flags == FORM_PRINTER) {
                lines.push_back(FormLine(forms[i]));
            }
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    // All that events change of a printer.
    auto StateOf(const InstalledPrinter& printer) {
        std::vector<BYTE> block = printer.Info();
        const auto* info = reinterpret_cast<const PRINTER_INFO_2W*>(block.data());
        std::vector<BYTE> devMode(sizeof(velmora::VelmoraDevMode));
        if (info->pDevMode != nullptr) {
            memcpy(devMode.data(), info->pDevMode, devMode.size());
        }
        return std::make_tuple(printer.Data(), DriverForms(printer), devMode, WideText(info->pPrintProcessor));
    }

    void RecordData(const PrinterData& data) {
        for (const auto& [name, value] : data) {
            std::string line = "  " + Printable(name) + " ";
            if (name == TEXT("Settings")) {
                // Named by the time.
                const std::string text = Printable(StringOf(data, name));
                EXPECT_EQ(text.find_first_not_of("0123456789ABCDEF"), 8u) << text;
                line += text.substr(std::min<size_t>(8, text.size()));
            } else if (value.type == REG_SZ) {
                line += '"' + Printable(StringOf(data, name)) + '"';
            } else {
                line += Hex(value.bytes.data(), value.bytes.size());
            }
            Record(line);
        }
    }

    void RecordLines(const std::string& title, const std::vector<std::string>& lines) {
        Record(title);
        for (const std::string& line : lines) {
            Record("  " + line);
        }
    }

    // Where the settings of a printer lie below a folder of application data.
    fs::path SettingsFile(const InstalledPrinter& printer, const WideText& applicationData) {
        return environment_->HostPath(applicationData + TEXT("\\Kestranix Inc.\\Velmora Contract\\") +
                                      StringOf(printer.Data(), TEXT("Settings")));
    }
    fs::path SettingsFile(const InstalledPrinter& printer) { return SettingsFile(printer, Variable(TEXT("APPDATA"))); }

    // A settings file with one watermark, and the watermark's rendered files beside it.
    struct StoredSettings {
        std::vector<fs::path> files;

        bool Exist() const {
            return std::all_of(files.begin(), files.end(), [](const fs::path& file) { return fs::exists(file); });
        }
        bool AreGone() const {
            return std::none_of(files.begin(), files.end(), [](const fs::path& file) { return fs::exists(file); });
        }
    };
    StoredSettings StoreSettings(const InstalledPrinter& printer, const WideText& applicationData) {
        const WideText rendered = applicationData + TEXT("\\mark");
        const std::string narrow(rendered.begin(), rendered.end());
        StoredSettings stored = {{SettingsFile(printer, applicationData),
                                  environment_->HostPath(rendered + TEXT(".mono")),
                                  environment_->HostPath(rendered + TEXT(".color"))}};
        PutFile(stored.files[0],
                "[Watermarks]\r\nNumWatermarks=1\r\nWMType0=1\r\nWMString0=Own\r\nWMFace0=Arial\r\n"
                "WMCharSet0=0\r\nWMBold0=0\r\nWMItalic0=0\r\nWMSize0=50\r\nWMAngle0=450\r\n"
                "WMOutline0=0\r\nWMColor0=007070FF\r\nWMResolution0=300\r\nWMWidth0=10\r\n"
                "WMHeight0=10\r\nWMFileName0=" +
                    narrow + ".mono\r\nWMColorFile0=" + narrow + ".color\r\n");
        PutFile(stored.files[1], "mono");
        PutFile(stored.files[2], "color");
        return stored;
    }
};

TEST_F(PrinterEvents, InstallingEveryModel) {
    for (const std::string& model : DescriptionFiles()) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        const auto installed = StateOf(printer);
        const auto& [data, forms, devMode, processor] = installed;
        Record(model);
        RecordData(data);
        RecordLines(" forms", forms);
        EXPECT_EQ(data.count(TEXT("PDFName")) + data.count(TEXT("BasePDFSize")), 0u) << "the data file is the model's";
        const DevModeBuffer built = DefaultDevMode(printer, printer.Name());
        EXPECT_EQ(memcmp(devMode.data(), built.content.get(), devMode.size()), 0);

        EXPECT_TRUE(printer.Send(PRINTER_EVENT_INITIALIZE));
        EXPECT_EQ(StateOf(printer), installed) << "installed again";
        for (const int event :
             {0, PRINTER_EVENT_CACHE_REFRESH, PRINTER_EVENT_CACHE_DELETE, PRINTER_EVENT_ATTRIBUTES_CHANGED, -1, 1000}) {
            EXPECT_TRUE(printer.Send(event)) << event;
        }
        EXPECT_EQ(StateOf(printer), installed) << "other events";

        for (const std::string& form : forms) {
            const std::string name = form.substr(0, form.find(": "));
            DeleteFormW(printer.Handle(), WideText(name.begin(), name.end()).data());
        }
        EXPECT_EQ(DriverForms(printer).size(), 0u);
    }
}

TEST_F(PrinterEvents, UnknownPrinters) {
    InstalledPrinter printer(*environment_, PackageOf(DescriptionFiles().at(0)));
    const auto before = StateOf(printer);
    WCHAR unknown[] = TEXT("Nobody");
    for (int event = 1; event <= 4; ++event) {
        EXPECT_EQ(printer.Driver().DrvPrinterEvent(unknown, event, 0, 0), event != PRINTER_EVENT_INITIALIZE) << event;
    }
    EXPECT_EQ(StateOf(printer), before);
}

TEST_F(PrinterEvents, PrinterDataFile) {
    constexpr char kBase[] = "the base file";
    DriverPackage package = PackageOf("VELMORA-M2100.XPI");
    package.dependentFiles.insert(package.dependentFiles.begin(), package.dataFile);
    package.dataFile = {TEXT("KV62.PDF"), {}, kBase};
    InstalledPrinter printer(*environment_, package);
    const std::string deviceData = DeviceDataOf(environment_->HostPath(printer.File(TEXT("VELMORA-M2100.XPI"))));
    ASSERT_GT(deviceData.size(), 1000u);
    const WideText path = printer.File(TEXT("KV62.PDF"));
    const fs::path file = environment_->HostPath(path);
    EXPECT_EQ(ContentOf(file), kBase + deviceData);
    RecordData(printer.Data());

    const std::string small(deviceData.size() - 1, 's');
    const std::string large(deviceData.size(), 'l');
    const struct {
        const char* what;
        int event;
        std::string before;  // the file
        bool isReadOnly;
        DWORD baseSize;  // BasePDFSize before
        std::string after;
        DWORD baseSizeAfter;
    } cases[] = {
        {"again", PRINTER_EVENT_INITIALIZE, kBase + deviceData, false, 0, kBase + deviceData, sizeof(kBase) - 1},
        {"read-only", PRINTER_EVENT_INITIALIZE, kBase, true, 0, kBase + deviceData, sizeof(kBase) - 1},
        {"empty", PRINTER_EVENT_INITIALIZE, "", false, 9, deviceData, 0},
        {"a byte short of what is appended", PRINTER_EVENT_INITIALIZE, small, false, 0, small + deviceData,
         static_cast<DWORD>(small.size())},
        {"as large as what is appended", PRINTER_EVENT_INITIALIZE, large, false, 9, large, 0},
        {"connected, new", PRINTER_EVENT_ADD_CONNECTION, kBase, true, sizeof(kBase) - 1, kBase + deviceData,
         sizeof(kBase) - 1},
        {"connected, there already", PRINTER_EVENT_ADD_CONNECTION, kBase + deviceData, false, sizeof(kBase) - 1,
         kBase + deviceData, sizeof(kBase) - 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        PutFile(file, c.before);
        printer.SetData(TEXT("BasePDFSize"), REG_DWORD, &c.baseSize, sizeof(c.baseSize));
        if (c.isReadOnly) {
            EXPECT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY));
        }
        EXPECT_TRUE(printer.Send(c.event));
        EXPECT_TRUE(ContentOf(file) == c.after) << ContentOf(file).size() << " bytes, not " << c.after.size();
        DWORD baseSize = 0;
        memcpy(&baseSize, printer.Data().at(TEXT("BasePDFSize")).bytes.data(), sizeof(baseSize));
        EXPECT_EQ(baseSize, c.baseSizeAfter);
    }
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(PrinterEvents, DriverIniFile) {
    const PackageFile iniFile = {
        TEXT("KV62.INI"),
        {},
        "[CustomSizes]\r\nNumCustomSizes=2\r\nCustomName0=Ticket\r\nCustomWidth0=10555\r\nCustomLength0=20009\r\n"
        "CustomMetric0=1\r\nCustomName1=Label\r\nCustomWidth1=12700\r\nCustomLength1=17780\r\nCustomMetric1=0\r\n"
        "[Watermarks]\r\nLanguage=ENUS\r\nNumWatermarks=1\r\nWMType0=1\r\nWMString0=House\r\nWMFace0=Arial\r\n"
        "WMCharSet0=0\r\nWMBold0=1\r\nWMItalic0=0\r\nWMSize0=40\r\nWMAngle0=300\r\nWMOutline0=0\r\n"
        "WMColor0=00FF0010\r\n"
        "[DeviceInfo]\r\nSources=5\r\nDestinations=1\r\nOptions=3\r\nTotalMemory=2\r\n"
        "[FontSubstitutions]\r\nFontSubSize=19\r\nNumFontSubs=1\r\nFontSubSys0=Times\r\nFontSubPrt0=Dutch Roman\r\n"};
    const std::pair<const char*, bool> models[] = {{"VELMORA-C3200.XPI", true}, {"VELMORA-M3100.XPI", false}};
    for (const auto& [model, hasOwnPapers] : models) {
        SCOPED_TRACE(model);
        DriverPackage package = PackageOf(model);
        package.dependentFiles.push_back(iniFile);
        InstalledPrinter printer(*environment_, package);
        const auto installed = StateOf(printer);
        Record(model);
        RecordData(std::get<PrinterData>(installed));
        RecordLines(" forms", std::get<1>(installed));
        const std::string settings = ContentOf(SettingsFile(printer));
        std::istringstream lines(settings);
        for (std::string line; std::getline(lines, line);) {
            line.erase(std::remove(line.begin(), line.end(), '\r'), line.end());
            if (!line.empty()) {
                Record(line);
            }
        }
        EXPECT_NE(settings.find("CustomName1=Label"), std::string::npos);
        EXPECT_NE(settings.find("WMString0=House"), std::string::npos);

        EXPECT_TRUE(printer.Send(PRINTER_EVENT_INITIALIZE));
        const auto again = StateOf(printer);
        EXPECT_EQ(std::get<1>(again), std::get<1>(installed));
        EXPECT_EQ(ContentOf(SettingsFile(printer)), settings);
        // The custom sizes go behind what the value holds; only the model's own papers write it anew.
        if (hasOwnPapers) {
            EXPECT_EQ(again, installed);
        } else {
            const auto& papers = std::get<PrinterData>(installed).at(TEXT("PaperSizes")).bytes;
            auto twice = papers;
            twice.insert(twice.end(), papers.begin(), papers.end());
            EXPECT_TRUE(std::get<PrinterData>(again).at(TEXT("PaperSizes")).bytes == twice);
        }
    }
}

TEST_F(PrinterEvents, OtherFilesOfTheDriver) {
    WCHAR folder[MAX_PATH];
    DWORD needed = 0;
    ASSERT_TRUE(
        GetPrintProcessorDirectoryW(nullptr, nullptr, 1, reinterpret_cast<BYTE*>(folder), sizeof(folder), &needed));
    const fs::path processors = environment_->HostPath(folder);
    const std::vector<fs::path> files = {processors / "KV62PPR.DLL", processors / "OTHER.DLL"};
    for (const fs::path& file : files) {
        PutFile(file, "no library");
    }
    const struct {
        const char* model;
        WideText named;  // the printer's value "PrintProcessor", for the second installation
        WideText processor;
    } cases[] = {{"VELMORA-M3100.XPI", TEXT(""), TEXT("winprint")},
                 {"VELMORA-I520.XPI", TEXT(""), TEXT("KV62PPR")},
                 {"VELMORA-I520.XPI", TEXT("other.d"), TEXT("OTHER")}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.model);
        DriverPackage package = PackageOf(c.model);
        for (const WCHAR* name : {TEXT("KV62UMPD.DLL"), TEXT("KV62PPR.DLL"), TEXT("OTHER.DLL"), TEXT("KV62FONT.EXE")}) {
            package.dependentFiles.push_back({name, {}, "neither library nor program"});
        }
        InstalledPrinter printer(*environment_, package);
        if (!c.named.empty()) {
            printer.SetString(TEXT("PrintProcessor"), c.named);
            EXPECT_TRUE(printer.Send(PRINTER_EVENT_INITIALIZE));
        }
        const auto installed = StateOf(printer);
        EXPECT_EQ(Printable(std::get<WideText>(installed)), Printable(c.processor));
        RecordData(std::get<0>(installed));
        EXPECT_TRUE(printer.Send(PRINTER_EVENT_INITIALIZE));
        EXPECT_EQ(StateOf(printer), installed);
    }
    DWORD count = 0;
    EnumPrintProcessorsW(nullptr, nullptr, 1, nullptr, 0, &needed, &count);
    std::vector<BYTE> block(needed);
    EXPECT_TRUE(EnumPrintProcessorsW(nullptr, nullptr, 1, block.data(), needed, &needed, &count));
    const auto* infos = reinterpret_cast<const PRINTPROCESSOR_INFO_1W*>(block.data());
    for (const WCHAR* name : {TEXT("KV62PPR"), TEXT("OTHER")}) {
        EXPECT_EQ(std::count_if(infos, infos + count,
                                [name](const PRINTPROCESSOR_INFO_1W& info) { return WideText(info.pName) == name; }),
                  1);
    }
    for (const fs::path& file : files) {
        fs::remove(file);
    }
}

TEST_F(PrinterEvents, Connections) {
    InstalledPrinter printer(*environment_, PackageOf(DescriptionFiles().at(0)), TEXT("Shared"));
    const WideText self = ComputerName();
    WideText name = TEXT("\\\\") + self + TEXT("\\Shared");
    const struct {
        Names before;  // empty: no value
        std::vector<int> events;
        Names after;  // on the system that keeps account of connections
    } cases[] = {
        {{}, {PRINTER_EVENT_ADD_CONNECTION}, {self}},
        {{}, {PRINTER_EVENT_ADD_CONNECTION, PRINTER_EVENT_ADD_CONNECTION}, {self, self}},
        {{TEXT("OTHER"), self, TEXT("THIRD"), self}, {PRINTER_EVENT_DELETE_CONNECTION}, {TEXT("OTHER"), TEXT("THIRD")}},
        {{self, self}, {PRINTER_EVENT_DELETE_CONNECTION}, {}},
        {{TEXT("OTHER")},
         {PRINTER_EVENT_ADD_CONNECTION, PRINTER_EVENT_ADD_CONNECTION, PRINTER_EVENT_DELETE_CONNECTION},
         {TEXT("OTHER")}},
        {{}, {PRINTER_EVENT_DELETE_CONNECTION}, {}},
    };
    WideText marker = name;
    std::replace(marker.begin(), marker.end(), TEXT('\\'), TEXT('/'));
    // The one that keeps account last, as its marker stays.
    for (const DWORD version : {10u, 4u}) {
        environment_->SetSystemVersion(version, 0);
        OSVERSIONINFOW actual = {};
        actual.dwOSVersionInfoSize = sizeof(actual);
        ASSERT_TRUE(GetVersionExW(&actual));
        const bool isMarked = actual.dwMajorVersion == 4;
        for (const auto& c : cases) {
            SCOPED_TRACE("case " + std::to_string(&c - cases) + ", version " + std::to_string(actual.dwMajorVersion));
            WCHAR value[] = TEXT("VMNetworkInstall");
            DeletePrinterDataW(printer.Handle(), value);
            if (!c.before.empty()) {
                const PrinterValue before = MultiString(c.before);
                printer.SetData(value, before.type, before.bytes.data(), before.bytes.size());
            }
            for (const int event : c.events) {
                EXPECT_TRUE(printer.Driver().DrvPrinterEvent(name.data(), event, 0, 0));
            }
            PrinterData data = printer.Data();
            const Names& expected = isMarked ? c.after : c.before;
            EXPECT_EQ(data.contains(value), !expected.empty());
            EXPECT_TRUE(expected.empty() || data[value] == MultiString(expected));
        }
        const HANDLE opened = OpenSemaphoreW(SEMAPHORE_ALL_ACCESS, FALSE, marker.c_str());
        EXPECT_EQ(opened != nullptr, isMarked);
        if (opened != nullptr) {
            CloseHandle(opened);
        }
    }

    // The settings file's name lasts from one connection to its removal, the file with it.
    WCHAR settings[] = TEXT("Settings");
    DeletePrinterDataW(printer.Handle(), settings);
    EXPECT_TRUE(printer.Driver().DrvPrinterEvent(name.data(), PRINTER_EVENT_ADD_CONNECTION, 0, 0));
    EXPECT_TRUE(printer.Data().contains(settings));
    const StoredSettings stored = StoreSettings(printer, Variable(TEXT("APPDATA")));
    EXPECT_TRUE(stored.Exist());
    EXPECT_TRUE(printer.Driver().DrvPrinterEvent(name.data(), PRINTER_EVENT_DELETE_CONNECTION, 0, 0));
    EXPECT_TRUE(stored.AreGone());
}

TEST_F(PrinterEvents, DeletingRemovesTheSettingsOfEveryUser) {
    const WideText profiles = Variable(TEXT("APPDATA")) + TEXT("\\Profiles");
    std::vector<StoredSettings> stored;
    fs::path neighbour;
    {
        InstalledPrinter printer(*environment_, PackageOf(DescriptionFiles().at(0)));
        for (const WCHAR* user : {TEXT("First"), TEXT("Second One")}) {
            stored.push_back(StoreSettings(printer, profiles + TEXT("\\") + user + TEXT("\\Application Data")));
            EXPECT_TRUE(stored.back().Exist());
        }
        neighbour = stored[1].files[0].parent_path() / "00000001.ini";
        PutFile(neighbour, "another printer's");
        SetEnvironmentVariableW(TEXT("USERPROFILE"), (profiles + TEXT("\\First")).c_str());
    }
    for (const StoredSettings& settings : stored) {
        EXPECT_TRUE(settings.AreGone());
    }
    EXPECT_TRUE(fs::exists(neighbour));
}

}  // namespace
}  // namespace contract
