#include "tools/velmora/sheet_steps.h"

#include <charconv>
#include <fstream>
#include <optional>

#include "tools/velmora/command_error.h"

namespace velmora {
namespace {

constexpr int kHighestControl = 0xFFFF;

struct VerbForm {
    const char* name;
    SheetVerb verb;
    bool hasControl;
    bool hasText;
    const char* form;
};

constexpr VerbForm kVerbs[] = {
    {"page", SheetVerb::kPage, false, true, "page NAME"},
    {"set", SheetVerb::kSet, true, true, "set CONTROL VALUE"},
    {"press", SheetVerb::kPress, true, false, "press CONTROL"},
    {"controls", SheetVerb::kControls, false, false, "controls"},
    {"picture", SheetVerb::kPicture, false, true, "picture FILE"},
    {"sheet-picture", SheetVerb::kSheetPicture, false, true, "sheet-picture FILE"},
    {"apply", SheetVerb::kApply, false, false, "apply"},
    {"ok", SheetVerb::kOk, false, false, "ok"},
    {"cancel", SheetVerb::kCancel, false, false, "cancel"},
};

std::optional<int> ParseControl(const std::string& text) {
    int id = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
    const bool isId = error == std::errc() && end == text.data() + text.size() && id > 0 && id <= kHighestControl;
    return isId ? std::optional(id) : std::nullopt;
}

[[noreturn]] void ThrowNoControl(const std::string& place, const std::string& text) {
    throw UsageError(place + ": \"" + text + "\" is no control's id, a number from 1 to 65535");
}

std::vector<std::string> SplitWords(const std::string& line, const std::string& place) {
    std::vector<std::string> words;
    for (size_t i = 0; i < line.size();) {
        if (line[i] == ' ' || line[i] == '\t' || line[i] == '\r') {
            ++i;
            continue;
        }
        if (line[i] == '#') {
            break;
        }
        std::string word;
        if (line[i] != '"') {
            const size_t end = std::min(line.find_first_of(" \t\r", i), line.size());
            word = line.substr(i, end - i);
            i = end;
        } else {
            for (++i; i < line.size() && line[i] != '"'; ++i) {
                const bool isEscape =
                    line[i] == '\\' && i + 1 < line.size() && (line[i + 1] == '"' || line[i + 1] == '\\');
                word += line[isEscape ? ++i : i];
            }
            if (i++ == line.size()) {
                throw UsageError(place + ": a quotation mark isn't closed");
            }
        }
        words.push_back(std::move(word));
    }
    return words;
}

SheetStep ParseStep(const std::vector<std::string>& words, const std::string& place) {
    std::string known;
    for (const VerbForm& verb : kVerbs) {
        known += std::string(known.empty() ? "" : ", ") + verb.name;
        if (words[0] != verb.name) {
            continue;
        }
        if (words.size() != 1u + verb.hasControl + verb.hasText) {
            throw UsageError(place + ": expected " + verb.form);
        }
        SheetStep step = {verb.verb, 0, verb.hasText ? words.back() : "", place};
        if (verb.hasControl) {
            const std::optional<int> control = ParseControl(words[1]);
            if (!control) {
                ThrowNoControl(place, words[1]);
            }
            step.control = *control;
        }
        return step;
    }
    throw UsageError(place + ": there is no step \"" + words[0] + "\"; expected one of " + known);
}

}  // namespace

SheetStep ParseAssignmentStep(const std::string& assignment) {
    const std::string place = "--set";
    const size_t equals = assignment.find('=');
    if (equals == assignment.npos) {
        throw UsageError(place + ": \"" + assignment + "\" is neither CONTROL=VALUE nor press=CONTROL");
    }
    const std::string left = assignment.substr(0, equals);
    const std::string right = assignment.substr(equals + 1);
    const bool isPress = left == "press";
    const std::optional<int> control = ParseControl(isPress ? right : left);
    if (!control) {
        ThrowNoControl(place, isPress ? right : left);
    }
    return {isPress ? SheetVerb::kPress : SheetVerb::kSet, *control, isPress ? "" : right, place};
}

std::vector<SheetStep> ReadSheetScript(const std::filesystem::path& file) {
    std::ifstream stream(file);
    if (!stream) {
        throw UsageError(file.string() + " can't be read");
    }
    std::vector<SheetStep> steps;
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number) {
        const std::string place = file.string() + ":" + std::to_string(number);
        const std::vector<std::string> words = SplitWords(line, place);
        if (!words.empty()) {
            steps.push_back(ParseStep(words, place));
        }
    }
    return steps;
}

}  // namespace velmora
