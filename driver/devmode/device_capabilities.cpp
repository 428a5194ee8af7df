#include "driver/devmode/device_capabilities.h"

#include <cstring>
#include <optional>

#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/offered_papers.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devmode/private_devmode.h"
#include "driver/entry/printer_access.h"
#include "driver/entry/resource_module.h"
#include "driver/settings/custom_sizes.h"
#include "driver/settings/device_info.h"

namespace velmora {
namespace {

constexpr DWORD kMostCopies = 999;
constexpr DWORD kLandscapeRotation = 90;  // degrees from portrait to landscape
constexpr DWORD kKilobytesPerMegabyte = 1024;

constexpr LONG kNoLimit = 0x7FFFFFFF;  // a smallest extent that no paper has

// Strings of the resource module.
constexpr int16_t kAnySizeName = 2117;
constexpr int16_t kDefaultPaperName = 5107;

// Characters of the longest name that a description file has.
constexpr size_t kNameCapacity = 128;

// dmFields (wingdi.h) of every printer, and of those with a duplex unit.
constexpr DWORD kPlainFields = DM_ORIENTATION | DM_PAPERSIZE | DM_PAPERLENGTH | DM_PAPERWIDTH | DM_COPIES |
                               DM_DEFAULTSOURCE | DM_PRINTQUALITY | DM_YRESOLUTION | DM_TTOPTION | DM_COLLATE;
static_assert(kPlainFields == 0xE70F && (kPlainFields | DM_DUPLEX) == 0xF70F);

// The printer that is asked.
struct Subject {
    HANDLE printer;
    HANDLE file;               // its description file, or the invalid handle
    const DeviceModel* model;  // null where it isn't known
    DeviceInfo options;
};

// The entries of a list: counted always, written one behind the other where there is an output.
class EntryList {
  public:
    explicit EntryList(void* output) : next_(static_cast<BYTE*>(output)) {}

    bool IsWritten() const { return next_ != nullptr; }
    DWORD Count() const { return count_; }

    template <class Entry>
    void Add(const Entry& entry) {
        if (next_) {
            memcpy(next_, &entry, sizeof(entry));
            next_ += sizeof(entry);
        }
        ++count_;
    }

    // Behind an indent of one space there is room for as many characters as without it, but for no terminator then.
    template <size_t capacity>
    void AddName(const WCHAR* name, bool isIndented = false) {
        struct Slot {
            WCHAR text[capacity];
        } slot = {};
        if (isIndented) {
            slot.text[0] = TEXT(' ');
        }
        memcpy(slot.text + (isIndented ? 1 : 0), name, TextLength(name, capacity - 1) * sizeof(WCHAR));
        Add(slot);
    }

  private:
    BYTE* next_;
    DWORD count_ = 0;
};

// Reads the names of a list that is written; of one that is only counted every name is empty.
class NameReader {
  public:
    NameReader(const Subject& subject, const EntryList& list)
        : file_(subject.file),
          isNeeded_(list.IsWritten()),
          module_(isNeeded_ ? LoadResourceModule(subject.printer, nullptr) : OwnedModule()) {}

    // The localised string with this reference, a negative one for a string of the resource module. It lasts until the
    // next call.
    const WCHAR* Read(int reference) {
        name_[0] = 0;
        const auto number = static_cast<int16_t>(reference);
        if (isNeeded_ && number > 0) {
            if (!strings_) {
                strings_.emplace(file_, UserPrimaryLanguage(), module_.Get());
            }
            strings_->ReadLocalizedString(number, name_, kNameCapacity);
        } else if (isNeeded_) {
            ReadLocalizedString(file_, UserPrimaryLanguage(), module_.Get(), number, name_, kNameCapacity);
        }
        return name_;
    }

