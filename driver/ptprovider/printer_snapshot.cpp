#include "driver/ptprovider/printer_snapshot.h"

#include <winspool.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <new>

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/entry/printer_access.h"
#include "driver/entry/resource_module.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/settings/settings_folder.h"

namespace velmora {
namespace {

// A model's keyword with its prefix.
constexpr size_t kNameCapacity = 256;

// Hundredths of a millimetre in an inch.
constexpr uint32_t kInch = 2540;

// The extension of overlay files, a string of the language module.
constexpr UINT kOverlayExtensionString = 2654;

// Names of colour modes that the model gives none, by the first kind that a mode is of.
struct ColorModeString {
    uint32_t kinds;
    int16_t string;  // of the language module
};
constexpr ColorModeString kColorModeStrings[] = {
    {kColorModeManual, 3361},
    {kColorModeSystem, 3362},
    {UINT32_MAX, 3363},
};

// Reads the texts of entries.
class EntryTexts {
  public:
    EntryTexts(const PrinterSnapshot& snapshot, SnapshotLabels labels)
        : ownNamespace_(snapshot.ownNamespace),
          hasLabels_(labels == SnapshotLabels::kRead),
          pool_(hasLabels_ ? StringPool(snapshot.descriptionFile.Get(), snapshot.language, snapshot.resources.Get())
                           : StringPool(snapshot.descriptionFile.Get())) {}

    template <size_t kCapacity>
    void Label(int reference, WCHAR (&text)[kCapacity]) const {
        if (hasLabels_) {
            pool_.ReadLocalizedString(static_cast<int16_t>(reference), text, kCapacity);
        }
    }
    template <size_t kCapacity>
    void Name(int reference, WCHAR (&text)[kCapacity]) const {
        pool_.ReadName(static_cast<int16_t>(reference), text, kCapacity);
    }
    void Keyword(int reference, OptionName* name) const {
        WCHAR text[kNameCapacity];
        Name(reference, text);
        ParseKeyword(text, ownNamespace_, name);
    }

