// The panel by which tests and tools make and set a machine. Programs under test never see it: they know the published
// calls only.
#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// A font family of a machine's display.
struct Font {
    std::basic_string<WCHAR> face;  // at most 31 characters count
    DWORD type;                     // TRUETYPE_FONTTYPE, DEVICE_FONTTYPE, RASTER_FONTTYPE (wingdi.h), or none of them
    BYTE charSet;                   // ANSI_CHARSET … (wingdi.h)
};

// One machine: drive C:, environment, settings, registry, spooler. There is at most one at a time in a process, and the
// published calls act on it. Destroying it closes what is open and, unless it is kept, removes its folder.
class Machine {
  public:
    // A fresh machine in a new temporary folder.
    Machine();
    // A machine kept in `folder` between processes: loaded where there is one, made where not. Only one process at a
    // time has it; the constructor waits for another to end. Throws std::runtime_error, naming the file, where what is
    // there can't be read.
    explicit Machine(const std::filesystem::path& folder);
    ~Machine();
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    // The host's folder that is drive C:.
    const std::filesystem::path& Drive() const;

    // International settings. A fresh machine is English (0x0409), metric, ".", code page 1252.
    void SetLanguage(LANGID language);                             // user's default language
    void SetMetric(bool metric);                                   // section "intl", key "iMeasure": 0 metric, 1 U.S.
    void SetDecimalSeparator(std::basic_string_view<WCHAR> text);  // section "intl", key "sDecimal"
    void SetAnsiCodePage(UINT codePage);  // 1252 or 932; throws std::invalid_argument for others
    LANGID Language() const;
    bool IsMetric() const;

    // A fresh machine is "VELMORA-PC", system version 10.0, tick count 0x01000000.
    void SetComputerName(std::basic_string_view<WCHAR> name);
    void SetSystemVersion(DWORD major, DWORD minor);
    void SetTickCount(DWORD milliseconds);  // stands still until set again
    // True: a wait that would run out ends at once, and the tick count goes on by its time. A fresh machine waits.
    void SetWaitsElapseAtOnce(bool atOnce);
    // Empty value: the variable is removed. A fresh machine has APPDATA, USERPROFILE,
    // TEMP and TMP, at and below C:\Users\User.
    void SetVariable(std::basic_string_view<WCHAR> name, std::basic_string_view<WCHAR> value);

    // The display's fonts. A fresh machine has Arial, Courier New, Symbol and Times New Roman, one that is kept in a
    // folder those of the host besides.
    void SetFonts(std::vector<Font> fonts);

    // What OpenPrinterW grants and whether SetPrinterDataW may write. All by default.
    void SetGrantedPrinterAccess(DWORD accessMask);
    void SetMayWritePrinterData(bool may);

    // What WinExec starts when the command line's program has this file name (no folder, case ignored).
    using Program = std::function<void(const std::string& commandLine)>;
    void SetProgram(std::basic_string_view<WCHAR> fileName, Program program);

    // Called when a program waits for input: acts by messages, SendInput and the other published calls, on the waiting
    // thread, and returns. It may be called again from loops inside. Where there is none, or it does nothing many times
    // in a row, that is said on the standard error stream and the wait ends as WM_QUIT ends it (DialogBoxParamW: -1).
    void SetUser(std::function<void()> user);

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

// Faults. Counting starts at 1 with the next allocation or call; a fault happens once. Cleared with the machine.
void FailAllocation(uint64_t nth);
uint64_t AllocationsSoFar();  // since FailAllocation or ClearFaults
void FailCall(std::string_view publishedName, DWORD error, uint64_t nth = 1);
uint64_t CallsSoFar(std::string_view publishedName);  // since the machine was made
void ClearFaults();

// Messages sent to HWND_BROADCAST since the machine was made.
struct Broadcast {
    UINT message;
    WPARAM wParam;
    std::basic_string<WCHAR> text;  // of WM_DEVMODECHANGE: the device's name
};
std::vector<Broadcast> Broadcasts();

// How often a program waited for input that nobody gave, since the machine was made.
uint64_t UnansweredWaits();

// The window as the screen shows it, brought up to date, and the popups that are open over it. A top-level window or
// one of its children, of the calling thread. False where the window isn't shown or the file can't be written.
bool SavePicture(HWND window, const std::filesystem::path& png);

// What is still open, one line each ("file C:\x.xpi", "heap block of 72 bytes (allocation 17)"); empty: nothing.
std::vector<std::string> StillOpen();

}  // namespace host