  private:
    HANDLE file_;
    bool isNeeded_;
    OwnedModule module_;
    std::optional<StringPool> strings_;  // all of the model's, once one is asked for
    WCHAR name_[kNameCapacity] = {};
};

bool IsInstalled(DeviceInfoOption option, const Subject& subject) {
    return (subject.options.optionFlags & option) != 0;
}

bool IsImage(const Subject& subject) {
    return subject.model && subject.model->pdlType == kPdlImage;
}

bool HasCustomSizes(const DeviceModel& model) {
    return model.customMaxWidth > 0 && model.customMaxLength > 0;
}

template <DWORD value>
DWORD Fixed(const Subject&, EntryList&) {
    return value;
}

template <DeviceInfoOption option>
DWORD AnswerInstalled(const Subject& subject, EntryList&) {
    return IsInstalled(option, subject) ? 1 : 0;
}

DWORD AnswerFields(const Subject& subject, EntryList&) {
    DWORD fields = kPlainFields;
    if (IsInstalled(kDuplexInstalled, subject)) {
        fields |= DM_DUPLEX;
    }
    if (subject.model && !IsMonochrome(subject.model->colorCapability)) {
        fields |= kColorFields;
    }
    return fields;
}

struct PaperEntry {
    int id;
    POINT size;         // 0.1 mm
    int16_t nameId;     // string of the resource module, for a paper without a name of its own
    const WCHAR* name;  // its own, or null
};

// Hands the papers that the printer offers to `add`, in their order.
template <class Add>
void ForEachPaper(const Subject& subject, Add add) {
    const PaperSize found = LookupPaperSize(subject.printer, nullptr, DefaultPaperForLocale());
    const POINT defaultSize = {found.width, found.length};
    if (!subject.model) {
        add(PaperEntry{DefaultPaperForLocale(), defaultSize, kDefaultPaperName, nullptr});
        return;
    }
    for (const OfferedPaper& paper : kOfferedPapers) {
        add(PaperEntry{paper.paperId, {paper.width, paper.length}, paper.nameId, nullptr});
    }
    if (!HasCustomSizes(*subject.model)) {
        return;
    }
    const CustomSizeList sizes = LoadPrinterCustomSizes(subject.printer);
    for (int i = 0; i < sizes.count; ++i) {
        const CustomSizeRecord& record = sizes.records.Get()[i];
        const POINT size = {static_cast<LONG>(record.width / 10), static_cast<LONG>(record.length / 10)};
        add(PaperEntry{kFirstCustomPaper + i, size, 0, record.name});
    }
    add(PaperEntry{DMPAPER_USER, defaultSize, kAnySizeName, nullptr});
}

DWORD ListPapers(const Subject& subject, EntryList& list) {
    ForEachPaper(subject, [&](const PaperEntry& paper) { list.Add(static_cast<WORD>(paper.id)); });
    return list.Count();
}

DWORD ListPaperSizes(const Subject& subject, EntryList& list) {
    ForEachPaper(subject, [&](const PaperEntry& paper) { list.Add(paper.size); });
    return list.Count();
}

DWORD ListPaperNames(const Subject& subject, EntryList& list) {
    NameReader names(subject, list);
    ForEachPaper(subject, [&](const PaperEntry& paper) {
        list.AddName<kPaperNameCapacity>(paper.name ? paper.name : names.Read(-paper.nameId));
    });
    return list.Count();
}

// Width in the low word, length in the high one.
DWORD PackExtent(LONG width, LONG length) {
    return static_cast<DWORD>(MAKELONG(width, length));
}

DWORD AnswerDefaultExtent(const Subject& subject, EntryList&) {
    const PaperSize size = LookupPaperSize(subject.printer, nullptr, DefaultPaperForLocale());
    return PackExtent(size.width, size.length);
}

DWORD AnswerSmallestExtent(const Subject& subject, EntryList&) {
    const DeviceModel& model = *subject.model;
    const bool hasCustom = HasCustomSizes(model);
    LONG width = hasCustom ? model.customMinWidth : kNoLimit;
    LONG length = hasCustom ? model.customMinLength : kNoLimit;
    for (const PaperRecord& paper : RecordList(model.paperTable)) {
        width = paper.width < width ? paper.width : width;
        length = paper.length < length ? paper.length : length;
    }
    return PackExtent(width, length);
}

DWORD AnswerLargestExtent(const Subject& subject, EntryList&) {
    const DeviceModel& model = *subject.model;
    const bool hasCustom = HasCustomSizes(model);
    LONG width = hasCustom ? model.customMaxWidth : 0;
    LONG length = hasCustom ? model.customMaxLength : 0;
    for (const PaperRecord& paper : RecordList(model.paperTable)) {
        width = paper.width > width ? paper.width : width;
        length = paper.length > length ? paper.length : length;
    }
    return PackExtent(width, length);
}

// True where the model's media are paper sources too.
bool HasMediumSources(const DeviceModel& model) {
    return model.mediaTable && model.pdlType != kPdlImage;
}

DWORD ListBins(const Subject& subject, EntryList& list) {
    for (const BinRecord& bin : RecordList(subject.model->binTable)) {
        if ((bin.optionMask & subject.options.installedOptions) != 0) {
            list.Add(WORD{bin.binId});
        }
    }
    if (HasMediumSources(*subject.model)) {
        const size_t count = CountRecords(subject.model->mediaTable);
        for (size_t i = 0; i < count; ++i) {
            list.Add(static_cast<WORD>(kFirstMediumSource + i));
        }
    }
    return list.Count();
}

DWORD ListAutomaticBin(const Subject&, EntryList& list) {
    list.Add(kAutomaticSource);
    return list.Count();
}

template <size_t capacity>
void AddMediumNames(const DeviceModel& model, NameReader& names, EntryList& list) {
    for (const MediaRecord& medium : RecordList(model.mediaTable)) {
        list.AddName<capacity>(names.Read(medium.nameRef));
    }
}

DWORD ListBinNames(const Subject& subject, EntryList& list) {
    const DeviceModel& model = *subject.model;
    const bool hasMedia = HasMediumSources(model);
    NameReader names(subject, list);
    for (const BinRecord& bin : RecordList(model.binTable)) {
        if ((bin.optionMask & subject.options.installedOptions) != 0) {
            list.AddName<kBinNameCapacity>(names.Read(bin.nameRef), hasMedia);
        }
    }
    if (hasMedia) {
        AddMediumNames<kBinNameCapacity>(model, names, list);
    }
    return list.Count();
}

DWORD ListAutomaticBinName(const Subject&, EntryList& list) {
    list.AddName<kBinNameCapacity>(TEXT("Autoselect"));
    return list.Count();
}

DWORD AnswerRenderCoreVersion(const Subject& subject, EntryList&) {
    WCHAR path[MAX_PATH];
    GetRenderCorePath(subject.printer, path);
    return GetDriverVersion(path);
}

DWORD ListResolutions(const Subject& subject, EntryList& list) {
    for (const ResolutionRecord& resolution : RecordList(subject.model->resolutionTable)) {
        list.Add(POINT{resolution.xDpi, resolution.yDpi});
    }
    return list.Count();
}

DWORD ListDefaultResolution(const Subject&, EntryList& list) {
    list.Add(POINT{300, 300});
    return list.Count();
}

DWORD AnswerTrueType(const Subject& subject, EntryList&) {
    return IsImage(subject) ? DCTT_BITMAP : DCTT_BITMAP | DCTT_DOWNLOAD;
}

const WCHAR* PersonalityOf(const DeviceModel& model) {
    switch (model.pdlType) {
        case kPdlPcl6:
            return TEXT("PCL6");
        case kPdlPcl5:
            if (!IsMonochrome(model.colorCapability)) {
                return TEXT("PCL5c");
            }
            return (model.defaultOptionFlags & kModelPlainPcl5) != 0 ? TEXT("PCL5") : TEXT("PCL5e");
        case kPdlPostScript:
            return TEXT("PostScript");
        case kPdlImage:
            return TEXT("Image");
        case kPdlXps:
            return TEXT("XPS");
        default:
            return TEXT("Velmora");
    }
}

DWORD ListPersonality(const Subject& subject, EntryList& list) {
    list.AddName<kPersonalityCapacity>(subject.model ? PersonalityOf(*subject.model) : TEXT("Velmora"));
    return list.Count();
}

DWORD AnswerPrintRate(const Subject& subject, EntryList&) {
    return static_cast<DWORD>(LONG{subject.model->pagesPerMinute});
}

DWORD AnswerMemory(const Subject& subject, EntryList&) {
    return subject.model->memoryTable ? GetMemorySetting(subject.printer) * kKilobytesPerMegabyte : 0;
}

DWORD ListReadyMedia(const Subject&, EntryList& list) {
    list.AddName<kPaperNameCapacity>(TEXT("A4"));
    return list.Count();
}

DWORD AnswerColor(const Subject& subject, EntryList&) {
    return subject.model->colorCapability == kColor ? 1 : 0;
}

DWORD ListPagesPerSheet(const Subject& subject, EntryList& list) {
    constexpr DWORD kPlain[] = {1, 2, 4, 6, 8, 9, 16};
    constexpr DWORD kOfImages[] = {1, 2, 4, 6, 8, 9, 12, 16, 25};
    const auto add = [&](const auto& numbers) {
        for (const DWORD number : numbers) {
            list.Add(number);
        }
    };
    if (IsImage(subject)) {
        add(kOfImages);
    } else {
        add(kPlain);
    }
    return list.Count();
}

DWORD ListMediumNames(const Subject& subject, EntryList& list) {
    NameReader names(subject, list);
    AddMediumNames<kPaperNameCapacity>(*subject.model, names, list);
    return list.Count();
}

DWORD ListMediumTypes(const Subject& subject, EntryList& list) {
    for (const MediaRecord& medium : RecordList(subject.model->mediaTable)) {
        list.Add(DWORD{medium.mediaId});
    }
    return list.Count();
}

using Answer = DWORD (*)(const Subject& subject, EntryList& list);

struct Capability {
    WORD index;  // DC_ (wingdi.h)
    Answer withModel;
    Answer withoutModel;
};

// What the driver answers; of every other index it says nothing.
constexpr Capability kCapabilities[] = {
    {DC_FIELDS, AnswerFields, AnswerFields},
    {DC_PAPERS, ListPapers, ListPapers},
    {DC_PAPERSIZE, ListPaperSizes, ListPaperSizes},
    {DC_MINEXTENT, AnswerSmallestExtent, AnswerDefaultExtent},
    {DC_MAXEXTENT, AnswerLargestExtent, AnswerDefaultExtent},
    {DC_BINS, ListBins, ListAutomaticBin},
    {DC_DUPLEX, AnswerInstalled<kDuplexInstalled>, AnswerInstalled<kDuplexInstalled>},
    {DC_SIZE, Fixed<kPublicDevModeSize>, Fixed<kPublicDevModeSize>},
    {DC_EXTRA, Fixed<kPrivateDevModeSize>, Fixed<kPrivateDevModeSize>},
    {DC_VERSION, Fixed<kDevModeSpecVersion>, Fixed<kDevModeSpecVersion>},
    {DC_DRIVER, AnswerRenderCoreVersion, AnswerRenderCoreVersion},
    {DC_BINNAMES, ListBinNames, ListAutomaticBinName},
    {DC_ENUMRESOLUTIONS, ListResolutions, ListDefaultResolution},
    {DC_TRUETYPE, AnswerTrueType, Fixed<DCTT_BITMAP>},
    {DC_PAPERNAMES, ListPaperNames, ListPaperNames},
    {DC_ORIENTATION, Fixed<kLandscapeRotation>, Fixed<kLandscapeRotation>},
    {DC_COPIES, Fixed<kMostCopies>, Fixed<kMostCopies>},
    {DC_COLLATE, Fixed<1>, Fixed<1>},
    {DC_PERSONALITY, ListPersonality, ListPersonality},
    {DC_PRINTRATE, AnswerPrintRate, Fixed<0>},
    {DC_PRINTRATEUNIT, Fixed<PRINTRATEUNIT_PPM>, Fixed<PRINTRATEUNIT_PPM>},
    {DC_PRINTERMEM, AnswerMemory, Fixed<0>},
    {DC_MEDIAREADY, ListReadyMedia, ListReadyMedia},
    {DC_STAPLE, AnswerInstalled<kStaplerInstalled>, AnswerInstalled<kStaplerInstalled>},
    {DC_PRINTRATEPPM, AnswerPrintRate, Fixed<0>},
    {DC_COLORDEVICE, AnswerColor, Fixed<0>},
    {DC_NUP, ListPagesPerSheet, ListPagesPerSheet},
    {DC_MEDIATYPENAMES, ListMediumNames, Fixed<0>},
    {DC_MEDIATYPES, ListMediumTypes, Fixed<0>},
};

}  // namespace

DWORD GetDeviceCapability(HANDLE printer, WORD capability, void* output) {
    for (const Capability& row : kCapabilities) {
        if (row.index != capability) {
            continue;
        }
        const OwnedFile file = OpenDescriptionFile(printer);
        const HeapOwner<DeviceModel> model = LoadDeviceModel(file.Get());
        const HeapOwner<DeviceInfo> options = GetDeviceInfo(printer, model.Get());
        const Subject subject = {printer, file.Get(), model.Get(), options ? *options : DeviceInfo{}};
        EntryList list(output);
        return (model ? row.withModel : row.withoutModel)(subject, list);
    }
    return 0;
}

}  // namespace velmora
