// Text: laid out by whole pixels, each character by its font's advance; no kerning, no joining of letters.
#include <windows.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

#include "platform/gdi/pixels.h"
#include "platform/gdi/screen_fonts.h"
#include "platform/gdi/text_order.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"

namespace host {
namespace {

constexpr UINT kLongestText = 8192;  // ExtTextOutW's limit

const ScreenFont& FontOf(const DeviceContext& context) {
    LogicalFont& font = *context.state.font.thing;
    const double scale = context.state.mapping.Scale();
    if (scale != 1 && font.description.lfHeight != 0) {
        LOGFONTW scaled = font.description;
        const auto height = static_cast<LONG>(std::max(1L, std::lround(std::abs(scaled.lfHeight) * scale)));
        scaled.lfHeight = scaled.lfHeight < 0 ? -height : height;
        return *ScreenFontOf(scaled);
    }
    if (!font.screenFont) {
        font.screenFont = ScreenFontOf(font.description);
    }
    return *font.screenFont;
}

struct PlacedGlyph {
    Glyph glyph;
    int left;  // from the text's left end
};

struct Line {
    std::vector<PlacedGlyph> glyphs;  // from the left
    int width = 0;
};

// `advances`: one for each unit of the text, in place of the font's; null: the font's.
Line LayOut(const ScreenFont& font, std::u16string_view text, bool rightToLeft, const INT* advances = nullptr) {
    Line line;
    line.glyphs.reserve(text.size());
    for (const OrderedCharacter& c : VisualOrder(text, rightToLeft)) {
        const Glyph glyph = font.GlyphOf(c.character);
        line.glyphs.push_back({glyph, line.width});
        if (!advances) {
            line.width += glyph.advance;
            continue;
        }
        for (size_t i = 0; i < c.units; ++i) {
            line.width += advances[c.first + i];
        }
    }
    return line;
}

int WidthOf(const ScreenFont& font, std::u16string_view text) {
    int width = 0;
    for (size_t i = 0; i < text.size();) {
        const OrderedCharacter c = CharacterAt(text, i);
        width += font.GlyphOf(c.character).advance;
        i += c.units;
    }
    return width;
}

void ShowGlyphs(cairo_t* cairo, const ScreenFont& font, const Line& line, POINT base, TextStyle style) {
    std::vector<cairo_glyph_t> run;
    for (size_t i = 0; i < line.glyphs.size();) {
        const size_t face = line.glyphs[i].glyph.face;
        run.clear();
        for (; i < line.glyphs.size() && line.glyphs[i].glyph.face == face; ++i) {
            if (line.glyphs[i].glyph.index != Glyph::kNothing) {
                run.push_back({line.glyphs[i].glyph.index, static_cast<double>(base.x + line.glyphs[i].left),
                               static_cast<double>(base.y)});
            }
        }
        if (style == TextStyle::kPlain) {
            cairo_set_scaled_font(cairo, font.ScaledFont(face));
        } else {
            cairo_set_font_face(cairo, font.Face(face));
            cairo_set_font_size(cairo, font.em);
            cairo_set_font_options(cairo, TextOptions(style));
        }
        cairo_show_glyphs(cairo, run.data(), static_cast<int>(run.size()));
    }
}

// Lines under and through text, from the baseline's left end.
std::vector<RECT> Rules(const LOGFONTW& description, const ScreenFont& font, int width) {
    std::vector<RECT> rules;
    const auto add = [&](int top) { rules.push_back({0, top, width, top + font.thickness}); };
    if (description.lfUnderline) {
        add(1);
    }
    if (description.lfStrikeOut) {
        add(-font.em / 3);
    }
    return rules;
}

// Draws in the context's colours and mode, with the baseline's left end at `base` (the surface's pixels).
void DrawLine(const Canvas& canvas, const Line& line, POINT base) {
    const ContextState& state = canvas.context->state;
    const LOGFONTW& description = state.font.thing->description;
    const ScreenFont& font = FontOf(*canvas.context);
    const RECT cell = {0, -font.ascent, line.width, font.descent};
    const std::vector<RECT> rules = Rules(description, font, line.width);
    const uint32_t color = PixelOf(*canvas.surface, state.textColor);
    const uint32_t back = PixelOf(*canvas.surface, state.backColor);
    if (description.lfEscapement == 0) {
        const auto fill = [&](RECT rect, uint32_t pixel) {
            OffsetRect(&rect, base.x, base.y);
            FillPixels(canvas, rect, pixel);
        };
        if (state.backMode == OPAQUE) {
            fill(cell, back);
        }
        if (!IsRectEmpty(&canvas.clip)) {
            Painter painter(canvas);
            painter.SetPixelColor(color);
            ShowGlyphs(painter, font, line, base,
                       canvas.surface->monochrome ? TextStyle::kMonochrome : TextStyle::kPlain);
        }
        for (const RECT& rule : rules) {
            fill(rule, color);
        }
        return;
    }
    Painter painter(canvas);
    cairo_translate(painter, base.x, base.y);
    cairo_rotate(painter, -description.lfEscapement * std::numbers::pi / 1800);
    const auto fill = [&](const RECT& rect, uint32_t pixel) {
        painter.SetPixelColor(pixel);
        cairo_rectangle(painter, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top);
        cairo_fill(painter);
    };
    if (state.backMode == OPAQUE) {
        fill(cell, back);
    }
    painter.SetPixelColor(color);
    ShowGlyphs(painter, font, line, {0, 0}, canvas.surface->monochrome ? TextStyle::kMonochrome : TextStyle::kTurned);
    for (const RECT& rule : rules) {
        fill(rule, color);
    }
}

// Where the baseline's left end lies, seen from the reference point, in pixels.
POINT BaseOf(const DeviceContext& context, int width) {
    const UINT align = context.state.align;
    const ScreenFont& font = FontOf(context);
    const UINT across = align & TA_CENTER;
    const UINT along = align & TA_BASELINE;
    const int dx = across == TA_CENTER ? -width / 2 : across == TA_RIGHT ? -width : 0;
    const int dy = along == TA_BASELINE ? 0 : along == TA_BOTTOM ? -font.descent : font.ascent;
    const LONG escapement = context.state.font.thing->description.lfEscapement;
    if (escapement == 0) {
        return {dx, dy};
    }
    const double angle = escapement * std::numbers::pi / 1800;  // counter-clockwise
    return {static_cast<LONG>(std::lround(dx * std::cos(angle) + dy * std::sin(angle))),
            static_cast<LONG>(std::lround(dy * std::cos(angle) - dx * std::sin(angle)))};
}

// --- DrawTextW -------------------------------------------------------------------------------------------------------

constexpr size_t kNone = static_cast<size_t>(-1);
constexpr char16_t kEllipsis[] = u"...";
constexpr UINT kDrawTextFlags = DT_CENTER | DT_RIGHT | DT_VCENTER | DT_BOTTOM | DT_WORDBREAK | DT_SINGLELINE |
                                DT_NOCLIP | DT_CALCRECT | DT_NOPREFIX | DT_HIDEPREFIX | DT_RTLREADING | DT_END_ELLIPSIS;

struct Paragraphs {
    std::u16string text;
    size_t underlined = kNone;  // index of the character after the last single '&'
};

Paragraphs ReadPrefixes(std::u16string_view text, UINT format) {
    Paragraphs read;
    if (format & DT_NOPREFIX) {
        read.text = text;
        return read;
    }
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && i + 1 < text.size()) {
            ++i;
            if (text[i] != u'&') {
                read.underlined = read.text.size();
            }
        } else if (text[i] == u'&') {
            break;
        }
        read.text += text[i];
    }
    if (format & DT_HIDEPREFIX) {
        read.underlined = kNone;
    }
    return read;
}

