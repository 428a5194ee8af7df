#include "tools/velmora/description_report.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <map>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/escapes.h"
#include "tools/xpic/vocabulary.h"

namespace velmora {
namespace {

// A section of the file, in the order in which the compiler writes them.
struct Section {
    const char* name;
    uint32_t DescriptionFileHeader::*start;
};

constexpr Section kSections[] = {
    {"device block", &DescriptionFileHeader::deviceBlockOffset},
    {"language table", &DescriptionFileHeader::languageTableOffset},
    {"string index", &DescriptionFileHeader::stringIndexOffset},
    {"strings", &DescriptionFileHeader::stringPoolOffset},
    {"name index", &DescriptionFileHeader::nameIndexOffset},
    {"names", &DescriptionFileHeader::namePoolOffset},
    {"text index", &DescriptionFileHeader::textIndexOffset},
    {"texts", &DescriptionFileHeader::textPoolOffset},
    {"fonts", &DescriptionFileHeader::fontPoolOffset},
    {"font index", &DescriptionFileHeader::fontIndexOffset},
    {"image index", &DescriptionFileHeader::imageIndexOffset},
    {"images", &DescriptionFileHeader::imagePoolOffset},
    {"pattern index", &DescriptionFileHeader::patternIndexOffset},
    {"patterns", &DescriptionFileHeader::patternPoolOffset},
    {"command blob", &DescriptionFileHeader::blobOffset},
};

// The whole file and where its sections lie.
class FileContent {
  public:
    explicit FileContent(const PrinterModel& model) : bytes_(ReadWhole(model.File())) {
        for (const Section& section : kSections) {
            extents_.push_back({section.name, Header().*section.start, 0});
        }
        // Of sections with one start all but the last are empty.
        std::ranges::stable_sort(extents_, {}, &Extent::start);
        for (size_t i = 0; i < extents_.size(); ++i) {
            const uint64_t end = i + 1 < extents_.size() ? extents_[i + 1].start : bytes_.size();
            extents_[i].bytes = end - std::min<uint64_t>(end, extents_[i].start);
        }
    }

    // A section runs to the beginning of the next one, or to the end of the file.
    struct Extent {
        const char* name;
        uint64_t start;
        uint64_t bytes;
    };
    // By their places in the file.
    const std::vector<Extent>& Extents() const { return extents_; }

    // Entries of an index section.
    template <class Entry>
    std::vector<Entry> Entries(uint32_t DescriptionFileHeader::*start) const {
        const char* const name = std::ranges::find(kSections, start, &Section::start)->name;
        const uint64_t bytes = std::ranges::find(extents_, std::string_view(name), &Extent::name)->bytes;
        return Entries<Entry>(start, bytes / sizeof(Entry));
    }

    // `count` entries from a section's start on, or as many as the file holds.
    template <class Entry>
    std::vector<Entry> Entries(uint32_t DescriptionFileHeader::*start, uint64_t count) const {
        const uint64_t first = std::min<uint64_t>(Header().*start, bytes_.size());
        std::vector<Entry> entries(std::min(count, (bytes_.size() - first) / sizeof(Entry)));
        std::copy_n(bytes_.data() + first, entries.size() * sizeof(Entry), reinterpret_cast<char*>(entries.data()));
        return entries;
    }

  private:
    static std::string ReadWhole(HANDLE file) {
        std::string bytes(GetFileSize(file, nullptr), '\0');
        DWORD arrived = 0;
        if (SetFilePointer(file, 0, nullptr, FILE_BEGIN) != 0 ||
            !ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &arrived, nullptr) ||
            arrived < sizeof(DescriptionFileHeader)) {
            throw CommandError("the description file can't be read; install the model again");
        }
        bytes.resize(arrived);
        return bytes;
    }

    DescriptionFileHeader Header() const {
        DescriptionFileHeader header;
        memcpy(&header, bytes_.data(), sizeof(header));
        return header;
    }

