// Draws every control in its states, into a picture to look at.
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host.h"
#include "tests/platform/controls_fixture.h"

namespace host {
namespace {

struct Piece {
    LPCWSTR className;
    DWORD style;
    LPCWSTR text;
    RECT place;
    enum Kind { kPair, kAlone, kDisabled } kind = kPair;  // a pair: beside it the same control disabled
};

constexpr DWORD kPopupText = WS_VSCROLL | CBS_AUTOHSCROLL;
constexpr DWORD kBuddyStyle = UDS_AUTOBUDDY | UDS_SETBUDDYINT | UDS_ALIGNRIGHT;

// A column each for what is usual and for what is disabled.
const Piece kPieces[] = {
    {TEXT("Button"), BS_GROUPBOX, TEXT("Buttons"), {10, 8, 205, 252}, Piece::kAlone},
    {TEXT("Button"), BS_PUSHBUTTON, TEXT("&Details..."), {20, 28, 107, 51}},
    {TEXT("Button"), BS_DEFPUSHBUTTON, TEXT("OK"), {20, 58, 107, 81}},
    {TEXT("Button"), BS_PUSHBUTTON | BS_MULTILINE, TEXT("Two lines of text"), {20, 88, 107, 124}},
    {TEXT("Button"), BS_AUTOCHECKBOX, TEXT("&Collate"), {20, 132, 107, 150}},
    {TEXT("Button"), BS_AUTOCHECKBOX, TEXT("Zoom"), {20, 150, 107, 168}},
    {TEXT("Button"), BS_AUTORADIOBUTTON | WS_GROUP, TEXT("&Portrait"), {20, 174, 107, 192}},
    {TEXT("Button"), BS_AUTORADIOBUTTON, TEXT("&Landscape"), {20, 192, 107, 210}},
    {TEXT("Button"), BS_CHECKBOX | BS_MULTILINE, TEXT("A text that needs lines"), {20, 212, 107, 244}},
    {TEXT("Button"), BS_GROUPBOX, TEXT("&Texts"), {215, 8, 410, 130}, Piece::kAlone},
    {TEXT("Static"), SS_LEFT, TEXT("&Paper size:"), {225, 28, 312, 44}},
    {TEXT("Static"), SS_CENTER, TEXT("Centered"), {225, 44, 312, 60}},
    {TEXT("Static"), SS_RIGHT, TEXT("Right"), {225, 60, 312, 76}},
    {TEXT("Static"), SS_LEFT | SS_ENDELLIPSIS, TEXT("A text that is cut at its end"), {225, 76, 312, 92}},
    {TEXT("Static"), SS_ETCHEDHORZ, TEXT(""), {225, 98, 312, 100}},
    {TEXT("Static"), SS_ETCHEDFRAME, TEXT(""), {225, 104, 252, 122}},
    {TEXT("Static"), SS_GRAYFRAME, TEXT(""), {255, 104, 282, 122}},
    {TEXT("Static"), SS_BLACKFRAME, TEXT(""), {285, 104, 312, 122}},
    {TEXT("Button"), BS_GROUPBOX, TEXT("Fields"), {215, 136, 410, 252}, Piece::kAlone},
    {TEXT("Edit"), WS_BORDER | ES_AUTOHSCROLL, TEXT("Confidential"), {225, 156, 312, 178}},
    {TEXT("Edit"), WS_BORDER | ES_READONLY | ES_AUTOHSCROLL, TEXT("Read only"), {225, 184, 312, 206}},
    {TEXT("Edit"), WS_BORDER | ES_NUMBER, TEXT(""), {225, 212, 312, 234}, Piece::kAlone},
    {UPDOWN_CLASSW, kBuddyStyle, TEXT(""), {}, Piece::kAlone},
    {TEXT("Edit"), WS_BORDER | ES_NUMBER, TEXT(""), {225, 212, 312, 234}, Piece::kDisabled},
    {UPDOWN_CLASSW, kBuddyStyle, TEXT(""), {}, Piece::kDisabled},
    {TEXT("Button"), BS_GROUPBOX, TEXT("Combo boxes"), {420, 8, 615, 252}, Piece::kAlone},
    {TEXT("ComboBox"), CBS_DROPDOWN | kPopupText, TEXT(""), {430, 28, 517, 128}},
    {TEXT("ComboBox"), CBS_SIMPLE | WS_VSCROLL, TEXT(""), {430, 56, 517, 150}},
    {TEXT("ComboBox"), CBS_DROPDOWNLIST | WS_VSCROLL, TEXT(""), {430, 158, 517, 246}},
    {TEXT("Button"), BS_GROUPBOX, TEXT("Lists"), {10, 258, 205, 470}, Piece::kAlone},
    {TEXT("ListBox"), WS_BORDER | WS_VSCROLL, TEXT(""), {20, 278, 107, 366}},
    {TEXT("ListBox"), WS_BORDER, TEXT(""), {20, 374, 107, 462}},
    {TEXT("Button"), BS_GROUPBOX, TEXT("Bars"), {215, 258, 410, 470}, Piece::kAlone},
    {TEXT("ScrollBar"), SBS_HORZ, TEXT(""), {225, 280, 312, 297}},
    {TEXT("ScrollBar"), SBS_VERT, TEXT(""), {225, 304, 242, 370}},
    {TRACKBAR_CLASSW, TBS_HORZ | TBS_AUTOTICKS, TEXT(""), {225, 380, 312, 412}},
    {TRACKBAR_CLASSW, TBS_HORZ | TBS_NOTICKS, TEXT(""), {225, 418, 312, 444}},
    {TRACKBAR_CLASSW, TBS_VERT | TBS_AUTOTICKS, TEXT(""), {265, 300, 300, 376}},
    {WC_TABCONTROLW, 0, TEXT(""), {420, 262, 615, 470}, Piece::kAlone},
};

class PictureTest : public ControlTest {
  protected:
    HWND MakePiece(const Piece& piece, bool disabled) {
        RECT place = piece.place;
        if (disabled) {
            OffsetRect(&place, 93, 0);
        }
        const HWND control = Make(piece.className, piece.style | (disabled ? WS_DISABLED : 0u), piece.text, place);
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
        Fill(control, piece.className);
        return control;
    }

