// The kinds of findings, each once: its code, its level and why it matters.
#pragma once

#include <string_view>

namespace velmora {

enum class Severity {
    kNote,     // works, but may not be meant
    kWarning,  // legal, but will hurt
    kError,    // the description file isn't well formed, or the model can't work
};

struct FindingKind {
    std::string_view code;
    Severity severity;
    std::string_view why;
};

inline constexpr FindingKind kFindingKinds[] = {
    // Description files that aren't well formed.
    {"file-too-short", Severity::kError, "nothing of the model can be read"},
    {"section-outside", Severity::kError, "readers get nothing, or other data, where they follow the header"},
    {"block-size", Severity::kError, "readers take the device block's size from where the language table begins"},
    {"table-outside", Severity::kError, "readers take the table for absent"},
    {"table-not-ended", Severity::kError, "readers take whatever follows for records"},
    {"tables-too-large", Severity::kError, "a model of this size has no device block that holds it"},
    {"too-many-records", Severity::kError, "the device mode has no room for the selections"},
    {"list-index", Severity::kError, "the records that it leads to don't exist"},
    {"reference-without-entry", Severity::kError, "readers get another text or none"},
    {"text-not-ended", Severity::kError, "readers get a text that runs on into other data"},
    {"text-too-long", Severity::kError, "readers cut it"},
    {"text-not-in-code-page", Severity::kError, "it can't be shown, and no source can say it"},
    {"text-empty", Severity::kError, "the reference says that there is a text, and the text says nothing"},
    {"label-missing", Severity::kError, "the record would have no display text in any language"},
    {"number-out-of-range", Severity::kError, "readers and device modes can't hold it"},
    {"size-range", Severity::kError, "no size lies within"},
    {"margins-without-papers", Severity::kError, "the record holds for nothing"},
    {"flags-disagree", Severity::kError, "each of its readers takes another of the three flags"},
    {"job-value-twice", Severity::kError, "the extra keyword's id is its job value: the second can't be selected"},
    {"fonts-not-ascending", Severity::kError, "each font record ends where the next begins"},
    {"font-outside", Severity::kError, "the records can't be copied into the printer data file"},
    {"font-groups-outside", Severity::kError, "loading the model fills the array of font groups"},
    {"image-outside", Severity::kError, "readers find no whole bitmap there"},
    {"pattern-outside", Severity::kError, "the pattern can't be copied into the printer data file"},
    {"command-outside", Severity::kError, "its bytes can't be sent"},
    {"format-limit", Severity::kError, "no description file can hold it"},
    // Description files that are legal.
    {"unknown-language", Severity::kWarning, "their strings can't be said in a source and are left out"},
    {"references-cross-languages", Severity::kWarning, "one language shows the texts of another"},
};

// The kind of a code. A misspelt one doesn't compile.
struct FindingCode {
    consteval FindingCode(const char* code) : kind(Find(code)) {}
    const FindingKind* kind;

  private:
    static consteval const FindingKind* Find(std::string_view code) {
        for (const FindingKind& kind : kFindingKinds) {
            if (kind.code == code) {
                return &kind;
            }
        }
        throw "no kind of finding has this code";
    }
};

}  // namespace velmora
