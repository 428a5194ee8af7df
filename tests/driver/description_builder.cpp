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

void DescriptionBuilder::SetSlot(size_t slot, uint32_t offset) {
    slots_.emplace_back(slot, offset);
}

uint16_t DescriptionBuilder::AddString(std::string_view text, bool terminated) {
    return strings_.Add(std::string(text) + (terminated ? std::string(1, '\0') : ""));
}

uint16_t DescriptionBuilder::AddName(std::string_view text, bool terminated) {
    return names_.Add(std::string(text) + (terminated ? std::string(1, '\0') : ""));
}

uint16_t DescriptionBuilder::AddText(std::string_view text, bool terminated) {
    return texts_.Add(std::string(text) + (terminated ? std::string(1, '\0') : ""));
}

uint16_t DescriptionBuilder::AddImage(std::string_view bytes) {
    return images_.Add(bytes);
}

uint16_t DescriptionBuilder::AddPattern(std::string_view bytes) {
    return patterns_.Add(bytes);
}

uint16_t DescriptionBuilder::AddFont(std::string_view bytes) {
    ++fields.fontCount;
    return fonts_.Add(bytes);
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

    std::vector<PaperRecord> papers(3);
    papers[0].nameRef = builder.AddString("A4");
    papers[0].paperId = 9;
    papers[0].width = 2101;  // not quite the standard table's, so that a test sees which one was asked
    papers[0].length = 2971;
    papers[0].isMetric = 1;
    papers[1].nameRef = builder.AddString("Letter");
    papers[1].paperId = 1;
    papers[1].width = 2159;
    papers[1].length = 2794;
    papers[2].nameRef = builder.AddString("Card");
    papers[2].paperId = 300;
    papers[2].width = 1016;
    papers[2].length = 1524;
    papers[2].pclSizeCode = -1;
    builder.Table(offsetof(DeviceModel, paperTable), papers);

    builder.Table(offsetof(DeviceModel, binTable), std::vector<BinRecord>{{1, 7, 1, 0}, {0x10, 261, 1, 0}});
    std::vector<MediaRecord> media(2);
    media[0].mark = 1;
    media[0].mediaId = 257;
    media[1].mark = 2;
    media[1].mediaId = 258;
    builder.Table(offsetof(DeviceModel, mediaTable), media);

    builder.AddPattern(std::string(32, 'p'));  // something in front of the pattern blocks that are used
    std::vector<ResolutionRecord> resolutions(3);
    constexpr struct {
        int16_t id;
        uint16_t xDpi;
        uint16_t yDpi;
        int16_t patternSize;
    } kResolutions[] = {{600, 600, 600, 8}, {1200, 1200, 600, 16}, {1201, 1200, 1200, 0}};
    for (size_t i = 0; i < std::size(kResolutions); ++i) {
        resolutions[i].mark = 1;
        resolutions[i].resolutionId = kResolutions[i].id;
        resolutions[i].xDpi = kResolutions[i].xDpi;
        resolutions[i].yDpi = kResolutions[i].yDpi;
        const int16_t k = kResolutions[i].patternSize;
        resolutions[i].patternSize = k;
        if (k > 0) {
            resolutions[i].patternIndex =
                static_cast<int16_t>(builder.AddPattern(std::string(static_cast<size_t>(32 * k * k), 'q')));
        }
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
