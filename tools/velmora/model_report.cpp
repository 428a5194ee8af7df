#include "tools/velmora/model_report.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "driver/devdesc/device_model.h"
#include "driver/devdesc/model_tables.h"
#include "platform/kernel/text.h"
#include "tools/velmora/description_report.h"
#include "tools/velmora/escapes.h"
#include "tools/velmora/model_cells.h"
#include "tools/velmora/model_colors.h"
#include "tools/velmora/model_records.h"
#include "tools/velmora/model_values.h"
#include "tools/velmora/printer_model.h"

namespace velmora {
namespace {

Table ReportFontSubstitutions(const PrinterModel& model) {
    Table table = {"Font substitutions", "fontSubstitutions", {{"Font", "font"}, {"Printed with", "printerFont"}}};
    const char* text = model->defaultFontSubs;
    const auto next = [&] {
        const std::string_view part = text;
        text += part.size() + 1;
        return host::ToUtf8(FromAnsi(part));
    };
    while (text && *text) {
        std::string font = next();
        std::string printerFont = next();
        table.rows.push_back({TextCell(std::move(font)), TextOrNull(std::move(printerFont))});
    }
    return table;
}

struct KeywordTable {
    const char* title;
    const char* key;
    const KeywordRecord* (*list)(const DeviceModel& model);
};

#define LIST(member) [](const DeviceModel& model) { return model.member; }
constexpr KeywordTable kKeywordTables[] = {
    {"Photo intents of a ticket", "photoIntents", LIST(photoIntentList)},
    {"Digital-signature processing of a ticket", "signatureOptions", LIST(signatureOptionList)},
    {"Extra list A of a ticket", "extraListA", LIST(extraListA)},
    {"Extra list B of a ticket", "extraListB", LIST(extraListB)},
    {"Media colours of a ticket", "mediaColors", LIST(mediaColorList)},
    {"Extra list C of a ticket", "extraListC", LIST(extraListC)},
};
#undef LIST

Table ReportKeywords(const PrinterModel& model, const KeywordTable& list) {
    return ReportRecords<KeywordRecord>(
        list.title, list.key, model, list.list(*model),
        {{{"Index", "index"}, VELMORA_CELL(KeywordRecord, NumberCell(static_cast<int64_t>(i)))},
         {{"Name", "name"}, VELMORA_CELL(KeywordRecord, TextOrNull(m.Localized(static_cast<int16_t>(r.nameRef))))},
         {{"Keyword", "keyword"}, VELMORA_CELL(KeywordRecord, TextOrNull(m.Name(r.keywordRef)))},
         {{"Ticket", "ticketValues"}, VELMORA_CELL(KeywordRecord, TicketCell(r))}});
}

}  // namespace

std::vector<Table> ReportModel(const std::string& printerName) {
    const PrinterModel model(printerName);
    std::vector<Table> tables = {ReportModelValues(model)};
    std::ranges::move(ReportModelRecords(model), std::back_inserter(tables));
    std::ranges::move(ReportModelColors(model), std::back_inserter(tables));
    tables.push_back(ReportFontSubstitutions(model));
    for (const KeywordTable& list : kKeywordTables) {
        tables.push_back(ReportKeywords(model, list));
    }
    std::ranges::move(ReportDescription(model), std::back_inserter(tables));
    return tables;
}

}  // namespace velmora
