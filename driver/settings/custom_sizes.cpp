#include "driver/settings/custom_sizes.h"

#include <winspool.h>

#include "driver/base/text.h"
#include "driver/entry/printer_access.h"
#include "driver/settings/ini_keys.h"
#include "driver/settings/settings_folder.h"

namespace velmora {
namespace {

constexpr const WCHAR* kSection = TEXT("CustomSizes");
constexpr const WCHAR* kCountKey = TEXT("NumCustomSizes");
constexpr const WCHAR* kNameKey = TEXT("CustomName");

constexpr UINT kMissing = static_cast<UINT>(-1);

// The numbers of a record and the keys that they are kept under.
struct NumberKey {
    const WCHAR* key;
    uint32_t offset;
};
constexpr NumberKey kNumberKeys[] = {
    {TEXT("CustomWidth"), offsetof(CustomSizeRecord, width)},
    {TEXT("CustomLength"), offsetof(CustomSizeRecord, length)},
    {TEXT("CustomMetric"), offsetof(CustomSizeRecord, metric)},
};

uint32_t* NumberOf(CustomSizeRecord* record, const NumberKey& number) {
    return reinterpret_cast<uint32_t*>(reinterpret_cast<char*>(record) + number.offset);
}

bool ReadRecord(const WCHAR* iniFile, unsigned index, CustomSizeRecord* record) {
    WCHAR key[kListKeyCapacity];
    FormListKey(key, kNameKey, index);
    GetPrivateProfileStringW(kSection, key, TEXT(""), record->name, ARRAYSIZE(record->name), iniFile);
    if (record->name[0] == 0) {
        return false;
    }
    for (const NumberKey& number : kNumberKeys) {
        FormListKey(key, number.key, index);
        const UINT value = GetPrivateProfileIntW(kSection, key, -1, iniFile);
        if (value == kMissing) {
            return false;
        }
        *NumberOf(record, number) = value;
    }
    return true;
}

CustomSizeList MakeList(uint16_t count) {
    return CustomSizeList::WithRoomFor(count, MakeBlankCustomSize);
}

// A form's length, in thousandths of a millimetre, in hundredths.
uint32_t RoundToHundredths(LONG thousandths) {
    return (static_cast<uint32_t>(thousandths) + 5) / 10;
}

}  // namespace

CustomSizeList LoadCustomSizes(const WCHAR* printerName) {
    WCHAR path[MAX_PATH];
    return FindStoreToRead(printerName, path) ? ReadCustomSizes(path) : MakeList(0);
}

CustomSizeList LoadPrinterCustomSizes(HANDLE printer) {
    const HeapOwner<PRINTER_INFO_2W> info = GetPrinterInfo2(printer);
    return info && info->pPrinterName ? LoadCustomSizes(info->pPrinterName) : CustomSizeList();
}

CustomSizeList ReadCustomSizes(const WCHAR* iniFile) {
    CustomSizeList list = MakeList(ReadListCount(kSection, kCountKey, iniFile));
    if (!list.records) {
        return list;
    }
    for (unsigned i = 0; i < list.count; ++i) {
        if (!ReadRecord(iniFile, i, list.records.Get() + i)) {
            list.count = 0;
        }
    }
    if (list.count == 0) {
        MakeBlankCustomSize(list.records.Get());
    }
    return list;
}

void SaveCustomSizes(const WCHAR* printerName, const CustomSizeRecord* records, uint16_t count) {
    WCHAR path[MAX_PATH];
    if (GetSettingsFilePath(printerName, path, ARRAYSIZE(path))) {
        WriteCustomSizes(path, records, count);
    }
}

void WriteCustomSizes(const WCHAR* iniFile, const CustomSizeRecord* records, uint16_t count) {
    WritePrivateProfileStringW(kSection, nullptr, nullptr, iniFile);
    WriteNumberKey(kSection, kCountKey, count, iniFile);
    for (unsigned i = 0; i < count; ++i) {
        CustomSizeRecord record = records[i];
        WCHAR key[kListKeyCapacity];
        FormListKey(key, kNameKey, i);
        WriteTextKey(kSection, key, record.name, ARRAYSIZE(record.name), iniFile);
        for (const NumberKey& number : kNumberKeys) {
            FormListKey(key, number.key, i);
            WriteNumberKey(kSection, key, *NumberOf(&record, number), iniFile);
        }
    }
}

void MakeBlankCustomSize(CustomSizeRecord* record) {
    const bool isMetric = IsMetricLocale();
    *record = {};
    record->width = isMetric ? 21000 : 533400;
    record->length = isMetric ? 29700 : 754380;
    record->metric = isMetric ? 1 : 0;
}

CustomSizeList EnumUserForms(HANDLE printer) {
    DWORD needed = 0;
    DWORD returned = 0;
    if (EnumFormsW(printer, 1, nullptr, 0, &needed, &returned) || needed < sizeof(FORM_INFO_1W)) {
        return {};
    }
    const auto forms = HeapOwner<FORM_INFO_1W>::AllocateSize(needed);
    if (!forms || !EnumFormsW(printer, 1, reinterpret_cast<BYTE*>(forms.Get()), needed, &needed, &returned)) {
        return {};
    }
    CustomSizeList list;
    const FORM_INFO_1W* end = forms.Get() + returned;
    for (const FORM_INFO_1W* form = forms.Get(); form != end; ++form) {
        list.count = static_cast<uint16_t>(list.count + (form->Flags == FORM_USER ? 1 : 0));
    }
    if (list.count > 0) {
        list.records = HeapOwner<CustomSizeRecord>::Allocate(list.count);
    }
    if (!list.records) {
        return {};
    }
    const bool isMetric = IsMetricLocale();
    size_t next = 0;
    for (const FORM_INFO_1W* form = forms.Get(); form != end && next < list.count; ++form) {
        if (form->Flags != FORM_USER) {
            continue;
        }
        CustomSizeRecord& record = list.records.Get()[next++];
        record.width = RoundToHundredths(form->Size.cx);
        record.length = RoundToHundredths(form->Size.cy);
        record.metric = isMetric ? 1 : 0;
        CopyText<WCHAR>(record.name, ARRAYSIZE(record.name), form->pName);
    }
    return list;
}

}  // namespace velmora
