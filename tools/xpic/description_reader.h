// The steps that turn a description file into a ModelSource. Each reads some of the device block's tables.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "driver/devdesc/model_tables.h"
#include "tools/xpic/description_view.h"
#include "tools/xpic/finding.h"
#include "tools/xpic/model_limits.h"
#include "tools/xpic/model_source.h"
#include "tools/xpic/text_encoding.h"

namespace velmora {

class DescriptionReader {
  public:
    // The block lies in the view's file and is at least a DeviceModel long.
    DescriptionReader(const DescriptionView& view, std::span<const std::byte> block, Findings& findings);

    // False where the tables hold more records than a device block has room for; the model is of no use then.
    bool Read();
    ModelSource TakeModel() { return std::move(model_); }

  private:
    void Report(FindingCode code, const std::string& path, std::string what) {
        AddFinding(findings_, code, path, std::move(what));
    }
    void CheckRange(const std::string& path, int64_t value, int64_t min, int64_t max);

    void ReadLanguageTable();
    void ReadNumbers();
    void ReadTexts();

    void ReadPapers();
    void ReadTrays();
    void ReadExtraKeywords();
    void ReadMedia();
    void ReadResolutions();
    void ReadMemory();
    void ReadFeatures();
    void ReadKeywordLists();
    void ReadColorFeatures();
    void ReadColorModes();
    void ReadConstraints();
    void ReadMargins();

    // Fonts come before the tables: loading a model fills the font groups in its block.
    void ReadFonts();
    void ReadFontNames();
    void ReadImages();
    void ReadBlob();

    // Once everything is read: which language the fallback's texts are in, and whether all are text there.
    void ChooseFirstLanguage();
    void CheckLocalizedTexts();
    void ReportForeignReferences();

    // Where the table begins in the block; nothing for an absent one and one that doesn't lie in the block.
    std::optional<size_t> Table(size_t slot, const std::string& path);
    // The records from an offset of the block on up to the one that ends them.
    template <class Record>
    std::vector<Record> Records(size_t offset, const std::string& path, size_t stride = sizeof(Record));
    template <class Record>
    std::vector<Record> RecordsOf(size_t slot, const std::string& path) {
        const std::optional<size_t> table = Table(slot, path);
        return table ? Records<Record>(*table, path) : std::vector<Record>{};
    }
    // The run that begins with the record at `index` of a table.
    template <class Record>
    std::vector<Record> Run(std::optional<size_t> table, int16_t index, const std::string& path,
                            size_t stride = sizeof(Record));
    // A text that stands in the block.
    std::string BlockText(size_t offset, const std::string& path, size_t limit);

    // `which` says what text it is.
    void ReportText(const FindingKind& kind, const std::string& path, const std::string& which, size_t limit);
    std::string FixedText(const PoolText& text, const std::string& path, size_t limit);
    std::string Name(uint16_t reference, const std::string& path, size_t limit) {
        return FixedText(view_.Name(reference, limit), path, limit);
    }
    std::string JobText(uint16_t reference, const std::string& path, size_t limit) {
        return FixedText(view_.JobText(reference, limit), path, limit);
    }
    // For references where an empty text means something else than none.
    std::string NameOrNone(uint16_t reference, const std::string& path, size_t limit) {
        return NeverEmpty(reference, view_.Name(reference, limit), path, limit);
    }
    std::string JobTextOrNone(uint16_t reference, const std::string& path, size_t limit) {
        return NeverEmpty(reference, view_.JobText(reference, limit), path, limit);
    }
    std::string NeverEmpty(uint16_t reference, const PoolText& text, const std::string& path, size_t limit);
    std::string Keyword(uint16_t reference, const std::string& record);
    LocalizedText Localized(uint16_t reference, const std::string& path, size_t limit);
    // The display text of a record that would end its list without one.
    LocalizedText Label(uint16_t reference, const std::string& record, size_t limit);
    template <class Record>
    void CheckSizes(const Record& record, const std::string& path);
    void CheckSlice(const CommandSlice& slice, const std::string& path);

    const DescriptionView& view_;
    Bytes block_;  // as readers have it, font groups filled in
    Findings& findings_;
    DeviceModel record_{};  // as it stands in the file
    ModelSource model_;
    TextEncoder encoder_;
    bool tooLarge_ = false;
    size_t laidOut_ = 0;  // bytes of the records that were read, each run for itself

    struct LanguageUse {
        uint16_t base = 0;
        uint32_t strings = 0;  // references up to here are the language's own
        size_t foreign = 0;    // references beyond
        std::string firstForeign;
    };
    std::vector<LanguageUse> uses_;  // by language of the model

    // A string that was read; whether it is text is known when the languages are.
    struct StringUse {
        size_t findingsBefore;
        std::string path;
        size_t language;
        std::string_view text;
    };
    std::vector<StringUse> strings_;
    std::vector<const Language*> firstCandidates_;
};

template <class Record>
std::vector<Record> DescriptionReader::Records(size_t offset, const std::string& path, size_t stride) {
    std::vector<Record> records;
    while (!tooLarge_) {
        laidOut_ += stride;
        if (laidOut_ > UINT16_MAX) {
            tooLarge_ = true;
            Report("tables-too-large", path, "the tables have more than 65535 bytes of records, as some share theirs");
            break;
        }
        if (offset >= block_.size()) {
            Report("table-not-ended", path, "the list runs on to the device block's end");
            break;
        }
        // A list may be ended by no more than its last record's first word.
        Record record{};
        const size_t there = std::min(sizeof(Record), block_.size() - offset);
        std::memcpy(&record, block_.data() + offset, there);
        if (EndsList(record)) {
            break;
        }
        if (there < sizeof(Record)) {
            Report("table-not-ended", path, "the last record is cut by the device block's end");
            break;
        }
        records.push_back(record);
        offset += stride;
    }
    return records;
}

template <class Record>
std::vector<Record> DescriptionReader::Run(std::optional<size_t> table, int16_t index, const std::string& path,
                                           size_t stride) {
    if (!table) {
        return {};  // an absent table has no records
    }
    const size_t offset = index >= 0 ? *table + static_cast<size_t>(index) * stride : block_.size();
    if (offset >= block_.size()) {
        Report("list-index", path,
               "its list begins with the record at " + std::to_string(index) + ", which isn't there");
        return {};
    }
    return Records<Record>(offset, path, stride);
}

}  // namespace velmora
