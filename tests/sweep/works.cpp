#include "tests/sweep/works.h"

#include <objbase.h>

#include <cstring>

#include "driver/base/text.h"
#include "driver/entry/driver_interface.h"
#include "driver/ui/controls.h"
#include "driver/ui/paper_choices.h"
#include "tools/velmora/capability_formats.h"

namespace sweep_test {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit
using namespace velmora;      // NOLINT(google-build-using-namespace): what is swept

namespace {

constexpr int kDeviceSlot = 5;
// Controls.
constexpr int kAvailable = 11004, kInstall = 11005;
constexpr int kDetails = 5034, kSizeWidth = 5302, kSizes = 5317;
constexpr int kManual = 6012, kManagePresets = 6014, kAdjust = 6026, kPresetName = 6306, kSavePreset = 6307;
constexpr int kWatermarkSwitch = 7003, kWatermarkName = 7005, kAddWatermark = 7006, kWatermarkPosition = 7019;
constexpr int kOutputFlag = 9003, kOutputText = 9010;
constexpr int kRestoreAll = 10009;

void Choose(HWND page, int control, uint32_t value) {
    SelectComboByData(page, control, value);
    SendMessageW(page, WM_COMMAND, MAKEWPARAM(control, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(page, control)));
}

void ConvertDevMode(SweepMachine& machine, VelmoraDevMode* input) {
    VelmoraDevMode output = {};
    LONG needed = sizeof(output);
    if (DrvConvertDevMode(machine.Name(), input ? &input->publicPart : nullptr, &output.publicPart, &needed, 0)) {
        SweepMachine::CheckFrame(output);
    }
    EXPECT_EQ(needed, 4088);
}

void ConvertForConnection(SweepMachine& machine) {
    LONG needed = 0;
    WideText connection = u"\\\\velmora-pc\\Test Printer";
    machine.machine.SetSystemVersion(4, 0);
    DrvConvertDevMode(connection.data(), nullptr, nullptr, &needed, 0);
    machine.machine.SetSystemVersion(10, 0);
}

// Whatever fails, a list's entries are as many as the answer says.
void AskCapability(SweepMachine& machine, const CapabilityFormat& format) {
    constexpr size_t kMostEntries = 32;
    BYTE output[kMostEntries * kPaperNameCapacity * sizeof(WCHAR) + 1];
    memset(output, 0x55, sizeof(output));
    DrvDeviceCapabilities(machine.Printer(), machine.Name(), format.index, nullptr, nullptr);
    const DWORD answer = DrvDeviceCapabilities(machine.Printer(), machine.Name(), format.index, output, nullptr);
    const size_t size = EntrySize(format) * answer;
    ASSERT_LT(size, sizeof(output));
    EXPECT_EQ(output[size], 0x55);
    EXPECT_TRUE(size == 0 || output[size - 1] != 0x55);
}

void AskDocumentProperties(SweepMachine& machine) {
    VelmoraDevMode input = machine.Input();
    VelmoraDevMode output = {};
    input.privatePart.watermarkFlags = kWatermarkIsImage;
    CopyText<WCHAR>(input.privatePart.watermarkFile, 96, TEXT("C:\\mark"));
    DrvDocumentProperties(nullptr, machine.Printer(), machine.Name(), &output.publicPart, &input.publicPart,
                          DM_IN_BUFFER | DM_OUT_BUFFER);
    if (output.publicPart.dmSize != 0) {
        SweepMachine::CheckFrame(output);
    }
}

void AskDocumentSheetsWithoutWindow(SweepMachine& machine) {
    VelmoraDevMode input = machine.Input();
    VelmoraDevMode output = {};
    DOCUMENTPROPERTYHEADER header = {};
    header.cbSize = sizeof(header);
    header.hPrinter = machine.Printer();
    header.pszPrinterName = machine.Name();
    header.pdmIn = &input.publicPart;
    header.pdmOut = &output.publicPart;
    header.cbOut = sizeof(output);
    header.fMode = DM_IN_BUFFER | DM_OUT_BUFFER;
    EXPECT_EQ(DrvDocumentPropertySheets(nullptr, reinterpret_cast<LPARAM>(&header)), 1);
    if (output.publicPart.dmSize != 0) {
        SweepMachine::CheckFrame(output);
    }
}

// --- Sheets

void UseDevicePage(SweepMachine& machine) {
    machine.ThenOnPage(kDeviceSlot, [](HWND page) {
        SendDlgItemMessageW(page, kAvailable, LB_SETCURSEL, 0, 0);
        Click(page, kInstall);
    });
    machine.ThenPressOk();
    machine.RunDeviceSheet();
}

void UsePaperPage(SweepMachine& machine) {
    machine.ThenOnPage(kPaperSlot, [](HWND page) {
        Choose(page, kPaperControl, DMPAPER_A4);
        Choose(page, kLayoutControl, kTwoPages);
        Click(page, kDetails);
    });
    machine.ThenInDialog([](HWND dialog) { SendMessageW(dialog, WM_COMMAND, IDOK, 0); });
    machine.ThenPressOk();
    machine.RunDocumentSheet();
}

void UseCustomSize(SweepMachine& machine) {
    machine.ThenOnPage(kPaperSlot, [](HWND page) { Choose(page, kPaperControl, kCustomSizePaper); });
    machine.ThenInDialog([](HWND dialog) {
        SetDlgItemTextW(dialog, kSizeWidth, TEXT("200.0"));
        Click(dialog, kSizes);
    });
    machine.ThenPressOk();
    machine.RunDocumentSheet();
}

void UseAdjustment(SweepMachine& machine) {
    machine.ThenOnPage(kColorSlot, [](HWND page) {
        Click(page, kManual);
        Click(page, kAdjust);
    });
    machine.ThenInDialog([](HWND sheet) { SendMessageW(sheet, PSM_PRESSBUTTON, PSBTN_OK, 0); });
    machine.ThenPressOk();
    machine.RunDocumentSheet();
}

void UsePresets(SweepMachine& machine) {
    machine.ThenOnPage(kColorSlot, [](HWND page) {
        Click(page, kManual);
        Click(page, kManagePresets);
    });
    machine.ThenInDialog([](HWND dialog) {
        SetDlgItemTextW(dialog, kPresetName, TEXT("Warm"));
        Click(dialog, kSavePreset);
    });
    machine.ThenPressOk();
    machine.RunDocumentSheet();
}

void UseWatermarkPage(SweepMachine& machine) {
    machine.ThenOnPage(kWatermarkSlot, [](HWND page) {
        Click(page, kWatermarkSwitch);
        const HWND edit = GetWindow(GetDlgItem(page, kWatermarkName), GW_CHILD);
        SendMessageW(edit, EM_SETSEL, 0, -1);
        SendMessageW(edit, WM_CHAR, u'N', 0);
        Choose(page, kWatermarkPosition, 9);
        Click(page, kAddWatermark);
    });
    machine.ThenPressOk();
    machine.RunDocumentSheet();
}

void UseOutputPage(SweepMachine& machine) {
    machine.ThenOnPage(kOutputSlot, [](HWND page) {
        Click(page, kOutputFlag);
        SetDlgItemTextW(page, kOutputText, TEXT("Job"));
    });
    machine.ThenPressOk();
    machine.RunDocumentSheet();
}

void UseInformationPage(SweepMachine& machine) {
    machine.ThenOnPage(kInformationSlot, [](HWND page) { Click(page, kRestoreAll); });
    machine.ThenInDialog([](HWND notice) { Click(notice, IDOK); });
    machine.ThenPressOk();
    machine.RunDocumentSheet();
}

// --- Print tickets

void WriteTicket(SweepMachine& machine) {
    EXPECT_EQ(machine.provider->ConvertDevModeToPrintTicket(sizeof(machine.ticketDevMode),
                                                            &machine.ticketDevMode.publicPart, machine.ticket.Get()),
              S_OK);
}

void ReadTicketToDevMode(SweepMachine& machine) {
    ULONG size = 0;
    PDEVMODEW output = nullptr;
    const HRESULT result = machine.provider->ConvertPrintTicketToDevMode(
        machine.ticket.Get(), sizeof(machine.ticketDevMode), &machine.ticketDevMode.publicPart, &size, &output);
    EXPECT_EQ(result, output ? S_OK : E_OUTOFMEMORY);
    EXPECT_EQ(size, output ? sizeof(machine.ticketDevMode) : 0);
    CoTaskMemFree(output);
}

void WriteCapabilities(SweepMachine& machine) {
    TicketDocument capabilities;
    const HRESULT result = machine.provider->GetPrintCapabilities(machine.ticket.Get(), capabilities.Receive());
    EXPECT_EQ(result, capabilities ? S_OK : E_OUTOFMEMORY);
}

void CompleteTicket(SweepMachine& machine) {
    EXPECT_EQ(machine.provider->ValidatePrintTicket(machine.ticket.Get()), S_PT_NO_CONFLICT);
}

template <INT event>
void SendEvent(SweepMachine& machine) {
    DrvPrinterEvent(machine.Name(), event, 0, 0);
}

std::vector<Work> AllWorks() {
    constexpr auto forget = [](SweepMachine& machine) { machine.Forget(); };
    constexpr auto read = [](SweepMachine& machine) { machine.ReadTicket(); };
    constexpr auto make = [](SweepMachine& machine) { machine.MakeProvider(); };
    std::vector<Work> works = {
        {"DevQueryPrint", "any", Model::kPlain,
         [](SweepMachine& machine) {
             VelmoraDevMode input = machine.Input();
             DWORD reason = 0;
             DevQueryPrint(machine.Printer(), &input.publicPart, &reason);
         }},
        {"DevQueryPrintEx", "any", Model::kPlain, [](SweepMachine&) { EXPECT_TRUE(DevQueryPrintEx(nullptr)); }},
        {"DrvUpgradePrinter", "any", Model::kPlain, [](SweepMachine&) { EXPECT_TRUE(DrvUpgradePrinter(1, nullptr)); }},
        {"DrvAdvancedDocumentProperties", "any", Model::kPlain,
         [](SweepMachine& machine) {
             EXPECT_EQ(DrvAdvancedDocumentProperties(nullptr, machine.Printer(), machine.Name(), nullptr, nullptr), 10);
         }},
        {"PrinterProperties", "any", Model::kSheets,
         [](SweepMachine& machine) { PrinterProperties(nullptr, machine.Printer()); }},
        {"DllCanUnloadNow", "any", Model::kPlain, [](SweepMachine&) { EXPECT_EQ(DllCanUnloadNow(), S_OK); }},
        {"DllGetClassObject", "provider", Model::kPlain, make, nullptr, forget},
        {"DllGetClassObject", "binding", Model::kLineJobs, [](SweepMachine& machine) { machine.Bind(); }, make, forget},
        {"DllGetClassObject", "binding in colour", Model::kColor, [](SweepMachine& machine) { machine.Bind(); }, make,
         forget},
        {"DllGetClassObject", "ticket of a device mode", Model::kLineJobs, WriteTicket, read, forget},
        {"DllGetClassObject", "device mode of a ticket", Model::kLineJobs, ReadTicketToDevMode, read, forget},
        {"DllGetClassObject", "print capabilities", Model::kLineJobs, WriteCapabilities, read, forget},
        {"DllGetClassObject", "completed ticket", Model::kLineJobs, CompleteTicket, read, forget},
        {"DrvConvertDevMode", "default", Model::kPlain,
         [](SweepMachine& machine) { ConvertDevMode(machine, nullptr); }},
        {"DrvConvertDevMode", "default in colour", Model::kColor,
         [](SweepMachine& machine) { ConvertDevMode(machine, nullptr); }},
        {"DrvConvertDevMode", "input", Model::kPlain,
         [](SweepMachine& machine) {
             VelmoraDevMode input = machine.Input();
             ConvertDevMode(machine, &input);
         }},
        {"DrvConvertDevMode", "connection", Model::kPlain, ConvertForConnection},
        {"DrvDocumentProperties", "colour", Model::kColor, AskDocumentProperties},
        {"DrvDocumentProperties", "image", Model::kImage, AskDocumentProperties},
        {"DrvDocumentPropertySheets", "no window", Model::kColor, AskDocumentSheetsWithoutWindow},
        {"DrvDocumentPropertySheets", "paper page", Model::kSheets, UsePaperPage},
        {"DrvDocumentPropertySheets", "custom size", Model::kSheets, UseCustomSize},
        {"DrvDocumentPropertySheets", "color adjustment", Model::kSheets, UseAdjustment},
        {"DrvDocumentPropertySheets", "color presets", Model::kSheets, UsePresets},
        {"DrvDocumentPropertySheets", "watermark page", Model::kSheets, UseWatermarkPage},
        {"DrvDocumentPropertySheets", "output page", Model::kSheets, UseOutputPage},
        {"DrvDocumentPropertySheets", "information page", Model::kSheets, UseInformationPage},
        {"DrvDevicePropertySheets", "device page", Model::kSheets, UseDevicePage},
        {"DrvPrinterEvent", "installation", Model::kColor, SendEvent<PRINTER_EVENT_INITIALIZE>},
        {"DrvPrinterEvent", "installation over settings", Model::kColor, SendEvent<PRINTER_EVENT_INITIALIZE>, nullptr,
         nullptr, true},
        {"DrvPrinterEvent", "installation of an image printer", Model::kImage, SendEvent<PRINTER_EVENT_INITIALIZE>},
        {"DrvPrinterEvent", "connection", Model::kColor, SendEvent<PRINTER_EVENT_ADD_CONNECTION>},
        {"DrvPrinterEvent", "connection over settings", Model::kColor, SendEvent<PRINTER_EVENT_ADD_CONNECTION>, nullptr,
         nullptr, true},
        {"DrvPrinterEvent", "end of a connection", Model::kColor,
         [](SweepMachine& machine) {
             machine.machine.SetComputerName(u"OTHER");
             SendEvent<PRINTER_EVENT_DELETE_CONNECTION>(machine);
             machine.machine.SetComputerName(u"VELMORA-PC");
         },
         nullptr, nullptr, true},
        {"DrvPrinterEvent", "deletion", Model::kColor, SendEvent<PRINTER_EVENT_DELETE>, nullptr, nullptr, true},
    };
    for (const CapabilityFormat& format : kCapabilityFormats) {
        works.push_back({"DrvDeviceCapabilities", format.name,
                         format.index == DC_VERSION ? Model::kImage : Model::kPlain,
                         [&format](SweepMachine& machine) { AskCapability(machine, format); }});
    }
    constexpr auto start = [](SweepMachine& machine) { machine.StartJob(); };
    constexpr auto sheet = [](SweepMachine& machine) { machine.StartSheet(); };
    constexpr auto end = [](SweepMachine& machine) { machine.EndJob(); };
    const std::pair<const char*, Model> kinds[] = {
        {"lines", Model::kLineJobs}, {"text", Model::kTextJobs}, {"records", Model::kRecordJobs}};
    for (const auto& [name, model] : kinds) {
        works.push_back({"GuiStartJob", name, model, start, nullptr, end});
        works.push_back({"GuiStartSheet", name, model, sheet, start, end});
        works.push_back({"GuiEndJob", name, model, end, start});
    }
    for (Work& work : works) {
        work.isSlow = work.model == Model::kSheets;
    }
    return works;
}

}  // namespace

const std::vector<Work>& Works() {
    static const std::vector<Work> works = AllWorks();
    return works;
}

}  // namespace sweep_test
