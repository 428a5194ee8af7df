#include "platform/gdi/fonts.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <memory>
#include <optional>

#include "platform/kernel/objects.h"
#include "platform/kernel/text.h"

namespace host {
namespace {

// Empty: the host's.
std::optional<std::vector<Font>>& FontsSet() {
    static auto& fonts = *new std::optional<std::vector<Font>>;
    return fonts;
}

struct Destroyer {
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
    void operator()(FcObjectSet* objects) const { FcObjectSetDestroy(objects); }
    void operator()(FcFontSet* fonts) const { FcFontSetDestroy(fonts); }
};
template <class T>
using Owned = std::unique_ptr<T, Destroyer>;

std::string TextOf(FcPattern* pattern, const char* property) {
    FcChar8* text = nullptr;
    return FcPatternGetString(pattern, property, 0, &text) == FcResultMatch ? reinterpret_cast<const char*>(text) : "";
}

bool IsSet(FcPattern* pattern, const char* property) {
    FcBool value = FcFalse;
    return FcPatternGetBool(pattern, property, 0, &value) == FcResultMatch && value != FcFalse;
}

DWORD TypeOf(FcPattern* pattern) {
    if (!IsSet(pattern, FC_SCALABLE)) {
        return RASTER_FONTTYPE;
    }
    return TextOf(pattern, FC_FONTFORMAT) == "TrueType" ? TRUETYPE_FONTTYPE : 0;
}

BYTE CharSetOf(FcPattern* pattern) {
    if (IsSet(pattern, FC_SYMBOL)) {
        return SYMBOL_CHARSET;
    }
    FcLangSet* languages = nullptr;
    const auto* const japanese = reinterpret_cast<const FcChar8*>("ja");
    return FcPatternGetLangSet(pattern, FC_LANG, 0, &languages) == FcResultMatch &&
                   FcLangSetHasLang(languages, japanese) == FcLangEqual
               ? SHIFTJIS_CHARSET
               : ANSI_CHARSET;
}

std::vector<Font> ReadHostFonts() {
    const Owned<FcConfig> config(FcInitLoadConfigAndFonts());
    const Owned<FcPattern> all(FcPatternCreate());
    const Owned<FcObjectSet> objects(
        FcObjectSetBuild(FC_FAMILY, FC_FONTFORMAT, FC_SCALABLE, FC_SYMBOL, FC_LANG, static_cast<const char*>(nullptr)));
    const Owned<FcFontSet> found(FcFontList(config.get(), all.get(), objects.get()));
    std::vector<Font> fonts = FreshFonts();
    for (int i = 0; found && i < found->nfont; ++i) {
        FcPattern* const pattern = found->fonts[i];
        fonts.push_back({ToWide(TextOf(pattern, FC_FAMILY)), TypeOf(pattern), CharSetOf(pattern)});
    }
    return fonts;
}

// Asked for once: reading the host's configuration takes long.
const std::vector<Font>& HostFonts() {
    static const auto& fonts = *new std::vector<Font>(ReadHostFonts());
    return fonts;
}

}  // namespace

std::vector<Font> DisplayFonts() {
    const MachineLock lock;
    std::vector<Font> fonts = FontsSet() ? *FontsSet() : HostFonts();
    for (Font& font : fonts) {
        font.face.resize(std::min<size_t>(font.face.size(), LF_FACESIZE - 1));
    }
    std::erase_if(fonts, [](const Font& font) { return font.face.empty(); });
    // Of two fonts of a family the one that more is known of comes first.
    std::sort(fonts.begin(), fonts.end(), [](const Font& a, const Font& b) {
        const std::u16string folded = FoldCase(a.face);
        const std::u16string other = FoldCase(b.face);
        return folded != other ? folded < other : a.type > b.type;
    });
    fonts.erase(std::unique(fonts.begin(), fonts.end(),
                            [](const Font& a, const Font& b) { return EqualsIgnoringCase(a.face, b.face); }),
                fonts.end());
    return fonts;
}

void SetDisplayFonts(std::vector<Font> fonts) {
    const MachineLock lock;
    FontsSet() = std::move(fonts);
}

void SetHostFonts() {
    const MachineLock lock;
    FontsSet().reset();
}

std::vector<Font> FreshFonts() {
    return {{u"Arial", TRUETYPE_FONTTYPE, ANSI_CHARSET},
            {u"Courier New", TRUETYPE_FONTTYPE, ANSI_CHARSET},
            {u"Symbol", TRUETYPE_FONTTYPE, SYMBOL_CHARSET},
            {u"Times New Roman", TRUETYPE_FONTTYPE, ANSI_CHARSET}};
}

}  // namespace host
