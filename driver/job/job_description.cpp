#include "driver/job/job_description.h"

#include <cstring>

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devmode/color_groups.h"
#include "driver/entry/printer_access.h"
#include "driver/job/image_job_record.h"
#include "driver/settings/settings_folder.h"

namespace velmora {
namespace {

// What an entry is taken to need beside key and value: "=", the terminator and a numbered key's number.
constexpr size_t kEntryMargin = 6;

constexpr int16_t kNoColorManagement = 1;  // imageValueA, as the next
constexpr int16_t kProfileManagement = 2;

struct ColorFormat {
    uint32_t code;  // imageMode
    const char* name;
};
constexpr ColorFormat kColorFormats[] = {
    {0, "OCM_COLOR_NONE"},        {1, "OCM_COLOR_BGR24"},     {2, "OCM_COLOR_RGB24"},     {4, "OCM_COLOR_BGR32"},
    {8, "OCM_COLOR_RGB32"},       {16, "OCM_COLOR_GRAY8"},    {32, "OCM_COLOR_GRAY4"},    {64, "OCM_COLOR_GRAY2"},
    {128, "OCM_COLOR_GRAY1"},     {256, "OCM_COLOR_CMY24"},   {512, "OCM_COLOR_CMY3"},    {4096, "OCM_COLOR_CMYK32"},
    {8192, "OCM_COLOR_CMYK6"},    {16384, "OCM_COLOR_CMYK4"}, {32768, "OCM_COLOR_CMYK7"}, {65536, "OCM_COLOR_CMYK8"},
    {131072, "OCM_COLOR_CMYK16"},
};

const char* NameOfColorFormat(uint32_t code) {
    for (const ColorFormat& format : kColorFormats) {
        if (format.code == code) {
            return format.name;
        }
    }
    return "";
}

// The keys of a group's colour options: of the first two, and the one that the others share with their number.
struct ColorKeys {
    ColorGroupId group;
    const char* intent;  // null: all options are numbered, from 0
    const char* preserveBlack;
    const char* correction;
};
constexpr ColorKeys kColorKeys[] = {
    {ColorGroupId::kText, "intentText", "preserveKText", "correctionText"},
    {ColorGroupId::kImage, "intentImage", "preserveKImage", "correctionImage"},
    {ColorGroupId::kGraphics, "intentGraphics", "preserveKGraphics", "correctionGraphics"},
    {ColorGroupId::kGeneral, nullptr, nullptr, "correctionGeneral"},
};

// Entries one behind the other in a cleared buffer.
class Entries {
  public:
    // The texts have to outlive this.
    Entries(char* buffer, size_t capacity, const TextPool& texts)
        : buffer_(buffer), capacity_(capacity), texts_(texts) {}

    void Add(const char* key, const char* value) {
        if (char* const place = PlaceFor(key, value)) {
            Advance(FormatAnsi(place, RoomAt(place), "%s=%s", key, value));
        }
    }
    void AddNumbered(const char* key, size_t number, const char* value) {
        if (char* const place = PlaceFor(key, value)) {
            Advance(FormatAnsi(place, RoomAt(place), "%s%d=%s", key, number, value));
        }
    }
    void AddNumber(const char* key, int number) {
        char value[16];
        FormatAnsi(value, ARRAYSIZE(value), "%d", number);
        Add(key, value);
    }
    // An entry whose key or value is a text of the description file.
    void AddText(const char* key, uint16_t valueRef) {
        char value[kShortTextCapacity];
        texts_.ReadShortText(static_cast<int16_t>(valueRef), value);
        Add(key, value);
    }
    void AddTexts(uint16_t keyRef, uint16_t valueRef) {
        char key[kShortTextCapacity];
        texts_.ReadShortText(static_cast<int16_t>(keyRef), key);
        AddText(key, valueRef);
    }

    // Bytes of all entries, those included that weren't written.
    size_t Total() const { return offset_; }

  private:
    // Where an entry is written; null where it isn't, and then counted with its whole margin.
    char* PlaceFor(const char* key, const char* value) {
        const size_t most = TextLength(key) + TextLength(value) + kEntryMargin;
        if (offset_ + most < capacity_) {
            return buffer_ + offset_;
        }
        offset_ += most;
        return nullptr;
    }
    size_t RoomAt(const char* place) const { return capacity_ - static_cast<size_t>(place - buffer_); }
    void Advance(size_t written) { offset_ += written + 1; }

