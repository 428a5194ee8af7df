// Fonts as the display draws them. Which font a face's name leads to, and which one has the characters that a face
// lacks, depends on the fonts in the host's font folders alone, not on how its user has them set.
#pragma once

#include <cairo.h>
#include <windows.h>

#include <array>
#include <unordered_map>
#include <vector>

namespace host {

struct Glyph {
    static constexpr unsigned long kNothing = ~0ul;  // index: not drawn

    size_t face = 0;  // ScreenFont's
    unsigned long index = kNothing;
    int advance = 0;  // pixels
};

// A logical font at its size. All measures are whole pixels. Under the machine's lock.
class ScreenFont {
  public:
    explicit ScreenFont(const LOGFONTW& font);

    Glyph GlyphOf(char32_t character) const;
    // For text that isn't turned.
    cairo_scaled_font_t* ScaledFont(size_t face) const { return faces_[face].scaled; }
    cairo_font_face_t* Face(size_t face) const { return faces_[face].face; }

    int em;
    int ascent;   // above the baseline
    int descent;  // below
    int Height() const { return ascent + descent; }
    int thickness;  // of lines under and through text

  private:
    struct UsedFace {
        size_t file;     // of the font folders' files
        void* outlines;  // FT_Face
        cairo_font_face_t* face;
        cairo_scaled_font_t* scaled;
    };
    static constexpr char32_t kQuickCharacters = 256;

    size_t FaceFor(char32_t character) const;
    size_t UseFace(size_t file) const;
    Glyph Measure(char32_t character) const;

    bool bold_;
    bool italic_;
    mutable std::vector<UsedFace> faces_;  // the first is the font's own
    mutable std::array<Glyph, kQuickCharacters> quick_;
    mutable std::array<bool, kQuickCharacters> isQuick_ = {};
    mutable std::unordered_map<char32_t, Glyph> others_;
};

// Made once for each height, weight, slope and face. Never null; it lasts for the process's life.
const ScreenFont* ScreenFontOf(const LOGFONTW& font);

// Options of all text: the same on every host.
enum class TextStyle { kPlain, kTurned, kMonochrome };
const cairo_font_options_t* TextOptions(TextStyle style);

}  // namespace host
