#include "tools/velmora/table.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <numeric>
#include <utility>

namespace velmora {
namespace {

constexpr std::string_view kGap = "  ";
constexpr size_t kLeastWidth = 6;  // below this a column isn't made narrower

bool ContinuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Ranges of characters that terminals show in two places: East Asian scripts, punctuation and full-width forms.
constexpr struct {
    char32_t first;
    char32_t last;
} kFullWidth[] = {{0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0xA4CF}, {0xAC00, 0xD7A3},  {0xF900, 0xFAFF},
                  {0xFE30, 0xFE6F}, {0xFF01, 0xFF60}, {0xFFE0, 0xFFE6}, {0x20000, 0x3FFFD}};

// Places of the character that begins at `begin`, and the byte behind it.
size_t PlacesOfCharacter(std::string_view utf8, size_t begin, size_t* end) {
    *end = begin + 1;
    while (*end < utf8.size() && ContinuesCharacter(utf8[*end])) {
        ++*end;
    }
    const size_t bytes = *end - begin;
    char32_t character = static_cast<unsigned char>(utf8[begin]);
    if (bytes > 1) {
        character &= 0x7Fu >> std::min<size_t>(bytes, 4);  // the lead byte's own bits
    }
    for (size_t i = begin + 1; i < *end; ++i) {
        character = character << 6 | (static_cast<unsigned char>(utf8[i]) & 0x3Fu);
    }
    const bool isFullWidth = std::ranges::any_of(
        kFullWidth, [character](const auto& range) { return range.first <= character && character <= range.last; });
    return isFullWidth ? 2 : 1;
}

// Bytes of the characters that fit `places`, and the places that they take.
size_t BytesThatFit(std::string_view utf8, size_t places, size_t* taken) {
    *taken = 0;
    for (size_t begin = 0, end = 0; begin < utf8.size(); begin = end) {
        const size_t more = PlacesOfCharacter(utf8, begin, &end);
        if (more > places - *taken) {
            return begin;
        }
        *taken += more;
    }
    return utf8.size();
}

size_t CountPlaces(std::string_view utf8) {
    size_t taken = 0;
    BytesThatFit(utf8, utf8.npos, &taken);
    return taken;
}

// True where a line may end in front of `place`: at a space, and behind a backslash or a line end as texts show them.
bool CanBreakAt(std::string_view text, size_t place) {
    const std::string_view before = text.substr(0, place);
    return text[place] == ' ' || before.ends_with("\\\\") || before.ends_with("\\n");
}

// Lines of at most `width` places, each but the last as long as whole words make it; a longer word is cut.
std::vector<std::string> BreakLines(std::string_view text, size_t width) {
    std::vector<std::string> lines;
    while (CountPlaces(text) > width) {
        size_t taken = 0;
        const size_t most = BytesThatFit(text, width, &taken);
        size_t end = most;
        while (end > 0 && !CanBreakAt(text, end)) {
            --end;
        }
        end = end > 0 ? end : most;
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(text[end] == ' ' ? end + 1 : end);
    }
    lines.emplace_back(text);
    return lines;
}

// Places of the longest word, but no more than it is worth to keep in one piece.
size_t LongestWord(std::string_view text) {
    constexpr size_t kMost = 30;
    size_t longest = 0;
    for (size_t begin = 0; begin < text.size();) {
        size_t end = begin + 1;
        while (end < text.size() && !CanBreakAt(text, end)) {
            ++end;
        }
        longest = std::max(longest, CountPlaces(text.substr(begin, end - begin)));
        begin = end;
    }
    return std::min(longest, kMost);
}

// A column as it is printed.
struct TextColumn {
    size_t index;
    size_t width;
    size_t longestWord;
    bool isNumeric;
};

std::vector<TextColumn> LayOut(const Table& table) {
    std::vector<TextColumn> columns;
    for (size_t i = 0; i < table.columns.size(); ++i) {
        TextColumn column = {i, 0, LongestWord(table.columns[i].heading), true};
        for (const std::vector<Cell>& row : table.rows) {
            column.width = std::max(column.width, CountPlaces(row[i].text));
            column.longestWord = std::max(column.longestWord, LongestWord(row[i].text));
            column.isNumeric &= row[i].text.empty() || row[i].json.is_number();
        }
        if (column.width > 0) {
            column.width = std::max(column.width, CountPlaces(table.columns[i].heading));
            columns.push_back(column);
        }
    }
    const auto lineWidth = [&] {
        return std::accumulate(columns.begin(), columns.end(), (columns.size() - 1) * kGap.size(),
                               [](size_t sum, const TextColumn& column) { return sum + column.width; });
    };
    // The widest column gives way, until two are equally wide and give way in turn. Words are broken only where it
    // can't be helped, numbers never.
    for (const bool keepsWords : {true, false}) {
        const auto slack = [&](const TextColumn& column) {
            const size_t least = keepsWords || column.isNumeric ? column.longestWord : kLeastWidth;
            return column.width > least ? column.width : 0;
        };
        while (!columns.empty() && lineWidth() > kTextWidth) {
            const auto widest = std::ranges::max_element(columns, {}, slack);
            if (slack(*widest) == 0) {
                break;
            }
            --widest->width;
        }
    }
    return columns;
}

template <class TextOf>
void AppendRow(std::string& output, const std::vector<TextColumn>& columns, TextOf textOf) {
    std::vector<std::vector<std::string>> cells;
    size_t height = 1;
    for (const TextColumn& column : columns) {
        cells.push_back(BreakLines(textOf(column.index), column.width));
        height = std::max(height, cells.back().size());
    }
    for (size_t line = 0; line < height; ++line) {
        std::string printed;
        for (size_t i = 0; i < columns.size(); ++i) {
            const std::string text = line < cells[i].size() ? cells[i][line] : std::string();
            const std::string fill(columns[i].width - CountPlaces(text), ' ');
            printed += i > 0 ? kGap : "";
            printed += columns[i].isNumeric ? fill + text : text + fill;
        }
        printed.erase(printed.find_last_not_of(' ') + 1);
        output += printed + "\n";
    }
}

Json RowsToJson(const Table& table) {
    Json rows = table.isKeyed ? Json::object() : Json::array();
    for (const std::vector<Cell>& row : table.rows) {
        Json members = Json::object();
        for (size_t i = table.isKeyed ? 1 : 0; i < table.columns.size(); ++i) {
            if (table.columns[i].key.empty()) {
                members.update(row[i].json);
            } else {
                members[table.columns[i].key] = row[i].json;
            }
        }
        if (table.isKeyed) {
            rows[row[0].text] = std::move(members);
        } else {
            rows.push_back(std::move(members));
        }
    }
    return rows;
}

std::string MarkdownText(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        escaped += std::string_view("|\\<*_").find(character) != std::string_view::npos ? "\\" : "";
        escaped += character;
    }
    return escaped;
}

}  // namespace