  private:
    const WCHAR* ownNamespace_;
    bool hasLabels_;
    StringPool pool_;
};

template <size_t kCount>
void CopyValues(uint32_t (&values)[kCount], const void* packed) {
    memcpy(values, packed, sizeof(values));
}

// A list of `count` entries, each filled by its index.
template <class Entry, class Fill>
EntryList<Entry> MakeList(size_t count, Fill fill) {
    EntryList<Entry> list;
    if (count > 0) {
        list.entries = HeapOwner<Entry>::Allocate(count);
    }
    if (list.entries) {
        list.count = count;
        for (size_t i = 0; i < count; ++i) {
            fill(i, list.entries.Get() + i);
        }
    }
    return list;
}

// A list with an entry for each record of a table, at most `most`. The texts that all entries have are read here;
// `fill` adds the values of a record.
template <class Entry, class Record, class Fill>
EntryList<Entry> MakeTableList(const EntryTexts& texts, const Record* table, Fill fill, size_t most = SIZE_MAX) {
    return MakeList<Entry>(std::min(CountRecords(table), most), [&](size_t index, Entry* entry) {
        const Record& record = table[index];
        if constexpr (requires { entry->name; }) {
            texts.Keyword(record.keywordRef, &entry->name);
        }
        texts.Label(record.nameRef, entry->displayName);
        fill(record, index, entry);
    });
}

EntryList<KeywordEntry> MakeKeywordList(const EntryTexts& texts, const KeywordRecord* table) {
    return MakeTableList<KeywordEntry>(texts, table, [](const KeywordRecord& record, size_t, KeywordEntry* entry) {
        CopyValues(entry->ticketValues, &record.ticketValues);
    });
}

// How many records of a table that is reached by ranges come before the end of the last range.
template <class Entry, class Range>
size_t CountReached(const EntryList<Entry>& list, Range range) {
    size_t reached = 0;
    for (const Entry& entry : list) {
        const EntryRange& records = entry.*range;
        reached = std::max(reached, records.first + records.count);
    }
    return reached;
}

// A range from a record's index, which may lead nowhere: then there are no records either.
EntryRange RangeOf(int16_t first, size_t count) {
    return count > 0 ? EntryRange{static_cast<size_t>(first), count} : EntryRange{};
}

// The model's papers and the user's.
EntryList<PaperEntry> MakePaperList(const EntryTexts& texts, const PaperRecord* table, const CustomSizeList& custom,
                                    const WCHAR* ownNamespace) {
    const size_t own = CountRecords(table);
    return MakeList<PaperEntry>(own + custom.count, [&](size_t index, PaperEntry* entry) {
        if (index < own) {
            const PaperRecord& record = table[index];
            texts.Keyword(record.keywordRef, &entry->name);
            texts.Label(record.nameRef, entry->displayName);
            entry->width = record.width * 100;
            entry->length = record.length * 100;
            entry->isMetric = record.isMetric != 0;
            entry->paperId = record.paperId;
            CopyValues(entry->ticketValues, &record.ticketValues);
            return;
        }
        const CustomSizeRecord& size = custom.records.Get()[index - own];
        entry->name.namespaceUri = ownNamespace;
        FormatCustomSizeKeyword(size, entry->name.keyword);
        CopyText<WCHAR>(entry->displayName, ARRAYSIZE(entry->displayName), size.name);
        entry->width = static_cast<int32_t>(size.width * 10);
        entry->length = static_cast<int32_t>(size.length * 10);
        entry->isMetric = size.metric != 0;
        entry->paperId = static_cast<int16_t>(kFirstCustomPaper + static_cast<int>(index - own));
    });
}

void FillFeatures(const EntryTexts& texts, const DeviceModel& model, PrinterSnapshot* snapshot) {
    snapshot->features = MakeTableList<FeatureEntry>(
        texts, model.featureTable, [&](const FeatureRecord& record, size_t, FeatureEntry* entry) {
            entry->featureMask = record.featureMask;
            entry->options = RangeOf(record.firstOption, CountOptions(model, record));
        });
    const size_t reached = CountReached(snapshot->features, &FeatureEntry::options);
    snapshot->options = MakeList<OptionEntry>(reached, [&](size_t index, OptionEntry* entry) {
        const OptionRecord* const record = OptionAt(model, static_cast<int32_t>(index));
        if (record && !EndsList(*record)) {
            texts.Keyword(record->keywordRef, &entry->name);
            texts.Label(record->nameRef, entry->displayName);
        }
    });
    if (reached > 0 && snapshot->options.count == 0) {
        snapshot->features = {};  // a feature without options is another kind of feature
    }
}

void FillColors(const EntryTexts& texts, const DeviceModel& model, PrinterSnapshot* snapshot) {
    snapshot->colorModes = MakeTableList<ColorModeEntry>(
        texts, model.colorModeTable, [&](const ColorModeRecord& record, size_t, ColorModeEntry* entry) {
            entry->kind = record.kind;
            if (record.nameRef == 0) {
                const auto* named = std::ranges::find_if(
                    kColorModeStrings, [&](const ColorModeString& row) { return (row.kinds & entry->kind) != 0; });
                texts.Label(-named->string, entry->displayName);
            }
        });
    for (const ColorModeEntry& mode : snapshot->colorModes) {
        snapshot->colorModeKinds |= mode.kind;
    }
    size_t reached = 0;
    for (size_t i = 0; i < std::size(kColorGroups); ++i) {
        snapshot->colorFeatures[i] = MakeTableList<ColorFeatureEntry>(
            texts, ColorFeatures(model, kColorGroups[i]),
            [&](const ColorFeatureRecord& record, size_t, ColorFeatureEntry* entry) {
                entry->values = RangeOf(record.firstValue, CountColorValues(model, record));
            },
            kColorFeaturesPerGroup);
        reached = std::max(reached, CountReached(snapshot->colorFeatures[i], &ColorFeatureEntry::values));
    }
    snapshot->colorValues = MakeList<ColorValueEntry>(reached, [&](size_t index, ColorValueEntry* entry) {
        const ColorValueRecord* const record = ColorValueAt(model, static_cast<int32_t>(index));
        if (record) {
            texts.Label(record->nameRef, entry->displayName);
        }
    });
    if (reached > 0 && snapshot->colorValues.count == 0) {
        for (EntryList<ColorFeatureEntry>& features : snapshot->colorFeatures) {
            features = {};
        }
    }
}

void FillTables(const EntryTexts& texts, const DeviceModel& model, PrinterSnapshot* snapshot) {
    snapshot->media = MakeTableList<MediaEntry>(texts, model.mediaTable,
                                                [&](const MediaRecord& record, size_t index, MediaEntry* entry) {
                                                    entry->index = static_cast<uint16_t>(index + 1);
                                                    texts.Name(record.rendererNameRef, entry->rendererName);
                                                    CopyValues(entry->ticketValues, &record.ticketValues);
                                                });
    snapshot->trays =
        MakeTableList<TrayEntry>(texts, model.binTable, [](const BinRecord& record, size_t, TrayEntry* entry) {
            entry->optionMask = record.optionMask;
            entry->binId = record.binId;
        });
    snapshot->extraKeywords = MakeTableList<ExtraKeywordEntry>(
        texts, model.extraKeywordTable, [](const ExtraKeywordRecord& record, size_t, ExtraKeywordEntry* entry) {
            entry->optionMask = record.optionMask;
            entry->id = record.id;
        });
    snapshot->resolutions = MakeTableList<ResolutionEntry>(
        texts, model.resolutionTable, [](const ResolutionRecord& record, size_t, ResolutionEntry* entry) {
            entry->xDpi = record.xDpi;
            entry->yDpi = record.yDpi;
            entry->resolutionId = record.resolutionId;
            CopyValues(entry->ticketValues, &record.ticketValues);
        });
    snapshot->extraListA = MakeKeywordList(texts, model.extraListA);
    snapshot->extraListB = MakeKeywordList(texts, model.extraListB);
    snapshot->extraListC = MakeKeywordList(texts, model.extraListC);
    snapshot->mediaColors = MakeKeywordList(texts, model.mediaColorList);
    snapshot->photoIntents = MakeKeywordList(texts, model.photoIntentList);
    snapshot->signatureOptions = MakeKeywordList(texts, model.signatureOptionList);
    FillFeatures(texts, model, snapshot);
    FillColors(texts, model, snapshot);
}

// A name of the model's, or `fallback` where it gives none.
template <size_t kCapacity>
void NameOr(const EntryTexts& texts, uint16_t reference, const WCHAR* fallback, WCHAR (&text)[kCapacity]) {
    texts.Name(reference, text);
    if (text[0] == 0) {
        CopyText<WCHAR>(text, kCapacity, fallback);
    }
}

// Calls `take` with the name of each overlay file of the folder.
template <class Take>
void WalkOverlays(const WCHAR* folder, const WCHAR* extension, Take take) {
    WCHAR pattern[MAX_PATH];
    FormatWide(pattern, ARRAYSIZE(pattern), TEXT("%s\\*.%s"), folder, extension);
    WIN32_FIND_DATAW found;
    const OwnedSearch search(FindFirstFileW(pattern, &found));
    for (bool more = static_cast<bool>(search); more; more = FindNextFileW(search.Get(), &found)) {
        // A device mode has no room for longer names.
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
            TextLength(found.cFileName) < ARRAYSIZE(OverlayEntry::fileName)) {
            take(found.cFileName);
        }
    }
}

// The overlays of the user's settings folder. The folder may change meanwhile: what comes after the files were counted
// isn't listed.
EntryList<OverlayEntry> MakeOverlayList(const WCHAR* folder, const WCHAR* extension) {
    if (folder[0] == 0 || extension[0] == 0) {
        return {};
    }
    size_t count = 0;
    WalkOverlays(folder, extension, [&](const WCHAR*) { ++count; });
    EntryList<OverlayEntry> list;
    if (count > 0) {
        list.entries = HeapOwner<OverlayEntry>::Allocate(count);
    }
    if (list.entries) {
        WalkOverlays(folder, extension, [&](const WCHAR* fileName) {
            if (list.count < count) {
                OverlayEntry& entry = list.entries.Get()[list.count++];
                CopyText<WCHAR>(entry.fileName, ARRAYSIZE(entry.fileName), fileName);
            }
        });
    }
    return list;
}

bool MarksXpsWriter(const DriverFiles& files) {
    WCHAR iniFile[MAX_PATH];
    return FindDriverIniFile(files, iniFile) &&
           GetPrivateProfileIntW(TEXT("PrinterDriver"), TEXT("MXDWConfig"), 0, iniFile) == 1;
}

void Fill(HANDLE printer, SnapshotLabels labels, PrinterSnapshot* snapshot) {
    snapshot->files = DriverFiles(printer);
    const DriverFiles& files = snapshot->files;
    snapshot->language = UserPrimaryLanguage();
    snapshot->resources = LoadResourceModule(files, nullptr);
    if (snapshot->resources) {
        LoadStringW(snapshot->resources.Get(), kOverlayExtensionString, snapshot->overlayExtension,
                    ARRAYSIZE(snapshot->overlayExtension));
    }
    snapshot->isXpsWriter = MarksXpsWriter(files);
    if (FindDescriptionFile(files, snapshot->descriptionPath)) {
        snapshot->descriptionFile = OpenDescriptionFileAt(snapshot->descriptionPath);
    }
    snapshot->model = LoadDeviceModel(snapshot->descriptionFile.Get());
    const DeviceModel* const model = snapshot->model.Get();
    snapshot->installed = ReadDeviceInfo(printer, files, model);
    snapshot->blob = LoadBlob(snapshot->descriptionFile.Get(), &snapshot->blobSize);

    const EntryTexts texts(*snapshot, labels);
    NameOr(texts, model ? model->oemNamespaceRef : 0, kOemNamespace, snapshot->ownNamespace);
    NameOr(texts, model ? model->oemPrefixRef : 0, kOemPrefix, snapshot->ownPrefix);

    CustomSizeList customSizes;
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(printer);
    if (info && info->pPrinterName) {
        WCHAR store[MAX_PATH];
        FindStores(*info, files, snapshot->overlayFolder, store);
        if (store[0] != 0) {
            customSizes = ReadCustomSizes(store);
        }
        snapshot->overlays = MakeOverlayList(snapshot->overlayFolder, snapshot->overlayExtension);
    }
    snapshot->papers = MakePaperList(texts, model ? model->paperTable : nullptr, customSizes, snapshot->ownNamespace);
    if (model) {
        FillTables(texts, *model, snapshot);
    }
}

}  // namespace

