// What the workbench does in a property sheet, step by step, as command lines and scripts say it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmora {

enum class SheetVerb {
    kPage,          // `text` names the page
    kSet,           // the control, to `text`
    kPress,         // the control, a button
    kControls,      // reports the controls of the page, or of the dialog in front of the sheet
    kPicture,       // of the page, or of the dialog in front of the sheet, into the file `text`
    kSheetPicture,  // of the window as a whole
    kApply,
    kOk,
    kCancel,
};

struct SheetStep {
    SheetVerb verb;
    int control = 0;
    std::string text = {};
    std::string place = {};  // where it is written, for a message: "steps.txt:3" or "--set"
};

// "ID=VALUE", or "press=ID". Throws a UsageError for what is neither.
SheetStep ParseAssignmentStep(const std::string& assignment);

// A step a line: a verb and what it takes, words in double quotes where they have blanks (\" and \\ inside), "#" before
// a comment. Throws a UsageError that names the file, the line and what was expected.
std::vector<SheetStep> ReadSheetScript(const std::filesystem::path& file);

}  // namespace velmora
