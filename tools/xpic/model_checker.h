// The steps that judge a model, a table each.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/xpic/finding.h"
#include "tools/xpic/model_source.h"
#include "tools/xpic/text_encoding.h"

namespace velmora {

class ModelChecker {
  public:
    ModelChecker(const ModelSource& model, Findings& findings) : model_(model), findings_(findings) {}

    void CheckTexts();     // languages, link, namespace
    void CheckSettings();  // plain numbers of the model as a whole
    void CheckDefaults();  // what new device modes begin with
    void CheckRepairs();   // how many of them the checks of a device mode would repair
    void CheckCustomSizes();
    void CheckPapers();
    void CheckMargins();
    void CheckTrays();
    void CheckMedia();
    void CheckResolutions();
    void CheckMemory();
    void CheckFonts();
    void CheckFeatures();
    void CheckExtraKeywords();
    void CheckKeywordLists();
    void CheckConstraints();
    void CheckColorFeatures();
    void CheckColorModes();
    void CheckCommands();

  private:
    void Report(FindingCode code, const std::string& path, std::string what) {
        AddFinding(findings_, code, path, std::move(what));
    }

    // What the records of one list have seen so far.
    struct List {
        std::set<std::pair<int16_t, std::vector<std::string>>> labels;
        std::set<std::string> keywords;
    };
    enum class Ticket { kNeedsKeyword, kMayLackKeyword };

    // The record in messages: its name, or its display text.
    template <class Record>
    std::string Called(const Record& record) {
        return Called(record.name, record.label);
    }
    std::string Called(const std::string& name, const LocalizedText& label);

    // The label and the keyword of a record.
    template <class Record>
    void CheckRecord(const Record& record, const std::string& path, List& list, Ticket ticket) {
        CheckLabel(record.name, record.label, path, list);
        CheckKeyword(record.keyword, path, list, ticket);
    }
    void CheckLabel(const std::string& name, const LocalizedText& label, const std::string& record, List& list);
    void CheckText(const LocalizedText& text, const std::string& path);
    void CheckKeyword(const std::string& keyword, const std::string& record, List& list, Ticket ticket);
    void CheckJobCommand(const std::string& command, const std::string& record);

    bool IsPcl() const { return model_.device.pdlType == kPdlPcl6 || model_.device.pdlType == kPdlPcl5; }
    bool IsImage() const { return model_.device.pdlType == kPdlImage; }
    // Of a new device mode; false where a check would repair it.
    bool IsDefaultTrayValid() const;
    bool IsDefaultMediumValid() const;
    bool IsDefaultColorModeValid() const;
    bool IsDefaultIntentValid() const;
    bool IsColorValid() const;
    bool HasCustomSizes() const { return model_.device.customMaxWidth != 0 && model_.device.customMaxLength != 0; }

    // The position of the paper that a look-up of the id finds, or the number of papers.
    size_t FindPaper(int id) const;
    struct Size {
        int width;  // 0.1 mm
        int length;
    };
    // The position of the margins that hold for a paper in one orientation (a bit of MarginRecord.orientationMask), or
    // the number of margin records. Ids from 256 are looked for by the size.
    size_t FindMargins(int id, Size size, int orientation) const;
    void CheckPaperId(size_t position, const std::string& path);
    void CheckPaperSize(const PaperSource& paper, const std::string& path);
    void CheckPaperMargins(const PaperSource& paper, const std::string& path);
    std::string MarginPath(size_t record) const;
    std::set<size_t> UsedMargins() const;

    // Why a constraint can't match; empty when it can.
    std::string WhyNeverMatches(const ConstraintRecord& record) const;
    bool HasPaperOf(const ConstraintRecord& record) const;
    bool CanUseOptions(uint32_t flags) const;
    bool HoldsForDefaults(const ConstraintRecord& record) const;

    const ModelSource& model_;
    Findings& findings_;
    TextEncoder encoder_;
};

}  // namespace velmora
