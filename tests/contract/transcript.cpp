#include "tests/contract/transcript.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

#include "driver/devmode/devmode_fields.h"
#include "driver/devmode/private_devmode.h"
#include "tests/contract/contract_test.h"

namespace contract {
namespace {

using velmora::FieldDescriptor;
using velmora::FieldKind;
using velmora::VelmoraDevMode;

// The text of `capacity` characters at most; text without a terminator ends there.
template <class Character>
WideText TextAt(const uint8_t* bytes, size_t capacity) {
    WideText text;
    for (size_t i = 0; i < capacity; ++i) {
        Character character;
        memcpy(&character, bytes + i * sizeof(Character), sizeof(Character));
        if (character == 0) {
            break;
        }
        text += static_cast<WCHAR>(static_cast<std::make_unsigned_t<Character>>(character));
    }
    return text;
}

std::string ElementText(const FieldDescriptor& field, const void* part, size_t index) {
    const uint8_t* bytes = static_cast<const uint8_t*>(part) + field.offset + index * field.stride;
    switch (field.kind) {
        case FieldKind::kWideText:
            return '"' + Printable(TextAt<WCHAR>(bytes, field.width / sizeof(WCHAR))) + '"';
        case FieldKind::kAnsiText:
            return '"' + Printable(TextAt<char>(bytes, field.width)) + '"';
        case FieldKind::kBytes:
            return std::to_string(field.width) + " bytes";
        default:
            return std::to_string(velmora::ReadFieldNumber(field, part, index));
    }
}

void RecordFields(std::span<const FieldDescriptor> fields, const void* part) {
    for (const FieldDescriptor& field : fields) {
        std::string line = field.name;
        for (size_t i = 0; i < field.count; ++i) {
            line += ' ' + ElementText(field, part, i);
        }
        Record(line);
    }
}

// Tells the elements that differ and puts the actual ones into `expected`.
void CompareFields(std::span<const FieldDescriptor> fields, void* expected, const void* actual,
                   std::vector<std::string>* lines) {
    for (const FieldDescriptor& field : fields) {
        for (size_t i = 0; i < field.count; ++i) {
            const size_t place = field.offset + i * field.stride;
            const auto* after = static_cast<const char*>(actual) + place;
            auto* before = static_cast<char*>(expected) + place;
            if (memcmp(before, after, field.width) != 0) {
                lines->push_back(std::string(field.name) + "[" + std::to_string(i) + "] is " +
                                 ElementText(field, actual, i) + ", not " + ElementText(field, expected, i));
                memcpy(before, after, field.width);
            }
        }
    }
}

// What was recorded so far, by test: programs order their tests differently on the two hosts.
std::map<std::string, std::vector<std::string>>& Lines() {
    static std::map<std::string, std::vector<std::string>> lines;
    return lines;
}

// Writes the transcript when all tests have run.
class TranscriptWriter : public testing::Environment {
  public:
    void TearDown() override {
        const char* path = getenv("VELMORA_TRANSCRIPT");
        if (path == nullptr) {
            return;
        }
        std::ofstream stream(path, std::ios::binary);
        for (const auto& [test, lines] : Lines()) {
            stream << '[' << test << "]\n";
            for (const std::string& line : lines) {
                stream << line << '\n';
            }
        }
        EXPECT_TRUE(stream.flush()) << "can't write the transcript " << path;
    }
};

const testing::Environment* const kWriter = testing::AddGlobalTestEnvironment(new TranscriptWriter);

}  // namespace

std::string Hex(const uint8_t* bytes, size_t count) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (size_t i = 0; i < count; ++i) {
        if (i > 0) {
            text += ' ';
        }
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 15];
    }
    return text;
}

void Record(std::string_view line) {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    Lines()[std::string(test->test_suite_name()) + '.' + test->name()].emplace_back(line);
}

std::vector<std::string> Differences(const VelmoraDevMode& expected, const VelmoraDevMode& actual) {
    std::vector<std::string> lines;
    VelmoraDevMode rest = expected;
    CompareFields(velmora::PublicFields(), &rest.publicPart, &actual.publicPart, &lines);
    CompareFields(velmora::PrivateFields(), &rest.privatePart, &actual.privatePart, &lines);
    if (memcmp(&rest, &actual, sizeof(rest)) != 0) {
        lines.emplace_back("bytes that no field names");
    }
    return lines;
}

void RecordDevMode(const DEVMODEW* devMode) {
    const auto masked = std::make_unique<VelmoraDevMode>();
    memcpy(masked.get(), devMode, sizeof(VelmoraDevMode));
    auto& path = masked->privatePart.descriptionPath;
    const WideText name = FileName(TextOf(path));
    memset(path, 0, sizeof(path));
    memcpy(path, name.data(), name.size() * sizeof(WCHAR));

    RecordFields(velmora::PublicFields(), &masked->publicPart);
    RecordFields(velmora::PrivateFields(), &masked->privatePart);
    constexpr size_t kRow = 16;
    const auto* bytes = reinterpret_cast<const uint8_t*>(masked.get());
    for (size_t row = 0; row < sizeof(VelmoraDevMode); row += kRow) {
        const size_t count = std::min(kRow, sizeof(VelmoraDevMode) - row);
        if (std::any_of(bytes + row, bytes + row + count, [](uint8_t byte) { return byte != 0; })) {
            Record(std::to_string(row) + ": " + Hex(bytes + row, count));
        }
    }
}

}  // namespace contract
