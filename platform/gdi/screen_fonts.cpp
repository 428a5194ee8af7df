#include "platform/gdi/screen_fonts.h"

#include <cairo-ft.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>

#include "platform/kernel/text.h"

namespace host {
namespace {

constexpr LONG kLargestHeight = 8192;
constexpr LONG kDefaultCell = 16;
constexpr int kSemibold = 600;
constexpr int kNormalWidth = 100;  // percent

// Families that stand for the faces that programs ask for, the best first. A face that isn't here, or whose families
// the host lacks, is looked for by its own name, and then among the families of the empty face.
constexpr struct {
    const char16_t* face;
    const char16_t* families[3];
} kFaces[] = {
    {u"MS Shell Dlg", {u"Open Sans", u"Liberation Sans", u"DejaVu Sans"}},
    {u"MS Shell Dlg 2", {u"Open Sans", u"Liberation Sans", u"DejaVu Sans"}},
    {u"MS Sans Serif", {u"Open Sans", u"Liberation Sans", u"DejaVu Sans"}},
    {u"Microsoft Sans Serif", {u"Open Sans", u"Liberation Sans", u"DejaVu Sans"}},
    {u"Tahoma", {u"Open Sans", u"Liberation Sans", u"DejaVu Sans"}},
    {u"Segoe UI", {u"Open Sans", u"Liberation Sans", u"DejaVu Sans"}},
    {u"System", {u"Open Sans", u"Liberation Sans", u"DejaVu Sans"}},
    {u"Arial", {u"Liberation Sans", u"DejaVu Sans"}},
    {u"Helvetica", {u"Liberation Sans", u"DejaVu Sans"}},
    {u"Verdana", {u"DejaVu Sans", u"Open Sans"}},
    {u"Times New Roman", {u"Liberation Serif", u"DejaVu Serif"}},
    {u"Courier New", {u"Liberation Mono", u"DejaVu Sans Mono"}},
    {u"MS UI Gothic", {u"VL PGothic", u"VL Gothic"}},
    {u"MS PGothic", {u"VL PGothic", u"VL Gothic"}},
    {u"MS Gothic", {u"VL Gothic", u"VL PGothic"}},
    {u"MS Mincho", {u"VL Gothic", u"VL PGothic"}},
    {u"MS PMincho", {u"VL PGothic", u"VL Gothic"}},
    {u"Meiryo", {u"VL PGothic", u"VL Gothic"}},
    {u"Meiryo UI", {u"VL PGothic", u"VL Gothic"}},
    {u"Yu Gothic", {u"VL PGothic", u"VL Gothic"}},
    {u"Yu Gothic UI", {u"VL PGothic", u"VL Gothic"}},
    {u"", {u"Open Sans", u"Liberation Sans", u"DejaVu Sans"}},
};

// Where characters that a face lacks are looked for before every other font.
constexpr const char16_t* kFallbacks[] = {u"Open Sans", u"VL PGothic", u"DejaVu Sans"};

constexpr char kFolders[] = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <dir>/usr/share/fonts</dir>
  <dir>/usr/local/share/fonts</dir>
  <cachedir>/var/cache/fontconfig</cachedir>
</fontconfig>)";

struct FontFile {
    std::string path;
    int index;  // of the face in the file
    std::vector<std::u16string> families;
    int weight;  // FW_…
    int width;   // percent
    bool italic;
    const FcCharSet* characters;
};

int NumberOf(FcPattern* pattern, const char* property, int otherwise) {
    int value = 0;
    return FcPatternGetInteger(pattern, property, 0, &value) == FcResultMatch ? value : otherwise;
}

bool IsOutline(FcPattern* pattern) {
    FcBool scalable = FcFalse;
    FcBool variable = FcFalse;
    FcPatternGetBool(pattern, FC_SCALABLE, 0, &scalable);
    FcPatternGetBool(pattern, FC_VARIABLE, 0, &variable);
    return scalable != FcFalse && variable != FcTrue;
}

std::optional<FontFile> Read(FcPattern* pattern) {
    FcChar8* path = nullptr;
    FcCharSet* characters = nullptr;
    if (!IsOutline(pattern) || FcPatternGetString(pattern, FC_FILE, 0, &path) != FcResultMatch ||
        FcPatternGetCharSet(pattern, FC_CHARSET, 0, &characters) != FcResultMatch) {
        return std::nullopt;
    }
    FontFile file = {reinterpret_cast<const char*>(path),
                     NumberOf(pattern, FC_INDEX, 0),
                     {},
                     FcWeightToOpenType(NumberOf(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR)),
                     NumberOf(pattern, FC_WIDTH, kNormalWidth),
                     NumberOf(pattern, FC_SLANT, FC_SLANT_ROMAN) != FC_SLANT_ROMAN,
                     characters};
    FcChar8* family = nullptr;
    for (int i = 0; FcPatternGetString(pattern, FC_FAMILY, i, &family) == FcResultMatch; ++i) {
        file.families.push_back(ToWide(reinterpret_cast<const char*>(family)));
    }
    return file;
}

std::vector<FontFile> ReadFontFiles() {
    static FcConfig* const config = FcConfigCreate();  // never destroyed: the files' characters are in it
    FcConfigParseAndLoadFromMemory(config, reinterpret_cast<const FcChar8*>(kFolders), FcTrue);
    FcConfigBuildFonts(config);
    std::vector<FontFile> files;
    const FcFontSet* const fonts = FcConfigGetFonts(config, FcSetSystem);
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        if (auto file = Read(fonts->fonts[i])) {
            files.push_back(std::move(*file));
        }
    }
    if (files.empty()) {
        fprintf(stderr, "platform: text can't be drawn: there is no font in /usr/share/fonts\n");
        abort();
    }
    std::sort(files.begin(), files.end(), [](const FontFile& a, const FontFile& b) {
        return std::tie(a.path, a.index) < std::tie(b.path, b.index);
    });
    return files;
}

