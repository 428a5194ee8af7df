#include "driver/settings/font_substitutions.h"

#include <algorithm>
#include <cstring>

#include "driver/base/handles.h"
#include "driver/base/text.h"
#include "driver/settings/font_list.h"
#include "driver/settings/ini_keys.h"
#include "driver/settings/settings_folder.h"

namespace velmora {
namespace {

constexpr const WCHAR* kSection = TEXT("FontSubstitutions");
constexpr const WCHAR* kSizeKey = TEXT("FontSubSize");
constexpr const WCHAR* kCountKey = TEXT("NumFontSubs");
constexpr const WCHAR* kSystemKey = TEXT("FontSubSys");
constexpr const WCHAR* kPrinterKey = TEXT("FontSubPrt");

constexpr UINT kLeastInvalidSize = 65535;
constexpr UINT kMissing = static_cast<UINT>(-1);
constexpr size_t kIniNameCapacity = 128;
constexpr size_t kDefaultNameCapacity = 64;  // of a name in the model's list
constexpr size_t kTableNameCapacity = 32;    // of a name in a table

void ReadName(const WCHAR* iniFile, const WCHAR* name, unsigned index, WCHAR (&text)[kIniNameCapacity]) {
    WCHAR key[kListKeyCapacity];
    FormListKey(key, name, index);
    GetPrivateProfileStringW(kSection, key, TEXT(""), text, ARRAYSIZE(text), iniFile);
}

// The pairs of a model's list of 8-bit texts, in order.
class DefaultPairs {
  public:
    explicit DefaultPairs(const DeviceModel& model) : place_(model.defaultFontSubs) {
        const auto* const block = reinterpret_cast<const char*>(&model);
        const size_t size = HeapSize(GetProcessHeap(), 0, block);
        left_ = place_ && size != static_cast<size_t>(-1) ? size - static_cast<size_t>(place_ - block) : 0;
    }

    // False behind the last pair.
    bool Next(WCHAR (&systemFace)[kDefaultNameCapacity], WCHAR (&printerFont)[kDefaultNameCapacity]) {
        if (left_ == 0 || *place_ == 0) {
            return false;
        }
        Take(systemFace);
        Take(printerFont);
        return true;
    }

  private:
    void Take(WCHAR (&name)[kDefaultNameCapacity]) {
        const size_t length = TextLength(place_, left_);
        WidenText(name, ARRAYSIZE(name), place_, length);
        const size_t taken = std::min(length + 1, left_);
        place_ += taken;
        left_ -= taken;
    }

    const char* place_;
    size_t left_;
};

// A table that is being made, or only measured.
class Table {
  public:
    Table(WCHAR* buffer, size_t capacity) : start_(buffer), end_(buffer), limit_(buffer ? buffer + capacity : nullptr) {
        if (buffer && capacity > 0) {
            *buffer = 0;
        }
    }

    // Counts the pair, whether the table has its face already or not, and adds it where there is room. An empty text
    // would end the table.
    void Add(const WCHAR* systemFace, const WCHAR* printerFont) {
        if (*systemFace == 0 || *printerFont == 0) {
            return;
        }
        const size_t length = TextLength(systemFace) + TextLength(printerFont) + 2;
        counted_ += length;
        if (end_ && static_cast<size_t>(limit_ - end_) > length) {
            end_ = AddSubstitutionPair(start_, end_, systemFace, printerFont);
            *end_ = 0;
        }
    }
    DWORD Size() const { return static_cast<DWORD>(counted_ + 1); }

  private:
    WCHAR* start_;
    WCHAR* end_;
    WCHAR* limit_;
    size_t counted_ = 0;
};

// True, and the table's size, where the driver's INI data file has a table.
bool TakeIniTable(HANDLE printer, WCHAR* buffer, DWORD capacity, DWORD* size) {
    WCHAR iniFile[MAX_PATH];
    HeapOwner<WCHAR> table;
    const int read = FindDriverIniFile(printer, iniFile) ? ReadFontSubstitutionIni(iniFile, &table) : -1;
    if (read < 0) {
        return false;
    }
    *size = static_cast<DWORD>(read);
    if (buffer && capacity > 0) {
        *buffer = 0;
    }
    if (buffer && table && *size <= capacity) {
        memcpy(buffer, table.Get(), *size * sizeof(WCHAR));
    }
    return true;
}

}  // namespace

int ReadFontSubstitutionIni(const WCHAR* iniFile, HeapOwner<WCHAR>* table) {
    table->Reset(nullptr);
    const UINT size = GetPrivateProfileIntW(kSection, kSizeKey, -1, iniFile);
    const UINT count = GetPrivateProfileIntW(kSection, kCountKey, -1, iniFile);
    if (size >= kLeastInvalidSize || count == kMissing) {
        return -1;
    }
    *table = HeapOwner<WCHAR>::Allocate(size + size_t{1});
    if (!*table) {
        return 0;
    }
    size_t length = 0;
    for (unsigned i = 0; static_cast<int>(i) < static_cast<int>(count); ++i) {
        WCHAR systemFace[kIniNameCapacity];
        WCHAR printerFont[kIniNameCapacity];
        ReadName(iniFile, kSystemKey, i, systemFace);
        ReadName(iniFile, kPrinterKey, i, printerFont);
        const size_t systemLength = TextLength(systemFace) + 1;
        const size_t printerLength = TextLength(printerFont) + 1;
        if (systemFace[0] == 0 || length + systemLength + printerLength >= size) {
            break;
        }
        // An empty text would end the table.
        if (printerFont[0] == 0) {
            continue;
        }
        memcpy(table->Get() + length, systemFace, systemLength * sizeof(WCHAR));
        memcpy(table->Get() + length + systemLength, printerFont, printerLength * sizeof(WCHAR));
        length += systemLength + printerLength;
    }
    return static_cast<int>(size);
}

DWORD BuildFontSubstitutionTable(HANDLE printer, const DeviceModel& model, WCHAR* buffer, DWORD capacity,
                                 bool usesIni) {
    DWORD size = 0;
    if (usesIni && TakeIniTable(printer, buffer, capacity, &size)) {
        return size;
    }
    const OwnedDeviceContext display(CreateDCW(TEXT("DISPLAY"), nullptr, nullptr, nullptr));
    if (!display) {
        return 0;
    }
    const FontList fonts = BuildFontList(display.Get());
    Table table(buffer, capacity);
    DefaultPairs pairs(model);
    WCHAR systemFace[kDefaultNameCapacity];
    WCHAR printerFont[kDefaultNameCapacity];
    while (pairs.Next(systemFace, printerFont)) {
        // A face of 32 characters or more is on no system.
        if (!HasFont(fonts, systemFace)) {
            continue;
        }
        table.Add(systemFace, printerFont);
        if (WCHAR* const suffix = FindText<WCHAR>(systemFace, TEXT(" ("))) {
            *suffix = 0;
            table.Add(systemFace, printerFont);
        }
    }
    return table.Size();
}

WCHAR* AddSubstitutionPair(WCHAR* table, WCHAR* end, const WCHAR* systemFace, const WCHAR* printerFont) {
    WCHAR face[kTableNameCapacity];
    CopyText(face, ARRAYSIZE(face), systemFace);
    for (const WCHAR* place = table; place < end;) {
        if (TextsEqual<WCHAR>(place, face)) {
            return end;
        }
        place += TextLength(place) + 1;  // the face
        place += TextLength(place) + 1;  // its printer font
    }
    end += CopyText<WCHAR>(end, kTableNameCapacity, face) + 1;
    return end + CopyText(end, kTableNameCapacity, printerFont) + 1;
}

}  // namespace velmora
