// What the PrintTicket provider knows of a printer's model: read whole when it binds to the printer, in the user's
// language, so that no conversion goes back to the file for each option.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "driver/base/handles.h"
#include "driver/base/heap.h"
#include "driver/devdesc/device_model.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/devmode/color_groups.h"
#include "driver/entry/printer_access.h"
#include "driver/settings/custom_sizes.h"
#include "driver/settings/device_info.h"

namespace velmora {

// Characters of texts, the terminator included.
inline constexpr size_t kNamespaceCapacity = 160;
inline constexpr size_t kPrefixCapacity = 58;  // so that a declaration's name fits 63 characters
inline constexpr size_t kKeywordCapacity = 80;

// What print tickets call an option.
struct OptionName {
    const WCHAR* namespaceUri;  // a published one, the driver's or the snapshot's own; lives as long as the snapshot
    WCHAR keyword[kKeywordCapacity];  // empty where the model gives it none
};

// Entries of lists, in the order of the model's tables. Texts end at their arrays' ends; display names are in the
// user's language and empty where the model gives none.

struct PaperEntry {
    OptionName name;
    WCHAR displayName[128];
    int32_t width;   // micrometres
    int32_t length;  // micrometres
    bool isMetric;
    int16_t paperId;           // kFirstCustomPaper + i for the user's custom size i
    uint32_t ticketValues[3];  // sources, destinations and options that must be installed; 0 for custom sizes
};

struct MediaEntry {
    OptionName name;
    WCHAR displayName[128];
    WCHAR rendererName[64];
    uint16_t index;  // from 1, as the device mode's media indexes
    uint32_t ticketValues[3];
};

struct TrayEntry {
    OptionName name;
    WCHAR displayName[48];
    uint32_t optionMask;  // offered only where it shares a bit with DeviceInfo.installedOptions
    uint16_t binId;       // dmDefaultSource
};

struct ExtraKeywordEntry {
    OptionName name;
    WCHAR displayName[64];
    uint32_t optionMask;  // as a tray's
    uint16_t id;          // the device mode's extraKeywordIndex
};

struct ResolutionEntry {
    OptionName name;
    WCHAR displayName[64];
    uint16_t xDpi;
    uint16_t yDpi;
    int16_t resolutionId;  // dots per inch, the unit of the device mode's dots
    uint32_t ticketValues[3];
};

// Of the lists that only the provider reads.
struct KeywordEntry {
    OptionName name;
    WCHAR displayName[64];
    uint32_t ticketValues[3];
};

// Entries of another list that belong to one: `count` from `first` on.
struct EntryRange {
    size_t first;
    size_t count;
};

struct FeatureEntry {
    OptionName name;
    WCHAR displayName[64];
    uint32_t featureMask;  // all its bits must be set in DeviceInfo.optionFlags; 0: no requirement
    EntryRange options;    // of PrinterSnapshot::options
};

struct OptionEntry {
    OptionName name;
    WCHAR displayName[64];
};

struct ColorModeEntry {
    WCHAR displayName[64];
    uint32_t kind;  // kColorMode flags
};

struct ColorFeatureEntry {
    WCHAR displayName[64];
    EntryRange values;  // of PrinterSnapshot::colorValues
};

struct ColorValueEntry {
    WCHAR displayName[64];
};

// A file that holds an overlay.
struct OverlayEntry {
    WCHAR fileName[13];  // as a device mode names it; its display name too
};

template <class Entry>
struct EntryList {
    size_t count = 0;
    HeapOwner<Entry> entries;  // one block; empty where there are none, or no memory

    const Entry* begin() const { return entries.Get(); }
    const Entry* end() const { return entries.Get() + count; }
    const Entry& operator[](size_t index) const { return entries.Get()[index]; }
};

struct PrinterSnapshot {
    DriverFiles files;
    WCHAR descriptionPath[MAX_PATH];  // empty where the printer has no description file
    OwnedFile descriptionFile;        // open for reading
    HeapOwner<DeviceModel> model;     // empty: the lists of its tables are, too
    DeviceInfo installed;
    WORD language;          // the user's primary language (LANG_, winnt.h)
    OwnedModule resources;  // empty where no language module can be had
    bool isXpsWriter;       // the driver's INI data file marks an XPS document writer

    // The namespace of the model's own keywords and its prefix.
    WCHAR ownNamespace[kNamespaceCapacity];
    WCHAR ownPrefix[kPrefixCapacity];

    // The part of the model's command blob that slices can reach.
    HeapOwner<BYTE> blob;
    size_t blobSize;  // bytes; 0 for none

    EntryList<PaperEntry> papers;  // the model's, then the user's custom sizes
    EntryList<MediaEntry> media;
    EntryList<TrayEntry> trays;
    EntryList<ExtraKeywordEntry> extraKeywords;
    EntryList<ResolutionEntry> resolutions;
    EntryList<KeywordEntry> extraListA;
    EntryList<KeywordEntry> extraListB;
    EntryList<KeywordEntry> extraListC;
    EntryList<KeywordEntry> mediaColors;
    EntryList<KeywordEntry> photoIntents;
    EntryList<KeywordEntry> signatureOptions;
    EntryList<FeatureEntry> features;
    EntryList<OptionEntry> options;  // of all features; empty entries between their ranges
    EntryList<ColorModeEntry> colorModes;
    uint32_t colorModeKinds;                        // the flags of all colour modes
    EntryList<ColorFeatureEntry> colorFeatures[4];  // by ColorGroupId, at most kColorFeaturesPerGroup each
    EntryList<ColorValueEntry> colorValues;         // of all colour features; empty entries between their ranges

    // What the user has stored for the printer.
    WCHAR overlayFolder[MAX_PATH];  // without a backslash at its end; empty where it can't be told
    WCHAR overlayExtension[16];     // of the overlays' files; empty without language module
    EntryList<OverlayEntry> overlays;
};
static_assert(sizeof(PrinterSnapshot::colorFeatures) / sizeof(EntryList<ColorFeatureEntry>) ==
              sizeof(kColorGroups) / sizeof(ColorGroup));

struct SnapshotTraits {
    using Handle = PrinterSnapshot*;
    static Handle None() { return nullptr; }
    static void Close(Handle snapshot);
};
// Owns a snapshot with everything in it. It stays where it is: entries point to its namespace.
using OwnedSnapshot = HandleOwner<SnapshotTraits>;

// Tickets hold no display names: a snapshot for them needs none, and they are empty then.
enum class SnapshotLabels { kRead, kLeftOut };

// The snapshot of an opened printer; empty where there is no memory for it. A list that there is no memory for is
// empty. Without a description file, or with one that can't be loaded, there are the user's own things, the defaults
// of the model's namespace and the installed options as they are without a model.
OwnedSnapshot LoadPrinterSnapshot(HANDLE printer, SnapshotLabels labels = SnapshotLabels::kRead);

// Takes a model's keyword apart, "prefix:keyword". The prefixes of the published keywords and of the driver's own stand
// for these; every other prefix, and none, for `ownNamespace`. Keywords are cut to their capacity.
void ParseKeyword(const WCHAR* text, const WCHAR* ownNamespace, OptionName* name);

// Writes a custom size's keyword, which says its width and length: millimetres and tenths, or inches and thousandths.
void FormatCustomSizeKeyword(const CustomSizeRecord& size, WCHAR (&keyword)[kKeywordCapacity]);

}  // namespace velmora
