// DrvDeviceCapabilities, and DeviceCapabilitiesW as an application calls it: every capability of every model, and the
// spool directory that DC_VERSION registers.
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "tests/contract/contract_test.h"
#include "tests/contract/transcript.h"
#include "tools/velmora/capability_formats.h"

namespace contract {
namespace {

using velmora::CapabilityFormat;
using velmora::CapabilityKind;
using velmora::kCapabilityFormats;

class Capabilities : public ContractTest {};

// A list's entries as text, or an empty text for a number.
std::string EntriesText(const CapabilityFormat& format, const BYTE* bytes, size_t count) {
    std::string text;
    for (size_t i = 0; i < count && format.kind != CapabilityKind::kNumber; ++i) {
        const BYTE* entry = bytes + i * velmora::EntrySize(format);
        text += ' ';
        if (format.kind == CapabilityKind::kNames) {
            WideText name(format.nameCapacity, 0);
            memcpy(name.data(), entry, format.nameCapacity * sizeof(WCHAR));
            text += '"' + Printable(name.substr(0, name.find_last_not_of(WCHAR{0}) + 1)) + '"';
            continue;
        }
        DWORD numbers[2] = {};
        memcpy(numbers, entry, velmora::EntrySize(format));
        text += std::to_string(numbers[0]);
        text += format.kind == CapabilityKind::kPairs ? 'x' + std::to_string(numbers[1]) : "";
    }
    return text;
}

using Ask = std::function<DWORD(WORD capability, void* output)>;

// The answer with its entries: asked for their number first, and then for as many.
std::string AnswerText(const CapabilityFormat& format, const Ask& ask) {
    constexpr BYTE kPattern = 0xA5;
    const DWORD count = ask(format.index, nullptr);
    const size_t size = velmora::EntrySize(format) * count;
    std::vector<BYTE> output(size + sizeof(DWORD), kPattern);
    EXPECT_EQ(ask(format.index, output.data()), count);
    for (size_t i = size; i < output.size(); ++i) {
        EXPECT_EQ(output[i], kPattern) << "beyond the entries";
    }
    return std::string(format.name) + ' ' + std::to_string(count) + EntriesText(format, output.data(), count);
}

// What the driver and the platform say of each capability, which must be the same.
std::vector<std::string> Answers(InstalledPrinter& printer) {
    DevModeBuffer foreign;  // not consulted
    const Ask driver = [&](WORD capability, void* output) {
        return printer.Driver().DrvDeviceCapabilities(printer.Handle(), printer.NameArgument(), capability, output,
                                                      foreign.Get());
    };
    const Ask platform = [&](WORD capability, void* output) {
        return static_cast<DWORD>(DeviceCapabilitiesW(printer.Name().c_str(), TEXT("FILE:"), capability,
                                                      static_cast<WCHAR*>(output), nullptr));
    };
    std::vector<std::string> answers;
    for (const CapabilityFormat& format : kCapabilityFormats) {
        SCOPED_TRACE(format.name);
        answers.push_back(AnswerText(format, driver));
        EXPECT_EQ(AnswerText(format, platform), answers.back());
    }
    EXPECT_TRUE(foreign.Untouched());
    return answers;
}

TEST_F(Capabilities, OfEveryModel) {
    const struct {
        WORD index;
        const char* answer;
    } always[] = {{DC_SIZE, "DC_SIZE 220"},
                  {DC_EXTRA, "DC_EXTRA 3868"},
                  {DC_VERSION, "DC_VERSION 1025"},
                  {DC_DRIVER, "DC_DRIVER 2560"},
                  {DC_MEDIAREADY, "DC_MEDIAREADY 1 \"A4\""}};
    for (const std::string& model : DescriptionFiles()) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        environment_->SetMetric(true);
        const std::vector<std::string> metric = Answers(printer);
        environment_->SetMetric(false);
        const std::vector<std::string> american = Answers(printer);
        for (const auto& expected : always) {
            EXPECT_EQ(metric[expected.index - 1], expected.answer);
            EXPECT_EQ(american[expected.index - 1], expected.answer);
        }
        Record(model);
        for (size_t i = 0; i < metric.size(); ++i) {
            Record(metric[i]);
            if (american[i] != metric[i]) {
                Record("U.S.: " + american[i]);
            }
        }
    }
}

// Every option installed, and sizes of the driver's INI file.
TEST_F(Capabilities, OfInstalledOptionsAndCustomSizes) {
    const DWORD everything[] = {0xFFFFFFFF, 1, 0x7FFFFFFF, 1};
    for (const std::string& model : DescriptionFiles()) {
        SCOPED_TRACE(model);
        DriverPackage package = PackageOf(model);
        package.dependentFiles.push_back({TEXT("KV62.INI"),
                                          {},
                                          "[CustomSizes]\r\nNumCustomSizes=2\r\n"
                                          "CustomName0=Half\r\nCustomWidth0=10009\r\n"
                                          "CustomLength0=20000\r\nCustomMetric0=1\r\n"
                                          "CustomName1=Slip\r\nCustomWidth1=9000\r\n"
                                          "CustomLength1=30000\r\nCustomMetric1=0\r\n"});
        InstalledPrinter printer(*environment_, package);
        printer.SetData(TEXT("DeviceInfo"), REG_BINARY, everything, sizeof(everything));
        const DWORD megabytes = 96;
        printer.SetData(TEXT("Memory"), REG_DWORD, &megabytes, sizeof(megabytes));
        const std::vector<std::string> answers = Answers(printer);
        EXPECT_EQ(answers[DC_DUPLEX - 1], "DC_DUPLEX 1");
        EXPECT_EQ(answers[DC_STAPLE - 1], "DC_STAPLE 1");
        Record(model);
        for (const WORD index :
             {DC_FIELDS, DC_PAPERS, DC_PAPERSIZE, DC_PAPERNAMES, DC_BINS, DC_BINNAMES, DC_PRINTERMEM}) {
            Record(answers[index - 1]);
        }
    }
}

TEST_F(Capabilities, WithoutDescriptionFile) {
    DriverPackage package;
    package.dataFile = {TEXT("PLAIN.BIN"), {}, "no description"};
    InstalledPrinter printer(*environment_, package);
    for (const std::string& answer : Answers(printer)) {
        Record(answer);
    }
}

// The value "SpoolDirectory" of the printer's key; empty where there is none.
WideText SpoolDirectory(const WideText& printerName) {
    const WideText path = TEXT("SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\") + printerName;
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE, &key), ERROR_SUCCESS);
    WCHAR directory[MAX_PATH] = {};
    DWORD size = sizeof(directory) - sizeof(WCHAR);
    DWORD type = 0;
    const LSTATUS read =
        RegQueryValueExW(key, TEXT("SpoolDirectory"), nullptr, &type, reinterpret_cast<BYTE*>(directory), &size);
    RegCloseKey(key);
    EXPECT_TRUE(read == ERROR_FILE_NOT_FOUND || (read == ERROR_SUCCESS && type == REG_SZ));
    return directory;
}

TEST_F(Capabilities, VersionRegistersTheSpoolDirectoryOfImagePrinters) {
    size_t registered = 0;
    const std::vector<std::string> models = DescriptionFiles();
    for (const std::string& model : models) {
        SCOPED_TRACE(model);
        InstalledPrinter printer(*environment_, PackageOf(model));
        WideText name = printer.Name() + TEXT(",Local");
        const auto askVersion = [&] {
            printer.Driver().DrvDeviceCapabilities(printer.Handle(), name.data(), DC_VERSION, nullptr, nullptr);
        };
        askVersion();
        EXPECT_EQ(Printable(SpoolDirectory(printer.Name())), "") << "no directory is known yet";
        printer.SetString(TEXT("DefaultSpoolDirectory"), TEXT("C:\\Spool"));
        askVersion();
        const WideText directory = SpoolDirectory(printer.Name());
        EXPECT_TRUE(directory.empty() || directory == TEXT("C:\\Spool"));
        registered += directory.empty() ? 0 : 1;
        Record(model + (directory.empty() ? ": not registered" : ": registered"));
    }
    EXPECT_GT(registered, 0u);
    EXPECT_LT(registered, models.size()) << "of image printers only";
}

}  // namespace
}  // namespace contract
