// The colours of windows and controls.
#include <windows.h>

#include <array>

#include "platform/gdi/gdi_objects.h"
#include "platform/gdi/system_colors.h"
#include "platform/kernel/failures.h"

namespace host {
namespace {

constexpr struct {
    int index;
    COLORREF color;
} kColors[] = {
    {COLOR_SCROLLBAR, RGB(200, 200, 200)},    {COLOR_ACTIVECAPTION, RGB(153, 180, 209)},
    {COLOR_WINDOW, RGB(255, 255, 255)},       {COLOR_WINDOWFRAME, RGB(100, 100, 100)},
    {COLOR_WINDOWTEXT, RGB(0, 0, 0)},         {COLOR_CAPTIONTEXT, RGB(0, 0, 0)},
    {COLOR_HIGHLIGHT, RGB(0, 120, 215)},      {COLOR_HIGHLIGHTTEXT, RGB(255, 255, 255)},
    {COLOR_BTNFACE, RGB(240, 240, 240)},      {COLOR_BTNSHADOW, RGB(160, 160, 160)},
    {COLOR_GRAYTEXT, RGB(109, 109, 109)},     {COLOR_BTNTEXT, RGB(0, 0, 0)},
    {COLOR_BTNHIGHLIGHT, RGB(255, 255, 255)}, {COLOR_3DDKSHADOW, RGB(105, 105, 105)},
    {COLOR_3DLIGHT, RGB(227, 227, 227)},
};

}  // namespace

std::optional<COLORREF> SystemColor(int index) {
    for (const auto& row : kColors) {
        if (row.index == index) {
            return row.color;
        }
    }
    return std::nullopt;
}

}  // namespace host

using namespace host;

extern "C" {

DWORD WINAPI GetSysColor(int index) {
    const auto color = SystemColor(index);
    if (!color) {
        FailUnsupported("GetSysColor (of this index)");
    }
    return color.value_or(0);
}

HBRUSH WINAPI GetSysColorBrush(int index) {
    const auto color = SystemColor(index);
    if (!color) {
        FailUnsupported("GetSysColorBrush (of this index)");
        return nullptr;
    }
    static std::array<HANDLE, kSystemColors> handles = {};
    return static_cast<HBRUSH>(OwnHandle(&handles[static_cast<size_t>(index)], [&] { return Brush{*color}; }));
}

}  // extern "C"
