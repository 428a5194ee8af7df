#include <algorithm>
#include <cmath>
#include <iterator>

#include "tools/xpic/byte_text.h"
#include "tools/xpic/file_content.h"
#include "tools/xpic/source_reader.h"

namespace velmora {
namespace {

constexpr size_t kMostNamesListed = 20;

const char* KindOf(const Json& json) {
    switch (json.type()) {
        case Json::value_t::null:
            return "null";
        case Json::value_t::object:
            return "an object";
        case Json::value_t::array:
            return "an array";
        default:
            return nullptr;
    }
}

std::string Describe(Range range) {
    return "from " + std::to_string(range.min) + " to " + std::to_string(range.max);
}

std::string InMillimetres(int64_t tenths) {
    std::string text = tenths < 0 ? "-" : "";
    text.append(std::to_string(std::abs(tenths) / 10));
    if (tenths % 10 != 0) {
        text.append(".").append(std::to_string(std::abs(tenths) % 10));
    }
    return text;
}

std::string JoinQuoted(const std::vector<std::string_view>& names) {
    std::string joined;
    for (std::string_view name : names) {
        joined.append(joined.empty() ? "" : ", ").append(Quote(name));
    }
    return joined;
}

// The first character of the text that the code page can't hold.
std::string_view FirstLacking(SourceContext& context, std::string_view text, const char* encoding) {
    size_t start = 0;
    while (start < text.size()) {
        size_t end = start + 1;
        while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
            ++end;
        }
        const std::string_view character = text.substr(start, end - start);
        if (!context.encoder.Encode(character, encoding)) {
            return character;
        }
        start = end;
    }
    return text;
}

// The text in a code page, or nothing and a report.
std::optional<std::string> EncodeText(SourceContext& context, const std::string& path, const std::string& text,
                                      const char* encoding, size_t maxBytes) {
    if (text.find('\0') != std::string::npos) {
        context.Report(path, Quote(text), "a text without a NUL character");
        return std::nullopt;
    }
    std::optional<std::string> encoded = context.encoder.Encode(text, encoding);
    if (!encoded) {
        context.Report(path, Quote(text),
                       "a text without " + Quote(FirstLacking(context, text, encoding)) + ", which code page " +
                           (encoding + 2) + " lacks");
        return std::nullopt;
    }
    if (encoded->size() > maxBytes) {
        context.Report(path, "a text of " + std::to_string(encoded->size()) + " bytes",
                       "at most " + std::to_string(maxBytes) + " bytes in code page " + (encoding + 2));
        return std::nullopt;
    }
    return encoded;
}

// The text of a language in an entry of "texts".
std::optional<SourceValue> TextIn(const Language& language, const SourceValue& entry) {
    const auto member = entry.json->find(std::string(language.code));
    if (member == entry.json->end() || !member->is_string()) {
        return std::nullopt;
    }
    return SourceValue{&*member, MemberPath(entry.path, language.code)};
}

}  // namespace

void SourceContext::Report(const std::string& path, std::string found, std::string expected) {
    const SourcePlace place = document.Locate(path);
    diagnostics.push_back(
        {document.FileName(place), place.position, place.path, std::move(found), std::move(expected)});
}

std::string SourceContext::Where(const std::string& earlier, const std::string& path) const {
    const SourcePlace first = document.Locate(earlier);
    const std::string line = "first on line " + std::to_string(first.position.line);
    return first.file == document.Locate(path).file ? line : line + " of " + document.FileName(first);
}

std::string Quote(std::string_view text) {
    constexpr size_t kLongestShown = 60;
    std::string quoted = Json(std::string(text)).dump(-1, ' ', false, Json::error_handler_t::replace);
    if (quoted.size() > kLongestShown) {
        size_t cut = kLongestShown - 4;
        while ((static_cast<unsigned char>(quoted[cut]) & 0xC0) == 0x80) {
            --cut;
        }
        quoted = quoted.substr(0, cut) + "...\"";
    }
    return quoted;
}

std::string Describe(const Json& json) {
    if (const char* kind = KindOf(json)) {
        return kind;
    }
    return json.is_string() ? Quote(json.get_ref<const std::string&>()) : json.dump();
}