Cell TextCell(std::string text) {
    Json json = text;
    return {std::move(text), std::move(json)};
}

Cell EmptyCell() {
    return {"", nullptr};
}

Cell NumberCell(int64_t number) {
    return {std::to_string(number), number};
}

Cell DecimalCell(double number, int decimals) {
    char text[64];
    snprintf(text, sizeof(text), "%.*f", decimals, number);
    return {text, number};
}

Cell ListCell(const std::vector<std::string>& texts) {
    std::string text;
    for (const std::string& one : texts) {
        text += (text.empty() ? "" : ", ") + one;
    }
    return {text, texts};
}

Cell FlagCell(bool flag) {
    return {flag ? "yes" : "", flag};
}

std::string FormatText(std::span<const Table> tables) {
    std::string output;
    for (const Table& table : tables) {
        if (table.rows.empty()) {
            continue;
        }
        output += output.empty() ? "" : "\n";
        output += table.title.empty() ? "" : table.title + "\n\n";
        const std::vector<TextColumn> columns = LayOut(table);
        AppendRow(output, columns, [&](size_t i) { return table.columns[i].heading; });
        for (const std::vector<Cell>& row : table.rows) {
            AppendRow(output, columns, [&](size_t i) { return row[i].text; });
        }
    }
    return output;
}

Json ToJson(std::span<const Table> tables) {
    if (tables.size() == 1 && tables[0].key.empty()) {
        return RowsToJson(tables[0]);
    }
    Json document = Json::object();
    for (const Table& table : tables) {
        document[table.key] = RowsToJson(table);
    }
    return document;
}

std::string FormatMarkdown(const Table& table) {
    std::string output = "## " + MarkdownText(table.title) + "\n\n|";
    for (const Column& column : table.columns) {
        output += " " + MarkdownText(column.heading) + " |";
    }
    output += "\n|";
    for (size_t i = 0; i < table.columns.size(); ++i) {
        output += "---|";
    }
    output += "\n";
    for (const std::vector<Cell>& row : table.rows) {
        output += "|";
        for (const Cell& cell : row) {
            output += " " + MarkdownText(cell.text) + " |";
        }
        output += "\n";
    }
    return output;
}

std::string FormatJson(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace velmora
