// The tables of what a printer has: papers, trays, media, resolutions, features and the lists beside them.
#include <algorithm>

#include "tools/xpic/model_limits.h"
#include "tools/xpic/source_writer.h"
#include "tools/xpic/standard_papers.h"

namespace velmora {
namespace {

// Leaves out what the source needn't say.
void WriteText(SourceWriter& writer, Json& record, const char* key, const std::string& text,
               const std::string& unsaid = {}) {
    if (text != unsaid) {
        record[key] = writer.texts.Fixed(text);
    }
}

void WriteTicketValues(Json& record, const TicketValues& values) {
    if (values != TicketValues{}) {
        record["ticketValues"] = values;
    }
}

void WriteMask(Json& record, uint32_t mask) {
    if (mask != kPlainMask) {
        record["mask"] = mask;
    }
}

void WriteLength(Json& record, const char* key, int16_t length, int16_t unsaid) {
    if (length != unsaid) {
        record[key] = InMillimetres(length);
    }
}

Json WritePaper(SourceWriter& writer, const PaperSource& paper, size_t cardsBefore) {
    const uint16_t pdlType = writer.model.device.pdlType;
    Json record = {{"name", paper.name}};
    const StandardPaper* standard = FindStandardPaper(int64_t{paper.id});
    const StandardPaper* namesake = FindStandardPaper(std::string_view(paper.name));
    const PaperSource unsaid = standard != nullptr ? PaperOf(*standard, pdlType) : PaperSource{};
    WriteLabel(writer, record, paper.label, standard != nullptr ? standard->label : std::string_view(paper.name));
    const bool counted =
        namesake == nullptr && IsPcl(pdlType) && paper.pclSizeCode < 0 && paper.id == CardPaperId(cardsBefore);
    if (standard != nullptr && namesake != standard) {
        record["id"] = standard->name;
    } else if (standard == nullptr && !counted) {
        record["id"] = paper.id;
    }
    WriteLength(record, "widthMm", paper.width, unsaid.width);
    WriteLength(record, "lengthMm", paper.length, unsaid.length);
    if (paper.isMetric != unsaid.isMetric) {
        record["metric"] = paper.isMetric;
    }
    WriteText(writer, record, "keyword", paper.keyword, unsaid.keyword);
    if (paper.fitPaperId != 0) {
        const std::vector<PaperSource>& papers = writer.model.papers;
        const auto target =
            std::find_if(papers.begin(), papers.end(), [&](const auto& other) { return other.id == paper.fitPaperId; });
        record["fit"] = target != papers.end() ? Json(target->name) : Json(paper.fitPaperId);
    }
    if (paper.pclSizeCode != unsaid.pclSizeCode) {
        record["pclSizeCode"] = paper.pclSizeCode;
    }
    WriteText(writer, record, "rendererName", paper.rendererName, unsaid.rendererName);
    WriteTicketValues(record, paper.ticketValues);
    return record.size() == 1 && standard != nullptr ? Json(paper.name) : record;
}

void WritePapers(SourceWriter& writer) {
    size_t cards = 0;
    for (const PaperSource& paper : writer.model.papers) {
        writer.root["papers"].push_back(WritePaper(writer, paper, cards));
        cards += paper.pclSizeCode < 0 ? 1 : 0;
    }
}

void WriteTrays(SourceWriter& writer) {
    const ModelSource& model = writer.model;
    Json& root = writer.root;
    if (Json made = writer.trayOptions.Made(); !made.empty()) {
        root["trayOptions"] = std::move(made);
    }
    const uint32_t installed = model.device.defaultOptionMask;
    if (!IsInstalledNamed(model)) {
        root["installedMask"] = installed;
    } else if (installed != kAlwaysInstalled) {
        root["installed"] = writer.trayOptions.Of(installed & ~kAlwaysInstalled);
    }
    for (size_t i = 0; i < model.trays.size(); ++i) {
        const TraySource& tray = model.trays[i];
        const uint32_t mask = writer.trays.records[i];
        Json record = {{"name", tray.name}};
        WriteLabel(writer, record, tray.label, tray.name);
        record["bin"] = WordOrNumber(tray.binId, kBinWords);
        if (!IsTrayMaskNamed(mask)) {
            WriteMask(record, mask);
        } else if (mask != kPlainMask) {
            record["needs"] = writer.trayOptions.Of(mask);
        }
        WriteText(writer, record, "keyword", tray.keyword);
        root["trays"].push_back(std::move(record));
    }
}

void WriteMedia(SourceWriter& writer) {
    const std::vector<MediumSource>& media = writer.model.media;
    for (size_t i = 0; i < media.size(); ++i) {
        const MediumSource& medium = media[i];
        Json record = {{"name", medium.name}};
        WriteLabel(writer, record, medium.label, medium.name);
        if (medium.mediaId != kFirstOwnMedium + i) {
            record["mediaId"] = WordOrNumber(medium.mediaId, kMediaWords);
        }
        WriteMask(record, writer.media.records[i]);
        WriteText(writer, record, "keyword", medium.keyword);
        WriteText(writer, record, "rendererName", medium.rendererName);
        WriteText(writer, record, "jobText", medium.jobText);
        WriteTicketValues(record, medium.ticketValues);
        writer.root["media"].push_back(std::move(record));
    }
}

void WriteResolutions(SourceWriter& writer) {
    for (const ResolutionSource& resolution : writer.model.resolutions) {
        Json record = {{"name", resolution.name}};
        WriteLabel(writer, record, resolution.label, resolution.name);
        record["dpi"] = resolution.xDpi;
        if (resolution.yDpi != resolution.xDpi) {
            record["verticalDpi"] = resolution.yDpi;
        }
        if (resolution.resolutionId != resolution.xDpi) {
            record["resolutionId"] = resolution.resolutionId;
        }
        WriteText(writer, record, "keyword", resolution.keyword);
        WriteText(writer, record, "jobText", resolution.jobText);
        if (resolution.pattern) {
            record["pattern"] = writer.model.patterns[*resolution.pattern].name;
        }
        WriteTicketValues(record, resolution.ticketValues);
        writer.root["resolutions"].push_back(std::move(record));
    }
}

void WriteFeatures(SourceWriter& writer) {
    if (Json made = writer.deviceOptions.Made(); !made.empty()) {
        writer.root["deviceOptions"] = std::move(made);
    }
    for (const FeatureSource& feature : writer.model.features) {
        Json record = {{"name", feature.name}};
        WriteLabel(writer, record, feature.label, feature.name);
        WriteText(writer, record, "jobKey", feature.jobKey);
        WriteText(writer, record, "keyword", feature.keyword);
        if (feature.mask != 0) {
            record["needs"] = writer.deviceOptions.Of(feature.mask);
        }
        for (const OptionSource& option : feature.options) {
            Json optionRecord = {{"name", option.name}};
            WriteLabel(writer, optionRecord, option.label, option.name);
            WriteText(writer, optionRecord, "jobValue", option.jobValue);
            WriteText(writer, optionRecord, "keyword", option.keyword);
            record["options"].push_back(std::move(optionRecord));
        }
        writer.root["features"].push_back(std::move(record));
    }
}

void WriteExtraKeywords(SourceWriter& writer) {
    const std::vector<ExtraKeywordSource>& extraKeywords = writer.model.extraKeywords;
    WriteText(writer, writer.root, "extraKeywordJobKey", writer.model.extraKeywordJobKey);
    for (size_t i = 0; i < extraKeywords.size(); ++i) {
        const ExtraKeywordSource& keyword = extraKeywords[i];
        Json record = {{"name", keyword.name}};
        WriteLabel(writer, record, keyword.label, keyword.name);
        WriteMask(record, writer.extraKeywords.records[i]);
        WriteText(writer, record, "keyword", keyword.keyword);
        WriteText(writer, record, "jobValue", keyword.jobValue);
        writer.root["extraKeywords"].push_back(std::move(record));
    }
}

void WriteKeywordLists(SourceWriter& writer) {
    for (size_t list = 0; list < kKeywordLists; ++list) {
        for (const KeywordSource& entry : writer.model.keywordLists[list]) {
            Json record = {{"name", entry.name}};
            WriteLabel(writer, record, entry.label, entry.name);
            WriteText(writer, record, "keyword", entry.keyword);
            WriteTicketValues(record, entry.ticketValues);
            writer.root[std::string(kKeywordListKeys[list])].push_back(std::move(record));
        }
    }
}

void WriteFontSubstitutions(SourceWriter& writer) {
    for (const FontSubstitution& pair : writer.model.fontSubstitutions) {
        writer.root["fontSubstitutions"].push_back(
            {{"face", writer.texts.Fixed(pair.face)}, {"printerFont", writer.texts.Fixed(pair.printerFont)}});
    }
}

}  // namespace

bool IsTrayMaskNamed(uint32_t mask) {
    return mask == kPlainMask || (mask & kAlwaysInstalled) == 0;
}

bool IsInstalledNamed(const ModelSource& model) {
    return (model.device.defaultOptionMask & kAlwaysInstalled) == kAlwaysInstalled;
}

void WriteLabel(SourceWriter& writer, Json& record, const LocalizedText& label, std::string_view plain) {
    if (label.Absent()) {
        record["label"] = nullptr;
    } else if (!writer.texts.IsPlain(label, plain)) {
        record["label"] = writer.texts.Localized(label);
    }
}

void WriteTables(SourceWriter& writer) {
    WritePapers(writer);
    WriteTrays(writer);
    WriteMedia(writer);
    WriteResolutions(writer);
    WriteFeatures(writer);
    WriteExtraKeywords(writer);
    WriteKeywordLists(writer);
    WriteFontSubstitutions(writer);
}

}  // namespace velmora