std::string ExpectOneOf(std::string_view noun, std::string_view name, const std::vector<std::string_view>& known) {
    if (const std::string_view nearest = NearestName(name, known); !nearest.empty()) {
        return std::string(noun) + ", nearest " + Quote(nearest);
    }
    if (known.empty()) {
        return std::string(noun) + ", but there is none";
    }
    if (known.size() <= kMostNamesListed) {
        return std::string(noun) + ": " + JoinQuoted(known);
    }
    return std::string(noun);
}

std::string ExpectInteger(Range range) {
    return "a whole number " + Describe(range);
}

std::string ExpectWord(Words words, std::optional<Range> numbers, std::string_view given) {
    std::vector<std::string_view> names;
    for (const Word& word : words) {
        names.push_back(word.name);
    }
    const std::string known = ExpectOneOf("a word", given, names);
    const bool isSlip = !NearestName(given, names).empty();
    return numbers && !isSlip ? known + ", or a number " + Describe(*numbers) : known;
}

std::optional<int64_t> ReadInteger(SourceContext& context, const SourceValue& value, Range range) {
    const Json& json = *value.json;
    const bool tooLarge = json.is_number_unsigned() && json.get<uint64_t>() > static_cast<uint64_t>(INT64_MAX);
    if (!json.is_number_integer() || tooLarge || json.get<int64_t>() < range.min || json.get<int64_t>() > range.max) {
        context.Report(value.path, Describe(json), ExpectInteger(range));
        return std::nullopt;
    }
    return json.get<int64_t>();
}

std::optional<int64_t> ReadMillimetres(SourceContext& context, const SourceValue& value, Range range) {
    const Json& json = *value.json;
    const double tenths = json.is_number() ? json.get<double>() * 10 : NAN;
    if (!(tenths >= static_cast<double>(range.min) - 0.001 && tenths <= static_cast<double>(range.max) + 0.001) ||
        std::abs(tenths - std::round(tenths)) > 0.001) {
        context.Report(
            value.path, Describe(json),
            "millimetres in steps of 0.1, from " + InMillimetres(range.min) + " to " + InMillimetres(range.max));
        return std::nullopt;
    }
    return std::llround(tenths);
}

std::optional<int64_t> ReadWord(SourceContext& context, const SourceValue& value, Words words,
                                std::optional<Range> numbers) {
    const Json& json = *value.json;
    if (json.is_string()) {
        for (const Word& word : words) {
            if (word.name == json.get_ref<const std::string&>()) {
                return word.value;
            }
        }
        context.Report(value.path, Describe(json), ExpectWord(words, numbers, json.get_ref<const std::string&>()));
        return std::nullopt;
    }
    if (numbers && json.is_number_integer() && json.get<int64_t>() >= numbers->min &&
        json.get<int64_t>() <= numbers->max) {
        return json.get<int64_t>();
    }
    context.Report(value.path, Describe(json), ExpectWord(words, numbers, {}));
    return std::nullopt;
}

std::optional<std::string> ReadString(SourceContext& context, const SourceValue& value) {
    if (!value.json->is_string()) {
        context.Report(value.path, Describe(*value.json), "a text");
        return std::nullopt;
    }
    return value.json->get<std::string>();
}

std::optional<std::string> ReadFixedText(SourceContext& context, const SourceValue& value, size_t maxBytes) {
    const std::optional<std::string> text = ReadString(context, value);
    return text ? EncodeText(context, value.path, *text, kFixedTextEncoding, maxBytes) : std::nullopt;
}