    // Something of everything: each class takes the messages that are its own.
    static void Fill(HWND control, std::u16string_view className) {
        const std::u16string_view texts[] = {u"A4 (210 x 297 mm)", u"Letter",   u"Legal",    u"Executive",
                                             u"Envelope DL",       u"B5 (JIS)", u"Statement"};
        const bool isList = className == u"ListBox";
        if (isList || className == u"ComboBox") {
            for (const std::u16string_view text : texts) {
                SendMessageW(control, isList ? LB_ADDSTRING : CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.data()));
            }
            SendMessageW(control, isList ? LB_SETCURSEL : CB_SETCURSEL, 1, 0);
        } else if (className == u"Button") {
            SendMessageW(control, BM_SETCHECK, GetDlgCtrlID(control) % 4 < 2 ? BST_CHECKED : BST_UNCHECKED, 0);
        } else if (className == u"ScrollBar") {
            SetScrollRange(control, SB_CTL, -10, 10, FALSE);
        } else if (className == TRACKBAR_CLASSW) {
            SendMessageW(control, TBM_SETTICFREQ, 20, 0);
            SendMessageW(control, TBM_SETPOS, TRUE, 40);
        } else if (className == UPDOWN_CLASSW) {
            SendMessageW(control, UDM_SETRANGE, 0, MAKELPARAM(400, 25));
            SendMessageW(control, UDM_SETPOS, 0, 100);
        } else if (className == WC_TABCONTROLW) {
            for (std::u16string text : {u"Paper", u"Color", u"Output"}) {
                TCITEMW item = {};
                item.mask = TCIF_TEXT;
                item.pszText = text.data();
                SendMessageW(control, TCM_INSERTITEMW, 9, reinterpret_cast<LPARAM>(&item));
            }
        }
    }

    size_t ColorsOf(HWND control) const {
        RECT place;
        GetWindowRect(control, &place);
        MapWindowPoints(nullptr, parent_, reinterpret_cast<POINT*>(&place), 2);
        const HDC context = GetDC(parent_);
        std::set<COLORREF> colors;
        for (int y = place.top; y < place.bottom; ++y) {
            for (int x = place.left; x < place.right; ++x) {
                colors.insert(GetPixel(context, x, y));
            }
        }
        ReleaseDC(parent_, context);
        return colors.size();
    }
};

TEST_F(PictureTest, EveryControlIsDrawn) {
    SetWindowPos(parent_, nullptr, 0, 0, 625, 480, SWP_NOMOVE | SWP_NOZORDER);
    std::vector<HWND> controls;
    HWND lastCombo = nullptr;
    for (const Piece& piece : kPieces) {
        const HWND control = MakePiece(piece, piece.kind == Piece::kDisabled);
        controls.push_back(control);
        if (piece.kind == Piece::kPair) {
            controls.push_back(MakePiece(piece, true));
        }
        if (piece.className == std::u16string_view(u"ComboBox")) {
            lastCombo = control;
        }
    }
    SetFocus(lastCombo);
    SendMessageW(lastCombo, CB_SHOWDROPDOWN, TRUE, 0);
    ASSERT_TRUE(SavePicture(parent_, VELMORA_CONTROLS_PICTURE));
    for (const HWND control : controls) {
        EXPECT_GT(ColorsOf(control), 1u) << "control " << GetDlgCtrlID(control);
    }
}

}  // namespace
}  // namespace host
