#include "tools/xpic/source_reader.h"

#include <algorithm>

namespace velmora {

void NameIndex::Add(SourceContext& context, const std::string& path, const std::string& name) {
    const size_t position = count_++;
    if (name.empty()) {
        return;  // reported by the reader of the name
    }
    const auto [entry, isNew] = byName_.emplace(name, Entry{position, path});
    if (!isNew) {
        context.Report(path, Quote(name) + " a second time, " + context.Where(entry->second.path, path),
                       noun_ + " with a name of its own");
    }
}

std::optional<size_t> NameIndex::Resolve(SourceContext& context, const SourceValue& value) const {
    const std::optional<std::string> name = ReadString(context, value);
    if (!name) {
        return std::nullopt;
    }
    if (const auto it = byName_.find(*name); it != byName_.end()) {
        return it->second.position;
    }
    std::vector<std::string_view> known;
    for (const auto& [candidate, entry] : byName_) {
        known.push_back(candidate);
    }
    context.Report(value.path, Quote(*name), ExpectOneOf("the name of " + noun_, *name, known));
    return std::nullopt;
}

ObjectReader::ObjectReader(SourceContext& context, SourceValue value)
    : context_(context), value_(std::move(value)), isObject_(value_.json->is_object()) {
    if (!isObject_) {
        context_.Report(value_.path, Describe(*value_.json), "an object");
    }
}

ObjectReader::~ObjectReader() {
    if (!isObject_) {
        return;
    }
    if (context_.knownKeys != nullptr) {
        (*context_.knownKeys)[value_.path].insert(known_.begin(), known_.end());
    }
    for (const auto& [key, member] : value_.json->items()) {
        if (std::find(known_.begin(), known_.end(), key) == known_.end()) {
            context_.Report(PathOf(key), "an unknown key", ExpectOneOf("a known one", key, known_));
        }
    }
}

bool ObjectReader::Has(std::string_view key) {
    return Find(key).has_value();
}

std::optional<SourceValue> ObjectReader::Find(std::string_view key) {
    if (std::find(known_.begin(), known_.end(), key) == known_.end()) {
        known_.push_back(key);
    }
    if (!isObject_) {
        return std::nullopt;
    }
    const auto member = value_.json->find(std::string(key));
    if (member == value_.json->end()) {
        return std::nullopt;
    }
    return SourceValue{&*member, PathOf(key)};
}

std::optional<SourceValue> ObjectReader::Require(std::string_view key, std::string_view expected) {
    std::optional<SourceValue> member = Find(key);
    if (!member && isObject_) {
        context_.Report(PathOf(key), "nothing", std::string(expected));
    }
    return member;
}

int64_t ObjectReader::Integer(std::string_view key, Range range, std::optional<int64_t> fallback) {
    const std::optional<SourceValue> member = fallback ? Find(key) : Require(key, ExpectInteger(range));
    return (member ? ReadInteger(context_, *member, range) : fallback).value_or(0);
}

int64_t ObjectReader::Millimetres(std::string_view key, Range range, std::optional<int64_t> fallback) {
    const std::optional<SourceValue> member = fallback ? Find(key) : Require(key, "millimetres");
    return (member ? ReadMillimetres(context_, *member, range) : fallback).value_or(0);
}

int64_t ObjectReader::Choice(std::string_view key, Words words, std::optional<Range> numbers,
                             std::optional<int64_t> fallback) {
    const std::optional<SourceValue> member = fallback ? Find(key) : Require(key, ExpectWord(words, numbers, {}));
    return (member ? ReadWord(context_, *member, words, numbers) : fallback).value_or(0);
}

bool ObjectReader::Flag(std::string_view key, bool fallback) {
    const std::optional<SourceValue> member = Find(key);
    if (!member) {
        return fallback;
    }
    if (!member->json->is_boolean()) {
        context_.Report(member->path, Describe(*member->json), "true or false");
        return fallback;
    }
    return member->json->get<bool>();
}

std::string ObjectReader::FixedText(std::string_view key, size_t maxBytes, std::string_view fallback) {
    const std::optional<SourceValue> member = Find(key);
    return member ? ReadFixedText(context_, *member, maxBytes).value_or("") : std::string(fallback);
}

std::string ObjectReader::Keyword(std::string_view key, std::string_view fallback) {
    const std::string keyword = FixedText(key, TextLimit::kKeyword, fallback);
    const size_t colon = keyword.find(':');
    const std::string_view name = std::string_view(keyword).substr(colon == std::string::npos ? 0 : colon + 1);
    if (name.size() > TextLimit::kKeywordName) {
        context_.Report(PathOf(key), "a keyword of " + std::to_string(name.size()) + " bytes",
                        "at most " + std::to_string(TextLimit::kKeywordName) + " bytes behind the colon");
    }
    return keyword;
}

LocalizedText ObjectReader::Localized(std::string_view key, size_t maxBytes) {
    const std::optional<SourceValue> member = Find(key);
    return member ? ReadLocalizedText(context_, *member, maxBytes).value_or(LocalizedText{}) : LocalizedText{};
}

std::string ObjectReader::Name() {
    const std::optional<SourceValue> member = Require("name", "a name");
    const std::optional<std::string> name = member ? ReadString(context_, *member) : std::nullopt;
    if (name && name->empty()) {
        context_.Report(member->path, "an empty name", "a name");
    }
    return name.value_or("");
}

LocalizedText ObjectReader::Label(const std::string& name, size_t maxBytes, std::string_view fallback) {
    if (const std::optional<SourceValue> label = Find("label")) {
        const std::optional<LocalizedText> text = ReadLocalizedText(context_, *label, maxBytes);
        if (text && text->resourceId == 0 &&
            std::all_of(text->byLanguage.begin(), text->byLanguage.end(),
                        [](const auto& own) { return own.empty(); })) {
            context_.Report(label->path, "an empty text", "a display text");
        }
        return text.value_or(LocalizedText{});
    }
    const Json text = fallback.empty() ? name : std::string(fallback);
    const SourceValue standIn{&text, Has("name") ? PathOf("name") : value_.path};
    return ReadLocalizedText(context_, standIn, maxBytes).value_or(LocalizedText{});
}

LocalizedText ObjectReader::LabelOrNone(const std::string& name, size_t maxBytes) {
    const std::optional<SourceValue> label = Find("label");
    return label && label->json->is_null() ? LocalizedText{} : Label(name, maxBytes);
}

TicketValues ObjectReader::Ticket() {
    TicketValues values{};
    const std::optional<SourceValue> member = Find("ticketValues");
    if (!member) {
        return values;
    }
    const std::vector<SourceValue> elements = ReadElements(context_, *member);
    if (member->json->is_array() && elements.size() != values.size()) {
        context_.Report(member->path, "an array of " + std::to_string(elements.size()), "three numbers");
        return values;
    }
    for (size_t i = 0; i < elements.size(); ++i) {
        values[i] = static_cast<uint32_t>(ReadInteger(context_, elements[i], {0, UINT32_MAX}).value_or(0));
    }
    return values;
}

std::vector<SourceValue> ObjectReader::Elements(std::string_view key) {
    const std::optional<SourceValue> member = Find(key);
    return member ? ReadElements(context_, *member) : std::vector<SourceValue>{};
}

std::vector<std::pair<std::string, SourceValue>> ObjectReader::Members(std::string_view key) {
    const std::optional<SourceValue> member = Find(key);
    return member ? ReadMembers(context_, *member) : std::vector<std::pair<std::string, SourceValue>>{};
}

uint32_t ObjectReader::WordBits(std::string_view key, Words words, uint32_t fallback, std::optional<Range> numbers) {
    if (!Has(key)) {
        return fallback;
    }
    uint32_t bits = 0;
    for (const SourceValue& element : Elements(key)) {
        bits |= static_cast<uint32_t>(ReadWord(context_, element, words, numbers).value_or(0));
    }
    return bits;
}

std::vector<size_t> ObjectReader::References(std::string_view key, const NameIndex& names) {
    std::vector<size_t> positions;
    for (const SourceValue& element : Elements(key)) {
        const std::optional<size_t> position = names.Resolve(context_, element);
        if (position && std::find(positions.begin(), positions.end(), *position) == positions.end()) {
            positions.push_back(*position);
        }
    }
    return positions;
}

size_t ObjectReader::Reference(std::string_view key, const NameIndex& names, size_t fallback) {
    const std::optional<SourceValue> member = Find(key);
    return member ? names.Resolve(context_, *member).value_or(fallback) : fallback;
}

}  // namespace velmora
