#include "driver/settings/watermark_list.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "driver/base/format.h"
#include "driver/base/handles.h"
#include "driver/base/text.h"
#include "driver/entry/printer_access.h"
#include "driver/entry/resource_module.h"
#include "driver/settings/ini_keys.h"
#include "driver/settings/settings_folder.h"

namespace velmora {
namespace {

constexpr const WCHAR* kSection = TEXT("Watermarks");
constexpr const WCHAR* kLanguageKey = TEXT("Language");
constexpr const WCHAR* kCountKey = TEXT("NumWatermarks");
constexpr const WCHAR* kTextKey = TEXT("WMString");

constexpr const WCHAR* kNeverWritten = TEXT("NotStrings");  // the language of a file that names none
constexpr const WCHAR* kJapanese = TEXT("JAPA");

constexpr unsigned kFewerBuiltIns = kBuiltInWatermarks - kJapaneseBuiltIns;

// Strings of the language module.
constexpr UINT kFirstTextString = 2490;  // a text for each built-in watermark
constexpr UINT kCharSetString = 2499;
constexpr UINT kLanguageString = 2500;  // the module's language code

constexpr uint32_t kMissing = static_cast<uint32_t>(-1);
constexpr uint32_t kWordLimit = 65535;  // sizes and angles are below it

// Characters of a rendered file's path that a device mode has room for.
constexpr size_t kDevModeFileLength = 95;

enum class Kind : uint8_t { kText, kUnsigned, kSigned, kHex };

// What makes an entry invalid.
enum class Rule : uint8_t {
    kNone,
    kFilled,   // empty, 0
    kPresent,  // kMissing
    kWord,     // kWordLimit and more
};

// Types of watermarks that a key is read or written for.
constexpr uint8_t kOfTexts = 1;
constexpr uint8_t kOfImages = 2;
constexpr uint8_t kOfOthers = 4;
constexpr uint8_t kOfAll = kOfTexts | kOfImages | kOfOthers;

// Uses of a key.
constexpr uint8_t kBuiltIn = 1;       // written for a built-in watermark
constexpr uint8_t kMoved = 2;         // comes along where an entry moves
constexpr uint8_t kSparse = 4;        // only written where it isn't empty or 0
constexpr uint8_t kRenderedFile = 8;  // a rendered file's path
constexpr uint8_t kRendering = 16;    // only kept where there is a rendered file

struct WatermarkKey {
    const WCHAR* name;
    Kind kind;
    uint16_t offset;  // in the record
    uint16_t size;    // bytes in the record
    uint8_t read;     // types of watermarks
    uint8_t written;  // types of watermarks
    uint8_t uses;
    Rule rule;
    uint32_t missing;  // a missing number's value
};

#define PLACE(member) offsetof(WatermarkRecord, member), sizeof(WatermarkRecord::member)

// In the order in which an entry is written. The type comes first: other keys depend on it.
constexpr WatermarkKey kKeys[] = {
    {TEXT("WMType"), Kind::kUnsigned, PLACE(type), kOfAll, kOfAll, kBuiltIn | kMoved, Rule::kNone, kTextWatermark},
    {kTextKey, Kind::kText, PLACE(text), kOfAll, kOfAll, kBuiltIn | kMoved, Rule::kFilled, 0},
    {TEXT("WMAngle"), Kind::kUnsigned, PLACE(angle), kOfTexts, kOfAll, kBuiltIn | kMoved, Rule::kWord, kMissing},
    {TEXT("WMRTL"), Kind::kUnsigned, PLACE(style.rightToLeft), kOfTexts, kOfTexts, kSparse, Rule::kNone, 0},
    {TEXT("WMCharSet"), Kind::kUnsigned, PLACE(style.charSet), kOfTexts, kOfTexts, kBuiltIn | kMoved, Rule::kNone,
     kMissing},
    {TEXT("WMFace"), Kind::kText, PLACE(style.face), kOfTexts, kOfTexts, kBuiltIn | kMoved, Rule::kFilled, 0},
    {TEXT("WMBold"), Kind::kUnsigned, PLACE(style.bold), kOfTexts, kOfTexts, kBuiltIn | kMoved, Rule::kPresent,
     kMissing},
    {TEXT("WMItalic"), Kind::kUnsigned, PLACE(style.italic), kOfTexts, kOfTexts, kBuiltIn | kMoved, Rule::kPresent,
     kMissing},
    {TEXT("WMSize"), Kind::kUnsigned, PLACE(style.size), kOfTexts, kOfTexts, kBuiltIn | kMoved, Rule::kWord, kMissing},
    {TEXT("WMColor"), Kind::kHex, PLACE(style.color), kOfTexts, kOfTexts, kBuiltIn | kMoved, Rule::kPresent, kMissing},
    {TEXT("WMOutline"), Kind::kUnsigned, PLACE(style.outline), kOfTexts, kOfTexts, kBuiltIn | kMoved, Rule::kPresent,
     kMissing},
    {TEXT("WMImageName"), Kind::kText, PLACE(imageName), kOfImages, kOfImages, 0, Rule::kFilled, 0},
    {TEXT("WMScaleX"), Kind::kUnsigned, PLACE(scaleX), kOfImages, kOfImages, 0, Rule::kNone, 100},
    {TEXT("WMScaleY"), Kind::kUnsigned, PLACE(scaleY), kOfImages, kOfImages, 0, Rule::kNone, 100},
    {TEXT("WMPlacement"), Kind::kUnsigned, PLACE(placement), kOfAll, kOfAll, kBuiltIn | kMoved, Rule::kNone, 0},
    {TEXT("WMPositionX"), Kind::kSigned, PLACE(positionX), kOfAll, kOfAll, kBuiltIn | kMoved, Rule::kNone, 0},
    {TEXT("WMPositionY"), Kind::kSigned, PLACE(positionY), kOfAll, kOfAll, kBuiltIn | kMoved, Rule::kNone, 0},
    {TEXT("WMFileName"), Kind::kText, PLACE(fileName), kOfAll, kOfAll, kMoved | kSparse | kRenderedFile, Rule::kNone,
     0},
    {TEXT("WMColorFile"), Kind::kText, PLACE(colorFileName), kOfAll, kOfAll, kMoved | kSparse | kRenderedFile,
     Rule::kNone, 0},
    {TEXT("WMResolution"), Kind::kUnsigned, PLACE(resolution), kOfAll, kOfAll, kMoved | kRendering, Rule::kFilled, 0},
    {TEXT("WMWidth"), Kind::kUnsigned, PLACE(width), kOfAll, kOfAll, kMoved | kRendering, Rule::kFilled, 0},
    {TEXT("WMHeight"), Kind::kUnsigned, PLACE(height), kOfAll, kOfAll, kMoved | kRendering, Rule::kFilled, 0},
};

#undef PLACE

bool HasUse(const WatermarkKey& key, uint8_t use) {
    return (key.uses & use) != 0;
}

uint8_t TypesOf(const WatermarkRecord& record) {
    return record.type == kTextWatermark ? kOfTexts : record.type == kImageWatermark ? kOfImages : kOfOthers;
}

bool IsRendered(const WatermarkRecord& record) {
    return record.fileName[0] != 0 || record.colorFileName[0] != 0;
}

WCHAR* TextOf(WatermarkRecord* record, const WatermarkKey& key) {
    return reinterpret_cast<WCHAR*>(reinterpret_cast<char*>(record) + key.offset);
}

const WCHAR* TextOf(const WatermarkRecord& record, const WatermarkKey& key) {
    return TextOf(const_cast<WatermarkRecord*>(&record), key);
}

// Fields are little-endian, as the processors that Windows runs on: a number begins with its low bytes.
uint32_t NumberOf(const WatermarkRecord& record, const WatermarkKey& key) {
    uint32_t number = 0;
    memcpy(&number, reinterpret_cast<const char*>(&record) + key.offset, key.size);
    return number;
}

void SetNumber(WatermarkRecord* record, const WatermarkKey& key, uint32_t number) {
    memcpy(reinterpret_cast<char*>(record) + key.offset, &number, key.size);
}

// Reads a key of an entry into its record. False where its value makes the entry invalid.
bool ReadField(const WCHAR* iniFile, const WatermarkKey& key, unsigned index, WatermarkRecord* record) {
    WCHAR name[kListKeyCapacity];
    FormListKey(name, key.name, index);
    if (key.kind == Kind::kText) {
        WCHAR* text = TextOf(record, key);
        GetPrivateProfileStringW(kSection, name, TEXT(""), text, static_cast<DWORD>(key.size / sizeof(WCHAR)), iniFile);
        return key.rule == Rule::kNone || text[0] != 0;
    }
    const uint32_t number = key.kind == Kind::kHex
                                ? ReadHexKey(kSection, name, key.missing, iniFile)
                                : GetPrivateProfileIntW(kSection, name, static_cast<INT>(key.missing), iniFile);
    SetNumber(record, key, number);
    switch (key.rule) {
        case Rule::kFilled:
            return number != 0;
        case Rule::kPresent:
            return number != kMissing;
        case Rule::kWord:
            return number < kWordLimit;
        case Rule::kNone:
            break;
    }
    return true;
}

bool ReadEntry(const WCHAR* iniFile, unsigned index, WatermarkRecord* record) {
    return std::ranges::all_of(kKeys, [&](const WatermarkKey& key) {
        const bool isRead = (key.read & TypesOf(*record)) != 0 && (!HasUse(key, kRendering) || IsRendered(*record));
        return !isRead || ReadField(iniFile, key, index, record);
    });
}

// A key of an entry as the file has it, in `text` (MAX_PATH characters); empty where the file doesn't have it.
void ReadText(const WCHAR* iniFile, const WCHAR* key, unsigned index, WCHAR* text) {
    WCHAR name[kListKeyCapacity];
    FormListKey(name, key, index);
    GetPrivateProfileStringW(kSection, name, TEXT(""), text, MAX_PATH, iniFile);
}

// Writes a key of an entry; null deletes it. `capacity` as WriteTextKey has it.
void WriteText(const WCHAR* iniFile, const WCHAR* key, unsigned index, const WCHAR* text, size_t capacity = MAX_PATH) {
    WCHAR name[kListKeyCapacity];
    FormListKey(name, key, index);
    WriteTextKey(kSection, name, text, capacity, iniFile);
}

void WriteField(const WCHAR* iniFile, const WatermarkKey& key, unsigned index, const WatermarkRecord& record) {
    if (key.kind == Kind::kText) {
        WriteText(iniFile, key.name, index, TextOf(record, key), key.size / sizeof(WCHAR));
        return;
    }
    const WCHAR* format = key.kind == Kind::kHex      ? TEXT("%08lX")
                          : key.kind == Kind::kSigned ? TEXT("%ld")
                                                      : TEXT("%lu");
    WCHAR text[16];
    FormatWide(text, ARRAYSIZE(text), format, NumberOf(record, key));
    WriteText(iniFile, key.name, index, text);
}

bool IsWritten(const WatermarkKey& key, const WatermarkRecord& record) {
    if ((key.written & TypesOf(record)) == 0 || (HasUse(key, kRendering) && !IsRendered(record))) {
        return false;
    }
    if (!HasUse(key, kSparse)) {
        return true;
    }
    return key.kind == Kind::kText ? TextOf(record, key)[0] != 0 : NumberOf(record, key) != 0;
}

// Deletes the files that were rendered of an entry.
void ForgetRendering(const WCHAR* iniFile, unsigned index) {
    bool isRendered = false;
    WCHAR file[MAX_PATH];
    for (const WatermarkKey& key : kKeys) {
        if (HasUse(key, kRenderedFile)) {
            ReadText(iniFile, key.name, index, file);
            isRendered = isRendered || file[0] != 0;
            if (file[0] != 0) {
                DeleteFileW(file);
            }
        }
    }
    for (const WatermarkKey& key : kKeys) {
        if (isRendered && HasUse(key, kRenderedFile)) {
            WriteText(iniFile, key.name, index, TEXT(""));
        }
    }
}

// Writes the first entries anew. `charSet` is the module's text: it can name a character set that a built-in record
// doesn't have.
void WriteDefaults(const WCHAR* iniFile, const WatermarkList& defaults, const WCHAR* charSet) {
    for (unsigned i = 0; i < defaults.count; ++i) {
        for (const WatermarkKey& key : kKeys) {
            if (key.offset == offsetof(WatermarkRecord, style.charSet)) {
                WriteText(iniFile, key.name, i, charSet);
            } else if (HasUse(key, kBuiltIn)) {
                WriteField(iniFile, key, i, defaults.records.Get()[i]);
            }
        }
        ForgetRendering(iniFile, i);
    }
}

void DeleteEntry(const WCHAR* iniFile, unsigned index) {
    ForgetRendering(iniFile, index);
    for (const WatermarkKey& key : kKeys) {
        WriteText(iniFile, key.name, index, nullptr);
    }
}

// Moves what comes along of an entry. Numbers of -1 are none.
void MoveEntry(const WCHAR* iniFile, unsigned from, unsigned to) {
    WCHAR value[MAX_PATH];
    for (const WatermarkKey& key : kKeys) {
        if (HasUse(key, kMoved)) {
            ReadText(iniFile, key.name, from, value);
            WriteText(iniFile, key.name, from, nullptr);
            if (value[0] != 0 && (key.kind == Kind::kText || !TextsEqual<WCHAR>(value, TEXT("-1")))) {
                WriteText(iniFile, key.name, to, value);
            }
        }
    }
}

// Where the user's entries, which begin behind `first` built-in ones, end: behind the last one below the file's count
// that has a text. A count that isn't true isn't followed for long: entries end where as many have no text as no list
// has.
unsigned EndOfEntries(const WCHAR* iniFile, unsigned first, unsigned count) {
    constexpr unsigned kLongestGap = 32;
    unsigned end = first;
    WCHAR text[MAX_PATH];
    for (unsigned i = first; i < count && i < end + kLongestGap; ++i) {
        ReadText(iniFile, kTextKey, i, text);
        if (text[0] != 0) {
            end = i + 1;
        }
    }
    return end;
}

WatermarkList MakeList(uint16_t count) {
    return WatermarkList::WithRoomFor(count, MakeBlankWatermark);
}

OwnedModule LoadPrinterModule(const WCHAR* printerName) {
    const OwnedPrinter printer = OpenPrinterLocal(printerName);
    return LoadResourceModule(printer.Get(), nullptr);
}

// A string of the module; empty without a module.
void LoadText(HMODULE module, UINT id, std::span<WCHAR> text) {
    text[0] = 0;
    if (module) {
        LoadStringW(module, id, text.data(), static_cast<int>(text.size()));
    }
}

bool IsSameFile(const WCHAR* a, const WCHAR* b) {
    for (size_t i = 0; i < kDevModeFileLength; ++i) {
        if (a[i] != b[i] || a[i] == 0) {
            return a[i] == b[i];
        }
    }
    return true;
}

}  // namespace

WatermarkList LoadWatermarkList(const WCHAR* printerName) {
    WCHAR path[MAX_PATH];
    if (!GetSettingsFilePath(printerName, path, ARRAYSIZE(path))) {
        return MakeList(0);
    }
    UpdateWatermarkDefaults(printerName, path);
    return ReadWatermarkList(path);
}

WatermarkList ReadWatermarkList(const WCHAR* iniFile) {
    WatermarkList list = MakeList(ReadListCount(kSection, kCountKey, iniFile));
    for (unsigned i = 0; i < list.count; ++i) {
        if (!ReadEntry(iniFile, i, list.records.Get() + i)) {
            list.count = 0;
            MakeBlankWatermark(list.records.Get());
        }
    }
    return list;
}

void SaveWatermarkList(const WCHAR* printerName, const WatermarkRecord* records, uint16_t count) {
    WCHAR path[MAX_PATH];
    if (GetSettingsFilePath(printerName, path, ARRAYSIZE(path))) {
        WriteWatermarkList(printerName, path, records, count);
    }
}

void WriteWatermarkList(const WCHAR* printerName, const WCHAR* iniFile, const WatermarkRecord* records,
                        uint16_t count) {
    WCHAR language[16];
    {
        const OwnedModule module = LoadPrinterModule(printerName);
        LoadText(module.Get(), kLanguageString, language);
    }
    // Without a module the built-in entries are in the language that they were in.
    if (language[0] == 0) {
        GetPrivateProfileStringW(kSection, kLanguageKey, TEXT(""), language, ARRAYSIZE(language), iniFile);
    }
    WritePrivateProfileStringW(kSection, nullptr, nullptr, iniFile);
    if (language[0] != 0) {
        WritePrivateProfileStringW(kSection, kLanguageKey, language, iniFile);
    }
    WriteNumberKey(kSection, kCountKey, count, iniFile);
    for (unsigned i = 0; i < count; ++i) {
        for (const WatermarkKey& key : kKeys) {
            if (IsWritten(key, records[i])) {
                WriteField(iniFile, key, i, records[i]);
            }
        }
    }
}

void UpdateWatermarkDefaults(const WCHAR* printerName, const WCHAR* iniFile) {
    WCHAR language[16];
    WCHAR stored[16];
    WCHAR charSet[16];
    const OwnedModule module = LoadPrinterModule(printerName);
    LoadText(module.Get(), kLanguageString, language);
    LoadText(module.Get(), kCharSetString, charSet);
    GetPrivateProfileStringW(kSection, kLanguageKey, kNeverWritten, stored, ARRAYSIZE(stored), iniFile);
    if (language[0] == 0 || TextsEqual<WCHAR>(stored, language)) {
        return;
    }
    const WatermarkList defaults = BuildDefaultWatermarkList(module.Get());
    if (!defaults.records) {
        return;
    }
    const unsigned count = ReadListCount(kSection, kCountKey, iniFile);
    WritePrivateProfileStringW(kSection, kLanguageKey, language, iniFile);
    if (TextsEqual<WCHAR>(stored, kNeverWritten)) {
        WriteDefaults(iniFile, defaults, charSet);
        WriteNumberKey(kSection, kCountKey, defaults.count, iniFile);
    } else if (TextsEqual<WCHAR>(language, kJapanese)) {
        const unsigned end = EndOfEntries(iniFile, kBuiltInWatermarks, count);
        WriteDefaults(iniFile, defaults, charSet);
        for (unsigned i = defaults.count; i < kBuiltInWatermarks; ++i) {
            DeleteEntry(iniFile, i);
        }
        for (unsigned i = defaults.count; i + kFewerBuiltIns < end; ++i) {
            MoveEntry(iniFile, i + kFewerBuiltIns, i);
        }
        WriteNumberKey(kSection, kCountKey, count > kFewerBuiltIns ? count - kFewerBuiltIns : 0, iniFile);
    } else if (TextsEqual<WCHAR>(stored, kJapanese)) {
        for (unsigned i = EndOfEntries(iniFile, kJapaneseBuiltIns, count); i > kJapaneseBuiltIns; --i) {
            MoveEntry(iniFile, i - 1, i - 1 + kFewerBuiltIns);
        }
        WriteDefaults(iniFile, defaults, charSet);
        WriteNumberKey(kSection, kCountKey, count + kFewerBuiltIns, iniFile);
    } else {
        WriteDefaults(iniFile, defaults, charSet);
    }
}

void DeleteWatermarkFiles(const WCHAR* iniFile) {
    const WatermarkList list = ReadWatermarkList(iniFile);
    for (unsigned i = 0; i < list.count; ++i) {
        DeleteRenderedFiles(list.records.Get() + i);
    }
    DeleteFileW(iniFile);
}

void DeleteRenderedFiles(WatermarkRecord* record) {
    for (const WatermarkKey& key : kKeys) {
        if (HasUse(key, kRenderedFile)) {
            WCHAR* const file = TextOf(record, key);
            if (file[0] != 0) {
                DeleteFileW(file);
            }
            memset(file, 0, key.size);
        }
    }
}

void MakeBlankWatermark(WatermarkRecord* record) {
    memset(record, 0, sizeof(*record));
    CopyText(record->style.face, ARRAYSIZE(record->style.face), TEXT("Arial"));
    record->style.size = 72;
    record->style.color = kWatermarkColor;
    record->angle = kWatermarkAngle;
    record->needsRemake = 1;
}

WatermarkList BuildDefaultWatermarkList(HMODULE module) {
    WatermarkList list = MakeList(kBuiltInWatermarks);
    if (!list.records) {
        return list;
    }
    WCHAR charSet[16];
    WatermarkStyle style = {};
    LoadText(module, kCharSetString, charSet);
    LoadText(module, kBuiltInFaceString, style.face);
    style.charSet = TextsEqual<WCHAR>(charSet, TEXT("128")) ? SHIFTJIS_CHARSET : ANSI_CHARSET;
    style.size = kBuiltInPoints;
    style.color = kWatermarkColor;
    list.count = 0;
    for (; style.face[0] != 0 && list.count < kBuiltInWatermarks; ++list.count) {
        WatermarkRecord& record = list.records.Get()[list.count];
        LoadText(module, kFirstTextString + list.count, record.text);
        if (record.text[0] == 0) {
            break;
        }
        record.type = kTextWatermark;
        record.style = style;
        record.angle = kWatermarkAngle;
    }
    MakeBlankWatermark(list.records.Get() + list.count);
    return list;
}

const WatermarkRecord* FindWatermarkByFile(const WatermarkList& list, const WCHAR* file) {
    for (unsigned i = 0; file[0] != 0 && i < list.count; ++i) {
        const WatermarkRecord& record = list.records.Get()[i];
        if (IsSameFile(record.fileName, file) || IsSameFile(record.colorFileName, file)) {
            return &record;
        }
    }
    return nullptr;
}

}  // namespace velmora
