// Scenes that look a little like photographs. Each has what adjustments are judged by: a sky, skin or sand, pure
// colours, and a scale of grays.
#include <cmath>
#include <cstdint>
#include <numbers>

#include "tools/pictures/picture.h"

namespace velmora {
namespace {

constexpr int kWidth = 192;
constexpr int kHeight = 144;
constexpr double kStrip = 12;  // of the gray scale, at the bottom
constexpr double kGround = kHeight - kStrip;

constexpr Color kWhite = FromRgb(0xFFFFFF);
constexpr Color kNight = FromRgb(0x000000);
constexpr Color kSkin = FromRgb(0xE3AE8C);
constexpr Color kSkinLight = FromRgb(0xF6D2B6);
constexpr Color kSkinDark = FromRgb(0xA86A4C);
constexpr Color kRed = FromRgb(0xD8232A);
constexpr Color kOrange = FromRgb(0xF08A1D);
constexpr Color kYellow = FromRgb(0xF7D117);
constexpr Color kGreen = FromRgb(0x2E9E3F);
constexpr Color kBlue = FromRgb(0x1F4FA8);
constexpr Color kViolet = FromRgb(0x6B2D84);

struct Stop {
    double at;  // 0 to 1
    Color color;
    double alpha = 1;
};

void FillWith(Canvas& canvas, cairo_pattern_t* pattern, std::initializer_list<Stop> stops) {
    for (const Stop& stop : stops) {
        cairo_pattern_add_color_stop_rgba(pattern, stop.at, stop.color.red, stop.color.green, stop.color.blue,
                                          stop.alpha);
    }
    cairo_set_source(canvas.Context(), pattern);
    cairo_fill(canvas.Context());
    cairo_pattern_destroy(pattern);
}

// Each of these fills the path that was made.
void FillDown(Canvas& canvas, double top, double bottom, std::initializer_list<Stop> stops) {
    FillWith(canvas, cairo_pattern_create_linear(0, top, 0, bottom), stops);
}
void FillAround(Canvas& canvas, Point focus, Point center, double radius, std::initializer_list<Stop> stops) {
    FillWith(canvas, cairo_pattern_create_radial(focus.x, focus.y, 0, center.x, center.y, radius), stops);
}

void AddRect(Canvas& canvas, const Rect& rect) {
    cairo_rectangle(canvas.Context(), rect.x, rect.y, rect.width, rect.height);
}

void AddEllipse(Canvas& canvas, Point center, double across, double down) {
    cairo_t* const context = canvas.Context();
    cairo_save(context);
    cairo_translate(context, center.x, center.y);
    cairo_scale(context, across, down);
    cairo_new_sub_path(context);
    cairo_arc(context, 0, 0, 1, 0, 2 * std::numbers::pi);
    cairo_restore(context);
}

void FillSky(Canvas& canvas, double horizon, const Color& top, const Color& bottom) {
    AddRect(canvas, {0, 0, kWidth, horizon});
    FillDown(canvas, 0, horizon, {{0, top}, {1, bottom}});
}

// A soft spot, as of light or of what is out of focus.
void DrawGlow(Canvas& canvas, Point center, double across, double down, const Color& color, double alpha) {
    cairo_t* const context = canvas.Context();
    cairo_save(context);
    cairo_translate(context, center.x, center.y);
    cairo_scale(context, across, down);
    AddRect(canvas, {-1, -1, 2, 2});
    FillAround(canvas, {0, 0}, {0, 0}, 1, {{0, color, alpha}, {0.5, color, alpha * 0.6}, {1, color, 0}});
    cairo_restore(context);
}

void DrawCloud(Canvas& canvas, Point center, double size) {
    for (const double shift : {-1.0, -0.4, 0.3, 0.9}) {
        DrawGlow(canvas, {center.x + shift * size, center.y - (1 - shift * shift) * size * 0.2}, size, size * 0.42,
                 kWhite, 0.75);
    }
}

void DrawBall(Canvas& canvas, Point center, double radius, const Color& color) {
    DrawGlow(canvas, {center.x + radius * 0.4, center.y + radius * 0.85}, radius * 1.3, radius * 0.4, kNight, 0.6);
    AddEllipse(canvas, center, radius, radius);
    const Point light = {center.x - radius * 0.35, center.y - radius * 0.4};
    FillAround(
        canvas, light, center, radius,
        {{0, Mix(color, kWhite, 0.75)}, {0.18, Mix(color, kWhite, 0.25)}, {0.55, color}, {1, Mix(color, kNight, 0.6)}});
}

// Land below a rough line: the ridge's height in its middle, its roughness, and a seed for its shape.
void DrawRidge(Canvas& canvas, double top, double roughness, double seed, const Color& light, const Color& dark) {
    cairo_t* const context = canvas.Context();
    cairo_move_to(context, 0, kHeight);
    for (int x = 0; x <= kWidth; ++x) {
        double height = 0;
        double share = roughness;
        for (double waves = 0.02; waves < 0.5; waves *= 2.1) {
            height += share * std::sin(x * waves + seed * (1 + waves * 30));
            share *= 0.48;
        }
        cairo_line_to(context, x, top - height);
    }
    cairo_line_to(context, kWidth, kHeight);
    FillDown(canvas, top - roughness, kGround, {{0, light}, {1, dark}});
}

void DrawStrip(Canvas& canvas) {
    constexpr int kGrays = 11;
    constexpr Color kPatches[] = {kRed, kYellow, kGreen, FromRgb(0x00A6D6), kBlue, FromRgb(0xD6007F), kSkin};
    constexpr int kCount = kGrays + static_cast<int>(std::size(kPatches));
    for (int i = 0; i < kCount; ++i) {
        const Color color =
            i < kGrays ? Mix(kNight, kWhite, i / (kGrays - 1.0)) : kPatches[static_cast<size_t>(i - kGrays)];
        const double left = std::round(i * kWidth / static_cast<double>(kCount));
        canvas.FillRect({left, kGround, kWidth - left, kStrip}, color);
    }
}

void DrawLake(Canvas& canvas) {
    FillSky(canvas, 84, FromRgb(0x2C69B8), FromRgb(0xDCEBF5));
    DrawGlow(canvas, {148, 22}, 40, 40, FromRgb(0xFFF6D8), 0.9);
    DrawCloud(canvas, {46, 26}, 17);
    DrawCloud(canvas, {104, 42}, 11);
    DrawRidge(canvas, 62, 15, 2.2, FromRgb(0x9AAFC8), FromRgb(0xB8C8D8));
    DrawRidge(canvas, 74, 9, 5.1, FromRgb(0x5F7F8C), FromRgb(0x7C9A9A));
    DrawRidge(canvas, 83, 5, 1.3, FromRgb(0x2F6B3A), FromRgb(0x4C8A45));
    AddRect(canvas, {0, 88, kWidth, kGround - 88});
    FillDown(canvas, 88, kGround, {{0, FromRgb(0xA9CADF)}, {0.3, FromRgb(0x4F8DBB)}, {1, FromRgb(0x1D4F80)}});
    for (int i = 0; i < 26; ++i) {  // ripples, wider where they are nearer
        const double y = 90 + i * i * 0.05 + i * 0.3;
        const double x = std::fmod(i * 67.0, kWidth);
        DrawGlow(canvas, {x, y}, 8 + i * 0.9, 0.8 + i * 0.03, kWhite, 0.35);
    }
    cairo_t* const context = canvas.Context();
    cairo_move_to(context, 0, 112);
    cairo_curve_to(context, 50, 108, 90, 130, kWidth, 128);
    cairo_line_to(context, kWidth, kHeight);
    cairo_line_to(context, 0, kHeight);
    FillDown(canvas, 108, kGround, {{0, kSkinLight}, {1, kSkin}});
    // A boat with a sail.
    canvas.FillPolygon({{131, 76}, {131, 100}, {115, 100}}, kRed);
    canvas.FillPolygon({{133, 72}, {133, 100}, {150, 100}}, kYellow);
    canvas.FillPolygon({{110, 102}, {154, 102}, {147, 109}, {117, 109}}, kWhite);
    DrawGlow(canvas, {132, 111}, 24, 3, kNight, 0.4);
    DrawBall(canvas, {30, 119}, 9, kOrange);
}

void DrawPortrait(Canvas& canvas) {
    FillSky(canvas, kGround, FromRgb(0x6FA3D8), FromRgb(0xE4EEDF));
    constexpr struct {
        Point center;
        double radius;
        Color color;
    } kLights[] = {{{18, 96}, 34, kGreen},    {{48, 116}, 30, FromRgb(0x7FB347)}, {{178, 92}, 36, kGreen},
                   {{150, 118}, 28, kYellow}, {{30, 60}, 16, FromRgb(0xB9D88A)},  {{166, 54}, 18, FromRgb(0xF3E7A0)}};
    for (const auto& light : kLights) {
        DrawGlow(canvas, light.center, light.radius, light.radius, light.color, 0.8);
    }
    constexpr Color kHair = FromRgb(0x3B2417);
    const auto ellipse = [&](Point center, double across, double down, const Color& color) {
        AddEllipse(canvas, center, across, down);
        FillDown(canvas, center.y - down, center.y + down, {{0, color}, {1, Mix(color, kNight, 0.15)}});
    };
    const auto shape = [&](const char* path, const Color& color) { canvas.FillPath(path, {0, 0}, 1, color); };
    // Hair behind, neck, and a pullover.
    shape("M 96 14 C 64 12 60 40 62 66 C 62 86 58 96 66 102 L 126 102 C 134 96 130 86 130 66 C 132 40 128 12 96 14",
          kHair);
    shape("M 86 80 L 106 80 L 108 112 L 84 112", Mix(kSkin, kSkinDark, 0.5));
    cairo_t* const context = canvas.Context();
    cairo_move_to(context, 36, kHeight);
    cairo_curve_to(context, 40, 108, 64, 106, 82, 101);
    cairo_curve_to(context, 88, 112, 104, 112, 110, 101);
    cairo_curve_to(context, 128, 106, 152, 108, 156, kHeight);
    FillAround(canvas, {84, 112}, {96, 120}, 66, {{0, Mix(kRed, kWhite, 0.15)}, {1, Mix(kRed, kNight, 0.45)}});
    // The face, lit from the left.
    cairo_move_to(context, 70, 52);
    cairo_curve_to(context, 68, 22, 124, 22, 122, 52);
    cairo_curve_to(context, 122, 72, 112, 92, 96, 93);
    cairo_curve_to(context, 80, 92, 70, 72, 70, 52);
    FillAround(canvas, {86, 50}, {92, 56}, 42, {{0, kSkinLight}, {0.55, kSkin}, {1, kSkinDark}});
    for (const double x : {81.0, 111.0}) {
        DrawGlow(canvas, {x, 71}, 8, 6, kRed, 0.28);
    }
    for (const double x : {84.0, 108.0}) {
        ellipse({x, 57}, 4.8, 3.2, kWhite);
        ellipse({x, 57}, 2.4, 2.6, FromRgb(0x4A6B3C));
        ellipse({x, 57}, 1.2, 1.2, kNight);
        canvas.DrawLine({x - 5, 49.5}, {x, 48.5}, kHair, 1.4);
        canvas.DrawLine({x, 48.5}, {x + 5, 49.5}, kHair, 1.4);
        canvas.DrawLine({x - 4.4, 54.6}, {x + 4.4, 54.6}, Mix(kHair, kSkin, 0.3), 1);
    }
    canvas.DrawPath("M 97 57 C 98 64 101 68 97 70 L 93 70", {0, 0}, 1, Mix(kSkin, kSkinDark, 0.7), 1.3);
    shape("M 86 76 C 92 77.5 100 77.5 106 76 C 102 84 90 84 86 76", FromRgb(0xB5413F));
    // Hair in front.
    shape("M 68 60 C 64 14 126 10 125 60 C 122 44 112 36 98 32 C 86 36 74 42 68 60", kHair);
    DrawGlow(canvas, {84, 26}, 14, 7, FromRgb(0x9A6A44), 0.7);
}

void DrawFruit(Canvas& canvas) {
    canvas.FillRect({0, 0, kWidth, kHeight}, FromRgb(0xCFC8BC));
    // A window and what is seen through it.
    AddRect(canvas, {18, 8, 80, 66});
    FillDown(canvas, 8, 74,
             {{0, FromRgb(0x3A7BC8)}, {0.75, FromRgb(0xD8EAF6)}, {0.76, kGreen}, {1, FromRgb(0x1F6B2D)}});
    DrawCloud(canvas, {66, 30}, 11);
    canvas.DrawLine({58, 8}, {58, 74}, FromRgb(0xF4F1EA), 3);
    canvas.DrawLine({18, 40}, {98, 40}, FromRgb(0xF4F1EA), 3);
    AddRect(canvas, {0, 84, kWidth, kGround - 84});
    FillDown(canvas, 84, kGround, {{0, kSkinDark}, {0.15, FromRgb(0xC48B5E)}, {1, kSkin}});
    for (int i = 0; i < 9; ++i) {  // the wood's grain
        canvas.DrawLine({0, 90 + i * 5.0}, {kWidth, 88 + i * 5.4}, Mix(kSkinDark, kSkin, 0.6), 0.6);
    }
    // A vase.
    cairo_t* const context = canvas.Context();
    cairo_move_to(context, 140, 30);
    cairo_curve_to(context, 150, 52, 126, 58, 130, 84);
    cairo_curve_to(context, 134, 104, 172, 104, 176, 84);
    cairo_curve_to(context, 180, 58, 156, 52, 166, 30);
    FillWith(
        canvas, cairo_pattern_create_linear(126, 0, 180, 0),
        {{0, Mix(kBlue, kNight, 0.3)}, {0.3, Mix(kBlue, kWhite, 0.55)}, {0.5, kBlue}, {1, Mix(kBlue, kNight, 0.6)}});
    AddEllipse(canvas, {153, 30}, 13, 3);
    FillDown(canvas, 27, 33, {{0, kNight}, {1, kBlue}});
    constexpr struct {
        Point center;
        double radius;
        Color color;
    } kFruit[] = {{{58, 92}, 17, kYellow},  {{92, 94}, 18, kOrange},  {{30, 106}, 17, kGreen},
                  {{70, 112}, 17, kRed},    {{104, 116}, 9, kViolet}, {{120, 112}, 9, kViolet},
                  {{114, 122}, 9, kViolet}, {{160, 116}, 12, kWhite}};
    for (const auto& fruit : kFruit) {
        DrawBall(canvas, fruit.center, fruit.radius, fruit.color);
    }
    canvas.DrawPath("M 70 98 C 70 93 72 90 75 88", {0, 0}, 1, FromRgb(0x4E3420), 1.8);
}

// A balloon of stripes, each as wide as seen on a ball.
void DrawBalloon(Canvas& canvas, Point center, double radius, const Color& first, const Color& second) {
    constexpr int kStripes = 7;
    cairo_t* const context = canvas.Context();
    const auto outline = [&] {
        cairo_arc(context, center.x, center.y, radius, std::numbers::pi * 0.9, std::numbers::pi * 0.1);
        cairo_curve_to(context, center.x + radius * 0.8, center.y + radius * 0.9, center.x + radius * 0.25,
                       center.y + radius * 1.2, center.x + radius * 0.2, center.y + radius * 1.45);
        cairo_line_to(context, center.x - radius * 0.2, center.y + radius * 1.45);
        cairo_curve_to(context, center.x - radius * 0.25, center.y + radius * 1.2, center.x - radius * 0.8,
                       center.y + radius * 0.9, center.x - radius * 0.95, center.y + radius * 0.31);
        cairo_close_path(context);
    };
    cairo_save(context);
    outline();
    cairo_clip(context);
    for (int i = 0; i < kStripes; ++i) {
        const double left = -std::cos(std::numbers::pi * i / kStripes);
        canvas.FillRect({center.x + left * radius, center.y - radius, 2 * radius, 3 * radius},
                        i % 2 == 0 ? first : second);
    }
    cairo_restore(context);
    outline();
    FillAround(canvas, {center.x - radius * 0.4, center.y - radius * 0.4}, center, radius * 1.5,
               {{0, kWhite, 0.45}, {0.4, kWhite, 0}, {0.5, kNight, 0}, {1, kNight, 0.55}});
    const double basket = radius * 0.32;
    for (const double side : {-1.0, 1.0}) {
        canvas.DrawLine({center.x + side * radius * 0.18, center.y + radius * 1.45},
                        {center.x + side * basket * 0.45, center.y + radius * 1.75}, FromRgb(0x4E3420), 0.6);
    }
    canvas.FillRect({center.x - basket / 2, center.y + radius * 1.72, basket, basket}, FromRgb(0x7A4B28));
}

void DrawBalloons(Canvas& canvas) {
    FillSky(canvas, kGround, FromRgb(0x1E4C9A), FromRgb(0xFBE0C0));
    DrawCloud(canvas, {150, 70}, 20);
    DrawCloud(canvas, {30, 84}, 15);
    DrawRidge(canvas, 98, 7, 3.7, FromRgb(0xB98F9B), FromRgb(0xD9AE98));
    DrawRidge(canvas, 110, 6, 0.4, kSkinLight, kSkin);
    DrawRidge(canvas, 124, 5, 4.4, kSkin, kSkinDark);
    DrawBalloon(canvas, {62, 44}, 30, kRed, kYellow);
    DrawBalloon(canvas, {136, 34}, 19, kBlue, kWhite);
    DrawBalloon(canvas, {166, 78}, 12, kGreen, kYellow);
    DrawBalloon(canvas, {112, 80}, 8, kViolet, kOrange);
}

using Scene = void (*)(Canvas&);
constexpr Scene kScenes[] = {DrawLake, DrawPortrait, DrawFruit, DrawBalloons};

void DrawScene(Canvas& canvas, Scene scene) {
    scene(canvas);
    DrawStrip(canvas);
}

// All scenes, small: what is shown beside the one that is adjusted.
void DrawOverview(Canvas& canvas) {
    cairo_t* const context = canvas.Context();
    for (size_t i = 0; i < std::size(kScenes); ++i) {
        cairo_save(context);
        cairo_scale(context, 0.5, 0.5);
        cairo_translate(context, static_cast<double>(i % 2) * kWidth, static_cast<double>(i / 2) * kHeight);
        AddRect(canvas, {0, 0, kWidth, kHeight});
        cairo_clip(context);
        DrawScene(canvas, kScenes[i]);
        cairo_restore(context);
    }
}

}  // namespace

std::vector<Picture> SamplePictures() {
    std::vector<Picture> pictures = {{"M7700_B1", PictureKind::kBitmap, kWidth, kHeight, DrawOverview}};
    for (const Scene scene : kScenes) {
        pictures.push_back({"M7700_D" + std::to_string(pictures.size()), PictureKind::kBitmap, kWidth, kHeight,
                            [scene](Canvas& canvas) { DrawScene(canvas, scene); }});
    }
    return pictures;
}

}  // namespace velmora
