#include "platform/sheet/sheet_texts.h"

namespace host {
namespace {

constexpr SheetTexts kTexts[] = {
    {LANG_ENGLISH, u"OK", u"Cancel", u"&Apply", u"Help", u"% Properties", u"% Printing Preferences"},
    {LANG_GERMAN, u"OK", u"Abbrechen", u"Ü&bernehmen", u"Hilfe", u"Eigenschaften von %", u"Druckeinstellungen von %"},
    {LANG_JAPANESE, u"OK", u"キャンセル", u"適用(&A)", u"ヘルプ", u"%のプロパティ", u"%の印刷設定"},
};

}  // namespace

const SheetTexts& TextsOfUser() {
    const WORD language = PRIMARYLANGID(GetUserDefaultLangID());
    for (const SheetTexts& texts : kTexts) {
        if (texts.primaryLanguage == language) {
            return texts;
        }
    }
    return kTexts[0];
}

std::u16string Caption(std::u16string_view format, std::u16string_view name) {
    const size_t place = format.find(u'%');
    return std::u16string(format.substr(0, place)) + std::u16string(name) + std::u16string(format.substr(place + 1));
}

}  // namespace host