std::optional<LocalizedText> ReadLocalizedText(SourceContext& context, const SourceValue& value, size_t maxBytes) {
    LocalizedText text;
    const Json& json = *value.json;
    if (json.is_string()) {
        const auto meaning = context.texts.find(json.get_ref<const std::string&>());
        for (const Language* language : context.languages) {
            SourceValue own = value;
            if (meaning != context.texts.end()) {
                context.usedTexts.insert(meaning->first);
                own = TextIn(*language, meaning->second).value_or(value);
                if (own.json == value.json && language != context.languages.front()) {
                    context.missingTexts.push_back({value.path, language});
                }
            }
            std::optional<std::string> encoded = EncodeText(context, own.path, own.json->get_ref<const std::string&>(),
                                                            language->ansiEncoding, maxBytes);
            if (!encoded) {
                return std::nullopt;
            }
            text.byLanguage.push_back(std::move(*encoded));
        }
        return text;
    }
    if (!json.is_object()) {
        context.Report(value.path, Describe(json), "a text or an object with a text for each language");
        return std::nullopt;
    }
    ObjectReader object(context, value);
    if (object.Has("resource")) {
        text.resourceId = static_cast<int16_t>(object.Integer("resource", {1, INT16_MAX}, std::nullopt));
        return text.resourceId != 0 ? std::optional(text) : std::nullopt;
    }
    for (const auto& [key, given] : json.items()) {
        const Language* language = FindLanguage(key);
        if (language != nullptr &&
            std::find(context.languages.begin(), context.languages.end(), language) == context.languages.end()) {
            object.Has(language->code);
            context.Report(MemberPath(value.path, key), "a text in a language that the model hasn't",
                           "one of its \"languages\"");
        }
    }
    const std::string_view first = context.languages.front()->code;
    const std::optional<SourceValue> fallback =
        object.Require(first, "a text in the model's first language, or \"resource\"");
    for (const Language* language : context.languages) {
        std::optional<SourceValue> own = object.Find(language->code);
        if (!own) {
            own = fallback;
            context.missingTexts.push_back({value.path, language});
        }
        const std::optional<std::string> given = own ? ReadString(context, *own) : std::nullopt;
        const std::optional<std::string> encoded =
            given ? EncodeText(context, own->path, *given, language->ansiEncoding, maxBytes) : std::nullopt;
        text.byLanguage.push_back(encoded.value_or(""));
    }
    return text;
}

std::optional<Bytes> ReadBytes(SourceContext& context, const SourceValue& value) {
    if (value.json->is_string()) {
        const std::optional<std::string> text = ReadFixedText(context, value, SIZE_MAX);
        return text ? std::optional(BytesOf(*text)) : std::nullopt;
    }
    if (!value.json->is_object()) {
        context.Report(value.path, Describe(*value.json),
                       "a text, or an object with one of \"file\", \"hex\", \"base64\"");
        return std::nullopt;
    }
    ObjectReader object(context, value);
    const std::optional<SourceValue> forms[] = {object.Find("file"), object.Find("hex"), object.Find("base64")};
    const auto given = std::count_if(std::begin(forms), std::end(forms), [](const auto& form) { return form; });
    if (given != 1) {
        context.Report(value.path, given == 0 ? "no bytes" : "bytes in several forms",
                       "one of \"file\", \"hex\", \"base64\"");
        return std::nullopt;
    }
    const SourceValue& form = forms[0] ? *forms[0] : forms[1] ? *forms[1] : *forms[2];
    const std::optional<std::string> text = ReadString(context, form);
    if (!text) {
        return std::nullopt;
    }
    if (forms[0]) {
        const SourcePlace place = context.document.Locate(form.path);
        context.dataFiles.push_back(context.document.files[place.file].parent_path() / *text);
        const std::optional<std::string> content =
            ReadFileContent(context.document.files[place.file].parent_path() / *text);
        if (!content) {
            context.Report(form.path, Quote(*text), "a readable file, named from the source's folder");
            return std::nullopt;
        }
        return BytesOf(*content);
    }
    std::optional<Bytes> bytes = forms[1] ? DecodeHex(*text) : DecodeBase64(*text);
    if (!bytes) {
        context.Report(form.path, Quote(*text), forms[1] ? "pairs of hexadecimal digits" : "Base64");
    }
    return bytes;
}

std::vector<SourceValue> ReadElements(SourceContext& context, const SourceValue& value) {
    std::vector<SourceValue> elements;
    if (!value.json->is_array()) {
        context.Report(value.path, Describe(*value.json), "an array");
        return elements;
    }
    for (const Json& element : *value.json) {
        elements.push_back({&element, ElementPath(value.path, elements.size())});
    }
    return elements;
}

std::vector<std::pair<std::string, SourceValue>> ReadMembers(SourceContext& context, const SourceValue& value) {
    std::vector<std::pair<std::string, SourceValue>> members;
    if (!value.json->is_object()) {
        context.Report(value.path, Describe(*value.json), "an object");
        return members;
    }
    for (const auto& [key, member] : value.json->items()) {
        members.push_back({key, {&member, MemberPath(value.path, key)}});
    }
    return members;
}

}  // namespace velmora
