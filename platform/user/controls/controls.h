// The window procedures of the control classes.
#pragma once

#include <windows.h>

namespace host {

LRESULT CALLBACK ButtonProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK StaticProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// An edit field. A combo box is the parent of its own.
LRESULT CALLBACK EditProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
// A list box, or the list of the combo box that is the window's creation parameter: that one gets its notifications.
LRESULT CALLBACK ListBoxProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ComboBoxProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK ScrollBarProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK TrackBarProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK UpDownProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK TabControlProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

inline constexpr WCHAR kComboListClass[] = TEXT("ComboLBox");

// To the list of a combo box: whether the mouse is followed, as over a dropped list. wParam: BOOL.
inline constexpr UINT kTrackMouse = WM_USER + 0x302;
// From that list: the mouse chose the selected item (wParam 1), or was pressed outside of the list (wParam 0).
inline constexpr UINT kListDone = WM_USER + 0x303;

}  // namespace host
