#include "tools/velmora/devmode_report.h"

#include "tools/velmora/devmode_differences.h"

namespace velmora {
namespace {

// The elements one after the other; equal ones in a row once, with their number.
std::string JoinTexts(const std::vector<ElementValue>& elements) {
    std::string joined;
    for (size_t first = 0; first < elements.size();) {
        size_t next = first + 1;
        while (next < elements.size() && elements[next] == elements[first]) {
            ++next;
        }
        joined += (joined.empty() ? "" : ", ") + elements[first].text;
        joined += next - first > 1 ? " (" + std::to_string(next - first) + " times)" : "";
        first = next;
    }
    return joined;
}

}  // namespace

Cell ElementsCell(const std::vector<ElementValue>& elements) {
    if (elements.size() == 1) {
        return {elements[0].text, {{"value", elements[0].value}, {"valueName", elements[0].name}}};
    }
    Json values = Json::array();
    Json names = Json::array();
    bool isNamed = false;
    for (const ElementValue& element : elements) {
        values.push_back(element.value);
        names.push_back(element.name);
        isNamed |= !element.name.is_null();
    }
    return {JoinTexts(elements), {{"value", values}, {"valueName", isNamed ? names : Json()}}};
}

namespace {

Table ReportPart(std::string title, const DevModePart& part, const VelmoraDevMode& devMode, const NumberNames& names) {
    Table table = {std::move(title), part.name, {{"Field", "field"}, {"Value", ""}, {"Meaning", "meaning"}}};
    table.isKeyed = true;
    for (const FieldDescriptor& field : part.fields) {
        std::vector<ElementValue> elements;
        for (size_t i = 0; i < field.count; ++i) {
            elements.push_back(ReadElement({&part, &field, i}, devMode, names));
        }
        table.rows.push_back({TextCell(field.name), ElementsCell(elements), TextCell(field.meaning)});
    }
    return table;
}

Cell PlaceCell(const DevModeDifference& difference) {
    const DevModeElement& element = difference.element;
    return {difference.Name(),
            {{"part", element.part->name},
             {"field", element.field ? Json(element.field->name) : Json()},
             {"element", element.field && element.field->count > 1 ? Json(element.index) : Json()},
             {"offset", difference.offset},
             {"bytes", difference.size}}};
}

Cell SideCell(const ElementValue& value, const std::string& key) {
    return {value.text, {{key, value.value}, {key + "Name", value.name}}};
}

std::string MeaningOf(const DevModeDifference& difference) {
    if (!difference.element.field) {
        return "in no field";
    }
    if (difference.isValue) {
        return difference.element.field->meaning;
    }
    return (IsText(*difference.element.field) ? "behind the end of " : "in ") + difference.element.Name();
}

}  // namespace

std::vector<Table> ReportDevMode(const VelmoraDevMode& devMode, const NumberNames& names) {
    std::vector<Table> tables;
    for (const DevModePart& part : DevModeParts()) {
        std::string title = std::string(part.name) + " part, " + std::to_string(part.size) + " bytes";
        title[0] = static_cast<char>(title[0] - 'a' + 'A');
        tables.push_back(ReportPart(std::move(title), part, devMode, names));
    }
    return tables;
}

Table ReportDifferences(const VelmoraDevMode& before, const VelmoraDevMode& after, const NumberNames& names,
                        const std::string& beforeHeading, const std::string& afterHeading) {
    Table table = {"", "differences", {{"Field", ""}, {beforeHeading, ""}, {afterHeading, ""}, {"Meaning", "meaning"}}};
    for (const DevModeDifference& difference : CompareDevModes(before, after)) {
        table.rows.push_back({PlaceCell(difference), SideCell(ReadSide(difference, before, names), "before"),
                              SideCell(ReadSide(difference, after, names), "after"), TextCell(MeaningOf(difference))});
    }
    return table;
}

}  // namespace velmora
