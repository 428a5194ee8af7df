// Any bytes as a driver's modules: the language module, the rendering library whose version is read, and the module
// with the pictures. What is loaded of them lies within them, dialogs and sheets open or don't, texts end within their
// room, no file beside the machine's drive is touched, and nothing is left open.
//
// Seeds are the modules as the build makes them. An input's length chooses whether the sheets are opened with it, which
// takes most of a run's time.
#include <prsht.h>
#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "driver/entry/driver_interface.h"
#include "driver/entry/printer_access.h"
#include "driver/entry/resource_module.h"
#include "driver/ptprovider/printer_snapshot.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"
#include "driver/ui/pictures.h"
#include "fuzz/model_printers.h"
#include "fuzz/stop.h"
#include "platform/host.h"
#include "platform/resources/resource_file.h"

namespace {

using namespace fuzz;     // NOLINT(google-build-using-namespace): the targets' kit
using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test
using host::ResourceKey;

constexpr char16_t kLanguageModule[] = u"KV62ENUS.DLL";
constexpr uint16_t kStringsInBlock = 16;
constexpr size_t kMostResources = 100;  // of an input that are loaded by themselves

struct Target {
    host::Machine machine;
    ModelPrinter printer{ModelSources().front(), Package()};
    std::vector<driver_test::WideText> modules;  // which inputs become

    Target() {
        for (const char16_t* name : {kLanguageModule, u"KV62R.DLL", u"KV62IM.DLL"}) {
            modules.push_back(driver_test::InstalledPath(name));
        }
        machine.SetUser([] { Act(); });
    }

    static driver_test::DriverPackage Package() {
        driver_test::DriverPackage package = driver_test::PackageOf("");
        // The driver looks for the pictures beside the render library.
        package.dependent.push_back({u"KVIME.DLL", "no library"});
        package.dependent.push_back({u"KV62IM.DLL", "no pictures"});
        return package;
    }

    // The user turns a sheet's pages, and closes what is in front.
    static void Act() {
        const HWND front = GetActiveWindow();
        for (WPARAM page = 0; page < 6; ++page) {
            SendMessageW(front, PSM_SETCURSEL, page, 0);
            UpdateWindow(front);
        }
        SendMessageW(front, WM_COMMAND, IDCANCEL, 0);
        if (IsWindow(front)) {
            SendMessageW(front, WM_COMMAND, IDOK, 0);
        }
    }
};

// --- A module's resources by themselves

LPCWSTR ArgumentOf(const ResourceKey& key) {
    return key.text.empty() ? MAKEINTRESOURCEW(key.id) : key.text.c_str();
}

void LoadStrings(HMODULE module, uint16_t block) {
    for (unsigned i = 0; i < kStringsInBlock; ++i) {
        for (const int capacity : {1, 8, 256}) {
            std::vector<WCHAR> text(static_cast<size_t>(capacity), u'x');
            const auto id = static_cast<UINT>((block - 1) * kStringsInBlock) + i;
            const int length = LoadStringW(module, id, text.data(), capacity);
            if (length < 0 || length >= capacity || (length > 0 && text[static_cast<size_t>(length)] != 0)) {
                Stop("a string of a module doesn't end");
            }
        }
    }
}

INT_PTR CALLBACK DialogProc(HWND, UINT message, WPARAM, LPARAM) {
    return message == WM_INITDIALOG ? TRUE : FALSE;
}

void OpenDialog(HMODULE module, LPCWSTR name) {
    if (const HWND dialog = CreateDialogParamW(module, name, nullptr, DialogProc, 0)) {
        ShowWindow(dialog, SW_SHOW);
        UpdateWindow(dialog);
        DestroyWindow(dialog);
    }
}

// Draws on a bitmap of 16 x 16 pixels.
template <class Paint>
void Draw(const Paint& paint) {
    const OwnedDeviceContext target(CreateCompatibleDC(nullptr));
    const OwnedBitmap bitmap(CreateCompatibleBitmap(target.Get(), 16, 16));
    const HGDIOBJ before = SelectObject(target.Get(), bitmap.Get());
    paint(target.Get());
    SelectObject(target.Get(), before);
}

void LoadPicture(HMODULE module, LPCWSTR name) {
    if (const OwnedBitmap bitmap(LoadBitmapW(module, name)); bitmap) {
        Draw([&](HDC target) { StretchBitmap(target, bitmap.Get(), {0, 0, 16, 16}); });
    }
}

void LoadResources(HMODULE module, const host::ResourceFile& file) {
    for (size_t i = 0; i < std::min(file.Entries().size(), kMostResources); ++i) {
        const host::ResourceEntry& entry = file.Entries()[i];
        const LPCWSTR name = ArgumentOf(entry.name);
        if (entry.type == ResourceKey::FromArgument(RT_STRING)) {
            LoadStrings(module, entry.name.id);
        } else if (entry.type == ResourceKey::FromArgument(RT_DIALOG)) {
            OpenDialog(module, name);
        } else if (entry.type == ResourceKey::FromArgument(RT_BITMAP)) {
            LoadPicture(module, name);
        } else if (entry.type == ResourceKey::FromArgument(RT_GROUP_ICON)) {
            Draw([&](HDC target) { DrawIcon(target, 0, 0, LoadIconW(module, name)); });
        }
        const HRSRC found = FindResourceW(module, name, ArgumentOf(entry.type));
        if (found && SizeofResource(module, found) > 0 && !LockResource(LoadResource(module, found))) {
            Stop("a resource that is found can't be loaded");
        }
    }
}

// --- The driver with the module

struct SheetHost {
    std::vector<HPROPSHEETPAGE> pages;

