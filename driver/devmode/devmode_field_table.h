// The table of the device mode's fields itself. Who only reads fields takes devmode_fields.h; who names rows when
// compiled, as the validations do, takes this.
#pragma once

#include <windows.h>

#include <string_view>

#include "driver/devdesc/device_model.h"
#include "driver/devmode/devmode_fields.h"

namespace velmora {
namespace field_table {

inline constexpr ValueName kOffOn[] = {{0, "off"}, {1, "on"}};
inline constexpr ValueName kOrientations[] = {{DMORIENT_PORTRAIT, "portrait"}, {DMORIENT_LANDSCAPE, "landscape"}};
inline constexpr ValueName kColors[] = {{0, "not set"}, {DMCOLOR_MONOCHROME, "monochrome"}, {DMCOLOR_COLOR, "colour"}};
inline constexpr ValueName kDuplexes[] = {
    {0, "not set"}, {DMDUP_SIMPLEX, "one side"}, {DMDUP_VERTICAL, "long edge"}, {DMDUP_HORIZONTAL, "short edge"}};
inline constexpr ValueName kTrueTypeOptions[] = {{DMTT_BITMAP, "as graphics"},
                                                 {DMTT_DOWNLOAD, "downloaded"},
                                                 {DMTT_SUBDEV, "replaced by printer fonts"},
                                                 {DMTT_DOWNLOAD_OUTLINE, "downloaded as outlines"}};
inline constexpr ValueName kIcmMethods[] = {{0, "not set"},
                                            {DMICMMETHOD_NONE, "none"},
                                            {DMICMMETHOD_SYSTEM, "by the system"},
                                            {DMICMMETHOD_DRIVER, "by the driver"},
                                            {DMICMMETHOD_DEVICE, "by the printer"}};
inline constexpr ValueName kIcmIntents[] = {{0, "not set"},
                                            {DMICM_SATURATE, "saturation"},
                                            {DMICM_CONTRAST, "contrast"},
                                            {DMICM_COLORIMETRIC, "colorimetric"},
                                            {DMICM_ABS_COLORIMETRIC, "absolute colorimetric"}};
inline constexpr ValueName kPapers[] = {{-1, "as the document"}};
inline constexpr ValueName kScaleValues[] = {{-1, "none"}};
inline constexpr ValueName kPatternModes[] = {{0, "no patterns"}, {2, "pattern block used"}};
inline constexpr ValueName kScaleModes[] = {{0, "none"},
                                            {1, "fit to paper, centred"},
                                            {2, "zoom, top left"},
                                            {4, "custom, top left"},
                                            {33, "fit to paper, top left"},
                                            {66, "zoom, centred"},
                                            {68, "custom, centred"}};
inline constexpr ValueName kLayoutModes[] = {{0, "no borders"}, {1, "borders"}, {3, "borders of style 3"}};
inline constexpr ValueName kWatermarks[] = {{0, "none"},
                                            {1, "text"},
                                            {2, "image"},
                                            {5, "text under the page"},
                                            {6, "image under the page"},
                                            {17, "outlined text"},
                                            {21, "outlined text under the page"},
                                            {32, "rendered file"},
                                            {36, "rendered file under the page"}};
inline constexpr ValueName kCoverModes[] = {{0, "none"}, {1, "blank"}, {2, "printed"}};
inline constexpr ValueName kInterleaveModes[] = {{0, "none"}, {1, "blank sheets"}, {2, "printed copies"}};
inline constexpr ValueName kMarginModes[] = {{0, "normal"}, {1, "borderless"}, {2, "custom margins"}};
inline constexpr ValueName kColorModes[] = {{0, "monochrome"}, {1, "colour"}, {42, "colour, second kind"}};
inline constexpr ValueName kPageOrders[] = {{0, "as the document"}, {1, "reverse"}};
inline constexpr ValueName kOverlayModes[] = {{0, "none"},
                                              {1, "create"},
                                              {2, "include"},
                                              {4, "include under the page"},
                                              {5, "include, odd and even pages"},
                                              {6, "include, odd and even pages, under the page"}};
inline constexpr ValueName kPosterModes[] = {
    {0, "none"}, {2, "2 x 2 sheets"}, {3, "3 x 3 sheets"}, {4, "4 x 4 sheets"}, {5, "5 x 5 sheets"}};
inline constexpr ValueName kAcceptMarks[] = {{0, "checked"}, {0x42, "accepted unchecked"}};
inline constexpr ValueName kImageColors[] = {{0, "not set"}, {1, "off"}, {2, "with a colour profile"}};
inline constexpr ValueName kPageLayouts[] = {{1, "1 page a sheet"},  {2, "2 pages a sheet"}, {4, "4 pages a sheet"},
                                             {5, "poster of 2 x 2"}, {6, "poster of 3 x 3"}, {7, "poster of 4 x 4"}};
inline constexpr ValueName kUnits[] = {{0, "inches"}, {1, "millimetres"}};
inline constexpr ValueName kSeparatorSheets[] = {
    {0, "none"}, {1, "start sheet"}, {2, "start and end sheet"}, {3, "end sheet"}};
inline constexpr ValueName kImageTypes[] = {{0, "JPEG, high"}, {1, "JPEG, medium"}, {2, "JPEG, low"}, {3, "PNG"}};

// Greatest number of the type, where all from a value on are valid.
inline constexpr int64_t kMostU32 = 0xFFFFFFFF;

inline constexpr const char* kCustomLengths = "the model's custom length limits";
inline constexpr const char* kCustomWidths = "the model's custom width limits";
inline constexpr const char* kMediaRange = "1 to the number of media";
inline constexpr const char* kTerminated = "NUL-terminated within its length";
inline constexpr const char* kBlobPositions = "0 to the size of the blob";
inline constexpr const char* kUpToFileSize = "up to the size of the printer data file";
inline constexpr const char* kModelMedia = "the model's default medium";
inline constexpr const char* kModelBin = "the model's default tray";

// A row of a table: a member of the part named by PART, its meaning and its number in the template.
#define FIELD(member, number, meaning) \
    DescribeField<decltype(PART::member)>(#member, offsetof(PART, member), meaning, number)

// A row for one member of the records that an array member holds.
#define RECORD_FIELD(array, record, member, number, meaning)                          \
    OfRecords<decltype(PART::array), record>(DescribeField<decltype(record::member)>( \
        #array "." #member, offsetof(PART, array) + offsetof(record, member), meaning, number))

// A row for an array member of one of the records that an array member holds.
#define RECORD_ARRAY(array, record, index, member, number, meaning)                                                    \
    DescribeField<decltype(record::member)>(#array "[" #index "]." #member,                                            \
                                            offsetof(PART, array) + index * sizeof(record) + offsetof(record, member), \
                                            meaning, number)

template <class Array, class Record>
constexpr FieldDescriptor OfRecords(FieldDescriptor field) {
    static_assert(std::is_same_v<std::remove_extent_t<Array>, Record>);
    field.count = static_cast<uint16_t>(std::extent_v<Array>);
    field.stride = sizeof(Record);
    return field;
}

// An area whose inner layout varies.
constexpr FieldDescriptor AsBytes(FieldDescriptor field) {
    field.kind = FieldKind::kBytes;
    field.width = static_cast<uint16_t>(field.width * field.count);
    field.stride = field.width;
    field.count = 1;
    return field;
}

#define PART DEVMODEW
inline constexpr FieldDescriptor kPublicFields[] = {
    FIELD(dmDeviceName, 0, "the printer's name, without server and at most 31 characters")
        .Default("from the printer's name")
        .Valid("not empty"),
    FIELD(dmSpecVersion, kDevModeSpecVersion, "version of the public part").Only<kDevModeSpecVersion>(),
    FIELD(dmDriverVersion, 0, "version of the rendering core: major in the high byte, minor in the low")
        .Default("from the core's version resource")
        .Valid("nonzero"),
    FIELD(dmSize, kPublicDevModeSize, "bytes of the public part").Only<kPublicDevModeSize>(),
    FIELD(dmDriverExtra, kPrivateDevModeSize, "bytes of the private part").Only<kPrivateDevModeSize>(),
    FIELD(dmFields, 0xE70F, "which public fields hold a setting, DM_ bits")
        .Default("0x800 added on image models with colour, 0x3800800 on other colour models")
        .Valid("nonzero"),
    FIELD(dmOrientation, DMORIENT_PORTRAIT, "orientation").Range<1, 2>().Names(kOrientations),
    FIELD(dmPaperSize, DMPAPER_LETTER,
          "paper: DMPAPER_ id, driver-defined id, 256 user-defined, 448 and above custom sizes")
        .Default("9 (A4) once the model is known, in every locale")
        .Ranges<1, 118, 256, 32767>(),
    FIELD(dmPaperLength, 0, "paper length, 0.1 mm").Default("that of A4").Valid("the model's custom limits"),
    FIELD(dmPaperWidth, 0, "paper width, 0.1 mm").Default("that of A4").Valid("the model's custom limits"),
    FIELD(dmScale, 100, "percent, never used").Only<100>(),
    FIELD(dmCopies, 1, "copies").Range<1, 32767>(),
    FIELD(dmDefaultSource, 0, "paper source: a tray's id, or 2000 + i for medium i (0-based) from any tray")
        .Default(kModelBin)
        .Valid("a tray of the model, 1028, or 2000 + i for a medium"),
    FIELD(dmPrintQuality, 0, "horizontal resolution, dots per inch")
        .Default("that of the resolution chosen")
        .Valid("with dmYResolution, a resolution of the model"),
    FIELD(dmColor, 0, "colour")
        .Default("2 on models with colour")
        .Valid("1 or 2 on models with colour, else 0")
        .Names(kColors),
    FIELD(dmDuplex, 0, "printing on both sides").Range<0, 3>().Names(kDuplexes),
    FIELD(dmYResolution, 0, "vertical resolution, dots per inch")
        .Default("that of the resolution chosen")
        .Valid("with dmPrintQuality, a resolution of the model"),
    FIELD(dmTTOption, DMTT_DOWNLOAD, "how TrueType fonts are printed").Range<1, 4>().Names(kTrueTypeOptions),
    FIELD(dmCollate, 0, "copies are collated").Range<0, 1>().Names(kOffOn),
    FIELD(dmFormName, 0, "never used").Valid("empty"),
    FIELD(dmLogPixels, 0, "never used").Only<0>(),
    FIELD(dmBitsPerPel, 0, "never used").Only<0>(),
    FIELD(dmPelsWidth, 0, "never used").Only<0>(),
    FIELD(dmPelsHeight, 0, "never used").Only<0>(),
    FIELD(dmNup, 0, "never used").Only<0>(),
    FIELD(dmDisplayFrequency, 0, "never used").Only<0>(),
    FIELD(dmICMMethod, DMICMMETHOD_NONE, "who manages colours")
        .Default("2 where the model's default colour mode is the system's")
        .Ranges<0, 4, 256, kMostU32>()
        .Names(kIcmMethods),
    FIELD(dmICMIntent, 0, "rendering intent")
        .Default("the model's, on colour models but image models")
        .Ranges<0, 4, 256, kMostU32>()
        .Names(kIcmIntents),
    FIELD(dmMediaType, 0, "media type: a medium's id")
        .Default("that of the model's default medium, on colour models but image models")
        .Ranges<0, 3, 256, kMostU32>(),
    FIELD(dmDitherType, 0, "never used").Only<0>(),
    FIELD(dmReserved1, 0, "never used").Only<0>(),
    FIELD(dmReserved2, 0, "never used").Only<0>(),
    FIELD(dmPanningWidth, 0, "never used").Only<0>(),
    FIELD(dmPanningHeight, 0, "never used").Only<0>(),
};
#undef PART

#define PART PrivateDevMode
inline constexpr FieldDescriptor kPrivateFields[] = {
    FIELD(privateVersion, kPrivateVersion, "version of the private layout").Only<kPrivateVersion>(),
    FIELD(privateSignature, kPrivateSignature, "marks this driver's private part").Only<kPrivateSignature>(),
    FIELD(fontRecordCount, 0, "font records in the printer data file")
        .Default("the model's")
        .Valid("0 or the model's count"),
    FIELD(fontDataOffset, 0, "byte position of the font records in the printer data file")
        .Default("behind the base file and the patterns")
        .Valid(kUpToFileSize),
    FIELD(primaryFont, 0, "default text font").Text("Courier").Default("the model's first default font"),
    FIELD(secondaryFont, 0, "second default text font").Text("Arial").Default("the model's second default font"),
    FIELD(defaultFontSize, 10, "size of the default font").Default("the model's"),
    FIELD(patternMode, 0, "fill patterns")
        .Default("2 on monochrome PCL 5 models whose default resolution has patterns")
        .Range<0, 4>()
        .Valid("nonzero only on monochrome PCL 5 models")
        .Names(kPatternModes),
    FIELD(patternOffset, 0, "byte position of the pattern block in the printer data file")
        .Default("that of the default resolution's block")
        .Valid("up to the size of the printer data file; nonzero only on monochrome PCL 5 models"),
    FIELD(patternSize, 0, "k of the pattern block, which is 32*k*k bytes")
        .Default("that of the default resolution, on monochrome PCL 5 models")
        .Only<0, 8, 16, 32>()
        .Valid("nonzero only on monochrome PCL 5 models"),
    FIELD(reserved156, 0, "never used").Only<0>(),
    FIELD(resolutionId, 600, "dots per inch of the chosen resolution, the unit of every field in device dots")
        .Default("that of the resolution chosen"),
    FIELD(rotate180, 0, "page turned by 180 degrees").Range<0, 1>().Names(kOffOn),
    FIELD(collateCopy, 0, "copy of dmCollate").Range<0, 1>().Names(kOffOn),
    FIELD(scaleMode, 0, "scaling").Only<0, 1, 2, 4, 33, 66, 68, 1024>().Names(kScaleModes),
    FIELD(scaleValue, -1, "zoom percent (modes 2 and 66) or target paper id (other modes)")
        .Valid("20 to 500 for zoom; 65535 or a paper id otherwise")
        .Names(kScaleValues),
    FIELD(scaleLength, 0, "length of a custom target, 0.1 mm").Valid(kCustomLengths),
    FIELD(scaleWidth, 0, "width of a custom target, 0.1 mm").Valid(kCustomWidths),
    FIELD(booklet, 0, "booklet printing; above 1: pages of a signature").Range<0, 32767>(),
    FIELD(layoutMode, 0, "page borders").Only<0, 1, 3>().Names(kLayoutModes),
    FIELD(pagesPerSheet, 1, "pages on a sheet").Only<1, 2, 4, 6, 8, 9, 12, 16, 25>(),
    FIELD(gutterShiftX, 0, "binding shift, device dots, signed").InDots(),
    FIELD(gutterShiftY, 0, "binding shift, device dots, signed").InDots(),
    FIELD(watermarkFlags, 0, "watermark: 1 text, 2 image, 4 under the page, 16 outline, 32 rendered file")
        .Only<0, 1, 2, 5, 6, 17, 21, 32, 36>()
        .Names(kWatermarks),
    FIELD(watermarkOffsetX, 0, "horizontal offset, device dots").InDots(),
    FIELD(watermarkOffsetY, 0, "vertical offset, device dots").InDots(),
    FIELD(watermarkPages, 0, "on which pages").Range<0, 2>(),
    FIELD(watermarkIndex, 0, "entry of the watermark list; dots an inch of a rendered file")
        .Valid("0 and above for text, 1 and above for a rendered file"),
    FIELD(watermarkText, 0, "text of a text watermark").Valid(kTerminated),
    FIELD(watermarkFile, 0, "file path of an image watermark, over watermarkText and watermarkFont").Valid(kTerminated),
    FIELD(watermarkFont, 0, "font of a text watermark").Valid(kTerminated),
    FIELD(watermarkFontSize, 0, "font size; width of a rendered file")
        .Valid("nonzero for text, 1 and above for a rendered file"),
    FIELD(watermarkAngle, 0, "tenths of a degree; height of a rendered file")
        .Valid("below 3600 for text, 1 and above for a rendered file"),
    FIELD(watermarkColor, 0, "colour, COLORREF").Range<0, 0xFFFFFF>(),
    FIELD(watermarkBold, 0, "bold").Range<0, 1>().Names(kOffOn),
    FIELD(watermarkItalic, 0, "italic").Range<0, 1>().Names(kOffOn),
    FIELD(watermarkPosition, 0, "placement").Range<0, 9>(),
    FIELD(frontCoverMode, 0, "front cover").Range<0, 2>().Names(kCoverModes),
    FIELD(frontCoverBin, 261, "tray of the front cover").Ranges<1, 15, 256, 65535>(),
    FIELD(frontCoverPaper, -1, "paper id of the front cover").Ranges<-1, -1, 1, 118, 256, 32767>().Names(kPapers),
    FIELD(frontCoverLength, 0, "length of the front cover, 0.1 mm").Valid(kCustomLengths),
    FIELD(frontCoverWidth, 0, "width of the front cover, 0.1 mm").Valid(kCustomWidths),
    FIELD(frontCoverNup, 1, "pages on the front cover").Only<1, 2, 4, 6, 8, 9, 16>(),
    FIELD(frontCoverBothSides, 1, "front cover printed on both sides").Range<0, 1>().Names(kOffOn),
    FIELD(backCoverMode, 0, "back cover").Range<0, 2>().Names(kCoverModes),
    FIELD(backCoverBin, 264, "tray of the back cover").Ranges<1, 15, 256, 65535>(),
    FIELD(backCoverPaper, -1, "paper id of the back cover").Ranges<-1, -1, 1, 118, 256, 32767>().Names(kPapers),
    FIELD(backCoverLength, 0, "length of the back cover, 0.1 mm").Valid(kCustomLengths),
    FIELD(backCoverWidth, 0, "width of the back cover, 0.1 mm").Valid(kCustomWidths),
    FIELD(interleaveMode, 0, "interleaved sheets").Range<0, 2>().Names(kInterleaveModes),
    FIELD(interleaveBin, 0, "tray of interleaved sheets").Default(kModelBin).Ranges<1, 15, 256, 65535>(),
    FIELD(interleavePaper, -1, "paper id of interleaved sheets").Ranges<-1, -1, 1, 118, 256, 32767>().Names(kPapers),
    FIELD(interleaveLength, 0, "length of interleaved sheets, 0.1 mm").Valid(kCustomLengths),
    FIELD(interleaveWidth, 0, "width of interleaved sheets, 0.1 mm").Valid(kCustomWidths),
    FIELD(marginMode, 0, "margins").Range<0, 2>().Names(kMarginModes),
    FIELD(extraText, 0, "text of the extra option").Valid(kTerminated),
    FIELD(auxText, 0, "auxiliary text").Valid(kTerminated),
    FIELD(pjlJobStart, 0, "PJL lines sent at the start of a job")
        .Default("the job's name line, where the model has one, and \"@PJL SET GUISTARTJOB=1\"")
        .Valid(kTerminated),
    FIELD(pjlJobEnd, 0, "PJL lines sent at the end of a job").Text("@PJL SET GUIENDJOB=1\r\n").Valid(kTerminated),
    FIELD(colorMode, 0, "colour mode").Default("the model's colour capability").Only<0, 1, 42>().Names(kColorModes),
    FIELD(mediaIndex, 0, "medium, 1-based").Default(kModelMedia).Valid(kMediaRange),
    FIELD(frontCoverMedia, 0, "medium of the front cover, 1-based").Default(kModelMedia).Valid(kMediaRange),
    FIELD(backCoverMedia, 0, "medium of the back cover, 1-based").Default(kModelMedia).Valid(kMediaRange),
    FIELD(interleaveMedia, 0, "medium of interleaved sheets, 1-based").Default(kModelMedia).Valid(kMediaRange),
    FIELD(modelCode, 0, "the model's code").Default("the model's"),
    FIELD(customMargins, 0, "margins of mode 2, device dots: the first and third horizontal, the others vertical")
        .InDots()
        .Valid("0 to half the model's custom maximum, in mode 2"),
    FIELD(optionAreaOffset, kOptionAreaOffset, "offset of the option area from extensionTag").Only<kOptionAreaOffset>(),
    FIELD(noJobName, 0, "the job prologue carries no job-name line")
        .Default("1 on PostScript models that ask for it")
        .Range<0, 1>()
        .Names(kOffOn),
    FIELD(blackText, 0, "text is printed in black").Range<0, 1>().Names(kOffOn),
    FIELD(outputOption, 0, "output option").Default("2 on monochrome PostScript models").Only<0, 2, 256>(),
    FIELD(backCoverBothSides, 1, "back cover printed on both sides").Range<0, 1>().Names(kOffOn),
    FIELD(nupOrder, 0, "order of pages on a sheet")
        .Ranges<0, 3, 16, 19>()
        .Valid("checked with more than one page on a sheet"),
    FIELD(pageOrderFlags, 0, "order of pages").Only<0, 1, 2, 4, 64>().Names(kPageOrders),
    FIELD(trueTypeMode, 0, "TrueType mode").Only<0, 32767>(),
    FIELD(psContrast, 0, "PostScript contrast").Range<-100, 100>(),
    FIELD(psBrightness, 0, "PostScript brightness").Range<-100, 100>(),
    FIELD(psHalftoneFrequency, 0, "PostScript halftone frequency, tenths of a line per inch").Range<0, 6000>(),
    FIELD(psHalftoneAngle, 0, "PostScript halftone angle, tenths of a degree").Range<0, 3600>(),
    FIELD(psHalftoneExtra, 0, "PostScript halftone, further value").Range<0, 32767>(),
    FIELD(optionFlags, 0x00080200, "option bits: PostScript output options and others")
        .Default("the model's flags added"),
    FIELD(overlayMode, 0, "overlay").Range<0, 10>().Names(kOverlayModes),
    FIELD(overlayName, 0, "overlay file").Valid("NUL-terminated within its length where overlayMode is nonzero"),
    RECORD_FIELD(blobRefs, BlobRef, first, 0, "first of a pair of values of the command blob")
        .Default("the default colour mode's values")
        .Valid(kBlobPositions),
    RECORD_FIELD(blobRefs, BlobRef, second, 0, "second of a pair of values of the command blob")
        .Default("the default colour mode's values")
        .Valid(kBlobPositions),
    FIELD(nonPostScriptFlag, 1, "the model is no PostScript model")
        .Default("0 on PostScript models")
        .Range<0, 1>()
        .Names(kOffOn),
    FIELD(nupBorderWidth, 0, "border width, device dots").InDots().Range<0, 32767>(),
    FIELD(separatorMode, 0, "separator sheets").Range<0, 5>(),
    FIELD(exceptionAreaOffset, kExceptionAreaOffset, "offset of the exception lists from extensionTag")
        .Valid("0 or 1255; 64281 on some models"),
    FIELD(separatorBin, kAutomaticSource, "tray of separator sheets").Default(kModelBin).Ranges<1, 15, 256, 65535>(),
    FIELD(separatorMedia, 0, "medium of separator sheets, 1-based").Default(kModelMedia).Valid(kMediaRange),
    FIELD(bookletGutter, 0, "booklet gutter, device dots").InDots(),
    FIELD(bookletValue, 0, "booklet value, device dots").InDots(),
    FIELD(separatorPaper, -1, "paper id of separator sheets").Ranges<-1, -1, 1, 118, 256, 32767>().Names(kPapers),
    FIELD(separatorLength, 0, "length of separator sheets, 0.1 mm").Valid(kCustomLengths),
    FIELD(separatorWidth, 0, "width of separator sheets, 0.1 mm").Valid(kCustomWidths),
    FIELD(overlayName2, 0, "second overlay file")
        .Valid("NUL-terminated within its length where overlayMode is nonzero"),
    FIELD(sliceTableOffset, kSliceTableOffset, "offset of blobSlices from extensionTag").Only<kSliceTableOffset>(),
    FIELD(sliceCount, 0, "slices in use").Default("the default colour mode's").Valid(kBlobPositions),
    FIELD(posterMode, 0, "poster").Ranges<0, 0, 2, 5>().Names(kPosterModes),
    FIELD(finishingOption, 0, "finishing option").Ranges<0, 7, 256, 256>(),
    FIELD(finishingA, 0, "finishing, first value").Range<0, 5>(),
    FIELD(finishingB, 0, "finishing, second value").Range<0, 5>(),
    FIELD(finishingSide, 0, "finishing side").Range<1, 2>().Valid("checked where both finishing values are nonzero"),
    FIELD(marginValue, 0, "border width of style 3, device dots").InDots(),
    FIELD(acceptMark, 0, "mark by which the private part is taken as it is").Names(kAcceptMarks),
    FIELD(extensionTag, 1, "start of the extension area"),
    FIELD(extensionMagicA, 2033, "marks the extension area").Only<2033>(),
    FIELD(extensionMagicB, 15, "marks the extension area").Only<15>(),
    FIELD(descriptionPath, 0, "full path of the model's description file")
        .Default("as found among the driver's files")
        .Valid("NUL-terminated; the file name must be that of the printer's description file"),
    FIELD(settingsFolder, 0, "the user's settings folder; start of the option area").Valid("last character 0"),
    FIELD(imageMode, 0, "mode of image models").Default("the model's, on colour image models"),
    FIELD(imageValueA, 0, "colour management of image models").Range<0, 32767>().Names(kImageColors),
    FIELD(imageValueB, 0, "image models, further value").Range<0, 32767>(),
    RECORD_FIELD(blobSlices, BlobSlice, start, 0, "start of a slice of the command blob")
        .Default("the default colour mode's")
        .Valid(kBlobPositions),
    RECORD_FIELD(blobSlices, BlobSlice, length, 0, "length of the slice (low 13 bits) and flags (top 3 bits)")
        .Default("the default colour mode's")
        .Valid("start and length within the blob"),
    FIELD(featureSelection, 0, "selected option of each feature of the model")
        .Default("65535, 65534, ... for the features without options")
        .Valid("0 to the number of the feature's options"),
    FIELD(extraKeywordIndex, 0, "id of an extra keyword of the model").Range<0, 32767>(),
    FIELD(extraFlag, 0, "the user's own PostScript halftone").Range<0, 1>().Names(kOffOn),
    FIELD(colorModeIndex, 0, "colour mode of the model")
        .Default("the model's default colour mode, on colour models")
        .Valid("0 to the number of colour modes - 1"),
    FIELD(textColorOptions, 0, "selected value of each text colour feature")
        .Default("the default colour mode's")
        .Valid("0 to the number of the feature's values - 1"),
    FIELD(graphicsColorOptions, 0, "selected value of each graphics colour feature")
        .Default("the default colour mode's")
        .Valid("0 to the number of the feature's values - 1"),
    FIELD(imageColorOptions, 0, "selected value of each image colour feature")
        .Default("the default colour mode's")
        .Valid("0 to the number of the feature's values - 1"),
    FIELD(generalColorOptions, 0, "selected value of each general colour feature")
        .Default("the default colour mode's")
        .Valid("0 to the number of the feature's values - 1"),
    FIELD(uiFitToPaper, 65535, "Paper page: fit target, 65535 for none"),
    FIELD(uiMediaValue, 0, "Paper page: medium, 1-based"),
    FIELD(uiFlagA, 0, "Paper page: check box that enables uiCode").Range<0, 1>().Names(kOffOn),
    FIELD(uiCode, 0, "Paper page: four characters").Valid("last byte 0"),
    FIELD(uiZoomOn, 0, "Paper page: zoom").Range<0, 1>().Names(kOffOn),
    FIELD(uiZoomPercent, 100, "Paper page: zoom percent").Range<24, 400>(),
    FIELD(uiRotate180, 0, "Paper page: copy of rotate180").Range<0, 1>().Names(kOffOn),
    FIELD(uiDuplex, 0, "Paper page: duplex").Range<0, 1>().Names(kOffOn),
    FIELD(uiFlagB, 0, "Paper page: check box that enables uiFlagC").Range<0, 1>().Names(kOffOn),
    FIELD(uiLabel, 0, "Paper page: four characters").Valid("last byte 0"),
    FIELD(uiFlagC, 0, "Paper page: check box").Range<0, 1>().Names(kOffOn),
    FIELD(uiPageLayout, 1, "Paper page: pages on a sheet, or sheets of a poster")
        .Only<1, 2, 4, 5, 6, 7>()
        .Names(kPageLayouts),
    FIELD(uiFlagD, 1, "Paper page: papers match").Range<0, 1>().Names(kOffOn),
    FIELD(uiBinding, 0, "Paper page: binding position; 0 and 1 long edge, 2 and 3 short edge").Range<0, 3>(),
    FIELD(uiShiftX, 0, "Paper page: binding shift").Range<-60, 60>(),
    FIELD(uiShiftY, 0, "Paper page: binding shift").Range<-60, 60>(),
    FIELD(uiPageOrder, 0, "Paper page: page order").Range<0, 8>(),
    FIELD(uiFlagE, 0, "Paper page: page borders").Range<0, 1>().Names(kOffOn),
    FIELD(uiChoice, 1, "Paper page: border style").Only<1, 3>(),
    FIELD(customWidth, 21000, "custom paper width, 0.01 mm").Range<10000, 21590>(),
    FIELD(customLength, 29700, "custom paper length, 0.01 mm").Range<21000, 35560>(),
    FIELD(customUnit, 1, "unit in which the custom paper is shown").Range<0, 1>().Names(kUnits),
    FIELD(colorPreset, 1, "Color page: colour mode").Range<1, 7>(),
    FIELD(colorRendering, 1, "Color page: rendering").Range<1, 4>(),
    FIELD(colorAuto, 1, "automatic colour").Range<0, 1>().Names(kOffOn),
    FIELD(colorAdjust, 0, "brightness, contrast, saturation").Range<-10, 10>(),
    FIELD(colorChoiceA, 1, "Color page: choice").Range<1, 3>(),
    FIELD(colorChoiceB, 3, "Color page: base colour").Range<1, 4>(),
    FIELD(colorBalance, 0, "cyan to red, magenta to green, yellow to blue").Range<-10, 10>(),
    FIELD(colorFlagA, 1, "gamma correction").Range<0, 1>().Names(kOffOn),
    FIELD(colorLevels, 0, "black, cyan, magenta, yellow").Range<-10, 10>(),
    FIELD(colorFlagB, 0, "Color page: advanced form").Range<0, 1>().Names(kOffOn),
    FIELD(colorPresetName, 0, "name of the chosen colour preset").Valid("last character 0"),
    FIELD(resolutionIndex, 1, "resolution of the model").Valid("0 to the number of resolutions - 1"),
    FIELD(resolutionFlag, 0, "Color page: check box beside the resolution").Range<0, 1>().Names(kOffOn),
    RECORD_FIELD(objectColor, ObjectColor, mode, 0, "treatment of an object kind's colours").Default("1, 3, 2"),
    RECORD_FIELD(objectColor, ObjectColor, flag, 0, "the object kind's treatment is set"),
    RECORD_ARRAY(objectColor, ObjectColor, 0, values, 0, "the object kind's adjustment values"),
    RECORD_ARRAY(objectColor, ObjectColor, 1, values, 0, "the object kind's adjustment values"),
    RECORD_ARRAY(objectColor, ObjectColor, 2, values, 0, "the object kind's adjustment values"),
    FIELD(objectPresetNames, 0, "name of the preset chosen for each object kind"),
    FIELD(outputSetting, 0, "colour sample picture").Range<0, 3>(),
    FIELD(outputFlag, 0, "watermark switched on in the sheets").Range<0, 1>().Names(kOffOn),
    FIELD(outputLevel, 0, "selected entry of the watermark list").Range<0, 19>(),
    FIELD(outputStep, 8, "shade of the watermark colour's white family").Range<0, 15>(),
    FIELD(finishFlagA, 0, "Output options page: main switch").Range<0, 1>().Names(kOffOn),
    FIELD(finishChoice, 0, "Output options page: choice").Range<0, 2>(),
    FIELD(finishSide, 1, "Output options page: side").Range<1, 2>(),
    FIELD(finishFlagB, 0, "Output options page: check box that enables outputText").Range<0, 1>().Names(kOffOn),
    FIELD(outputText, 0, "Output options page: text").Valid("last byte 0"),
    FIELD(finishFlags, 0, "Output options page: check boxes").Range<0, 1>().Names(kOffOn),
    FIELD(finishFlagC, 1, "Output options page: check box, with bit 0x200 of optionFlags").Range<0, 1>().Names(kOffOn),
    FIELD(shadeMaxFlag, 0, "the watermark colour's shade is 15"),
    FIELD(uiStale, 0, "the Paper page must refresh"),
    FIELD(exceptionCount, 0, "exception records").Range<0, 3>(),
    FIELD(pageListCount, 0, "page lists").Range<0, 3>(),
    AsBytes(FIELD(exceptionArea, 0, "exception records, then page lists"))
        .Valid("records and lists that end within the area"),
    FIELD(separatorSheet, 0, "separator sheets of a ticket").Names(kSeparatorSheets),
    FIELD(photoIntentIndex, 0, "photo printing intent of a ticket, 0-based"),
    FIELD(signatureOptionIndex, 0, "digital-signature processing of a ticket, 0-based"),
    FIELD(mediaColorIndex, 0, "media colour of a ticket, 0-based"),
    FIELD(jobInterleaving, 0, "interleaving of a ticket").Names(kOffOn),
    FIELD(jobImageType, 0, "image type of a ticket").Names(kImageTypes),
};
#undef PART
#undef FIELD
#undef RECORD_FIELD
#undef RECORD_ARRAY

template <size_t count>
consteval const FieldDescriptor& FindField(const FieldDescriptor (&table)[count], std::string_view name) {
    size_t i = 0;
    while (i < count && table[i].name != name) {
        ++i;
    }
    return table[i];  // beyond the table: not a constant expression
}

}  // namespace field_table

// The row of a field, by its name; a name that the table lacks doesn't compile.
consteval const FieldDescriptor& PublicField(std::string_view name) {
    return field_table::FindField(field_table::kPublicFields, name);
}
consteval const FieldDescriptor& PrivateField(std::string_view name) {
    return field_table::FindField(field_table::kPrivateFields, name);
}

}  // namespace velmora
