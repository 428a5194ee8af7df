// Tables as commands build them, once, and the three forms in which they are printed: aligned text, JSON, Markdown.
#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// JSON whose members keep the order in which they were added.
using Json = nlohmann::ordered_json;

struct Cell {
    std::string text;  // UTF-8, without line ends
    Json json;
};

// The same text in every form.
Cell TextCell(std::string text);
// An empty text; null in JSON.
Cell EmptyCell();
Cell NumberCell(int64_t number);
// As many decimals as asked for in text, the number itself in JSON.
Cell DecimalCell(double number, int decimals);
// One text after the other; an array in JSON.
Cell ListCell(const std::vector<std::string>& texts);
// "yes" or nothing; true or false in JSON.
Cell FlagCell(bool flag);

struct Column {
    std::string heading;
    // The member's name in JSON. Empty: the cells' JSON are objects, whose members join the row's.
    std::string key;
};

struct Table {
    std::string title;  // printed above the table; empty: nothing is
    std::string key;    // its member's name where several tables make one JSON document
    std::vector<Column> columns;
    std::vector<std::vector<Cell>> rows = {};
    // JSON: one object with a member for each row, named by the row's first cell, in place of an array of rows.
    bool isKeyed = false;
};

inline constexpr size_t kTextWidth = 100;  // places of a line on a terminal

// Aligned columns, each line at most kTextWidth places: cells that are too wide are continued below. Full-width
// characters take two places. Columns without any text and tables without rows are left out.
std::string FormatText(std::span<const Table> tables);

// One table without a key: its rows. Otherwise an object with a member a table.
Json ToJson(std::span<const Table> tables);

// One table with its title as a heading of the second level.
std::string FormatMarkdown(const Table& table);

// Indented, with a line end. What isn't UTF-8 is replaced.
std::string FormatJson(const Json& json);

}  // namespace velmora
