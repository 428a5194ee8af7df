#include <cstring>

#include "driver/base/text.h"
#include "driver/ptprovider/numbered_name.h"
#include "driver/ptprovider/overlay_features.h"
#include "driver/ptprovider/page_exception_parts.h"
#include "driver/ptprovider/page_exceptions.h"
#include "driver/ptprovider/sheet_choices.h"

namespace velmora {
namespace {

void ReadPages(const WCHAR* text, ExceptionPageList* pages) {
    while (*text != 0 && pages->count < kExceptionPages) {
        const int32_t page = ParseInteger(text);
        if (page == 0) {
            return;
        }
        pages->pages[pages->count++] = static_cast<uint16_t>(page);
        // Behind the number is what separates it from the next.
        while (*text != 0 && (*text < TEXT('0') || *text > TEXT('9'))) {
            ++text;
        }
        while (*text >= TEXT('0') && *text <= TEXT('9')) {
            ++text;
        }
        if (*text != 0) {
            ++text;
        }
    }
}

void ReadUsage(FeatureReader& reader, const ElementReference& feature, ExceptionRecord* exception,
               ExceptionPageList* pages) {
    FoundOption found;
    const PlainOption* const usage = reader.FindOption(feature.Get(), kExceptionUsage, &found)
                                         ? MatchOption(found.name, kExceptionUsage.uri, kExceptionUsages)
                                         : nullptr;
    exception->usage = usage ? static_cast<uint8_t>(usage->value) : uint8_t{kSpecifiedPages};
    OwnedBstr list;
    if (usage && HasPageList(usage->value) && reader.ReadParameter(found.option, kPagesProperty, &list)) {
        ReadPages(list.Text(), pages);
    }
}

// Media and trays are part of an exception where the model has any.
bool ReadMediaAndBin(FeatureReader& reader, const ElementReference& feature, ExceptionRecord* exception) {
    FoundOption media;
    FoundOption bin;
    if ((reader.printer.media.count > 0 && !reader.FindOption(feature.Get(), kSheetMedia, &media)) ||
        (reader.printer.trays.count > 0 && !reader.FindOption(feature.Get(), kSheetBin, &bin))) {
        return false;
    }
    if (media.option && IsMedium(reader, ReadMedia(reader, media))) {
        exception->media = ReadMedia(reader, media);
    }
    if (bin.option) {
        exception->bin = ReadBin(reader, bin);
    }
    return true;
}

bool ReadBlankSheet(FeatureReader& reader, const ElementReference& feature, size_t number, ExceptionRecord* exception) {
    const PlainOption* const place =
        reader.FindPlainOption(nullptr, PrivateKeyword(NumberedName(kBlankSheetPrefix, number).text), kBlankSheets);
    FoundOption size;
    if (!place || !reader.FindOption(feature.Get(), kSheetPaper, &size)) {
        return false;
    }
    exception->kind = static_cast<uint8_t>(place->value);
    TicketPaper paper;
    if (size.name.Is(kPagePaperOption.uri, kPagePaperOption.name)) {
        exception->paper = kPagePaper;
    } else if (ReadPaper(reader, size, SheetKind::kOther, &paper)) {
        exception->paper = static_cast<uint16_t>(paper.paper);
    } else {
        return false;
    }
    return ReadMediaAndBin(reader, feature, exception);
}

bool ReadOverlayFile(FeatureReader& reader, const ElementReference& feature, ExceptionRecord* exception) {
    ElementReference overlay;
    ElementReference option;
    OwnedBstr file;
    const PlainOption* const layer = reader.FindPlainOption(feature.Get(), kOverlayLayering, kOverlayLayers);
    if (!layer ||
        reader.document.FindFeatureOption(feature.Get(), kOverlayFile.uri, kOverlayFile.name, &overlay, &option,
                                          nullptr) != S_OK ||
        !reader.ReadScored(option, kFileProperty, &file)) {
        return false;
    }
    // The record's name needs no terminator.
    const WCHAR* const name = FileNamePart(file.Text());
    memset(exception->overlayName, 0, sizeof(exception->overlayName));
    memcpy(exception->overlayName, name, TextLength(name, ARRAYSIZE(exception->overlayName)) * sizeof(WCHAR));
    if (layer->value == kUnderPage) {
        exception->underlay = 1;
    }
    return true;
}

bool ReadContent(FeatureReader& reader, StoredWatermarks& watermarks, const ElementReference& feature, size_t number,
                 uint8_t kindBefore, ExceptionRecord* exception) {
    switch (exception->kind) {
        case kMediaException:
            return ReadMediaAndBin(reader, feature, exception);
        case kBlankSheetBefore:
            return ReadBlankSheet(reader, feature, number, exception);
        case kOverlayException:
            return ReadOverlayFile(reader, feature, exception);
        default:
            // A ticket doesn't say which of the stored watermarks it is: the device mode's stays.
            return kindBefore == kWatermarkException && watermarks.Find(*exception);
    }
}

}  // namespace

void ReadPageExceptions(FeatureReader& reader, WorkingDevMode& working) {
    StoredWatermarks watermarks(working.hPrinter);
    for (size_t i = 0; i < kExceptionSlots; ++i) {
        ExceptionRecord& exception = working.exceptions[i];
        ExceptionPageList& pages = working.exceptionPages[i];
        const uint8_t kindBefore = exception.kind;
        const size_t number = i + 1;
        exception.kind = kNoException;
        ElementReference feature;
        for (const KindName& row : kKindNames) {
            const NumberedName name(row.prefix, number);
            if (reader.document.FindFeature(nullptr, kPrivateNamespace, name.text, &feature) == S_OK) {
                exception.kind = row.kind;
                break;
            }
        }
        if (exception.kind == kNoException) {
            continue;
        }
        pages.count = 0;
        ReadUsage(reader, feature, &exception, &pages);
        if (!ReadContent(reader, watermarks, feature, number, kindBefore, &exception)) {
            exception.kind = kNoException;
        }
    }
}

}  // namespace velmora
