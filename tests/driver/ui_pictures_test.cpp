// The pictures of the pages: the image module has those that are asked for, and what drawing them does.
#include <prsht.h>

#include <algorithm>
#include <set>

#include "driver/base/text.h"
#include "driver/install/driver_files.h"
#include "driver/ui/color_sample.h"
#include "driver/ui/color_values.h"
#include "driver/ui/custom_size.h"
#include "driver/ui/device_page.h"
#include "driver/ui/layout_details.h"
#include "driver/ui/paper_preview.h"
#include "driver/ui/pictures.h"
#include "tests/driver/built_modules.h"
#include "tests/driver/document_sheet.h"
#include "tests/driver/module_resources.h"

namespace velmora {
namespace {

using namespace driver_test;  // NOLINT(google-build-using-namespace): the test kit

struct PictureNames {
    std::set<WideText> bitmaps;
    std::set<WideText> icons;
};

// All that the pages ask for.
PictureNames AskedNames() {
    PictureNames names;
    for (const uint32_t layout : {kOnePage, kTwoPages, kFourPages, kPoster2x2, kPoster3x3, kPoster4x4}) {
        for (unsigned bits = 0; bits < 128; ++bits) {  // two each of the order and the edge, one each of the rest
            const PreviewNames preview =
                NamePreview({layout, bits & 3, bits >> 2 & 3, (bits & 16) != 0, (bits & 32) != 0, (bits & 64) != 0});
            names.bitmaps.insert(preview.sheet);
            names.bitmaps.insert(preview.edge);
        }
        for (const bool isLandscape : {false, true}) {
            const PageOrders orders = PageOrdersOf(layout, isLandscape);
            for (size_t i = 0; i < orders.count; ++i) {
                names.icons.insert({orders.icons[i].plain, orders.icons[i].selected});
            }
        }
    }
    names.bitmaps.erase(u"");  // posters have no edge
    for (const int width : {1, 3}) {
        names.icons.insert(FeedDirectionOf(width, 2).icon);
    }
    for (const bool isCollated : {false, true}) {
        names.bitmaps.insert(CollatePicture(isCollated));
    }
    for (const int8_t secondTray : {-1, 0, 1}) {
        for (const int8_t duplexUnit : {-1, 0, 1}) {
            names.bitmaps.insert(PrinterPicture({secondTray, duplexUnit}));
        }
    }
    for (const AdjustmentSlider& slider : kAdjustmentSliders) {
        names.bitmaps.insert(slider.bitmap);
    }
    for (const AdjustmentSlider& slider : kCmykSliders) {
        names.bitmaps.insert(slider.bitmap);
    }
    names.bitmaps.insert(kPlainSample);
    names.bitmaps.insert(std::begin(kAdjustedSamples), std::end(kAdjustedSamples));
    return names;
}

class ImageModule : public MachineTest, public testing::WithParamInterface<const char*> {};

TEST_P(ImageModule, LiesBesideTheRenderLibraryWithThePicturesThatAreAskedFor) {
    DriverPackage package = PackageOf("", GetParam());
    UseBuiltModules(package);
    Install(package);
    SetRendererNames(Printer());
    const OwnedSheetContext context(CreateSheetContext(Printer(), kPrinterName, nullptr));
    const OwnedModule module = LoadImageModule(*context.Get());
    ASSERT_TRUE(module);
    const PictureNames asked = AskedNames();
    std::set<std::string> resources;
    for (const WideText& name : asked.bitmaps) {
        const OwnedBitmap bitmap(LoadBitmapW(module.Get(), name.c_str()));
        EXPECT_TRUE(bitmap) << ToText(name);
        resources.insert("type 2, \"" + ToText(name) + '"');
    }
    for (const WideText& name : asked.icons) {
        EXPECT_NE(LoadIconW(module.Get(), name.c_str()), nullptr) << ToText(name);
        resources.insert("type 14, \"" + ToText(name) + '"');
    }
    for (const PackageFile& file : package.dependent) {
        if (file.name == u"KV62im.dll") {
            for (const std::string& resource : ReadModuleResources(file.bytes).others) {
                EXPECT_TRUE(resources.contains(resource) || resource.starts_with("type 3, ")) << resource;
            }
        }
    }
    for (const WCHAR* const library : {TEXT(""), TEXT("KV62.DLL"), TEXT("C:\\KV62E.DLL")}) {
        CopyText(context.Get()->renderLibrary, MAX_PATH, library);
        EXPECT_FALSE(LoadImageModule(*context.Get())) << ToText(library);
    }
}

INSTANTIATE_TEST_SUITE_P(WithoutAndWithAnIniFile, ImageModule, testing::Values("", "[PrinterDriver]\r\n"));

class Pictures : public DocumentSheetTest {
  protected:
    // What the user does on the document sheet, a step for each window that waits; at last the sheet is cancelled.
    void Run(std::vector<std::function<void()>> steps) {
        for (auto& step : steps) {
            host_->Then([=](HWND) { step(); });
        }
        DocumentSheetTest::Run();
    }
};

// The colours of a square of kSide pixels.
constexpr int kSide = 96;
using Pixels = std::vector<COLORREF>;

Pixels PixelsOf(HDC context, POINT corner) {
    Pixels pixels;
    for (int i = 0; i < kSide * kSide; ++i) {
        pixels.push_back(GetPixel(context, corner.x + i % kSide, corner.y + i / kSide));
    }
    return pixels;
}

// Drawing where the target is red.
TEST_F(Pictures, AreDrawnAtTheirControls) {
    constexpr int kPreview = 5002;
    constexpr COLORREF kRed = RGB(255, 0, 0);
    Run({[&] {
        const HWND page = host_->Page();
        SetWindowPos(GetDlgItem(page, kPreview), nullptr, 0, 0, kSide, kSide, SWP_NOMOVE | SWP_NOZORDER);
        const RECT place = ControlRect(page, kPreview);
        const OwnedModule module = LoadImageModule(host_->Context());
        const OwnedDeviceContext target(CreateCompatibleDC(nullptr));
        const HDC dialog = GetDC(page);
        const OwnedBitmap canvas(CreateCompatibleBitmap(dialog, place.right + kSide, place.bottom + kSide));
        ReleaseDC(page, dialog);
        const HGDIOBJ replaced = SelectObject(target.Get(), canvas.Get());
        const auto drawn = [&](const std::function<void()>& draw, POINT corner) {
            const RECT all = {0, 0, place.right + kSide, place.bottom + kSide};
            SetBkColor(target.Get(), kRed);
            ExtTextOutW(target.Get(), 0, 0, ETO_OPAQUE, &all, nullptr, 0, nullptr);
            draw();
            return PixelsOf(target.Get(), corner);
        };
        const auto show = [&](const WCHAR* name, bool isStretched) {
            return [=, &target, &module] {
                DrawBitmapInControl(page, target.Get(), module.Get(), name, kPreview, isStretched);
            };
        };
        const POINT corner = {place.left, place.top};
        const Pixels sheet = drawn(show(TEXT("IDB_PORT_A"), true), corner);
        EXPECT_EQ(std::count(sheet.begin(), sheet.end(), kRed), 0);
        EXPECT_EQ(drawn(show(TEXT("IDB_PORT_A"), false), corner), sheet) << "of the control's size";
        for (const auto& [isStretched, height] : {std::pair(true, kSide), std::pair(false, 40)}) {
            const Pixels copies = drawn(show(CollatePicture(true), isStretched), corner);
            EXPECT_EQ(std::count(copies.begin(), copies.end(), kRed), kSide * (kSide - height));
            EXPECT_NE(copies[0], kRed);
            EXPECT_EQ(drawn(show(CollatePicture(true), isStretched), {corner.x + kSide, corner.y + height}),
                      Pixels(kSide * kSide, kRed));
        }
        EXPECT_EQ(drawn(show(TEXT("NONE"), true), corner), Pixels(kSide * kSide, kRed));

        Pixels rings = drawn(show(TEXT("IDB_PORT_LEFT"), true), corner);
        std::replace(rings.begin(), rings.end(), RGB(255, 255, 255), kRed);
        EXPECT_NE(rings, Pixels(kSide * kSide, kRed));
        SetTextColor(target.Get(), RGB(1, 2, 3));
        SetStretchBltMode(target.Get(), HALFTONE);
        const auto overlay = [&] {
            DrawBitmapTransparent(page, target.Get(), module.Get(), TEXT("IDB_PORT_LEFT"), kPreview);
        };
        EXPECT_EQ(drawn(overlay, corner), rings);
        EXPECT_EQ(GetTextColor(target.Get()), RGB(1, 2, 3));
        EXPECT_EQ(GetBkColor(target.Get()), kRed);
        EXPECT_EQ(SetStretchBltMode(target.Get(), COLORONCOLOR), HALFTONE);

        AdjustmentTable table;
        BuildAdjustmentTable({2, 3, 4, 5, 6, 7, 8}, &table);
        Pixels adjusted;
        for (const COLORREF color : sheet) {
            const uint32_t mapped = MapPixel(table, RGB(GetBValue(color), GetGValue(color), GetRValue(color)));
            adjusted.push_back(RGB(GetBValue(mapped), GetGValue(mapped), GetRValue(mapped)));
        }
        const auto adjust = [&] {
            DrawAdjustedSample(page, target.Get(), module.Get(), TEXT("IDB_PORT_A"), kPreview, table);
        };
        EXPECT_EQ(drawn(adjust, corner), adjusted);
        SelectObject(target.Get(), replaced);
    }});
}

// A page is repainted over and over, and nothing of what it draws with stays.
TEST_F(Pictures, LeaveNothingOpenWhereverTheyAreRepainted) {
    const auto repaint = [&](HWND page) {
        RedrawWindow(page, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        const Texts open = host::StillOpen();
        const uint64_t drawn = host::CallsSoFar("LoadBitmapW");
        RedrawWindow(page, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        EXPECT_EQ(host::StillOpen(), open);
        EXPECT_GT(host::CallsSoFar("LoadBitmapW"), drawn);
    };
    const auto page = [](HWND sheet) {
        return reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
    };
    host_->Then([&](HWND sheet) { repaint(page(sheet)); });
    host_->RunDeviceSheet();
    Run({
        [&] {
            repaint(host_->Page());
            SendMessageW(GetParent(host_->Page()), PSM_SETCURSEL, 1, 0);
            Click(host_->Page(), 6012);
            Click(host_->Page(), 6026);
        },
        [&] { repaint(page(FrontDialog())); },
    });
}

}  // namespace
}  // namespace velmora