    std::string bytes_;
    std::vector<Extent> extents_;
};

Table ReportSections(const PrinterModel&, const FileContent& content) {
    Table table = {"Sections of the description file",
                   "sections",
                   {{"Section", "section"}, {"Position", "position"}, {"Bytes", "bytes"}}};
    for (const auto& extent : content.Extents()) {
        table.rows.push_back({TextCell(extent.name), NumberCell(static_cast<int64_t>(extent.start)),
                              NumberCell(static_cast<int64_t>(extent.bytes))});
    }
    return table;
}

std::string LanguageName(size_t primaryId) {
    const auto language = std::ranges::find(kLanguages, primaryId, &Language::primaryId);
    return language != kLanguages.end() ? std::string(language->code) : HexNumber(primaryId, 2);
}

// The languages by where their strings begin. Most primary languages share the strings of one.
Table ReportLanguages(const PrinterModel&, const FileContent& content) {
    Table table = {"Languages of the strings",
                   "languages",
                   {{"Base", "base"}, {"Languages", "languages"}, {"All others", "servesOthers"}}};
    const auto bases = content.Entries<uint16_t>(&DescriptionFileHeader::languageTableOffset, kPrimaryLanguages);
    std::map<uint16_t, std::vector<std::string>> languages;
    for (size_t id = 0; id < bases.size(); ++id) {
        languages[bases[id]].push_back(LanguageName(id));
    }
    const auto most = std::ranges::max_element(languages, {}, [](const auto& entry) { return entry.second.size(); });
    for (auto entry = languages.begin(); entry != languages.end(); ++entry) {
        const bool servesOthers = entry == most;
        table.rows.push_back(
            {NumberCell(entry->first), servesOthers ? ListCell({}) : ListCell(entry->second), FlagCell(servesOthers)});
    }
    return table;
}

// The pattern blocks of the index, and those that resolutions name. A block's size is known by its resolutions only.
Table ReportPatterns(const PrinterModel& model, const FileContent& content) {
    Table table = {"Halftone patterns",
                   "patterns",
                   {{"Index", "index"},
                    {"Position", "position"},
                    {"Size k", "size"},
                    {"Bytes", "bytes"},
                    {"Resolutions", "resolutions"}}};
    struct Use {
        int64_t size = 0;
        std::vector<std::string> resolutions;
    };
    std::map<int64_t, Use> patterns;
    const auto index = content.Entries<uint32_t>(&DescriptionFileHeader::patternIndexOffset);
    for (size_t i = 0; i < index.size() && (i == 0 || index[i] > index[i - 1]); ++i) {
        patterns[static_cast<int64_t>(i)];
    }
    for (const ResolutionRecord& resolution : RecordList(model->resolutionTable)) {
        if (resolution.patternSize != 0) {
            Use& use = patterns[resolution.patternIndex];
            use.size = std::max<int64_t>(use.size, resolution.patternSize);
            use.resolutions.push_back(model.Localized(static_cast<int16_t>(resolution.nameRef)));
        }
    }
    for (const auto& [number, use] : patterns) {
        constexpr int64_t kBytesPerSquare = 32;
        table.rows.push_back({NumberCell(number),
                              NumberCell(ReadPatternBlock(model.File(), static_cast<int16_t>(number), nullptr, 0)),
                              use.size != 0 ? NumberCell(use.size) : EmptyCell(),
                              use.size != 0 ? NumberCell(kBytesPerSquare * use.size * use.size) : EmptyCell(),
                              ListCell(use.resolutions)});
    }
    return table;
}

Table ReportFonts(const PrinterModel& model, const FileContent& content) {
    Table table = {
        "Fonts", "fonts", {{"No.", "number"}, {"Position", "position"}, {"Bytes", "bytes"}, {"Group", "group"}}};
    const auto count = static_cast<uint64_t>(std::max<int>(model->fontCount, 0));
    const auto offsets = content.Entries<uint32_t>(&DescriptionFileHeader::fontIndexOffset, count + 1);
    // Loading the model left the groups' first records in the array, ascending. It has no end of its own.
    const PackedU16* const starts = model->fontGroups;
    size_t group = 0;
    for (size_t i = 0; i + 1 < offsets.size(); ++i) {
        group += starts && starts[group].value == i + 1 ? 1 : 0;
        table.rows.push_back({NumberCell(static_cast<int64_t>(i) + 1), NumberCell(offsets[i]),
                              NumberCell(int64_t{offsets[i + 1]} - offsets[i]),
                              starts ? NumberCell(static_cast<int64_t>(group)) : EmptyCell()});
    }
    return table;
}

Table ReportImages(const PrinterModel& model, const FileContent& content) {
    Table table = {"Images",
                   "images",
                   {{"Index", "index"},
                    {"Bytes", "bytes"},
                    {"Width", "width"},
                    {"Height", "height"},
                    {"Bits a pixel", "bitsPerPixel"}}};
    constexpr WORD kBitmapMark = 0x4D42;  // BITMAPFILEHEADER.bfType, "BM"
    const size_t count = content.Entries<uint32_t>(&DescriptionFileHeader::imageIndexOffset).size();
    for (size_t i = 0; i < std::min<size_t>(count, UINT16_MAX + 1); ++i) {
        const HeapOwner<BITMAPFILEHEADER> image = ReadImage(model.File(), static_cast<uint16_t>(i));
        if (!image || image->bfType != kBitmapMark) {
            break;
        }
        BITMAPINFOHEADER info = {};
        if (image->bfSize >= sizeof(BITMAPFILEHEADER) + sizeof(info)) {
            memcpy(&info, image.Get() + 1, sizeof(info));
        }
        const bool isKnown = info.biSize >= sizeof(info);
        table.rows.push_back({NumberCell(static_cast<int64_t>(i)), NumberCell(image->bfSize),
                              isKnown ? NumberCell(info.biWidth) : EmptyCell(),
                              isKnown ? NumberCell(info.biHeight) : EmptyCell(),
                              isKnown ? NumberCell(info.biBitCount) : EmptyCell()});
    }
    return table;
}

}  // namespace

std::vector<Table> ReportDescription(const PrinterModel& model) {
    const FileContent content(model);
    return {ReportPatterns(model, content), ReportFonts(model, content), ReportImages(model, content),
            ReportLanguages(model, content), ReportSections(model, content)};
}

}  // namespace velmora
