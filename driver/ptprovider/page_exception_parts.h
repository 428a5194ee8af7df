// What print tickets call exceptions and the parts that all of them have, and the watermarks that some of them name.
#pragma once

#include <windows.h>

#include "driver/ptprovider/feature_writer.h"
#include "driver/ptprovider/print_schema.h"
#include "driver/ptprovider/working_devmode.h"
#include "driver/settings/watermark_list.h"

namespace velmora {

// --- Kinds

inline constexpr const WCHAR* kMediaPrefix = TEXT("DocumentMediaException");
inline constexpr const WCHAR* kBlankSheetPrefix = TEXT("DocumentBlankSheetException");
inline constexpr const WCHAR* kWatermarkPrefix = TEXT("DocumentWatermarkException");
inline constexpr const WCHAR* kOverlayPrefix = TEXT("DocumentOverlayException");

// What the features of exceptions are called, in the order in which they are looked for, and the kind that each reads
// as; the other kind of blank sheet is told by an option.
struct KindName {
    const WCHAR* prefix;  // the number follows
    ExceptionKind kind;
};
inline constexpr KindName kKindNames[] = {
    {kMediaPrefix, kMediaException},
    {kBlankSheetPrefix, kBlankSheetBefore},
    {kWatermarkPrefix, kWatermarkException},
    {kOverlayPrefix, kOverlayException},
};

// Where blank sheets lie.
inline constexpr PlainOption kBlankSheets[] = {
    {TEXT("BeforeExceptionPages"), kBlankSheetBefore, 2732},
    {TEXT("AfterExceptionPages"), kBlankSheetAfter, 2733},
};

// --- The pages

inline constexpr Keyword kExceptionUsage = PrivateKeyword(TEXT("ExceptionUsage"));
inline constexpr UINT kExceptionUsageString = 3097;
inline constexpr PlainOption kExceptionUsages[] = {
    {TEXT("SpecifiedPages"), kSpecifiedPages, 2740},
    {TEXT("NotSpecifiedPages"), kNotSpecifiedPages, 2743},
    {TEXT("OddPages"), kOddPages, 2741},
    {TEXT("EvenPages"), kEvenPages, 2742},
};
inline constexpr Keyword kPagesProperty = PrivateKeyword(TEXT("Pages"));
inline constexpr const WCHAR* kPagesPrefix = TEXT("DocumentExceptionPages");

constexpr bool HasPageList(uint32_t usage) {
    return usage == kSpecifiedPages || usage == kNotSpecifiedPages;
}

// --- Watermarks

// The user's watermarks, read where an exception names one.
class StoredWatermarks {
  public:
    explicit StoredWatermarks(HANDLE printer) : printer_(printer) {}

    // The one that an exception names; null for none.
    const WatermarkRecord* Find(const ExceptionRecord& exception);

  private:
    const HANDLE printer_;
    WatermarkList list_;
    bool isRead_ = false;
};

}  // namespace velmora
