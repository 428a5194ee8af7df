// Cells and tables of a model's records, as the model's report is made of them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "driver/devdesc/model_tables.h"
#include "tools/velmora/printer_model.h"
#include "tools/velmora/table.h"
#include "tools/xpic/vocabulary.h"

namespace velmora {

// No cell's text, and null in JSON, where the text is empty.
Cell TextOrNull(std::string text);

// In hexadecimal.
Cell MaskCell(uint32_t mask);

// From 0.1 mm.
Cell MillimetreCell(int64_t tenths);

// The values of a record for the PrintTicket provider; no text where all are 0.
template <class Record>
Cell TicketCell(const Record& record) {
    uint32_t values[3];
    static_assert(sizeof(values) == sizeof(record.ticketValues));
    memcpy(values, &record.ticketValues, sizeof(values));
    const bool isUsed = std::ranges::any_of(values, [](uint32_t value) { return value != 0; });
    std::string text;
    for (const uint32_t value : values) {
        text += (text.empty() ? "" : " ") + std::to_string(value);
    }
    return {isUsed ? text : "", values};
}

// The word for a value; empty where there is none.
std::string WordFor(Words words, int64_t value);

// The words for the bits that are set; bits without a word in hexadecimal.
std::string WordsForBits(Words words, uint64_t bits);

// The options whose bits are set in DeviceInfo's installedOptions and optionFlags, by name; "bit 5" for one without.
std::vector<std::string> TrayOptionNames(uint32_t mask);
std::vector<std::string> DeviceOptionNames(uint32_t mask);

// A column of a table whose rows are a model's records: heading, JSON name, and the cell of a record.
template <class Record>
struct RecordColumn {
    Column column;
    Cell (*cell)(const PrinterModel& model, const Record& record, size_t index);
};

// A table of a list of records, a row each. Null: no rows.
template <class Record>
Table ReportRecords(std::string title, std::string key, const PrinterModel& model, const Record* records,
                    std::initializer_list<RecordColumn<Record>> columns) {
    Table table = {std::move(title), std::move(key), {}};
    for (const RecordColumn<Record>& column : columns) {
        table.columns.push_back(column.column);
    }
    for (const Record& record : RecordList(records)) {
        std::vector<Cell> row;
        for (const RecordColumn<Record>& column : columns) {
            row.push_back(column.cell(model, record, table.rows.size()));
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

// A column's cell: an expression over the model `m`, the record `r` and its position `i`.
#define VELMORA_CELL(Record, expression)                                  \
    [](const PrinterModel& m, const Record& r, size_t i) -> Cell {        \
        static_cast<void>(m), static_cast<void>(r), static_cast<void>(i); \
        return expression;                                                \
    }

}  // namespace velmora