    static LONG_PTR CALLBACK Answer(HANDLE host, UINT function, LPARAM first, LPARAM) {
        if (function != CPSFUNC_ADD_PROPSHEETPAGEW) {
            return 1;
        }
        const HPROPSHEETPAGE page = CreatePropertySheetPageW(reinterpret_cast<const PROPSHEETPAGEW*>(first));
        if (page) {
            static_cast<SheetHost*>(host)->pages.push_back(page);
        }
        return reinterpret_cast<LONG_PTR>(page);
    }
};

void OpenSheet(LONG(WINAPI* entry)(PPROPSHEETUI_INFO, LPARAM), void* header) {
    SheetHost host;
    PROPSHEETUI_INFO info = {};
    info.cbSize = sizeof(info);
    info.Version = PROPSHEETUI_INFO_VERSION;
    info.Flags = PSUIINFO_UNICODE;
    info.Reason = PROPSHEETUI_REASON_INIT;
    info.hComPropSheet = &host;
    info.pfnComPropSheet = SheetHost::Answer;
    info.lParamInit = reinterpret_cast<LPARAM>(header);
    if (entry(&info, 0) > 0 && !host.pages.empty()) {
        PROPSHEETHEADERW sheet = {};
        sheet.dwSize = sizeof(sheet);
        sheet.pszCaption = u"Sheet";
        sheet.nPages = static_cast<UINT>(host.pages.size());
        sheet.phpage = host.pages.data();
        PropertySheetW(&sheet);
    } else {
        std::ranges::for_each(host.pages, DestroyPropertySheetPage);
    }
    info.Reason = PROPSHEETUI_REASON_DESTROY;
    entry(&info, 0);
}

void OpenSheets(ModelPrinter* printer) {
    DEVICEPROPERTYHEADER device = {sizeof(device), 0, printer->printer.Get(), printer->name.data()};
    OpenSheet(DrvDevicePropertySheets, &device);
    const auto input = std::make_unique<VelmoraDevMode>(printer->valid);
    const auto output = std::make_unique<VelmoraDevMode>(printer->valid);
    DOCUMENTPROPERTYHEADER document = {};
    document.cbSize = sizeof(document);
    document.hPrinter = printer->printer.Get();
    document.pszPrinterName = printer->name.data();
    document.pdmIn = &input->publicPart;
    document.pdmOut = &output->publicPart;
    document.cbOut = sizeof(*output);
    document.fMode = DM_IN_BUFFER | DM_OUT_BUFFER | DM_PROMPT;
    OpenSheet(DrvDocumentPropertySheets, &document);
}

// What the settings and the print tickets take of it: names of files, and of the printer's own papers and colours.
void UseTexts(const ModelPrinter& printer) {
    PrepareSettingsFile(printer.name.c_str());
    UpdateWatermarkDefaults(printer.name.c_str(), CurrentSettingsFile());
    LoadPrinterSnapshot(printer.printer.Get());
    DeleteWatermarkFiles(CurrentSettingsFile());
}

}  // namespace

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t most);