// Characters between any two of which a line may end.
bool IsIdeographic(char32_t c) {
    return (c >= 0x2E80 && c <= 0x9FFF) || (c >= 0xAC00 && c <= 0xD7A3) || (c >= 0xF900 && c <= 0xFAFF) ||
           (c >= 0xFF00 && c <= 0xFFEF) || (c >= 0x20000 && c <= 0x3FFFF);
}

bool MayStartLine(char32_t c) {
    constexpr std::u32string_view kClosing =
        U"、。，．・：；？！）］｝」』】〉》〕ー々ぁぃぅぇぉっゃゅょァィゥェォッャュョ";
    return kClosing.find(c) == std::u32string_view::npos;
}

bool MayEndLine(char32_t c) {
    constexpr std::u32string_view kOpening = U"（［｛「『【〈《〔";
    return kOpening.find(c) == std::u32string_view::npos;
}

struct Span {
    size_t begin;
    size_t end;
};

// Breaks one paragraph between words where it is wider than `width`. A word that is wider stays whole.
void BreakParagraph(const ScreenFont& font, std::u16string_view text, Span paragraph, int width,
                    std::vector<Span>* lines) {
    const auto add = [&](size_t begin, size_t end) {
        while (end > begin && text[end - 1] == u' ' && end < paragraph.end) {
            --end;  // blanks at which a line is broken
        }
        lines->push_back({begin, end});
    };
    size_t begin = paragraph.begin;
    size_t breakAt = begin;
    int used = 0;
    char32_t before = U' ';
    for (size_t i = begin; i < paragraph.end;) {
        const OrderedCharacter c = CharacterAt(text.substr(0, paragraph.end), i);
        const int advance = font.GlyphOf(c.character).advance;
        if (c.character != U' ') {
            if (i > begin && (before == U' ' || ((IsIdeographic(before) || IsIdeographic(c.character)) &&
                                                 MayStartLine(c.character) && MayEndLine(before)))) {
                breakAt = i;
            }
            if (used + advance > width && breakAt > begin) {
                add(begin, breakAt);
                begin = i = breakAt;
                used = 0;
                before = U' ';
                continue;
            }
        }
        used += advance;
        before = c.character;
        i += c.units;
    }
    add(begin, paragraph.end);
}

