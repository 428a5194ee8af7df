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
    // Files that say no model.
    {"unreadable", Severity::kError, "there is nothing to check"},
    {"refused", Severity::kError, "the compiler makes no description file of it"},
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
    {"job-value-twice", Severity::kError, "the extra keyword's id is its job value: the second can't be selected"},
    {"fonts-not-ascending", Severity::kError, "each font record ends where the next begins"},
    {"font-outside", Severity::kError, "the records can't be copied into the printer data file"},
    {"font-groups-outside", Severity::kError, "loading the model fills the array of font groups"},
    {"image-outside", Severity::kError, "readers find no whole bitmap there"},
    {"pattern-outside", Severity::kError, "the pattern can't be copied into the printer data file"},
    {"command-outside", Severity::kError, "its bytes can't be sent"},
    {"command-blob-size", Severity::kError, "readers take the low 16 bits of its size"},
    {"format-limit", Severity::kError, "no description file can hold it"},
    // Description files that are legal.
    {"unknown-language", Severity::kWarning, "their strings can't be said in a source and are left out"},
    {"references-cross-languages", Severity::kWarning, "one language shows the texts of another"},
    // Texts and keywords.
    {"text-unused", Severity::kNote, "it translates nothing"},
    {"missing-text", Severity::kWarning, "users of that language get another language's text or none"},
    {"no-display-text", Severity::kNote, "users see an empty line in its place"},
    {"label-twice", Severity::kNote, "users can't tell the two apart"},
    {"keyword-missing", Severity::kNote, "print tickets can't carry the choice"},
    {"keyword-without-prefix", Severity::kNote, "it is taken for one of the model's own namespace"},
    {"keyword-prefix", Severity::kWarning, "a prefix that isn't known stands for the model's own namespace"},
    {"keyword-empty", Severity::kWarning, "print tickets can't name the choice"},
    {"keyword-syntax", Severity::kWarning, "it is no XML name, which it must be in print tickets"},
    {"keyword-twice", Severity::kWarning, "a print ticket that names it always selects the first"},
    {"namespace-prefix", Severity::kWarning, "print tickets declare it for another namespace or can't declare it"},
    {"link-too-long", Severity::kWarning, "the About page reads 127 bytes of it"},
    // The model as a whole.
    {"no-papers", Severity::kWarning, "every paper then has the size of the locale's default paper"},
    {"no-a4", Severity::kWarning, "new device modes have A4, whose size is then the locale's default paper's"},
    {"no-trays", Severity::kWarning, "each check of a device mode counts a repair of its tray; three reject it"},
    {"no-media", Severity::kNote, "users can't choose a medium, and no job selects one"},
    {"no-resolutions", Severity::kWarning, "each check of a device mode counts a repair of it; three reject it"},
    {"one-resolution", Severity::kNote, "new device modes begin with the second resolution where there is one"},
    {"no-paper-page", Severity::kNote, "the printing preferences have no Paper page"},
    {"no-print-speed", Severity::kNote, "applications and print capabilities get no print rate"},
    {"setting-unused", Severity::kNote, "models like this one never read it"},
    {"image-mode", Severity::kWarning, "the job description names no raster format"},
    {"default-tray", Severity::kWarning,
     "each check of a new device mode counts a repair of its tray; three reject it"},
    {"default-tray-not-offered", Severity::kWarning, "new device modes select a tray that users don't see"},
    {"default-medium", Severity::kWarning, "each check of a new device mode counts a repair of it; three reject it"},
    {"default-resolution", Severity::kWarning, "device modes with another resolution can't be repaired"},
    {"default-resolution-unused", Severity::kNote, "new device modes begin with the second resolution in any case"},
    {"default-color-mode", Severity::kWarning,
     "each check of a new device mode counts a repair of it; three reject it"},
    {"value-repaired", Severity::kWarning, "each check of a device mode with it counts a repair; three reject it"},
    {"device-mode-rejected", Severity::kWarning,
     "three repairs of a part reject it: no device mode is accepted until it is changed"},
    {"default-memory", Severity::kNote, "the first memory size stands in for it"},
    {"installed-unused", Severity::kNote, "no tray depends on it"},
    // Papers and margins.
    {"paper-id-twice", Severity::kWarning, "every look-up finds the first of them"},
    {"paper-shadowed", Severity::kWarning, "every look-up of its id finds the other paper"},
    {"paper-id-not-looked-up", Severity::kWarning, "its size and margins are those of the locale's default paper"},
    {"paper-id-shared", Severity::kNote, "users' custom sizes are numbered from 448 and may get the same id"},
    {"card-id", Severity::kNote, "a size that the printer doesn't know has two ids then"},
    {"card-unused", Severity::kNote, "only PCL models read size codes"},
    {"paper-outside-limits", Severity::kWarning,
     "each check of a device mode with it counts a repair; three reject it"},
    {"paper-not-custom", Severity::kNote, "it can't be the paper of covers and inserted sheets, nor a scaling target"},
    {"fit-target", Severity::kWarning, "documents aren't scaled as meant"},
    {"paper-without-margins", Severity::kWarning, "its printable area is then taken a quarter inch inside each edge"},
    {"margins-leave-nothing", Severity::kWarning, "nothing can be printed on it"},
    {"margins-never-used", Severity::kWarning,
     "earlier margins hold for all its papers, or the model has none of them"},
    // What a printer has.
    {"tray-bin-twice", Severity::kWarning, "every look-up finds the first of them"},
    {"tray-not-offered", Severity::kNote, "only an INI file among the driver's files can make it available"},
    {"tray-label-cut", Severity::kNote, "applications show the first 23 characters"},
    {"medium-id-twice", Severity::kWarning, "applications can't tell the media apart"},
    {"job-command", Severity::kWarning, "printers take it for something else than a job command"},
    {"pattern-unused", Severity::kNote, "only monochrome PCL 5 models use patterns"},
    {"memory-key-twice", Severity::kNote, "the first of them is taken"},
    {"substitution-too-long", Severity::kWarning, "the substitution table has room for 31 characters"},
    {"substitution-twice", Severity::kNote, "the first of them is taken"},
    {"feature-without-options", Severity::kWarning,
     "the check of a new device mode counts a repair of its selection; three reject it"},
    {"feature-without-job-key", Severity::kWarning, "its job line has no key"},
    {"feature-never-sent", Severity::kNote, "no option has a job value, so no job says what was selected"},
    {"borderless-options", Severity::kWarning, "it follows the borderless setting, by its first and second option"},
    {"extra-keyword-key", Severity::kWarning, "the job line of the selected extra keyword has no key"},
    {"extra-keyword-default", Severity::kNote, "new device modes select the one without a job value"},
    {"extra-keyword-unsearched", Severity::kWarning, "constraints look at the first 32 extra keywords only"},
    // Constraints.
    {"constraint-never-matches", Severity::kWarning, "it forbids nothing"},
    {"constraint-on-defaults", Severity::kWarning, "users can't apply the settings that they begin with"},
    {"constraint-without-message", Severity::kNote, "users get a general message that names no setting"},
    // Colour.
    {"color-unused", Severity::kNote, "monochrome models offer no colour correction"},
    {"color-mode-kind", Severity::kWarning, "a mode is one of plain (1), system (2), manual (4) and selections (8)"},
    {"preset-selects-nothing", Severity::kWarning, "there is no such value to select"},
    {"preset-settings-unused", Severity::kWarning, "only modes with the flag 8 set their selections"},
    {"preset-without-settings", Severity::kWarning, "the mode says that it sets selections and sets none"},
    {"manual-without-features", Severity::kWarning, "there is nothing that users could set"},
    {"color-feature-without-values", Severity::kWarning, "there is nothing to select"},
    {"color-feature-sends-nothing", Severity::kNote, "no value has a command or a job value"},
    {"object-commands-twice", Severity::kWarning, "a group has one pair of commands: the later feature's take it"},
    {"command-empty", Severity::kNote, "nothing is sent for it"},
    {"commands-unused", Severity::kNote, "no colour value sends them"},
    {"command-blob", Severity::kWarning, "device modes can refer to the first 32767 bytes only"},
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
