// The model compiler on any text as a model source: no crash, the same result each time, and every fault told with a
// place of the text and with words. What compiles is read back, checked, and dumped to a source of the same bytes.
//
// Seeds are the project's model sources. An input stands where they do, so that it includes and names the same files.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "driver/devdesc/description_format.h"
#include "fuzz/stop.h"
#include "tools/xpic/check_model.h"
#include "tools/xpic/compile.h"
#include "tools/xpic/dump_description.h"

namespace {

using namespace velmora;  // NOLINT(google-build-using-namespace): the compiler under test
using fuzz::Stop;

const std::string kFile = VELMORA_MODELS_SOURCE_DIR "/fuzzed.json";

// True where the text has this line, and the line this column or ends before it.
bool HoldsPosition(std::string_view text, const Position& position) {
    size_t begin = 0;
    for (size_t line = 1; line < position.line; ++line) {
        begin = text.find('\n', begin);
        if (begin == text.npos) {
            return false;
        }
        ++begin;
    }
    const std::string_view line = text.substr(begin, text.substr(begin).find('\n'));
    const auto characters = std::ranges::count_if(line, [](char byte) { return (byte & 0xC0) != 0x80; });
    return position.column >= 1 && position.column <= static_cast<size_t>(characters) + 1;
}

// A name, a number or a phrase: something to read, on one line.
bool IsPhrase(std::string_view text) {
    return !text.empty() && text.find('\n') == text.npos && text.front() != ' ' && text.back() != ' ';
}

void CheckDiagnostic(const Diagnostic& diagnostic, std::string_view text) {
    const std::string line = FormatDiagnostic(diagnostic);
    if (diagnostic.position.line == 0 ? diagnostic.position.column != 0
                                      : diagnostic.file == kFile && !HoldsPosition(text, diagnostic.position)) {
        Stop("a fault outside the text", line);
    }
    if (diagnostic.file.empty() || !diagnostic.path.starts_with("$") || !IsPhrase(diagnostic.found) ||
        !IsPhrase(diagnostic.expected) || line.find('\n') != line.npos) {
        Stop("a fault without words", line);
    }
}

std::vector<std::string> Lines(const CompileResult& result) {
    std::vector<std::string> lines;
    for (const Diagnostic& diagnostic : result.diagnostics) {
        lines.push_back(FormatDiagnostic(diagnostic));
    }
    return lines;
}

void CheckFindings(const Findings& findings) {
    for (const Finding& finding : findings) {
        const std::string line = FormatFinding(finding, kFile);
        if (!finding.path.starts_with("$") || !IsPhrase(finding.what) || !IsPhrase(finding.why) ||
            line.find('\n') != line.npos) {
            Stop("a finding without words", line);
        }
    }
}

void CheckCompiled(const CompileResult& result) {
    CheckFindings(CheckModel(*result.model));
    const Dump dump = DumpDescription(result.bytes, "", "");
    CheckFindings(dump.findings);
    const auto error = std::ranges::find(dump.findings, Severity::kError, &Finding::severity);
    if (error != dump.findings.end()) {
        Stop("a compiled model isn't well formed", FormatFinding(*error, kFile));
    }
    const CompileResult again = CompileModelText(dump.source.text, kFile);
    if (!again.Succeeded()) {
        Stop("the dump doesn't compile", FormatDiagnostic(again.diagnostics.front()));
    }
    if (again.bytes != result.bytes) {
        Stop("the dump compiles to another file", dump.source.text);
    }
}

// Every value of a document below its root, with the array or object that holds it.
struct Slot {
    Json* holder;
    size_t index;  // of an object: of the member
    Json::iterator Place() const { return std::next(holder->begin(), static_cast<ptrdiff_t>(index)); }
    Json& Value() const { return *Place(); }
};

void CollectSlots(Json& holder, std::vector<Slot>& slots) {
    for (size_t i = 0; holder.is_structured() && i < holder.size(); ++i) {
        slots.push_back({&holder, i});
        CollectSlots(slots.back().Value(), slots);
    }
}

// One change that leaves a document a document: most of what it makes differs from a model in one thing.
void ChangeDocument(Json& root, std::minstd_rand& random) {
    std::vector<Slot> slots;
    CollectSlots(root, slots);
    if (slots.empty()) {
        return;
    }
    const auto below = [&](size_t end) { return std::uniform_int_distribution<size_t>(0, end - 1)(random); };
    const Slot& slot = slots[below(slots.size())];
    Json& value = slot.Value();
    switch (below(6)) {
        case 0:
            slot.holder->erase(slot.Place());
            break;
        case 1:
            if (slot.holder->is_array()) {
                slot.holder->push_back(Json(value));
            } else {
                slot.holder->erase(slot.Place());
            }
            break;
        case 2:
            value = Json(slots[below(slots.size())].Value());
            break;
        case 3:
            if (slot.holder->is_array()) {
                std::swap(value, (*slot.holder)[below(slot.holder->size())]);
            }
            break;
        default: {
            constexpr int64_t kNumbers[] = {-1, 0, 1, 2, 255, 256, 512, 8191, 32767, 32768, 65535, 65536, 0xFFFFFFFF};
            if (value.is_boolean()) {
                value = !value.get<bool>();
            } else if (value.is_number_integer() && below(2) == 0) {
                value = static_cast<int64_t>(value.get<uint64_t>() + below(3) - 1);
            } else if (value.is_number()) {
                value = kNumbers[below(std::size(kNumbers))];
            } else if (value.is_string() && !value.get_ref<std::string&>().empty()) {
                std::string& text = value.get_ref<std::string&>();
                const size_t place = below(text.size());
                text = below(2) == 0 ? text.substr(0, place) : text + text.substr(place);
            }
        }
    }
}

// Removes the values at some paths.
void RemoveValues(Json& holder, const std::string& path, const std::set<std::string>& paths) {
    for (size_t i = holder.is_structured() ? holder.size() : 0; i-- > 0;) {
        const Slot slot{&holder, i};
        const std::string place = holder.is_object() ? MemberPath(path, slot.Place().key()) : ElementPath(path, i);
        if (paths.contains(place)) {
            holder.erase(slot.Place());
        } else {
            RemoveValues(slot.Value(), place, paths);
        }
    }
}

// Without what the compiler refuses, a document mostly compiles.
void RemoveFaults(Json& root) {
    constexpr int kMostRounds = 4;
    for (int round = 0; round < kMostRounds; ++round) {
        std::set<std::string> paths;
        const std::string text = root.dump(-1, ' ', false, Json::error_handler_t::replace);
        for (const Diagnostic& diagnostic : CompileModelText(text, kFile).diagnostics) {
            paths.insert(diagnostic.path);
        }
        if (paths.empty()) {
            return;
        }
        RemoveValues(root, std::string(kRootPath), paths);
    }
}

}  // namespace

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t most);

// Half of the inputs are changed as documents, and half of those mended, the others, and those that are none, as bytes.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t most, unsigned seed) {
    std::minstd_rand random(seed);
    if (seed % 2 == 0) {
        Json root = Json::parse(data, data + size, nullptr, false, true);
        if (root.is_structured()) {
            ChangeDocument(root, random);
            if (seed % 4 == 0) {
                RemoveFaults(root);
            }
            const std::string text = root.dump(1, ' ', false, Json::error_handler_t::replace);
            if (text.size() <= most) {
                memcpy(data, text.data(), text.size());
                return text.size();
            }
        }
    }
    return LLVMFuzzerMutate(data, size, most);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const CompileResult result = CompileModelText(text, kFile);
    for (const Diagnostic& diagnostic : result.diagnostics) {
        CheckDiagnostic(diagnostic, text);
    }
    if (result.Succeeded() != (result.bytes.size() > sizeof(DescriptionFileHeader))) {
        Stop("neither a description file nor a fault, or both");
    }
    const CompileResult again = CompileModelText(text, kFile);
    if (again.bytes != result.bytes || Lines(again) != Lines(result)) {
        Stop("another result the second time");
    }
    if (result.Succeeded()) {
        CheckCompiled(result);
    }
    return 0;
}
