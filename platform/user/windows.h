// Windows, and what a thread has of them. A window belongs to the thread that made it; only that thread's calls reach
// it. A procedure may destroy any window: after each call out, windows are looked up again by their handles.
#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/kernel/objects.h"

namespace host {

class Surface;
struct DialogState;

struct WindowClass {
    std::u16string name;
    UINT style = 0;
    WNDPROC proc = nullptr;
    int windowExtra = 0;
    HINSTANCE instance = nullptr;
    HICON icon = nullptr;
    HCURSOR cursor = nullptr;
    HBRUSH background = nullptr;
    ATOM atom = 0;
    bool isSystem = false;
};

class Window final : public Object {
  public:
    Window();
    ~Window() override;
    std::string Describe() const override;
    bool IsHeldByProgram() const override { return thread != 0; }

    bool IsChild() const { return (style & WS_CHILD) != 0; }
    bool IsMarkedVisible() const { return (style & WS_VISIBLE) != 0; }

    HWND handle = nullptr;
    DWORD thread = 0;  // 0: the desktop, which every thread reaches
    std::shared_ptr<const WindowClass> windowClass;
    WNDPROC proc = nullptr;
    HINSTANCE instance = nullptr;
    DWORD style = 0;
    DWORD exStyle = 0;
    LONG_PTR id = 0;
    LONG_PTR userData = 0;
    std::vector<BYTE> extra;
    std::u16string text;
    HICON icons[2] = {};  // ICON_SMALL, ICON_BIG

    HWND parent = nullptr;       // of a child
    HWND owner = nullptr;        // of a top-level window
    std::vector<HWND> children;  // from the top
    RECT rect = {};              // in the parent's client area; a top-level window's on the screen
    RECT client = {};            // relative to the window's corner

    bool isInvalid = false;
    bool mustErase = false;
    bool mustDrawFrame = false;
    RECT update = {};  // in the client area
    bool redraws = true;
    int paintsUnanswered = 0;          // WM_PAINTs in a row that left the window invalid
    std::shared_ptr<Surface> surface;  // a top-level window's pixels; null until something is drawn

    bool isBeingDestroyed = false;
    std::unique_ptr<DialogState> dialog;  // null: no dialog
};

// A device context that GetDC or BeginPaint gave, and what drawing on it must leave as it was.
struct PaintContext {
    struct Kept {
        RECT rect;  // in the surface's pixels
        std::vector<uint32_t> pixels;
    };
    HDC context;
    HWND window;
    std::shared_ptr<Surface> surface;
    std::vector<Kept> kept;
};

// A piece of input that waits to become a message: a key, or one thing that the mouse did.
struct InputEvent {
    INPUT input;
    POINT cursor;  // where it is then
};

struct Timer {
    HWND window;
    UINT_PTR id;
    UINT period;  // milliseconds
    DWORD due;    // tick count
    TIMERPROC proc;
};

// What a thread's windows share.
struct ThreadWindows {
    uint64_t machine = 0;         // that this is of
    std::vector<HWND> topLevels;  // from the top
    HWND active = nullptr;
    HWND focus = nullptr;
    HWND capture = nullptr;
    std::deque<MSG> posted;
    std::deque<InputEvent> input;
    bool isQuitting = false;
    int exitCode = 0;
    std::vector<PaintContext> contexts;
    std::vector<Timer> timers;
    UINT_PTR nextTimerId = 1;
    BYTE keys[256] = {};  // 0x80: down; as of the last message taken
    POINT cursor = {};    // as of the last input made
    MSG lastClick = {};   // that a double click may follow
    // Rises with whatever a user may have wanted: messages posted, input, windows made, changed or destroyed.
    uint64_t changes = 0;
    int idleTurns = 0;  // of the machine's user, in a row
};
ThreadWindows& ThisThread();

// The window, where it is the calling thread's or the desktop. Otherwise null with ERROR_INVALID_WINDOW_HANDLE; of
// another thread's window it is said on the standard error stream.
Window* FindWindowObject(HWND window);

// The desktop of this machine: the screen.
Window& Desktop();
inline constexpr LONG kScreenWidth = 1920;
inline constexpr LONG kScreenHeight = 1080;

// For the machine's end.
void ForgetClasses();

// Null with ERROR_CANNOT_FIND_WND_CLASS. `name` may be an atom. System classes are of every instance.
std::shared_ptr<const WindowClass> FindWindowClass(LPCWSTR name, HINSTANCE instance);

// The children of a window, or this thread's top-level windows for the desktop; from the top.
std::vector<HWND>& ChildrenOf(Window& window);
// The parent, the desktop for a top-level window; null for the desktop.
Window* TreeParent(const Window& window);
// The top-level window that the window is in.
Window& RootOf(Window& window);
bool IsInside(HWND window, HWND ancestor);  // or is it
// Into the list of its parent's children, or of the top-level windows. `after`: HWND_TOP, HWND_BOTTOM or a sibling.
void PlaceInOrder(Window& window, HWND after);
void TakeOutOfOrder(Window& window);

// Of the corner of a window's client area, on the screen.
POINT ClientOrigin(const Window& window);
RECT ScreenRect(const Window& window);
SIZE ClientSize(const Window& window);
// Asks the window by WM_NCCALCSIZE where its client area lies.
void CalculateClient(HWND window);
// What a frame takes away from each side of a window.
RECT FrameOf(DWORD style, DWORD exStyle);
bool IsEmptyRect(const RECT& rect);
RECT Intersection(const RECT& a, const RECT& b);
RECT Moved(const RECT& rect, LONG dx, LONG dy);

// Marks a part of a window for painting, and the children in it where the window doesn't clip them. Null: all; an
// empty rectangle with `frame`: the frame alone.
void Invalidate(Window& window, const RECT* rect, bool erase, bool frame = false, bool children = false);
// The place of a window in its parent, as after it was moved or hidden.
void InvalidatePlace(const Window& window, const RECT& rect);

// Calls a window's procedure at once. 0 where the window isn't there.
LRESULT Send(HWND window, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);

// What a machine's user does while a program waits for input, see Machine::SetUser.
void SetInputUser(std::function<void()> user);

// The next message that the filter lets through, as GetMessageW takes it. Where there is none yet, `idle` (may be
// empty) is called once before the machine's user is.
enum class Wait { kMessage, kQuit, kNobody };
Wait WaitForMessage(MSG* message, const std::function<void()>& idle);

// The next message that the thread's input makes, if one is there. The keys' state is as of then.
bool TakeInput(MSG* message);

// Takes back whatever leads to a window that goes.
void ForgetInQueue(HWND window);
void MoveFocusOut(HWND window, HWND to);  // where the focus is the window or inside
bool ActivateWindow(HWND window);         // a top-level window, or null
void ActivateAnother(HWND window);        // the window can't be active any more

// As GetDC and GetWindowDC (`whole`) give it, null for the screen; null on failure.
HDC OpenContext(HWND window, bool whole);
void CloseContext(HDC context);

// The first window of the thread that must be painted; null: none.
HWND FindInvalidWindow();

LPARAM PointParameter(POINT point);
POINT PointFrom(LPARAM parameter);

}  // namespace host
