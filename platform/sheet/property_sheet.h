// A property sheet while it is open: the pages' windows, which of them is shown, what they are told and when.
#pragma once

#include <prsht.h>
#include <windows.h>

#include <cstddef>
#include <vector>

#include "platform/user/dialog_template.h"

namespace host {

struct SheetPage {
    HPROPSHEETPAGE handle;
    const PROPSHEETPAGEW* given;
    DialogTemplate dialog;
    HWND window = nullptr;  // null: not made yet
    bool isChanged = false;

    bool HasHelp() const { return (given->dwFlags & PSP_HASHELP) != 0; }
};

// A sheet from its opening to its end. It owns its pages. Windows may go with any message that is sent.
class PropertySheet {
  public:
    // Results, as PropertySheetW has them.
    static constexpr INT_PTR kSaved = 1;
    static constexpr INT_PTR kNotSaved = 0;
    static constexpr INT_PTR kFailed = -1;

    explicit PropertySheet(const PROPSHEETHEADERW& header) : header_(header) {}
    ~PropertySheet();
    PropertySheet(const PropertySheet&) = delete;
    PropertySheet& operator=(const PropertySheet&) = delete;

    // A page whose dialog can't be loaded is left out.
    void Take(HPROPSHEETPAGE handle);
    INT_PTR Run();

  private:
    static INT_PTR CALLBACK Proc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
    // False: not the sheet's to answer.
    bool Answer(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* answer);
    void OnCommand(int id);
    LRESULT OnTabs(UINT code);

    bool Open();
    void WaitForEnd();
    bool TakeKey(const MSG& message);

    bool Make(size_t index);
    void Remove(size_t index);
    void Show(size_t index);
    void FocusPage();
    LRESULT Notify(size_t index, UINT code, LPARAM parameter = 0);
    bool MayLeave();
    bool Activate(size_t index, bool backwards);
    bool Select(size_t index, bool backwards);
    void Step(bool backwards);
    size_t IndexOf(HPROPSHEETPAGE handle) const;

    void Mark(HWND page, bool isChanged);
    void EnableApply();
    bool Apply(bool isLast);
    void Cancel(bool isClosed);
    void End(INT_PTR result);

    HWND Control(int id) const { return GetDlgItem(sheet_, id); }
    bool IsOpen() const { return !isEnded_ && IsWindow(sheet_); }

    const PROPSHEETHEADERW& header_;
    std::vector<SheetPage> pages_;
    HWND sheet_ = nullptr;
    RECT place_ = {};        // of the pages in the sheet
    size_t active_ = kNone;  // index of the page that is shown
    size_t making_ = kNone;  // of the page whose window is being made
    bool isEnded_ = false;
    INT_PTR result_ = kFailed;

    static constexpr size_t kNone = static_cast<size_t>(-1);
};

}  // namespace host
