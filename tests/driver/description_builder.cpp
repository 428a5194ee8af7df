#include "tests/driver/description_builder.h"

#include <cstring>
#include <iterator>

namespace driver_test {

using namespace velmora;  // NOLINT(google-build-using-namespace): the records of the format

DescriptionBuilder::DescriptionBuilder() : languages_(kPrimaryLanguages, 0) {
    // References count from 1.
    strings_.Add("");
    names_.Add("");
    texts_.Add("");
}

uint32_t DescriptionBuilder::Bytes(size_t slot, std::string_view bytes) {
    const auto offset = static_cast<uint32_t>(sizeof(DeviceModel) + tables_.size());
    tables_ += bytes;
    SetSlot(slot, offset);
    return offset;
}

std::string DescriptionBuilder::Build() const {
    std::string file(sizeof(DescriptionFileHeader), '\0');
    // Appends a part and returns where it begins.
    const auto put = [&file](std::string_view bytes) {
        const size_t offset = file.size();
        file += bytes;
        return static_cast<uint32_t>(offset);
    };
    std::string block(reinterpret_cast<const char*>(&fields), sizeof(fields));
    for (const auto& [slot, offset] : slots_) {
        const uint64_t stored = offset;
        memcpy(block.data() + slot, &stored, sizeof(stored));
    }
    Pool<uint32_t> fonts = fonts_;
    fonts.Add("");  // the end of the last record

    DescriptionFileHeader header = {};
    header.deviceBlockOffset = put(block + tables_);
    header.languageTableOffset =
        put({reinterpret_cast<const char*>(languages_.data()), languages_.size() * sizeof(uint16_t)});
    header.stringIndexOffset = put(strings_.Index());
    header.stringPoolOffset = put(strings_.bytes);
    header.textIndexOffset = put(texts_.Index());
    header.fontIndexOffset = put(fonts.Index());
    header.textPoolOffset = put(texts_.bytes);
    header.fontPoolOffset = put(fonts.bytes);
    header.imageIndexOffset = put(images_.Index());
    header.imagePoolOffset = put(images_.bytes);
    header.blobOffset = put(blob);
    header.blobSize = static_cast<uint32_t>(blob.size());
    header.patternIndexOffset = put(patterns_.Index());
    header.patternPoolOffset = put(patterns_.bytes);
    header.nameIndexOffset = put(names_.Index());
    header.namePoolOffset = put(names_.bytes);
    memcpy(file.data(), &header, sizeof(header));
    return file;
}

DescriptionFileHeader& HeaderOf(std::string& file) {
    return *reinterpret_cast<DescriptionFileHeader*>(file.data());
}

std::string OptionBytes(const std::vector<uint16_t>& nameRefs, uint16_t pdlType) {
    std::string options;
    for (const uint16_t nameRef : nameRefs) {
        OptionRecord record = {};
        record.nameRef = nameRef;
        options.append(reinterpret_cast<const char*>(&record), sizeof(record));
        options.resize(options.size() + (pdlType == kPdlImage ? 2 : 0));
    }
    return options;
}

DescriptionBuilder SmallModel(uint16_t pdlType, uint16_t colorCapability) {
    DescriptionBuilder builder;
    builder.blob = std::string(1000, 'b');
    DeviceModel& fields = builder.fields;
    fields.pdlType = pdlType;
    fields.modelCode = 0x4321;
    fields.customMinWidth = 900;
    fields.customMaxWidth = 2970;
    fields.customMinLength = 1480;
    fields.customMaxLength = 4320;
    fields.defaultOptionMask = 0x11;
    fields.memoryKeyBase = 3;
    fields.memoryKeyStep = 1;
    fields.defaultBin = 7;
    fields.defaultResolution = 0;
    fields.defaultFontSize = 12;
    fields.colorCapability = colorCapability;
    fields.defaultOptionFlags = 0x100;
    fields.defaultIcmIntent = 2;
    fields.defaultMedia = 2;

    // A4 isn't quite the standard table's, so that a test sees which one was asked.
    builder.Table(offsetof(DeviceModel, paperTable),
                  std::vector<PaperRecord>{{builder.AddString("A4"), 9, 0, 2101, 2971, 1, {}, 0, 0, 0, {}},
                                           {builder.AddString("Letter"), 1, 0, 2159, 2794, 0, {}, 0, 0, 0, {}},
                                           {builder.AddString("Card"), 300, 0, 1016, 1524, 0, {}, -1, 0, 0, {}}});
    builder.Table(offsetof(DeviceModel, binTable), std::vector<BinRecord>{{1, 7, 1, 0}, {0x10, 261, 1, 0}});
    builder.Table(offsetof(DeviceModel, mediaTable),
                  std::vector<MediaRecord>{{1, 0, 0, 0, 0, 257, {}}, {2, 0, 0, 0, 0, 258, {}}});

    builder.AddPattern(std::string(32, 'p'));  // something in front of the pattern blocks that are used
    std::vector<ResolutionRecord> resolutions = {{1, 600, 0, 0, 600, 600, 8, 0, 0, {}},
                                                 {1, 1200, 0, 0, 1200, 600, 16, 0, 0, {}},
                                                 {1, 1201, 0, 0, 1200, 1200, 0, 0, 0, {}}};
    for (ResolutionRecord& record : resolutions) {
        const auto bytes = static_cast<size_t>(32 * record.patternSize * record.patternSize);
        record.patternIndex = bytes > 0 ? static_cast<int16_t>(builder.AddPattern(std::string(bytes, 'q'))) : 0;
    }
    builder.Table(offsetof(DeviceModel, resolutionTable), resolutions);

    MarginRecord margins = {};
    margins.mark = 1;
    memset(&margins.papers, 0xFF, sizeof(margins.papers));
    margins.maxWidth = 2970;
    margins.maxLength = 4320;
    margins.orientationMask = 3;
    margins.unit = 600;
    margins.leftMargin = 100;
    margins.topMargin = 110;
    margins.rightMargin = 120;
    margins.bottomMargin = 130;
    builder.Table(offsetof(DeviceModel, marginTable), std::vector<MarginRecord>{margins});

    const uint16_t option = builder.AddString("Option");
    builder.Bytes(offsetof(DeviceModel, optionTable), OptionBytes({option, option, 0, 0}, pdlType));
    builder.Table(offsetof(DeviceModel, featureTable),
                  std::vector<FeatureRecord>{{option, 0, 0, 0, 0}, {option, 0, 0, 3, 0}});

    builder.Table(offsetof(DeviceModel, memoryTable), std::vector<MemoryRecord>{{3, 64}, {4, 128}, {5, 256}});
    builder.Text(offsetof(DeviceModel, defaultFontA), "CG Times");
    builder.Text(offsetof(DeviceModel, defaultFontB), "Univers");
    return builder;
}

}  // namespace driver_test
