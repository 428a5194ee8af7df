#include "driver/job/pjl_block.h"

#include <algorithm>
#include <cstring>

#include "driver/base/format.h"
#include "driver/base/text.h"
#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"

namespace velmora {
namespace {

constexpr size_t kLineCapacity = 512;

// DeviceModel's mask of features that follow the margin mode instead of a selection: borderless printing alone.
constexpr uint32_t kFollowsMarginMode = 1u << 3;
constexpr uint16_t kBorderless = 1;  // marginMode

constexpr char kPostScriptHeader[] = "%!PS-Adobe-3.0\r\n";
constexpr char kJobEnd[] = "@PJL EOJ\r\n";

// A block that grows line by line.
class Block {
  public:
    Block(char* buffer, DWORD* size) : buffer_(buffer), capacity_(buffer ? *size : 0), size_(size) {}

    void Add(const char* text) { length_ += AppendText(buffer_, capacity_, length_, text); }

    // The job command with this text reference.
    void AddCommand(const TextPool& texts, uint16_t reference) {
        char command[kTextCapacity];
        texts.ReadText(static_cast<int16_t>(reference), command);
        Add(command);
    }

    // A line that sets what one text names to what another says.
    void AddSetting(const TextPool& texts, uint16_t keyRef, uint16_t valueRef) {
        char key[kShortTextCapacity];
        char value[kShortTextCapacity];
        texts.ReadShortText(static_cast<int16_t>(keyRef), key);
        texts.ReadShortText(static_cast<int16_t>(valueRef), value);
        char line[kLineCapacity];
        FormatAnsi(line, ARRAYSIZE(line), "@PJL SET %s=%s\r\n", static_cast<const char*>(key),
                   static_cast<const char*>(value));
        Add(line);
    }

    // Tells the need of a block with a terminator.
    bool Finish() {
        *size_ = static_cast<DWORD>(length_ + 1);
        return *size_ <= capacity_;
    }

  private:
    char* buffer_;
    size_t capacity_;
    DWORD* size_;
    size_t length_ = 0;
};

void AddJobName(Block* block, const DeviceModel& model, const WCHAR* jobName) {
    const char* const format =
        (model.jobNameFlags & kJobNamedByDisplay) != 0 ? "@PJL JOB DISPLAY=\"%s\"\r\n" : "@PJL JOB NAME=\"%s\"\r\n";
    const HeapOwner<char> name = Narrow(jobName);
    if (!name) {
        return;
    }
    char line[kLineCapacity];
    const size_t around = FormatAnsi(line, ARRAYSIZE(line), format, "");
    const size_t room = ARRAYSIZE(line) - 1 - around;
    if (TextLength(name.Get()) > room) {
        name.Get()[WholeCharacters(name.Get(), room)] = 0;
    }
    FormatAnsi(line, ARRAYSIZE(line), format, static_cast<const char*>(name.Get()));
    block->Add(line);
}

void AddColorModes(Block* block, const DeviceModel& model, const DEVMODEW& devMode) {
    const bool isColor = devMode.dmColor == DMCOLOR_COLOR;
    block->Add(isColor ? "@PJL SET RENDERMODE=COLOR\r\n" : "@PJL SET RENDERMODE=GRAYSCALE\r\n");
    if ((model.descriptionFlags & kJobSetsDataMode) != 0) {
        block->Add(isColor ? "@PJL SET DATAMODE=COLOR\r\n" : "@PJL SET DATAMODE=GRAYSCALE\r\n");
    }
}

void AddFeatures(Block* block, const TextPool& texts, const JobPrinter& printer, const PrivateDevMode& devMode) {
    const DeviceInfo installed = ReadDeviceInfo(printer.printer, &printer.model);
    size_t index = 0;
    for (const FeatureRecord& feature : RecordList(printer.model.featureTable)) {
        const FeatureLine line = feature.featureMask == kFollowsMarginMode
                                     ? LineOfOption(printer.model, feature, devMode.marginMode != kBorderless ? 0 : 1)
                                     : SelectedFeatureLine(printer.model, feature, index, installed, devMode);
        if (line.valueRef != 0) {
            block->AddSetting(texts, line.keyRef, line.valueRef);
        }
        ++index;
    }
}

}  // namespace

bool BuildPjlStart(char* buffer, DWORD* size, const WCHAR* jobName, const JobPrinter& printer,
                   const VelmoraDevMode& devMode) {
    const DeviceModel& model = printer.model;
    const PrivateDevMode& settings = devMode.privatePart;
    Block block(buffer, size);
    if (model.pdlType == kPdlPostScript && settings.noJobName != 0) {
        block.Add(kPostScriptHeader);
        return block.Finish();
    }
    if (jobName) {
        AddJobName(&block, model, jobName);
    }
    if (model.colorCapability == kColor) {
        AddColorModes(&block, model, devMode.publicPart);
    }
    TextPool texts(printer.descriptionFile);
    texts.Load();
    const auto resolutionIndex = static_cast<size_t>(settings.resolutionIndex);
    if (const ResolutionRecord* resolution = RecordAt(model.resolutionTable, resolutionIndex)) {
        block.AddCommand(texts, resolution->jobTextRef);
    }
    const auto mediumIndex = static_cast<size_t>(settings.mediaIndex) - 1;  // no medium, 0, leads behind every table
    if (const MediaRecord* medium = RecordAt(model.mediaTable, mediumIndex)) {
        block.AddCommand(texts, medium->jobTextRef);
    }
    if (settings.extraKeywordIndex != 0) {
        block.AddSetting(texts, model.jobTextRef, static_cast<uint16_t>(settings.extraKeywordIndex));
    }
    AddFeatures(&block, texts, printer, settings);
    return block.Finish();
}

bool BuildPjlEnd(char* buffer, DWORD* size, const JobPrinter& printer, const VelmoraDevMode& devMode) {
    if (printer.model.pdlType == kPdlXps || devMode.privatePart.noJobName != 0) {
        *size = 0;
        return true;
    }
    Block block(buffer, size);
    block.Add(kJobEnd);
    return block.Finish();
}

size_t AppendText(char* buffer, size_t capacity, size_t offset, const char* text) {
    const size_t length = TextLength(text);
    const size_t end = TextLength(buffer, capacity);
    if (std::max(offset, end) + length + 1 <= capacity) {
        memcpy(buffer + end, text, length + 1);
    }
    return length;
}

}  // namespace velmora
