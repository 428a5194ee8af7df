#include "tools/xpic/dump_description.h"

#include <algorithm>

#include "tools/xpic/compile.h"
#include "tools/xpic/read_description.h"
#include "tools/xpic/record_names.h"

namespace velmora {
namespace {

// A record without a text and one with an empty text look the same to everybody; a source says the former.
void DropEmptyLabels(ModelSource& model) {
    const auto drop = [](auto& records) {
        for (auto& record : records) {
            const std::vector<std::string>& texts = record.label.byLanguage;
            if (std::all_of(texts.begin(), texts.end(), [](const std::string& text) { return text.empty(); })) {
                record.label.byLanguage.clear();
            }
        }
    };
    drop(model.trays);
    drop(model.extraKeywords);
    drop(model.media);
    drop(model.resolutions);
    for (std::vector<KeywordSource>& list : model.keywordLists) {
        drop(list);
    }
}

}  // namespace

Dump DumpDescription(std::span<const std::byte> file, const std::string& comment, const std::string& fileStem) {
    DescriptionReading reading = ReadDescription(file);
    Dump dump{std::move(reading.findings), {}};
    if (!reading.model || HasErrors(dump.findings)) {
        return dump;
    }
    DropEmptyLabels(*reading.model);
    MakeNames(*reading.model);
    SourceStyle style{comment, fileStem, nullptr};
    LimitFaults faults;
    const Bytes own = BuildDescription(*reading.model, faults);
    FileLayout layout;
    if (!std::equal(own.begin(), own.end(), file.begin(), file.end())) {
        layout = FindLayout(own, Bytes(file.begin(), file.end()));
        style.layout = &layout;
    }
    dump.source = WriteSource(*reading.model, style);
    return dump;
}

}  // namespace velmora
