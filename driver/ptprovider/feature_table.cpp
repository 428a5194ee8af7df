#include "driver/ptprovider/feature_table.h"

#include "driver/ptprovider/cover_features.h"
#include "driver/ptprovider/layout_features.h"
#include "driver/ptprovider/listed_features.h"
#include "driver/ptprovider/output_features.h"
#include "driver/ptprovider/overlay_features.h"
#include "driver/ptprovider/postscript_features.h"
#include "driver/ptprovider/private_extensions.h"
#include "driver/ptprovider/sheet_choices.h"
#include "driver/ptprovider/watermark_feature.h"

namespace velmora {
namespace {

// --- Settings of plain features that are no single field

// Which way a page lies: its orientation and whether it is turned.
constexpr uint32_t kLandscape = 1;
constexpr uint32_t kTurned = 2;

uint32_t GetOrientation(const VelmoraDevMode& devMode, const PrinterSnapshot&) {
    return (devMode.publicPart.dmOrientation != DMORIENT_PORTRAIT ? kLandscape : 0) |
           (devMode.privatePart.rotate180 != 0 ? kTurned : 0);
}

void SetOrientation(VelmoraDevMode* devMode, const PrinterSnapshot&, uint32_t value) {
    devMode->publicPart.dmOrientation = (value & kLandscape) != 0 ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
    devMode->privatePart.rotate180 = (value & kTurned) != 0 ? 1 : 0;
}

// Collation is kept twice.
uint32_t GetCollation(const VelmoraDevMode& devMode, const PrinterSnapshot&) {
    return devMode.publicPart.dmCollate == DMCOLLATE_TRUE || devMode.privatePart.collateCopy != 0 ? 1 : 0;
}

void SetCollation(VelmoraDevMode* devMode, const PrinterSnapshot&, uint32_t value) {
    devMode->publicPart.dmCollate = static_cast<short>(value);
    devMode->privatePart.collateCopy = static_cast<uint16_t>(value);
}

// Fonts are substituted where the device mode has the model's font records.
uint32_t GetFontSubstitution(const VelmoraDevMode& devMode, const PrinterSnapshot&) {
    return devMode.privatePart.fontRecordCount > 0 ? 1 : 0;
}

void SetFontSubstitution(VelmoraDevMode* devMode, const PrinterSnapshot& printer, uint32_t value) {
    devMode->privatePart.fontRecordCount = value != 0 ? static_cast<uint32_t>(printer.model->fontCount) : 0;
}

// Bit values of optionFlags.
constexpr uint32_t kNoImageCompression = 1u << 0;
constexpr uint32_t kNoErrorPage = 1u << 2;
constexpr uint32_t kMirrorImage = 1u << 3;
constexpr uint32_t kNegativeImage = 1u << 4;
constexpr uint32_t kControlDBefore = 1u << 5;
constexpr uint32_t kControlDAfter = 1u << 6;
constexpr uint32_t kEncapsulatedPostScript = 1u << 7;
constexpr uint32_t kDocumentStructuring = 1u << 8;
constexpr uint32_t kTaggedBinary = 1u << 9;

constexpr SettingField OptionBits(uint32_t mask) {
    SettingField field = PRIVATE_SETTING(optionFlags);
    field.mask = mask;
    return field;
}

// A mirrored page is turned over along its longer side; both ways read as the same.
constexpr uint32_t kMirrorHeight = 1;
constexpr uint32_t kMirrorWidth = 2;

uint32_t GetMirrorImage(const VelmoraDevMode& devMode, const PrinterSnapshot&) {
    if ((devMode.privatePart.optionFlags & kMirrorImage) == 0) {
        return 0;
    }
    return devMode.publicPart.dmOrientation == DMORIENT_PORTRAIT ? kMirrorHeight : kMirrorWidth;
}

void SetMirrorImage(VelmoraDevMode* devMode, const PrinterSnapshot&, uint32_t value) {
    WriteSetting(devMode, OptionBits(kMirrorImage), value != 0 ? kMirrorImage : 0);
}

// --- Gates on the printer

bool HasFonts(const PrinterSnapshot& printer) {
    return printer.model->fontCount != 0;
}

bool HasRenderingIntents(const PrinterSnapshot& printer) {
    return printer.model->icmIntentFlags != 0;
}

bool HasRenderingIntentOptions(const PrinterSnapshot& printer) {
    constexpr uint16_t kWithOptions = 1u << 0;
    return (printer.model->icmIntentFlags & kWithOptions) != 0;
}

bool PrintsBorderless(const PrinterSnapshot& printer) {
    return (printer.installed.optionFlags & kBorderlessInstalled) != 0;
}

bool IsXpsWriter(const PrinterSnapshot& printer) {
    return printer.isXpsWriter;
}

// --- Options of plain features

// Values of trueTypeMode.
constexpr uint32_t kAsRaster = 0;
constexpr uint32_t kAsOutlines = 32767;

constexpr PlainOption kPageOrders[] = {{TEXT("Standard"), 0}, {TEXT("Reverse"), 1}};
constexpr PlainOption kOrientations[] = {{TEXT("Portrait"), 0, 3029},
                                         {TEXT("Landscape"), kLandscape, 3030},
                                         {TEXT("ReversePortrait"), kTurned},
                                         {TEXT("ReverseLandscape"), kLandscape | kTurned}};
constexpr PlainOption kCollations[] = {{TEXT("Collated"), 1}, {TEXT("Uncollated"), 0}};
constexpr PlainOption kFontSubstitutions[] = {{TEXT("On"), 1}, {TEXT("Off"), 0}};
constexpr PlainOption kRenderingIntents[] = {{TEXT("BusinessGraphics"), DMICM_SATURATE, 3324},
                                             {TEXT("Photo"), DMICM_CONTRAST, 3325},
                                             {TEXT("RelativeColorimetric"), DMICM_COLORIMETRIC, 3326},
                                             {TEXT("AbsoluteColorimetric"), DMICM_ABS_COLORIMETRIC, 3327}};
constexpr PlainOption kTrueTypeModes[] = {{TEXT("DownloadAsOutlineFont"), kAsOutlines},
                                          {TEXT("DownloadAsRasterFont"), kAsRaster},
                                          {TEXT("Automatic"), kAsOutlines, kNoDisplayName, true}};
constexpr PlainOption kBorders[] = {{TEXT("None"), 0}, {TEXT("Borderless"), 1}};
constexpr PlainOption kMirrorImages[] = {
    {TEXT("None"), 0}, {TEXT("MirrorImageHeight"), kMirrorHeight}, {TEXT("MirrorImageWidth"), kMirrorWidth}};
constexpr PlainOption kNegatives[] = {{TEXT("None"), 0}, {TEXT("Negative"), kNegativeImage}};
constexpr PlainOption kBlackTexts[] = {{TEXT("None"), 0}, {TEXT("BlackText"), 1}};
constexpr PlainOption kSeparatorSheets[] = {
    {TEXT("None"), 0}, {TEXT("StartSheet"), 1}, {TEXT("BothSheets"), 2}, {TEXT("EndSheet"), 3}};
constexpr PlainOption kFormats[] = {{TEXT("Normal"), 0},
                                    {TEXT("EncapsulatedPostScript"), kEncapsulatedPostScript},
                                    {TEXT("DocumentStructuringConventions"), kDocumentStructuring},
                                    {TEXT("TaggedBinaryControlProtocol"), kTaggedBinary}};
constexpr PlainOption kControlDs[] = {{TEXT("None"), 0, 2665},
                                      {TEXT("Before"), kControlDBefore, 1735},
                                      {TEXT("After"), kControlDAfter, 1736},
                                      {TEXT("BeforeAndAfter"), kControlDBefore | kControlDAfter}};
constexpr PlainOption kErrorPages[] = {{TEXT("None"), kNoErrorPage, 2665}, {TEXT("PrintErrorPage"), 0, 2702}};
constexpr PlainOption kCompressions[] = {{TEXT("None"), kNoImageCompression, 2665}, {TEXT("CompressImages"), 0, 2702}};
constexpr PlainOption kJobInterleavings[] = {{TEXT("OFF"), 0}, {TEXT("ON"), 1}};
constexpr PlainOption kImageTypes[] = {
    {TEXT("JPEGHigh"), 0}, {TEXT("JPEGMed"), 1}, {TEXT("JPEGLow"), 2}, {TEXT("PNG"), 3}};

// --- Rows

constexpr FeatureRow Row(const Keyword& name, decltype(FeatureRow::write) write, decltype(FeatureRow::read) read) {
    return {.names = {name}, .write = write, .read = read};
}

constexpr FeatureRow Plain(const Keyword& name, const PlainFeature& plain) {
    return {.names = {name}, .write = WritePlainFeature, .read = ReadPlainFeature, .plain = plain};
}

constexpr Keyword Public(const WCHAR* name) {
    return PublicKeyword(name);
}

}  // namespace

constinit const FeatureRow FeatureTable[kFeatureCount + 1] = {
    Row(Public(TEXT("PageMediaSize")), WritePageMediaSize, ReadPageMediaSize),
    Row(Public(TEXT("PageMediaType")), WritePageMediaType, ReadPageMediaType),
    Row(Public(TEXT("PageMediaColor")), WriteMediaColor, ReadMediaColor),
    {.names = {Public(TEXT("PageInputBin")), Public(TEXT("DocumentInputBin")), Public(TEXT("JobInputBin"))},
     .ticketName = 2,
     .write = WritePageInputBin,
     .read = ReadPageInputBin},
    Row(Public(TEXT("PageResolution")), WriteResolution, ReadResolution),
    {.names = {Public(TEXT("JobDuplexAllDocumentsContiguously")), Public(TEXT("DocumentDuplex"))},
     .name = 1,
     .ticketName = 0,
     .write = WriteDuplex,
     .read = ReadDuplex},
    Row(Public(TEXT("PageOutputColor")), WriteOutputColor, ReadOutputColor),
    Plain(Public(TEXT("JobPageOrder")),
          {.displayName = 1732, .field = PRIVATE_SETTING(pageOrderFlags), .options = kPageOrders}),
    Plain(Public(TEXT("PageOrientation")), {.displayName = 3307,
                                            .options = kOrientations,
                                            .get = GetOrientation,
                                            .set = SetOrientation,
                                            .neededField = DM_ORIENTATION}),
    {.names = {Public(TEXT("DocumentCollate")), Public(TEXT("JobCollateAllDocuments"))},
     .ticketName = 1,
     .write = WritePlainFeature,
     .read = ReadPlainFeature,
     .plain = {.displayName = 1704,
               .options = kCollations,
               .get = GetCollation,
               .set = SetCollation,
               .neededField = DM_COLLATE}},
    {.names = {Public(TEXT("DocumentNUp")), Public(TEXT("JobNUpDocumentsContiguously"))},
     .write = WritePagesPerSheet,
     .read = ReadPagesPerSheet},
    Row(Public(TEXT("PagePoster")), WritePoster, ReadPoster),
    Row(Public(TEXT("PageWatermark")), WriteWatermark, ReadWatermark),
    Plain(Public(TEXT("PageDeviceFontSubstitution")), {.displayName = 3312,
                                                       .options = kFontSubstitutions,
                                                       .get = GetFontSubstitution,
                                                       .set = SetFontSubstitution,
                                                       .isOffered = HasFonts}),
    Row(Public(TEXT("PageScaling")), WriteScaling, ReadScaling),
    Row(PrivateKeyword(TEXT("DocumentCoverFront")), WriteFrontCover, ReadFrontCover),
    Row(PrivateKeyword(TEXT("DocumentCoverBack")), WriteBackCover, ReadBackCover),
    {.names = {Public(TEXT("DocumentBinding")), Public(TEXT("JobBindAllDocuments"))},
     .write = WriteBinding,
     .read = ReadBinding},
    Plain(Public(TEXT("PageICMRenderingIntent")),
          {.displayName = 3323,
           .field = {.offset = offsetof(DEVMODEW, dmICMIntent), .width = sizeof(DEVMODEW::dmICMIntent)},
           .options = kRenderingIntents,
           .setField = DM_ICMINTENT,
           .isOffered = HasRenderingIntents,
           .hasOptions = HasRenderingIntentOptions}),
    Plain(Public(TEXT("PageTrueTypeFontMode")),
          {.displayName = 3328, .field = PRIVATE_SETTING(trueTypeMode), .options = kTrueTypeModes}),
    Plain(Public(TEXT("PageBorderless")), {.displayName = 2660,
                                           .field = PRIVATE_SETTING(marginMode),
                                           .options = kBorders,
                                           .isOffered = PrintsBorderless,
                                           .isReadAnyway = false}),
    Plain(Public(TEXT("PageMirrorImage")),
          {.displayName = 3329, .options = kMirrorImages, .get = GetMirrorImage, .set = SetMirrorImage}),
    Plain(Public(TEXT("PageNegativeImage")),
          {.displayName = 1734, .field = OptionBits(kNegativeImage), .options = kNegatives}),
    Plain(PrivateKeyword(TEXT("PageBlackText")),
          {.displayName = 1733, .field = PRIVATE_SETTING(blackText), .options = kBlackTexts}),
    Row(PrivateKeyword(TEXT("DocumentOverlay")), WriteOverlay, ReadOverlay),
    Row(PrivateKeyword(TEXT("DocumentInterleaves")), WriteInterleaves, ReadInterleaves),
    Plain(Public(TEXT("DocumentSeparatorSheet")),
          {.field = PRIVATE_SETTING(separatorSheet), .options = kSeparatorSheets}),
    Row(Public(TEXT("PagePhotoPrintingIntent")), WritePhotoIntent, ReadPhotoIntent),
    Row(Public(TEXT("JobDigitalSignatureProcessing")), WriteSignatureProcessing, ReadSignatureProcessing),
    Plain(OemKeyword(TEXT("DocumentPSFormat")),
          {.displayName = 3342,
           .field = OptionBits(kEncapsulatedPostScript | kDocumentStructuring | kTaggedBinary),
           .options = kFormats,
           .isOffered = IsPostScript,
           .isReadAnyway = false}),
    Plain(OemKeyword(TEXT("DocumentPSControlD")), {.displayName = 3343,
                                                   .field = OptionBits(kControlDBefore | kControlDAfter),
                                                   .options = kControlDs,
                                                   .isOffered = IsPostScript,
                                                   .isReadAnyway = false}),
    Plain(OemKeyword(TEXT("DocumentPSErrorPage")), {.displayName = 1739,
                                                    .field = OptionBits(kNoErrorPage),
                                                    .options = kErrorPages,
                                                    .isOffered = IsPostScript,
                                                    .isReadAnyway = false}),
    Plain(OemKeyword(TEXT("DocumentPSImageCompression")), {.displayName = 1737,
                                                           .field = OptionBits(kNoImageCompression),
                                                           .options = kCompressions,
                                                           .isOffered = IsPostScript,
                                                           .isReadAnyway = false}),
    Row(OemKeyword(TEXT("DocumentPSHalftone")), WriteHalftone, ReadHalftone),
    Row(OemKeyword(TEXT("DocumentColorCorrection")), WriteColorCorrection, ReadColorCorrection),
    Plain(XpsWriterKeyword(TEXT("JobInterleaving")),
          {.field = PRIVATE_SETTING(jobInterleaving), .options = kJobInterleavings, .isOffered = IsXpsWriter}),
    Plain(XpsWriterKeyword(TEXT("JobImageType")),
          {.field = PRIVATE_SETTING(jobImageType), .options = kImageTypes, .isOffered = IsXpsWriter}),
    {},
};

namespace {

bool TicketHas(SchemaDocument& ticket, const FeatureRow& row) {
    for (const Keyword& name : row.names) {
        if (name.name && ticket.FindFeature(nullptr, name.uri, name.name, nullptr) == S_OK) {
            return true;
        }
    }
    return false;
}

}  // namespace

void WriteFeatures(FeatureWriter& writer, const WorkingDevMode& working) {
    for (const FeatureRow* row = FeatureTable; row->write; ++row) {
        if (!TicketHas(writer.document, *row)) {
            row->write(writer, *row, &working);
        }
    }
}

void ListFeatures(FeatureWriter& writer) {
    for (const FeatureRow* row = FeatureTable; row->write; ++row) {
        row->write(writer, *row, nullptr);
    }
}

void ReadFeatures(FeatureReader& reader, WorkingDevMode& working) {
    for (const FeatureRow* row = FeatureTable; row->read; ++row) {
        row->read(reader, *row, working);
    }
}

}  // namespace velmora
