// A person in front of the screen: acts on the windows of the calling thread while a program waits for input in them.
#pragma once

#include <windows.h>

#include <prsht.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/contract/environment.h"

namespace contract {

using Step = std::function<void()>;

// Calls `program`, which shows windows and comes back when they are closed, while a user takes the steps: one each time
// that the program waits for input. Where a step opens another window that waits, the steps after it act on that. The
// test fails where the program ends before the last step, and where it waits after it: then its windows are closed.
void RunWithUser(ContractEnvironment& environment, std::vector<Step> steps, const std::function<void()>& program);

// The dialog that takes input: visible, enabled, of the class of dialogs. Null where there is none.
HWND FrontDialog();
// FrontDialog, or, where that is a property sheet, its page.
HWND FrontPage();
// A control of FrontPage by its id. A test failure, and null, where there is none.
HWND Control(int id);

WideText ClassOf(HWND window);
WideText TextOf(HWND window);
// The access key of a text as a virtual key; 0: none.
WORD AccessKeyOf(const WideText& text);

// Id of the control that has the focus; 0 where there is none.
int FocusedControl();

// What the user does. Buttons, lists and sheets are acted on by messages, as other programs would.
void PressButton(int button);
void SelectInList(int listBox, int item);
void PressInSheet(int button);  // PSBTN_ (prsht.h)

// By keyboard and mouse, whatever has the focus or lies there. Modifiers are virtual keys held down meanwhile.
void PressKey(WORD key, std::initializer_list<WORD> modifiers = {});
void Click(POINT screen, bool right = false);
POINT MiddleOf(HWND window);  // on the screen

// A step that notes what the front dialog shows in the transcript: a dialog's title, each control of its page in the
// order of the Tab key, and which buttons of a sheet can be pressed. Texts of the controls in `hostsOwn` are left out.
Step Describe(const std::string& title, const std::vector<int>& hostsOwn = {});

// A step that takes a picture of the front dialog: pictures/NAME.png in the test's folder.
Step TakePicture(ContractEnvironment& environment, const std::string& name);

}  // namespace contract
