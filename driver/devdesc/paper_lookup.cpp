#include "driver/devdesc/paper_lookup.h"

#include "driver/devdesc/model_tables.h"
#include "driver/entry/printer_access.h"
#include "driver/settings/custom_sizes.h"

namespace velmora {
namespace {

// Ids by which PCL models name driver-defined papers: 511 and down for the records with a negative pclSizeCode in their
// order, 512 + code for the others.
constexpr int kLastCardId = 511;
constexpr int kPclCodeBase = 512;

PaperSize LocalePaperSize() {
    constexpr PaperSize kLetter = {2159, 2794, 0};
    constexpr PaperSize kA4 = {2100, 2970, 1};
    return IsMetricLocale() ? kA4 : kLetter;
}

bool NamesNoPaper(int paperId) {
    return paperId >= kFirstNoPaper && paperId <= kLastNoPaper;
}

// The table's record of a paper, `cards` counting the driver-defined records passed; null where it has none.
const PaperRecord* FindInTable(const DeviceModel& model, int paperId) {
    const bool isPcl = model.pdlType == kPdlPcl6 || model.pdlType == kPdlPcl5;
    int cards = 0;
    for (const PaperRecord& paper : RecordList(model.paperTable)) {
        const bool isCard = paper.pclSizeCode < 0;
        if (paper.paperId == paperId || (isPcl && paperId < kPclCodeBase && isCard && paperId == kLastCardId - cards) ||
            (isPcl && paperId > kPclCodeBase && paper.pclSizeCode == paperId - kPclCodeBase)) {
            return &paper;
        }
        cards += isCard ? 1 : 0;
    }
    return nullptr;
}

// Sizes that a device mode can't hold are those that it can.
PaperSize SizeOfRecord(const CustomSizeRecord& record) {
    constexpr uint32_t kMost = 32767;
    const auto tenths = [](uint32_t hundredths) {
        return static_cast<LONG>(hundredths / 10 < kMost ? hundredths / 10 : kMost);
    };
    return {tenths(record.width), tenths(record.length), static_cast<int>(record.metric)};
}

// The size at `index` of the user's custom sizes followed by the user-defined forms; false where there are not as many,
// or where it can't be told how many sizes come before the forms.
bool FindCustomSize(HANDLE printer, size_t index, PaperSize* size) {
    const CustomSizeList sizes = LoadPrinterCustomSizes(printer);
    if (!sizes.records) {
        return false;
    }
    if (index < sizes.count) {
        *size = SizeOfRecord(sizes.records.Get()[index]);
        return true;
    }
    const CustomSizeList forms = EnumUserForms(printer);
    if (index - sizes.count < forms.count) {
        *size = SizeOfRecord(forms.records.Get()[index - sizes.count]);
        return true;
    }
    return false;
}

// The record that holds for a paper, id 0 to 255 or a custom one with its size; null where none does.
const MarginRecord* FindMargins(HANDLE printer, const DeviceModel& model, int paperId, WORD orientationMask) {
    const bool isCustom = paperId >= kPaperSetIds;
    const PaperSize size = isCustom ? LookupPaperSize(printer, &model, paperId) : PaperSize{};
    for (const MarginRecord& record : RecordList(model.marginTable)) {
        if ((record.orientationMask & orientationMask) == 0 ||
            !ContainsPaper(record.papers, isCustom ? kCustomInSet : paperId)) {
            continue;
        }
        if (!isCustom || (size.width >= record.minWidth && size.width <= record.maxWidth &&
                          size.length >= record.minLength && size.length <= record.maxLength)) {
            return &record;
        }
    }
    return nullptr;
}

}  // namespace

const PaperRecord* FindPaperRecord(const DeviceModel* model, int paperId) {
    const bool isPaper = model && paperId >= 0 && !NamesNoPaper(paperId);
    return isPaper ? FindInTable(*model, paperId) : nullptr;
}

PaperSize LookupPaperSize(HANDLE printer, const DeviceModel* model, int paperId) {
    if (paperId < 0 || NamesNoPaper(paperId) || !model || !model->paperTable) {
        return LocalePaperSize();
    }
    if (const PaperRecord* paper = FindPaperRecord(model, paperId)) {
        return {paper->width, paper->length, paper->isMetric};
    }
    PaperSize size;
    if (paperId >= kFirstCustomPaper &&
        FindCustomSize(printer, static_cast<size_t>(paperId - kFirstCustomPaper), &size)) {
        return size;
    }
    return LocalePaperSize();
}

MarginPair GetPrintableMargins(HANDLE printer, const DeviceModel* model, int signedPaperId, WORD orientationMask,
                               LONG scale) {
    const auto quarterInch = static_cast<SHORT>(scale / 4);
    if (!model || !model->marginTable) {
        return {quarterInch, quarterInch};
    }
    const bool isLeftTop = signedPaperId > 0;
    int paperId = isLeftTop ? signedPaperId : -signedPaperId;
    if (NamesNoPaper(paperId)) {
        paperId = DefaultPaperForLocale();
    }
    const MarginRecord* record = FindMargins(printer, *model, paperId, orientationMask);
    if (!record || record->unit == 0) {
        return {quarterInch, quarterInch};
    }
    const auto inScale = [&](SHORT margin) {
        return static_cast<SHORT>(static_cast<LONGLONG>(margin) * scale / record->unit);
    };
    return isLeftTop ? MarginPair{inScale(record->leftMargin), inScale(record->topMargin)}
                     : MarginPair{inScale(record->rightMargin), inScale(record->bottomMargin)};
}

}  // namespace velmora