const std::vector<FontFile>& FontFiles() {
    static const auto& files = *new std::vector<FontFile>(ReadFontFiles());
    return files;
}

struct Style {
    int weight;
    bool italic;
};

// The family's file that is nearest to the style.
std::optional<size_t> FindInFamily(std::u16string_view family, const Style& style) {
    const std::vector<FontFile>& files = FontFiles();
    std::optional<size_t> best;
    int bestDistance = 0;
    for (size_t i = 0; i < files.size(); ++i) {
        const FontFile& file = files[i];
        if (std::none_of(file.families.begin(), file.families.end(),
                         [&](const std::u16string& name) { return EqualsIgnoringCase(name, family); })) {
            continue;
        }
        const int distance = std::abs(file.weight - style.weight) + (file.italic != style.italic ? 1000 : 0) +
                             (file.width != kNormalWidth ? 2000 : 0);
        if (!best || distance < bestDistance) {
            best = i;
            bestDistance = distance;
        }
    }
    return best;
}

std::optional<size_t> FindByTable(std::u16string_view face, const Style& style) {
    for (const auto& row : kFaces) {
        if (!EqualsIgnoringCase(row.face, face)) {
            continue;
        }
        for (const char16_t* const family : row.families) {
            if (const auto found = family ? FindInFamily(family, style) : std::nullopt) {
                return found;
            }
        }
    }
    return std::nullopt;
}

size_t FindFile(std::u16string_view face, const Style& style) {
    auto found = FindByTable(face, style);
    if (!found) {
        found = FindInFamily(face, style);
    }
    if (!found) {
        found = FindByTable(u"", style);
    }
    return found.value_or(0);
}

// Opened once for the process's life.
struct OpenedFace {
    FT_Face outlines = nullptr;
    cairo_font_face_t* face = nullptr;
};

const OpenedFace& OpenFace(size_t file, bool makeBold, bool makeItalic) {
    static auto& opened = *new std::map<std::tuple<size_t, bool, bool>, OpenedFace>;
    const auto [entry, isNew] = opened.try_emplace({file, makeBold, makeItalic});
    if (isNew) {
        static FT_Library library = nullptr;
        if (!library) {
            FT_Init_FreeType(&library);
        }
        OpenedFace& face = entry->second;
        const FontFile& source = FontFiles()[file];
        if (FT_New_Face(library, source.path.c_str(), source.index, &face.outlines) != 0) {
            fprintf(stderr, "platform: text can't be drawn: %s can't be read\n", source.path.c_str());
            abort();
        }
        face.face = cairo_ft_font_face_create_for_ft_face(face.outlines, 0);
        const unsigned bold = makeBold ? CAIRO_FT_SYNTHESIZE_BOLD : 0;
        const unsigned italic = makeItalic ? CAIRO_FT_SYNTHESIZE_OBLIQUE : 0;
        cairo_ft_font_face_set_synthesize(face.face, bold | italic);
    }
    return entry->second;
}

// Controls and marks of direction take no room.
bool IsInvisible(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0) || (c >= 0x200B && c <= 0x200F) || (c >= 0x202A && c <= 0x202E) ||
           c == 0xFEFF;
}

}  // namespace

ScreenFont::ScreenFont(const LOGFONTW& font) {
    const std::u16string_view face(font.lfFaceName, std::find(font.lfFaceName, std::end(font.lfFaceName), u'\0'));
    bold_ = font.lfWeight >= kSemibold;
    italic_ = font.lfItalic != 0;
    const size_t file = FindFile(face, {font.lfWeight != 0 ? font.lfWeight : FW_NORMAL, italic_});
    const OpenedFace& opened = OpenFace(file, false, false);
    const double units = opened.outlines->units_per_EM;
    const double up = opened.outlines->ascender / units;
    const double down = -opened.outlines->descender / units;
    const LONG height = std::clamp(font.lfHeight != 0 ? font.lfHeight : kDefaultCell, -kLargestHeight, kLargestHeight);
    if (height < 0) {
        em = -height;
        ascent = static_cast<int>(std::lround(em * up));
        descent = static_cast<int>(std::lround(em * down));
    } else {
        em = std::max(1, static_cast<int>(std::lround(height / (up + down))));
        ascent = std::min(static_cast<int>(height), static_cast<int>(std::lround(em * up)));
        descent = height - ascent;
    }
    thickness = std::max(1, em / 14);
    UseFace(file);
}