std::vector<Span> BreakLines(const ScreenFont& font, std::u16string_view text, int width, UINT format) {
    if (format & DT_SINGLELINE) {
        return {{0, text.size()}};
    }
    std::vector<Span> lines;
    for (size_t begin = 0; begin <= text.size();) {
        const size_t end = std::min(text.find_first_of(u"\r\n", begin), text.size());
        if (format & DT_WORDBREAK) {
            BreakParagraph(font, text, {begin, end}, width, &lines);
        } else {
            lines.push_back({begin, end});
        }
        begin = end + (text.substr(end, 2) == u"\r\n" ? 2 : 1);
    }
    if (lines.size() > 1 && lines.back().begin == lines.back().end) {
        lines.pop_back();  // behind the last line's end
    }
    return lines;
}

// Cuts the text so that it fits with the three dots behind it.
std::u16string WithEllipsis(const ScreenFont& font, std::u16string_view text, int width) {
    const int room = width - WidthOf(font, kEllipsis);
    size_t end = 0;
    for (int used = 0; end < text.size();) {
        const OrderedCharacter c = CharacterAt(text, end);
        used += font.GlyphOf(c.character).advance;
        if (used > room && end > 0) {
            break;
        }
        end += c.units;
    }
    return std::u16string(text.substr(0, end)) + kEllipsis;
}

