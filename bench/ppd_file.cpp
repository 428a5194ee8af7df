#include "bench/ppd_file.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "bench/bench.h"
#include "driver/devdesc/model_tables.h"

namespace velmora {
namespace {

constexpr const char* kHeader = R"ppd(*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: UTF-8
*PCFileName: "BENCH.PPD"
*Manufacturer: "Bench"
*Product: "(Bench)"
*ModelName: "Bench"
*ShortNickName: "Bench"
*NickName: "Bench"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*FileSystem: False
*Throughput: "1"
*TTRasterizer: Type42
)ppd";

constexpr const char* kPpdFinishing = "Finishing";

struct Choice {
    std::string name;
    std::string text;
    std::string code;
};

// What ends or divides a PPD file's texts is replaced.
std::string Plain(std::string text, const char* reserved) {
    std::ranges::replace_if(
        text, [&](char c) { return std::string_view(reserved).find(c) != std::string_view::npos; }, '\'');
    return text;
}

template <class Record, class Code>
std::vector<Choice> ChoicesOf(const char* option, const std::vector<Record>& records, Code code) {
    std::vector<Choice> choices;
    for (const Record& record : records) {
        choices.push_back({PpdChoice(option, choices.size()), record.name, code(record)});
    }
    return choices;
}

std::string OptionText(const std::string& option, const std::string& text, const std::vector<Choice>& choices) {
    if (choices.empty()) {
        return {};
    }
    std::string block = "*OpenUI *" + option + "/" + Plain(text, ":/\"") +
                        ": PickOne\n*OrderDependency: 10 AnySetup *" + option + "\n*Default" + option + ": " +
                        choices.front().name + "\n";
    for (const Choice& choice : choices) {
        block += "*" + option + " " + choice.name + "/" + Plain(choice.text, ":/\"") + ": \"" +
                 Plain(choice.code, "\"") + "\"\n";
    }
    return block + "*CloseUI: *" + option + "\n";
}

// In points.
std::string SizeText(const PaperSource& paper) {
    constexpr double kPointsPerTenth = 72 / 254.0;
    char text[48];
    std::snprintf(text, sizeof(text), "%.2f %.2f", paper.width * kPointsPerTenth, paper.length * kPointsPerTenth);
    return text;
}

std::string PapersText(const ModelSource& model) {
    const auto code = [](const PaperSource& paper) { return "<</PageSize[" + SizeText(paper) + "]>>setpagedevice"; };
    const std::vector<Choice> papers = ChoicesOf(kPpdPaper, model.papers, code);
    std::string text = OptionText(kPpdPaper, "Paper", papers) + OptionText("PageRegion", "Paper", papers);
    for (const char* keyword : {"ImageableArea", "PaperDimension"}) {
        text += std::string("*Default") + keyword + ": " + papers.front().name + "\n";
        for (size_t i = 0; i < papers.size(); ++i) {
            text += std::string("*") + keyword + " " + papers[i].name + ": \"" + (keyword[0] == 'I' ? "12 12 " : "") +
                    SizeText(model.papers[i]) + "\"\n";
        }
    }
    return text;
}

// "*OPTION CHOICE" of each record for which the constraint may hold; one empty text where it says nothing of them.
using Conditions = std::vector<std::string>;

template <class Record, class Holds>
Conditions ConditionsOf(const char* option, const std::vector<Record>& records, bool isAny, Holds holds) {
    Conditions conditions;
    for (size_t i = 0; i < records.size() && !isAny; ++i) {
        if (holds(records[i])) {
            conditions.push_back(std::string("*") + option + " " + PpdChoice(option, i) + " ");
        }
    }
    return isAny ? Conditions{""} : conditions;
}

bool HoldsForPaper(const ConstraintRecord& record, const PaperSource& paper) {
    if (paper.id < kPaperSetIds) {
        return ContainsPaper(record.papers, paper.id);
    }
    return ContainsPaper(record.papers, kCustomInSet) && paper.width == record.minWidth &&
           paper.length == record.minLength;
}

std::string ConstraintsText(const ModelSource& model) {
    std::string text;
    for (const ConstraintSource& constraint : model.constraints) {
        const ConstraintRecord& record = constraint.record;
        constexpr uint32_t kBothSides = 1;
        if ((record.flags & ~kBothSides) != 0) {
            continue;
        }
        const bool isAnyPaper = std::ranges::all_of(record.papers.bytes, [](uint8_t byte) { return byte == 0; });
        const Conditions all[] = {
            ConditionsOf(kPpdPaper, model.papers, isAnyPaper,
                         [&](const PaperSource& paper) { return HoldsForPaper(record, paper); }),
            ConditionsOf(kPpdTray, model.trays, record.binMask == 0,
                         [&](const TraySource& tray) { return (tray.mask & record.binMask) != 0; }),
            ConditionsOf(kPpdMedium, model.media, record.mediaMask == 0,
                         [&](const MediumSource& medium) { return (medium.mark & record.mediaMask) != 0; }),
            ConditionsOf(
                kPpdFinishing, model.extraKeywords, record.extraKeywordMask == 0,
                [&](const ExtraKeywordSource& keyword) { return (keyword.mask & record.extraKeywordMask) != 0; }),
            record.flags == 0 ? Conditions{""} : Conditions{"*Duplex DuplexNoTumble ", "*Duplex DuplexTumble "},
        };
        Conditions joined = {""};
        for (const Conditions& conditions : all) {
            Conditions longer;
            for (const std::string& before : joined) {
                for (const std::string& condition : conditions) {
                    longer.push_back(before + condition);
                }
            }
            joined = std::move(longer);
        }
        for (const std::string& condition : joined) {
            text += "*cupsUIConstraints: \"" + condition + "\"\n";
        }
    }
    return text;
}

}  // namespace

