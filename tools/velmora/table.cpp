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

size_t CountCharacters(std::string_view utf8) {
    return static_cast<size_t>(std::ranges::count_if(utf8, [](char byte) { return !ContinuesCharacter(byte); }));
}

// Bytes of the first `count` characters.
size_t BytesOfCharacters(std::string_view utf8, size_t count) {
    size_t bytes = 0;
    while (bytes < utf8.size() && (count > 0 || ContinuesCharacter(utf8[bytes]))) {
        count -= ContinuesCharacter(utf8[bytes]) ? 0 : 1;
        ++bytes;
    }
    return bytes;
}

// True where a line may end in front of `place`: at a space, and behind a backslash or a line end as texts show them.
bool CanBreakAt(std::string_view text, size_t place) {
    const std::string_view before = text.substr(0, place);
    return text[place] == ' ' || before.ends_with("\\\\") || before.ends_with("\\n");
}

// Lines of at most `width` characters, each but the last as long as whole words make it; a longer word is cut.
std::vector<std::string> BreakLines(std::string_view text, size_t width) {
    std::vector<std::string> lines;
    while (CountCharacters(text) > width) {
        const size_t most = BytesOfCharacters(text, width);
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

// Characters of the longest word, but no more than it is worth to keep in one piece.
size_t LongestWord(std::string_view text) {
    constexpr size_t kMost = 30;
    size_t longest = 0;
    for (size_t begin = 0; begin < text.size();) {
        size_t end = begin + 1;
        while (end < text.size() && !CanBreakAt(text, end)) {
            ++end;
        }
        longest = std::max(longest, CountCharacters(text.substr(begin, end - begin)));
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
            column.width = std::max(column.width, CountCharacters(row[i].text));
            column.longestWord = std::max(column.longestWord, LongestWord(row[i].text));
            column.isNumeric &= row[i].text.empty() || row[i].json.is_number();
        }
        if (column.width > 0) {
            column.width = std::max(column.width, CountCharacters(table.columns[i].heading));
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
            const std::string fill(columns[i].width - CountCharacters(text), ' ');
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
