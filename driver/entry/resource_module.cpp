#include "driver/entry/resource_module.h"

#include <span>

#include "driver/base/format.h"
#include "driver/base/text.h"

namespace velmora {
namespace {

using Codes = std::span<const WCHAR* const>;

constexpr const WCHAR* kArabic[] = {TEXT("SAUD"), TEXT("IRAQ"), TEXT("EGYP"), TEXT("LIBY"), TEXT("ALGE"), TEXT("MORO"),
                                    TEXT("TUNI"), TEXT("OMAN"), TEXT("YEME"), TEXT("SYRI"), TEXT("JORD"), TEXT("LEBA"),
                                    TEXT("KUWA"), TEXT("UAE"),  TEXT("BAHR"), TEXT("QATA")};
constexpr const WCHAR* kBulgarian[] = {TEXT("BULG")};
constexpr const WCHAR* kCatalan[] = {TEXT("CATA")};
constexpr const WCHAR* kChinese[] = {TEXT("CTRA"), TEXT("CSIM"), TEXT("CHON"), TEXT("CSIN")};
constexpr const WCHAR* kCzech[] = {TEXT("CZEC")};
constexpr const WCHAR* kDanish[] = {TEXT("DANI")};
constexpr const WCHAR* kGerman[] = {TEXT("GERM"), TEXT("GSWI"), TEXT("GAUS"), TEXT("GLUX"), TEXT("GLIE")};
constexpr const WCHAR* kGreek[] = {TEXT("GREE")};
constexpr const WCHAR* kEnglish[] = {TEXT("ENUS"), TEXT("ENUK"), TEXT("ENAU"), TEXT("ENCA"), TEXT("ENNZ"), TEXT("ENEI"),
                                     TEXT("ENSA"), TEXT("ENJA"), TEXT("ENCR"), TEXT("ENBE"), TEXT("ENTR")};
constexpr const WCHAR* kSpanish[] = {TEXT("SCAS"), TEXT("SMEX"), TEXT("SMOD"), TEXT("SGUA"), TEXT("SCOS"),
                                     TEXT("SPAN"), TEXT("SDOM"), TEXT("SVEN"), TEXT("SCOL"), TEXT("SPER"),
                                     TEXT("SARG"), TEXT("SECU"), TEXT("SCHI"), TEXT("SURU"), TEXT("SPAR"),
                                     TEXT("SBOL"), TEXT("SELS"), TEXT("SHON"), TEXT("SNIC"), TEXT("SPUE")};
constexpr const WCHAR* kFinnish[] = {TEXT("FINN")};
constexpr const WCHAR* kFrench[] = {TEXT("FREN"), TEXT("FBEL"), TEXT("FCAN"), TEXT("FSWI"), TEXT("FLUX")};
constexpr const WCHAR* kHebrew[] = {TEXT("HEBR")};
constexpr const WCHAR* kHungarian[] = {TEXT("HUNG")};
constexpr const WCHAR* kIcelandic[] = {TEXT("ICEL")};
constexpr const WCHAR* kItalian[] = {TEXT("ITAL"), TEXT("ISWI")};
constexpr const WCHAR* kJapanese[] = {TEXT("JAPA")};
constexpr const WCHAR* kKorean[] = {TEXT("KORE"), TEXT("KJOH")};
constexpr const WCHAR* kDutch[] = {TEXT("DUTC"), TEXT("DBEL")};
constexpr const WCHAR* kNorwegian[] = {TEXT("BOKM"), TEXT("NYNO")};
constexpr const WCHAR* kPolish[] = {TEXT("POLI")};
constexpr const WCHAR* kPortuguese[] = {TEXT("BRAZ"), TEXT("PORT")};
constexpr const WCHAR* kRomanian[] = {TEXT("ROMA")};
constexpr const WCHAR* kCroatian[] = {TEXT("CROA")};
constexpr const WCHAR* kRussian[] = {TEXT("RUSS")};
constexpr const WCHAR* kSerbian[] = {TEXT("SERB"), TEXT("SLAT"), TEXT("SCYR")};
constexpr const WCHAR* kSlovak[] = {TEXT("SLOK")};
constexpr const WCHAR* kAlbanian[] = {TEXT("ALBA")};
constexpr const WCHAR* kSwedish[] = {TEXT("SWED"), TEXT("SFIN")};
constexpr const WCHAR* kThai[] = {TEXT("THAI")};
constexpr const WCHAR* kTurkish[] = {TEXT("TURK")};
constexpr const WCHAR* kIndonesian[] = {TEXT("INDO")};
constexpr const WCHAR* kUkrainian[] = {TEXT("UKRA")};
constexpr const WCHAR* kBelarusian[] = {TEXT("BELA")};
constexpr const WCHAR* kSlovenian[] = {TEXT("SLON")};
constexpr const WCHAR* kEstonian[] = {TEXT("ESTO")};
constexpr const WCHAR* kLatvian[] = {TEXT("LATV")};
constexpr const WCHAR* kLithuanian[] = {TEXT("LITH")};
constexpr const WCHAR* kFarsi[] = {TEXT("FARS")};
constexpr const WCHAR* kVietnamese[] = {TEXT("VIET")};
constexpr const WCHAR* kBasque[] = {TEXT("BASQ")};
constexpr const WCHAR* kAfrikaans[] = {TEXT("AFRI")};
constexpr const WCHAR* kFaeroese[] = {TEXT("FAER")};
constexpr const WCHAR* kInEnglish[] = {TEXT("ENUS")};  // languages that are served in English

// Codes by primary language (LANG_, winnt.h) from 1 on, each list from sublanguage 1 on.
constexpr Codes kCodes[] = {
    kArabic,     kBulgarian,  kCatalan,    kChinese,   kCzech,     kDanish,     kGerman,     kGreek,
    kEnglish,    kSpanish,    kFinnish,    kFrench,    kHebrew,    kHungarian,  kIcelandic,  kItalian,
    kJapanese,   kKorean,     kDutch,      kNorwegian, kPolish,    kPortuguese, kRomanian,   kCroatian,
    kRussian,    kSerbian,    kSlovak,     kAlbanian,  kSwedish,   kThai,       kTurkish,    kInEnglish,
    kIndonesian, kUkrainian,  kBelarusian, kSlovenian, kEstonian,  kLatvian,    kLithuanian, kFarsi,
    kInEnglish,  kVietnamese, kInEnglish,  kInEnglish, kBasque,    kInEnglish,  kInEnglish,  kInEnglish,
    kInEnglish,  kInEnglish,  kInEnglish,  kInEnglish, kInEnglish, kAfrikaans,  kAfrikaans,  kFaeroese,
};
static_assert(std::size(kCodes) == 56);

constexpr WORD kLastPrimary = std::size(kCodes);

OwnedModule LoadModuleOf(const DriverFiles& files, const WCHAR* code) {
    WCHAR fragment[16];
    FormatWide(fragment, ARRAYSIZE(fragment), TEXT("%s.DLL"), code);
    WCHAR path[MAX_PATH];
    return OwnedModule(files.Find(code, fragment, path) ? LoadLibraryW(path) : nullptr);
}

void FillContext(const DriverFiles& files, const WCHAR* code, ResourceContext* context) {
    WCHAR valueName[16];
    WCHAR fragment[16];
    FormatWide(valueName, ARRAYSIZE(valueName), TEXT("%shelp"), code);
    FormatWide(fragment, ARRAYSIZE(fragment), TEXT("%s.chm"), code);
    files.Find(valueName, fragment, context->helpPath);
    GetProfileStringW(TEXT("intl"), TEXT("sDecimal"), TEXT("."), context->decimalSeparator,
                      ARRAYSIZE(context->decimalSeparator));
}

}  // namespace

const WCHAR* LanguageCode(WORD primary, WORD sublanguage) {
    if (primary == LANG_NEUTRAL) {
        return sublanguage <= SUBLANG_SYS_DEFAULT ? TEXT("NEUT") : nullptr;
    }
    if (primary > kLastPrimary || sublanguage == SUBLANG_NEUTRAL || sublanguage > kCodes[primary - 1].size()) {
        return nullptr;
    }
    return kCodes[primary - 1][sublanguage - 1];
}

WORD UserPrimaryLanguage() {
    return PRIMARYLANGID(GetUserDefaultLangID());
}

OwnedModule LoadResourceModule(const DriverFiles& files, ResourceContext* context) {
    const LANGID user = GetUserDefaultLangID();
    WORD primary = PRIMARYLANGID(user);
    WORD sublanguage = SUBLANGID(user);
    if (primary > kLastPrimary) {
        primary = LANG_ENGLISH;
        sublanguage = SUBLANG_ENGLISH_US;
    }
    const WCHAR* code = LanguageCode(primary, sublanguage);
    OwnedModule module;
    if (code) {
        module = LoadModuleOf(files, code);
    }
    if (!module) {
        primary = LANG_ENGLISH;
        sublanguage = SUBLANG_ENGLISH_US;
        code = LanguageCode(primary, sublanguage);
        module = LoadModuleOf(files, code);
    }
    if (context) {
        context->language = primary;
        context->sublanguage = sublanguage;
        FillContext(files, code, context);
    }
    return module;
}

OwnedModule LoadResourceModule(HANDLE printer, ResourceContext* context) {
    return LoadResourceModule(DriverFiles(printer), context);
}

}  // namespace velmora