size_t ScreenFont::UseFace(size_t file) const {
    for (size_t i = 0; i < faces_.size(); ++i) {
        if (faces_[i].file == file) {
            return i;
        }
    }
    const FontFile& source = FontFiles()[file];
    const OpenedFace& opened = OpenFace(file, bold_ && source.weight < kSemibold, italic_ && !source.italic);
    cairo_matrix_t size;
    cairo_matrix_init_scale(&size, em, em);
    cairo_matrix_t unturned;
    cairo_matrix_init_identity(&unturned);
    faces_.push_back({file, opened.outlines, opened.face,
                      cairo_scaled_font_create(opened.face, &size, &unturned, TextOptions(TextStyle::kPlain))});
    return faces_.size() - 1;
}

size_t ScreenFont::FaceFor(char32_t character) const {
    const std::vector<FontFile>& files = FontFiles();
    const auto has = [&](size_t file) { return FcCharSetHasChar(files[file].characters, character) != FcFalse; };
    if (has(faces_.front().file)) {
        return 0;
    }
    const Style style = {bold_ ? FW_BOLD : FW_NORMAL, italic_};
    for (const char16_t* const family : kFallbacks) {
        const auto file = FindInFamily(family, style);
        if (file && has(*file)) {
            return UseFace(*file);
        }
    }
    for (size_t file = 0; file < files.size(); ++file) {
        if (has(file)) {
            return UseFace(FindInFamily(files[file].families.front(), style).value_or(file));
        }
    }
    return 0;
}

Glyph ScreenFont::Measure(char32_t character) const {
    if (IsInvisible(character)) {
        return {};
    }
    const size_t face = FaceFor(character);
    const cairo_glyph_t glyph = {FT_Get_Char_Index(static_cast<FT_Face>(faces_[face].outlines), character), 0, 0};
    cairo_text_extents_t extents;
    cairo_scaled_font_glyph_extents(faces_[face].scaled, &glyph, 1, &extents);
    return {face, glyph.index, static_cast<int>(std::lround(extents.x_advance))};
}

Glyph ScreenFont::GlyphOf(char32_t character) const {
    if (character < kQuickCharacters) {
        if (!isQuick_[character]) {
            quick_[character] = Measure(character);
            isQuick_[character] = true;
        }
        return quick_[character];
    }
    const auto [entry, isNew] = others_.try_emplace(character);
    if (isNew) {
        entry->second = Measure(character);
    }
    return entry->second;
}

const ScreenFont* ScreenFontOf(const LOGFONTW& font) {
    // Of a description what changes glyphs: a turn doesn't.
    using Key = std::tuple<LONG, LONG, bool, std::u16string>;
    static auto& fonts = *new std::map<Key, std::unique_ptr<ScreenFont>>;
    const std::u16string_view face(font.lfFaceName, std::find(font.lfFaceName, std::end(font.lfFaceName), u'\0'));
    auto& screenFont = fonts[{font.lfHeight, font.lfWeight, font.lfItalic != 0, FoldCase(face)}];
    if (!screenFont) {
        screenFont = std::make_unique<ScreenFont>(font);
    }
    return screenFont.get();
}

const cairo_font_options_t* TextOptions(TextStyle style) {
    const auto make = [](cairo_antialias_t antialias, cairo_hint_style_t hints, cairo_hint_metrics_t metrics) {
        cairo_font_options_t* const options = cairo_font_options_create();
        cairo_font_options_set_antialias(options, antialias);
        cairo_font_options_set_hint_style(options, hints);
        cairo_font_options_set_hint_metrics(options, metrics);
        return options;
    };
    static cairo_font_options_t* const plain =
        make(CAIRO_ANTIALIAS_GRAY, CAIRO_HINT_STYLE_SLIGHT, CAIRO_HINT_METRICS_ON);
    static cairo_font_options_t* const turned =
        make(CAIRO_ANTIALIAS_GRAY, CAIRO_HINT_STYLE_NONE, CAIRO_HINT_METRICS_OFF);
    static cairo_font_options_t* const monochrome =
        make(CAIRO_ANTIALIAS_NONE, CAIRO_HINT_STYLE_FULL, CAIRO_HINT_METRICS_ON);
    return style == TextStyle::kPlain ? plain : style == TextStyle::kTurned ? turned : monochrome;
}

}  // namespace host
