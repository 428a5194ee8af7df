#include "fuzz/ticket_printer.h"

#include <windows.h>

#include "driver/base/text.h"
#include "driver/settings/settings_folder.h"
#include "driver/settings/watermark_list.h"
#include "tests/driver/resource_file.h"

namespace fuzz {

using namespace velmora;  // NOLINT(google-build-using-namespace): the operations under test

driver_test::DriverPackage PackageOf(bool isXpsWriter) {
    driver_test::DriverPackage package =
        driver_test::PackageOf("", std::string(isXpsWriter ? "[PrinterDriver]\r\nMXDWConfig=1\r\n" : "") +
                                       "[CustomSizes]\r\nNumCustomSizes=1\r\nCustomName0=Mine\r\nCustomWidth0=12340\r\n"
                                       "CustomLength0=23450\r\nCustomMetric0=1\r\n");
    package.dependent[0].bytes =
        driver_test::StringModule({{2117, u"Custom size"}, {2420, u"ini"}, {2654, u"ovl"}, {1753, u"&Copies"}});
    return package;
}

// Watermarks and overlays.
void TicketPrinter::StoreUsersThings() {
    PrepareSettingsFile(name.c_str());
    WatermarkRecord watermarks[2];
    for (WatermarkRecord& watermark : watermarks) {
        MakeBlankWatermark(&watermark);
        watermark.type = &watermark == watermarks ? kTextWatermark : kImageWatermark;
        CopyText(watermark.text, ARRAYSIZE(watermark.text), u"Draft");
    }
    CopyText(watermarks[1].imageName, ARRAYSIZE(watermarks[1].imageName), u"C:\\logo.bmp");
    SaveWatermarkList(name.c_str(), watermarks, ARRAYSIZE(watermarks));
    WCHAR folder[MAX_PATH];
    GetSettingsFolder(name.c_str(), folder, ARRAYSIZE(folder));
    for (const char16_t* file : {u"01000000.ovl", u"02000000.ovl"}) {
        overlays.push_back(Text(folder) + u"\\" + file);
        driver_test::WriteDriveFile(overlays.back(), "");
    }
    overlays.emplace_back(u"\\");
    overlays.emplace_back(u"C:\\a name that is longer than a device mode has room for.ovl");
}

TicketPrinter::TicketPrinter(const std::filesystem::path& source, bool isXpsWriter)
    : ModelPrinter(source, PackageOf(isXpsWriter)) {
    StoreUsersThings();
    snapshot = LoadPrinterSnapshot(printer.Get());
    const PrinterSnapshot& lists = *snapshot.Get();
    options = {{kPapers, NamesOf(lists.papers)},
               {kMedia, NamesOf(lists.media)},
               {kTrays, NamesOf(lists.trays)},
               {kResolutions, NamesOf(lists.resolutions)},
               {kColors, NamesOf(lists.mediaColors)},
               {kIntents, NamesOf(lists.photoIntents)},
               {kSignatures, NamesOf(lists.signatureOptions)}};
    const std::vector<Name> featureNames = NamesOf(lists.features);
    const std::vector<Name> optionNames = NamesOf(lists.options);
    for (size_t i = 0; i < featureNames.size(); ++i) {
        const auto first = optionNames.begin() + static_cast<ptrdiff_t>(lists.features[i].options.first);
        features.emplace_back(featureNames[i],
                              std::vector(first, first + static_cast<ptrdiff_t>(lists.features[i].options.count)));
    }
    for (const PaperEntry& paper : lists.papers) {
        paperSizes.emplace_back(paper.width, paper.length);
    }
    entries += lists.colorModes.count + lists.colorValues.count + lists.overlays.count;
    for (const auto& group : lists.colorFeatures) {
        entries += group.count;
    }
}

}  // namespace fuzz
