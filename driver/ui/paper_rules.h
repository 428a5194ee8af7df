// The rules of the Paper page, apart from its window: which choices there are, how each limits the others, and what
// they make of a device mode.
//
// The page's window keeps one PaperChoices record and shows it. It is meant to be used so:
//  - opening: InitPaperChoices, then UpdatePaperDependencies with kOpening, then every control is set;
//  - a command: what the control shows goes into the record (SelectChoice for a list, isChecked for a box,
//    TypeNumber and SettleNumber for a number), then TakePaperCommand with FindPaperCommand's row. Controls whose part
//    of the record differs from a copy made before are set, and pictures whose part does are painted. A command that
//    has a row marks the page as changed;
//  - choosing the custom size opens its dialog first: StoreCustomSize of custom_size.h takes its size, then the
//    command goes on as above. StoreLayoutDetails of layout_details.h takes what is chosen in the other dialog;
//  - PSN_SETACTIVE: UpdatePaperDependencies with TakeStaleMark's result;
//  - other pages look at the device mode while this one is open, so WritePageDetails goes to it as the page opens and
//    after every change;
//  - applying: ApplyPaperChoices.
// Nothing here allocates or calls a window.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/devdesc/device_model.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devmode/private_devmode.h"
#include "driver/settings/device_info.h"
#include "driver/ui/choice_list.h"
#include "driver/ui/number_field.h"

namespace velmora {

struct CheckBox {
    bool isChecked;
    bool isEnabled;
    bool isShown;

    bool operator==(const CheckBox&) const = default;
};

// What the page's two dialogs edit and the page only carries, as the fields of the same names of the device mode.
struct PageDetails {
    int32_t customWidth;   // 0.01 mm
    int32_t customLength;  // 0.01 mm
    uint16_t customUnit;
    uint16_t uiBinding;
    int16_t uiShiftX;
    int16_t uiShiftY;
    uint16_t uiPageOrder;
    uint16_t uiFlagE;
    uint16_t uiChoice;
    uint16_t nupOrder;

    bool operator==(const PageDetails&) const = default;
};

struct PaperChoices {
    // Stay as they are while the page is open.
    bool isJapanese;
    bool hasSecondTray;
    DuplexUnit duplexUnit;

    ChoiceList paper;  // the custom size at its end, where it is offered
    ChoiceList fitPaper;
    ChoiceList source;
    ChoiceList medium;
    ChoiceList layout;
    bool isFlagA;
    bool isCodeEnabled;
    char code[5];  // uiCode; the page puts in what its edit shows, in the ANSI code page
    NumberField copies;
    CheckBox collate;
    CheckBox zoom;
    NumberField zoomPercent;    // shown while `zoom` is
    bool isZoomPercentEnabled;  // the edit, its spin control and its unit
    bool isLandscape;
    CheckBox rotate180;
    CheckBox duplex;
    CheckBox flagB;
    CheckBox flagC;
    bool isDetailsEnabled;  // the button for the layout's details
    PageDetails details;

    bool operator==(const PaperChoices&) const = default;
};

// What changed, as UpdatePaperDependencies takes it.
enum PaperChange : uint32_t {
    kPaperChanged = 1u << 0,
    kFitPaperChanged = 1u << 1,
    kMediumChanged = 1u << 2,
    kFlagAChanged = 1u << 3,
    kZoomChanged = 1u << 4,
    kFlagBChanged = 1u << 5,
    kLayoutChanged = 1u << 6,
    kDuplexChanged = 1u << 7,
    kSourceChanged = 1u << 8,

    kOpening = kMediumChanged | kFlagAChanged | kZoomChanged | kLayoutChanged | kSourceChanged,
    kEveryChange = (1u << 9) - 1,
};

// Controls of the page.
inline constexpr int kPaperControl = 5006;
inline constexpr int kFitPaperControl = 5008;
inline constexpr int kSourceControl = 5010;
inline constexpr int kMediumControl = 5012;
inline constexpr int kFlagAControl = 5013;
inline constexpr int kCodeControl = 5014;
inline constexpr int kCopiesControl = 5017;
inline constexpr int kCollateControl = 5019;
inline constexpr int kZoomControl = 5021;
inline constexpr int kZoomPercentControl = 5022;
inline constexpr int kPortraitControl = 5026;
inline constexpr int kLandscapeControl = 5027;
inline constexpr int kRotate180Control = 5028;
inline constexpr int kDuplexControl = 5029;
inline constexpr int kFlagBControl = 5030;
inline constexpr int kFlagCControl = 5031;
inline constexpr int kLayoutControl = 5033;
inline constexpr int kPaperDefaultsControl = 5035;

// A command that marks the page as changed.
struct PaperCommand {
    int control;
    int notification;
    uint32_t changes;  // PaperChange bits, 0 for none
};

// Null where the command doesn't change the page.
const PaperCommand* FindPaperCommand(int control, int notification);

// The choices as a device mode has them. What a list doesn't offer becomes its first entry, as in a combo box, and the
// second tray the cassette; numbers are limited to their ranges. In the device mode too, a tray that isn't there
// becomes the cassette, a postcard that A4 can't be fitted to no fit-to paper, and uiFlagC is off without uiFlagB.
void InitPaperChoices(PaperChoices* choices, VelmoraDevMode* devMode, const DeviceInfo& installed, bool isJapanese);

// Makes the choices consistent after changes (PaperChange bits; 0: does nothing).
void UpdatePaperDependencies(PaperChoices* choices, uint32_t changes);

// Offers every paper and the custom size. The selection stays where they have it.
void RefillPapers(PaperChoices* choices);

// What follows from a command: the defaults where it asks for them, and the dependencies.
void TakePaperCommand(PaperChoices* choices, const PaperCommand& command);

// The page's defaults; UpdatePaperDependencies with kEveryChange follows.
void RestorePaperDefaults(PaperChoices* choices);

// The layout's details as they are in a new device mode. The custom size stays.
void ResetLayoutDetails(PageDetails* details);

// What UpdatePaperDependencies has to do as the page is shown again: everything, where another page has set uiStale,
// which is cleared, and nothing otherwise.
uint32_t TakeStaleMark(PrivateDevMode* devMode);

PageDetails ReadPageDetails(const PrivateDevMode& devMode);

// Writes the details that aren't as in `before`; what others have changed meanwhile stays. A poster has no borders.
void WritePageDetails(const PaperChoices& choices, const PageDetails& before, PrivateDevMode* devMode);

// What applying needs of others.
struct PaperApplication {
    // The size of a paper by its id, never of the custom size. LookupPaperSize does it.
    PaperSize (*lookUpSize)(const void* context, int paperId);
    const void* context;
    const DeviceModel* model;  // for the media; may be null
    int resolutionIndex;       // the colour page's choice while that page is open, else the device mode's
    const char* label;         // for uiLabel, in the ANSI code page; at most 4 bytes are taken
};

// Writes the choices into a device mode, and takes over into the record what that makes of its details and numbers.
void ApplyPaperChoices(PaperChoices* choices, const PaperApplication& application, VelmoraDevMode* devMode);

// What an edit holds is settled as the user leaves it.
void SettleCopies(PaperChoices* choices);
void SettleZoomPercent(PaperChoices* choices);

// The nupOrder of a uiPageOrder; 0 for one that isn't known.
uint16_t NupOrderOf(uint32_t pageOrder);

}  // namespace velmora