void UnderlineOne(const Canvas& canvas, const ScreenFont& font, std::u16string_view text, size_t index, POINT base) {
    const OrderedCharacter c = CharacterAt(text, index);
    const int left = base.x + WidthOf(font, text.substr(0, index));
    const int top = base.y + 1;
    FillPixels(canvas, {left, top, left + font.GlyphOf(c.character).advance, top + 1},
               PixelOf(*canvas.surface, canvas.context->state.textColor));
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

BOOL WINAPI ExtTextOutW(HDC context, int x, int y, UINT options, const RECT* rect, LPCWSTR text, UINT length,
                        const INT* advances) {
    if (FaultAsked("ExtTextOutW")) {
        return FALSE;
    }
    if ((options & ~static_cast<UINT>(ETO_OPAQUE | ETO_CLIPPED | ETO_RTLREADING)) != 0) {
        return FailUnsupported("ExtTextOutW (with these options)");
    }
    const MachineLock lock;
    auto canvas = FindScaledCanvas(context);
    if (!canvas || (advances && canvas->scale != 1 && !FailUnsupported("ExtTextOutW (with advances in a scale)"))) {
        return FALSE;
    }
    if ((!text && length > 0) || length > kLongestText || (!rect && (options & (ETO_OPAQUE | ETO_CLIPPED)))) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    if (rect) {
        const RECT area = ToSurface(*canvas, *rect);
        if (options & ETO_OPAQUE) {
            FillPixels(*canvas, area, PixelOf(*canvas->surface, canvas->context->state.backColor));
        }
        if (options & ETO_CLIPPED) {
            IntersectRect(&canvas->clip, &canvas->clip, &area);
        }
    }
    if (length == 0) {
        return TRUE;
    }
    const bool rightToLeft = (options & ETO_RTLREADING) || (canvas->context->state.align & TA_RTLREADING);
    const Line line = LayOut(FontOf(*canvas->context), {text, length}, rightToLeft, advances);
    const POINT reference = ToSurface(*canvas, x, y);
    const POINT base = BaseOf(*canvas->context, line.width);
    DrawLine(*canvas, line, {reference.x + base.x, reference.y + base.y});
    return TRUE;
}

int WINAPI DrawTextW(HDC context, LPCWSTR text, int length, LPRECT rect, UINT format) {
    if (FaultAsked("DrawTextW")) {
        return 0;
    }
    if ((format & ~kDrawTextFlags) != 0) {
        return FailUnsupported("DrawTextW (in this format)");
    }
    const MachineLock lock;
    DeviceContext* const found = FindContext(context);
    if (!found) {
        return 0;
    }
    if (found->state.mapping.Scale() != 1) {
        return FailUnsupported("DrawTextW (in another scale)");
    }
    if (!rect || !text || length < -1) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    if (found->state.font.thing->description.lfEscapement != 0) {
        return FailUnsupported("DrawTextW (of turned text)");
    }
    const Paragraphs paragraphs = ReadPrefixes(
        length == -1 ? std::u16string_view(text) : std::u16string_view(text, static_cast<size_t>(length)), format);
    if (paragraphs.text.empty()) {
        if (format & DT_CALCRECT) {
            rect->right = rect->left;
            rect->bottom = rect->top;
        }
        return 0;
    }
    const ScreenFont& font = FontOf(*found);
    const int room = rect->right - rect->left;
    const std::vector<Span> spans = BreakLines(font, paragraphs.text, room, format);
    const int height = static_cast<int>(spans.size()) * font.Height();

    struct DrawnLine {
        std::u16string text;
        int width;
        size_t underlined;
    };
    std::vector<DrawnLine> lines;
    int widest = 0;
    for (const Span& span : spans) {
        const std::u16string_view whole =
            std::u16string_view(paragraphs.text).substr(span.begin, span.end - span.begin);
        DrawnLine line = {std::u16string(whole), WidthOf(font, whole), kNone};
        if ((format & DT_END_ELLIPSIS) && line.width > room) {
            line.text = WithEllipsis(font, whole, room);
            line.width = WidthOf(font, line.text);
        }
        if (paragraphs.underlined >= span.begin && paragraphs.underlined - span.begin < line.text.size()) {
            line.underlined = paragraphs.underlined - span.begin;
        }
        widest = std::max(widest, line.width);
        lines.push_back(std::move(line));
    }
    if (format & DT_CALCRECT) {
        rect->right = rect->left + widest;
        rect->bottom = rect->top + height;
        return height;
    }

    auto canvas = FindCanvas(context);
    if (!canvas) {
        return 0;
    }
    const RECT area = ToSurface(*canvas, *rect);
    if (!(format & DT_NOCLIP)) {
        IntersectRect(&canvas->clip, &canvas->clip, &area);
    }
    int top = rect->top;
    if (format & DT_SINGLELINE) {
        const int spare = rect->bottom - rect->top - height;
        top += format & DT_BOTTOM ? spare : format & DT_VCENTER ? spare / 2 : 0;
    }
    const int bottom = top + height;
    for (const DrawnLine& line : lines) {
        const int spare = room - line.width;
        const int left = rect->left + (format & DT_RIGHT ? spare : format & DT_CENTER ? spare / 2 : 0);
        const POINT base = ToSurface(*canvas, left, top + font.ascent);
        DrawLine(*canvas, LayOut(font, line.text, (format & DT_RTLREADING) != 0), base);
        if (line.underlined != kNone) {
            UnderlineOne(*canvas, font, line.text, line.underlined, base);
        }
        top += font.Height();
    }
    return bottom - rect->top;
}

BOOL WINAPI GetTextExtentPoint32W(HDC context, LPCWSTR text, int length, LPSIZE size) {
    if (FaultAsked("GetTextExtentPoint32W")) {
        return FALSE;
    }
    const MachineLock lock;
    const DeviceContext* const found = FindContext(context);
    if (!found) {
        return FALSE;
    }
    if (!size || length < 0 || (!text && length > 0)) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    const ScreenFont& font = FontOf(*found);
    const double scale = found->state.mapping.Scale();
    const auto inUnits = [&](int pixels) { return static_cast<LONG>(std::lround(pixels / scale)); };
    *size = {inUnits(WidthOf(font, {text, static_cast<size_t>(length)})), inUnits(font.Height())};
    return TRUE;
}

BOOL WINAPI GetTextMetricsW(HDC context, TEXTMETRICW* metrics) {
    if (FaultAsked("GetTextMetricsW")) {
        return FALSE;
    }
    const MachineLock lock;
    const DeviceContext* const found = FindContext(context);
    if (!found) {
        return FALSE;
    }
    if (found->state.mapping.Scale() != 1) {
        return FailUnsupported("GetTextMetricsW (in another scale)");
    }
    if (!metrics) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    const ScreenFont& font = FontOf(*found);
    const LOGFONTW& description = found->state.font.thing->description;
    *metrics = {};
    metrics->tmHeight = font.Height();
    metrics->tmAscent = font.ascent;
    metrics->tmDescent = font.descent;
    metrics->tmInternalLeading = font.Height() - font.em;
    metrics->tmAveCharWidth = font.GlyphOf(U'x').advance;
    metrics->tmMaxCharWidth = 2 * font.em;
    metrics->tmWeight = description.lfWeight != 0 ? description.lfWeight : FW_NORMAL;
    metrics->tmDigitizedAspectX = metrics->tmDigitizedAspectY = 96;
    metrics->tmFirstChar = metrics->tmBreakChar = u' ';
    metrics->tmLastChar = u'\uFFFC';
    metrics->tmDefaultChar = u'?';
    metrics->tmItalic = description.lfItalic;
    metrics->tmUnderlined = description.lfUnderline;
    metrics->tmStruckOut = description.lfStrikeOut;
    metrics->tmCharSet = description.lfCharSet;
    return TRUE;
}

}  // extern "C"
