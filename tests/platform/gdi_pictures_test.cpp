#include "tests/platform/gdi_fixture.h"

namespace host {
namespace {

class GdiPicturesTest : public GdiTest {
  protected:
    GdiPicturesTest() {
        std::filesystem::create_directories(machine_->Drive() / "t");
        std::filesystem::copy_file(VELMORA_PROBE_RESOURCES, machine_->Drive() / "t/pictures.dll");
        module_ = LoadLibraryW(u"C:\\t\\pictures.dll");
    }
    void TearDown() override {
        FreeLibrary(module_);
        GdiTest::TearDown();
    }
    Lines RowsOf(HBITMAP bitmap, int width, int height) {
        const HDC context = CreateCompatibleDC(nullptr);
        SelectObject(context, bitmap);
        Lines rows = Rows(context, width, height);
        DeleteDC(context);
        return rows;
    }

    HMODULE module_;
};

TEST_F(GdiPicturesTest, Bitmaps) {
    EXPECT_EQ(RowsOf(Keep(LoadBitmapW(module_, u"PICTURE")), 2, 2), (Lines{"rg", "b."}));
    EXPECT_EQ(RowsOf(Keep(LoadBitmapW(module_, u"INDEXED")), 4, 1), Lines{"#rr#"});
    const HANDLE section = LoadImageW(module_, u"PICTURE", IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION);
    EXPECT_EQ(RowsOf(static_cast<HBITMAP>(Keep(section)), 2, 2), (Lines{"rg", "b."}));
    BITMAP told = {};
    GetObjectW(section, sizeof told, &told);
    EXPECT_EQ(static_cast<DWORD*>(told.bmBits)[0], 0x000000FFu);
    ExpectErrors({
        {"missing", [&] { return LoadBitmapW(module_, u"NONE") != nullptr; }, ERROR_RESOURCE_NAME_NOT_FOUND},
        {"cut", [&] { return LoadBitmapW(module_, u"CUT") != nullptr; }, ERROR_INVALID_DATA},
        {"no module", [&] { return LoadBitmapW(nullptr, u"PICTURE") != nullptr; }, ERROR_INVALID_HANDLE},
    });
}

// Of a group the image of the nearest size, drawn by its alpha or by its mask.
TEST_F(GdiPicturesTest, Icons) {
    const HDC canvas = MakeCanvas(8, 4);
    const auto alpha = static_cast<HICON>(LoadImageW(module_, u"SIGN", IMAGE_ICON, 2, 2, LR_DEFAULTCOLOR));
    const auto masked = static_cast<HICON>(LoadImageW(module_, u"SIGN", IMAGE_ICON, 4, 2, LR_DEFAULTCOLOR));
    const RECT all = {0, 0, 8, 4};
    FillRect(canvas, &all, Keep(CreateSolidBrush(kBlue)));
    EXPECT_TRUE(DrawIconEx(canvas, 0, 0, alpha, 0, 0, 0, nullptr, DI_NORMAL));
    EXPECT_TRUE(DrawIconEx(canvas, 3, 1, masked, 0, 0, 0, nullptr, DI_NORMAL));
    EXPECT_EQ(Rows(canvas, 8, 4), (Lines{"r?bbbbbb", "bbbbb.#b", "bbbbb.#b", "bbbbbbbb"}));
    EXPECT_EQ(GetPixel(canvas, 1, 0), RGB(0x80, 0, 0x7F));
    EXPECT_EQ(StillOpen().size(), 6u);  // with the context, its bitmap, the brush and the module
    EXPECT_TRUE(DestroyIcon(alpha));
    EXPECT_TRUE(DestroyIcon(masked));
    EXPECT_EQ(FailureOf([&] { return DestroyIcon(masked); }), ERROR_INVALID_HANDLE);

    const HICON shared = LoadIconW(module_, u"SIGN");
    EXPECT_NE(shared, nullptr);
    EXPECT_EQ(LoadIconW(module_, u"sign"), shared);
    EXPECT_EQ(FailureOf([&] { return LoadIconW(module_, u"NONE") != nullptr; }), ERROR_RESOURCE_NAME_NOT_FOUND);
    EXPECT_EQ(FailureOf([&] { return DestroyIcon(shared); }), ERROR_NOT_SUPPORTED);
}

TEST_F(GdiPicturesTest, TheSystemsOwn) {
    std::vector<Lines> pictures;
    for (const LPCWSTR id : {IDI_APPLICATION, IDI_ERROR, IDI_QUESTION, IDI_WARNING, IDI_INFORMATION}) {
        const HDC canvas = MakeCanvas(32, 32);
        EXPECT_TRUE(DrawIcon(canvas, 0, 0, LoadIconW(nullptr, id)));
        const Lines picture = Rows(canvas, 32, 32);
        EXPECT_EQ(picture[0][0], '.');
        EXPECT_NE(picture[16], std::string(32, '.'));
        EXPECT_EQ(std::count(pictures.begin(), pictures.end(), picture), 0);
        pictures.push_back(picture);
    }
}

TEST(GdiCursorTest, EachMachineStartsWithTheArrow) {
    for (int i = 0; i < 2; ++i) {
        const Machine machine;
        const HCURSOR hand = LoadCursorW(nullptr, IDC_HAND);
        EXPECT_EQ(SetCursor(hand), LoadCursorW(nullptr, IDC_ARROW));
        EXPECT_EQ(GetCursor(), hand);
        EXPECT_EQ(SetCursor(nullptr), hand);
        FailCall("LoadCursorW", ERROR_RESOURCE_NAME_NOT_FOUND);
        EXPECT_EQ(FailureOf([] { return LoadCursorW(nullptr, IDC_HAND) != nullptr; }), ERROR_RESOURCE_NAME_NOT_FOUND);
        EXPECT_EQ(StillOpen(), Lines());
    }
}

}  // namespace
}  // namespace host
