#include "driver/ui/number_field.h"

#include <algorithm>

#include "driver/base/format.h"
#include "driver/base/text.h"

namespace velmora {
namespace {

constexpr bool IsBlank(WCHAR character) {
    return character == TEXT(' ') || character == TEXT('\t');
}

constexpr bool IsDigit(WCHAR character) {
    return character >= TEXT('0') && character <= TEXT('9');
}

void ShowNumber(NumberField* field, int number) {
    FormatWide(field->text, NumberField::kCapacity, TEXT("%d"), number);
}

}  // namespace

bool ReadNumber(const WCHAR* text, int* number) {
    constexpr int kMost = 1000000;
    while (IsBlank(*text)) {
        ++text;
    }
    const bool isNegative = *text == TEXT('-');
    if (isNegative || *text == TEXT('+')) {
        ++text;
    }
    if (!IsDigit(*text)) {
        return false;
    }
    int value = 0;
    for (; IsDigit(*text); ++text) {
        value = (std::min)(value * 10 + (*text - TEXT('0')), kMost);
    }
    while (IsBlank(*text)) {
        ++text;
    }
    *number = isNegative ? -value : value;
    return *text == 0;
}

void SetNumber(NumberField* field, int number) {
    field->position = std::clamp(number, field->lowest, field->highest);
    ShowNumber(field, field->position);
}

void TypeNumber(NumberField* field, const WCHAR* text) {
    CopyText(field->text, NumberField::kCapacity, text);
    int number = 0;
    if (ReadNumber(field->text, &number) && number >= field->lowest && number <= field->highest) {
        field->position = number;
    }
}

void SettleNumber(NumberField* field, int lowest, int highest) {
    int number = 0;
    if (!ReadNumber(field->text, &number)) {
        ShowNumber(field, field->position);
    } else if (number < lowest || number > highest) {
        number = std::clamp(number, lowest, highest);
        ShowNumber(field, number);
        field->position = std::clamp(number, field->lowest, field->highest);
    }
}

int ApplyNumber(NumberField* field, int lowest, int highest, int otherwise) {
    int number = otherwise;
    ReadNumber(field->text, &number);
    number = std::clamp(number, lowest, highest);
    ShowNumber(field, number);
    if (number >= field->lowest && number <= field->highest) {
        field->position = number;
    }
    return number;
}

}  // namespace velmora