void SnapshotTraits::Close(Handle snapshot) {
    snapshot->~PrinterSnapshot();
    HeapOwner<PrinterSnapshot>(snapshot).Reset(nullptr);
}

OwnedSnapshot LoadPrinterSnapshot(HANDLE printer, SnapshotLabels labels) {
    void* const block = AllocateBytes(sizeof(PrinterSnapshot));
    OwnedSnapshot snapshot(block ? new (block) PrinterSnapshot() : nullptr);
    if (snapshot) {
        Fill(printer, labels, snapshot.Get());
    }
    return snapshot;
}

void ParseKeyword(const WCHAR* text, const WCHAR* ownNamespace, OptionName* name) {
    struct Prefix {
        const WCHAR* text;
        const WCHAR* namespaceUri;
    };
    constexpr Prefix kPrefixes[] = {{kKeywordsPrefix, kKeywordsNamespace}, {kPrivatePrefix, kPrivateNamespace}};
    const WCHAR* const colon = FindText(text, TEXT(":"));
    name->namespaceUri = ownNamespace;
    for (const Prefix& prefix : kPrefixes) {
        if (colon && TextBeginsWith(text, prefix.text) && text + TextLength(prefix.text) == colon) {
            name->namespaceUri = prefix.namespaceUri;
        }
    }
    CopyText<WCHAR>(name->keyword, ARRAYSIZE(name->keyword), colon ? colon + 1 : text);
}

void FormatCustomSizeKeyword(const CustomSizeRecord& size, WCHAR (&keyword)[kKeywordCapacity]) {
    if (size.metric != 0) {
        FormatWide(keyword, ARRAYSIZE(keyword), TEXT("custom_%d.%dx%d.%dmm"), size.width / 100, size.width / 10 % 10,
                   size.length / 100, size.length / 10 % 10);
    } else {
        FormatWide(keyword, ARRAYSIZE(keyword), TEXT("custom_%d.%03dx%d.%03din"), size.width / kInch,
                   size.width % kInch * 1000 / kInch, size.length / kInch, size.length % kInch * 1000 / kInch);
    }
}

}  // namespace velmora
