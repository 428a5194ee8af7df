// The steps that turn a model into a source document. Each writes some of the root's members.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/xpic/rule_records.h"
#include "tools/xpic/source_document.h"
#include "tools/xpic/source_texts.h"
#include "tools/xpic/vocabulary.h"
#include "tools/xpic/write_source.h"

namespace velmora {

// The names of option bits: built-in ones, and made ones for the others.
class OptionNames {
  public:
    // `known` are bit numbers; `bits` all that need a name.
    OptionNames(Words known, uint32_t bits);

    // The names of these bits, an array.
    Json Of(uint32_t bits) const;
    // The made ones with their bit numbers, an object.
    Json Made() const;

  private:
    Words known_;
    uint32_t bits_;
};

// How the masks of a table's records and of the rules that are about them are written. `records` are the masks that the
// source gives, to which the loader adds what tells records apart.
struct WrittenMasks {
    std::vector<uint32_t> records;
    std::vector<RuleRecords> rules;  // by constraint record
};

struct SourceWriter {
    SourceWriter(const ModelSource& model, const SourceStyle& style);

    const ModelSource& model;
    const SourceStyle& style;
    SourceTexts texts;
    WrittenMasks trays;
    WrittenMasks media;
    WrittenMasks extraKeywords;
    OptionNames trayOptions;
    OptionNames deviceOptions;
    Json root = Json::object();
    std::vector<DataFile> files;
};

void WriteModelFields(SourceWriter& writer);
void WriteTables(SourceWriter& writer);
void WriteMargins(SourceWriter& writer);
void WriteConstraints(SourceWriter& writer);
void WritePatterns(SourceWriter& writer);
void WriteFonts(SourceWriter& writer);
void WriteImages(SourceWriter& writer);
// Commands, features and modes.
void WriteColors(SourceWriter& writer);

// Whether the names of tray options say the mask of a tray, and those that a new printer has.
bool IsTrayMaskNamed(uint32_t mask);
bool IsInstalledNamed(const ModelSource& model);
// Chooses names wherever loading them gives exactly the model's masks.
WrittenMasks ChooseTrayMasks(const ModelSource& model);
WrittenMasks ChooseMediaMasks(const ModelSource& model);
WrittenMasks ChooseExtraKeywordMasks(const ModelSource& model);

// Millimetres of 0.1 mm.
Json InMillimetres(int64_t tenths);
// The word for a number, or the number where no word stands for it.
Json WordOrNumber(int64_t value, Words words);
// The record's "label": none where `plain`, which stands in for it, says the same, null where there is no text.
void WriteLabel(SourceWriter& writer, Json& record, const LocalizedText& label, std::string_view plain);
// As a text, in hexadecimal or Base64, or in a file of its own when they are many: `fileName` is what its name ends
// with.
Json WriteBytes(SourceWriter& writer, std::span<const std::byte> bytes, const std::string& fileName);

}  // namespace velmora