std::string PpdChoice(const char* option, size_t index) {
    return option[0] + std::to_string(index);
}

std::string PpdText(const ModelSource& model) {
    std::string text = kHeader + PapersText(model);
    text += OptionText(kPpdTray, "Tray", ChoicesOf(kPpdTray, model.trays, [](const TraySource& tray) {
                           return "<</MediaPosition " + std::to_string(tray.binId) + ">>setpagedevice";
                       }));
    text += OptionText(kPpdMedium, "Medium",
                       ChoicesOf(kPpdMedium, model.media, [](const MediumSource& medium) { return medium.jobText; }));
    std::vector<Choice> finishing = ChoicesOf(kPpdFinishing, model.extraKeywords,
                                              [](const ExtraKeywordSource& keyword) { return keyword.jobValue; });
    finishing.insert(finishing.begin(), {"None", "None", ""});
    text += OptionText(kPpdFinishing, "Finishing", finishing);
    text += OptionText("Resolution", "Resolution",
                       ChoicesOf("Resolution", model.resolutions, [](const ResolutionSource& resolution) {
                           return "<</HWResolution[" + std::to_string(resolution.xDpi) + " " +
                                  std::to_string(resolution.yDpi) + "]>>setpagedevice";
                       }));
    text += OptionText("Duplex", "Both sides",
                       {{"None", "Off", ""}, {"DuplexNoTumble", "Long edge", ""}, {"DuplexTumble", "Short edge", ""}});
    for (size_t i = 0; i < model.features.size(); ++i) {
        const FeatureSource& feature = model.features[i];
        text += OptionText("Feature" + std::to_string(i), feature.name,
                           ChoicesOf("Option", feature.options, [&](const OptionSource& option) {
                               return "@PJL SET " + feature.jobKey + "=" + option.jobValue;
                           }));
    }
    return text + ConstraintsText(model);
}

PpdFile::PpdFile(const ModelSource& model, std::filesystem::path file) : file_(std::move(file)) {
    WriteText(file_, PpdText(model));
}

OwnedPpd PpdFile::Open() const {
    OwnedPpd ppd(ppdOpenFile(file_.c_str()));
    int line = 0;
    if (!ppd) {
        const ppd_status_t status = ppdLastError(&line);
        Require(false, file_.string() + ":" + std::to_string(line) + ": " + ppdErrorString(status));
    }
    return ppd;
}

OwnedPpd PpdFile::OpenMarked() const {
    OwnedPpd ppd = Open();
    ppdMarkDefaults(ppd.get());
    return ppd;
}

}  // namespace velmora