// Most inputs are changed within one resource, whose size is told anew, the others as bytes: a module whose sizes don't
// add up isn't loaded at all.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
    constexpr size_t kFirstHeader = 32;
    struct Span {
        size_t header;
        size_t data;
        size_t size;
    };
    std::minstd_rand random(seed);
    std::vector<Span> spans;
    for (size_t at = kFirstHeader; at + kFirstHeader <= size;) {
        uint32_t sizes[2];  // of the data and of the header
        memcpy(sizes, data + at, sizeof(sizes));
        if (sizes[1] < kFirstHeader || sizes[1] > size - at || sizes[0] > size - at - sizes[1]) {
            break;
        }
        spans.push_back({at, at + sizes[1], sizes[0]});
        at = (at + sizes[1] + sizes[0] + 3) / 4 * 4;
    }
    if (spans.empty() || seed % 8 == 0) {
        return LLVMFuzzerMutate(data, size, most);
    }
    const Span& span = spans[random() % spans.size()];
    const std::string head(reinterpret_cast<char*>(data), span.data);
    const size_t next = std::min(size, (span.data + span.size + 3) / 4 * 4);
    const std::string rest(reinterpret_cast<char*>(data) + next, size - next);
    const size_t room = (most - std::min(most, head.size() + rest.size())) / 4 * 4;
    std::vector<uint8_t> changed(data + span.data, data + span.data + span.size);
    if (seed % 8 == 1) {  // the resource is gone, or there twice
        const std::string_view whole(head.data() + span.header, head.size() - span.header);
        const std::string kept = head.substr(0, span.header) + rest +
                                 (seed % 16 == 1 && head.size() + rest.size() + whole.size() + span.size <= most
                                      ? std::string(whole) + std::string(changed.begin(), changed.end())
                                      : "");
        memcpy(data, kept.data(), kept.size());
        return kept.size();
    }
    changed.resize(std::max(room, changed.size()));
    changed.resize(room == 0 ? span.size : LLVMFuzzerMutate(changed.data(), std::min(span.size, room), room));
    const auto told = static_cast<uint32_t>(changed.size());
    changed.resize((changed.size() + 3) / 4 * 4);
    std::string made = head + std::string(changed.begin(), changed.end()) + rest;
    memcpy(made.data() + span.header, &told, sizeof(told));
    made.resize(std::min(made.size(), most));
    memcpy(data, made.data(), made.size());
    return made.size();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Target target;
    const std::string input(reinterpret_cast<const char*>(data), size);
    for (const driver_test::WideText& module : target.modules) {
        driver_test::WriteDriveFile(module, input);
    }
    const OpenCheck open;
    GetDriverVersion(target.modules[1].c_str());
    const auto file = host::ParseResourceFile(input);
    ResourceContext context;
    if (const OwnedModule module = LoadResourceModule(target.printer.printer.Get(), &context); module) {
        LoadResources(module.Get(), *file);
    }
    UseTexts(target.printer);
    if (size / 4 % 8 == 0) {
        OpenSheets(&target.printer);
    }
    return 0;
}