    char* buffer_;
    size_t capacity_;
    const TextPool& texts_;
    size_t offset_ = 0;
};

void AddColorOptions(Entries* entries, const TextPool& texts, const DeviceModel& model, const PrivateDevMode& devMode) {
    for (const ColorKeys& keys : kColorKeys) {
        const ColorGroup& group = ColorGroupOf(keys.group);
        size_t index = 0;
        for (const ColorFeatureRecord& feature : RecordList(ColorFeatures(model, group))) {
            if (index == kColorFeaturesPerGroup) {
                break;
            }
            const int16_t selection = ColorSelection(devMode, group, index);
            const size_t position = index++;
            // A selection that names no value has an empty one.
            const bool isValue = selection >= 0 && static_cast<size_t>(selection) < CountColorValues(model, feature);
            const ColorValueRecord* const record =
                isValue ? ColorValueAt(model, feature.firstValue + selection) : nullptr;
            char value[kShortTextCapacity];
            texts.ReadShortText(record ? static_cast<int16_t>(record->firstStart) : int16_t{0}, value);
            if (keys.intent && position < 2) {
                entries->Add(position == 0 ? keys.intent : keys.preserveBlack, value);
            } else {
                entries->AddNumbered(keys.correction, position, value);
            }
        }
    }
}

void AddFeatures(Entries* entries, const JobPrinter& printer, const PrivateDevMode& devMode) {
    const DeviceInfo installed = ReadDeviceInfo(printer.printer, &printer.model);
    size_t index = 0;
    for (const FeatureRecord& feature : RecordList(printer.model.featureTable)) {
        const FeatureLine line = SelectedFeatureLine(printer.model, feature, index++, installed, devMode);
        if (line.valueRef != 0) {
            entries->AddTexts(line.keyRef, line.valueRef);
        }
    }
}

// A model without the selected resolution is described with 0 dpi, which no renderer takes for one.
void AddResolution(Entries* entries, const DeviceModel& model, const PrivateDevMode& devMode) {
    const ResolutionRecord* const resolution =
        RecordAt(model.resolutionTable, static_cast<size_t>(devMode.resolutionIndex));
    entries->AddNumber("dpi.x", resolution ? resolution->xDpi : 0);
    entries->AddNumber("dpi.y", resolution ? resolution->yDpi : 0);
}

// The texts that are converted, all before anything is written.
struct ConvertedNames {
    HeapOwner<char> driverName;
    HeapOwner<char> descriptionPath;

    // False where memory ran out.
    bool Convert(HANDLE printer, const PrivateDevMode& devMode) {
        WCHAR name[MAX_PATH];
        GetPrinterDriverName(printer, name);
        driverName = Narrow(name);
        WCHAR path[ARRAYSIZE(devMode.descriptionPath) + 1] = {};
        memcpy(path, devMode.descriptionPath, sizeof(devMode.descriptionPath));
        descriptionPath = Narrow(path);
        return driverName && descriptionPath;
    }
};

// Converts the profile's name where it is needed; false where memory ran out.
bool ConvertProfile(const WCHAR* printerName, const PrivateDevMode& devMode, HeapOwner<char>* profile) {
    if (devMode.imageValueA != kProfileManagement) {
        return true;
    }
    WCHAR name[MAX_PATH];
    ReadProfileName(printerName, name, ARRAYSIZE(name));
    *profile = Narrow(name);
    return static_cast<bool>(*profile);
}

bool BuildText(char* buffer, DWORD* size, const WCHAR* jobName, const JobPrinter& printer,
               const PrivateDevMode& devMode) {
    ConvertedNames names;
    HeapOwner<char> profile;
    const HeapOwner<char> convertedJobName = jobName ? Narrow(jobName) : HeapOwner<char>();
    if (!names.Convert(printer.printer, devMode) || !ConvertProfile(printer.name, devMode, &profile) ||
        (jobName && !convertedJobName)) {
        return false;
    }
    const DeviceModel& model = printer.model;
    const size_t capacity = buffer ? *size : 0;
    TextPool texts(printer.descriptionFile);
    texts.Load();
    Entries entries(buffer, capacity, texts);
    entries.Add("modelName", names.driverName.Get());
    entries.Add("xpiName", names.descriptionPath.Get());
    entries.Add("format", NameOfColorFormat(devMode.imageMode));
    AddColorOptions(&entries, texts, model, devMode);
    entries.Add("cmm", devMode.imageValueA == kNoColorManagement ? "FALSE" : "TRUE");
    if (profile) {
        entries.Add("profile", profile.Get());
    }
    AddResolution(&entries, model, devMode);
    entries.AddNumber("contrast", devMode.psContrast);
    entries.AddNumber("brightness", devMode.psBrightness);
    if (convertedJobName) {
        entries.Add("jobName", convertedJobName.Get());
    }
    if (model.jobTextRef != 0 && model.extraKeywordTable) {
        entries.AddTexts(model.jobTextRef, static_cast<uint16_t>(devMode.extraKeywordIndex));
    }
    AddFeatures(&entries, printer, devMode);
    // The terminator of the whole block. Nobody may take text for a record.
    size_t needed = entries.Total() + 1;
    if (needed == sizeof(ImageJobRecord)) {
        ++needed;
    }
    *size = static_cast<DWORD>(needed);
    return needed <= capacity;
}

bool BuildRecord(char* buffer, DWORD* size, const JobPrinter& printer, VelmoraDevMode* devMode) {
    const size_t capacity = buffer ? *size : 0;
    if (capacity < sizeof(ImageJobRecord)) {
        *size = sizeof(ImageJobRecord);
        return false;
    }
    ConvertedNames names;
    if (!names.Convert(printer.printer, devMode->privatePart)) {
        return false;
    }
    *size = sizeof(ImageJobRecord);
    FillImageJobRecord(names.driverName.Get(), names.descriptionPath.Get(), devMode,
                       reinterpret_cast<ImageJobRecord*>(buffer));
    return true;
}

}  // namespace

bool BuildJobDescription(char* buffer, DWORD* size, const WCHAR* jobName, const JobPrinter& printer,
                         VelmoraDevMode* devMode) {
    if (buffer) {
        memset(buffer, 0, *size);
    }
    return (printer.model.descriptionFlags & kDescriptionsAreText) != 0
               ? BuildText(buffer, size, jobName, printer, devMode->privatePart)
               : BuildRecord(buffer, size, printer, devMode);
}

}  // namespace velmora
