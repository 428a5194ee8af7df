#include "driver/ptprovider/command_lists.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

#include "driver/base/text.h"
#include "driver/ptprovider/base64.h"

namespace velmora {
namespace {

// Appends the first bytes of a text as an entry, unless there are none.
void AppendText(const char* text, size_t length, TextList* list) {
    if (TextLength(text, length) > 0) {
        list->Append(Widen(text, length));
    }
}

void AppendLines(const char* text, size_t length, TextList* list) {
    size_t begin = 0;
    for (size_t i = 0; i < length; ++i) {
        if (text[i] != '\n') {
            continue;
        }
        const bool isCrBefore = i > 0 && text[i - 1] == '\r';
        const bool isCrBehind = i + 1 < length && text[i + 1] == '\r';
        const size_t end = isCrBefore ? i - 1 : i;
        // The CR before this LF may be the one behind the last.
        if (end > begin) {
            AppendText(text + begin, end - begin, list);
        }
        begin = !isCrBefore && isCrBehind ? i + 2 : i + 1;
    }
    if (length > begin) {
        AppendText(text + begin, length - begin, list);
    }
}

// Calls `take` for each text of a buffer of NUL-terminated ones.
template <class Take>
void ForEachText(const char* buffer, size_t size, Take take) {
    for (size_t begin = 0; begin < size;) {
        const size_t length = TextLength(buffer + begin, size - begin);
        take(buffer + begin, length);
        begin += length + 1;
    }
}

}  // namespace

void AppendBase64(const BYTE* bytes, size_t length, TextList* list) {
    size_t size = Base64Size(length);
    const auto encoded = HeapOwner<char>::Allocate(size);
    auto text = HeapOwner<WCHAR>::Allocate(size + 1);
    if (encoded && text && Base64Encode(bytes, length, encoded.Get(), &size)) {
        std::copy_n(encoded.Get(), size, text.Get());
        list->Append(std::move(text));
    }
}

void AppendTexts(const char* buffer, size_t size, TextList* list) {
    ForEachText(buffer, size, [&](const char* text, size_t length) { AppendText(text, length, list); });
}

void AppendTextLines(const char* buffer, size_t size, TextList* list) {
    ForEachText(buffer, size, [&](const char* text, size_t length) { AppendLines(text, length, list); });
}

void AppendCommandSlice(const PrinterSnapshot& snapshot, size_t start, size_t length, TextList* list) {
    if (!snapshot.model || start >= snapshot.blobSize) {
        return;
    }
    const BYTE* const slice = snapshot.blob.Get() + start;
    const size_t held = std::min(length, snapshot.blobSize - start);
    if (snapshot.model->pdlType == kPdlPostScript) {
        AppendLines(reinterpret_cast<const char*>(slice), held, list);
    } else {
        AppendBase64(slice, held, list);
    }
}

void AppendColorCommands(const PrinterSnapshot& snapshot, const PrivateDevMode& devMode,
                         const ColorCommandLists& lists) {
    if (!snapshot.model) {
        return;
    }
    const auto appendPair = [&](const BlobRef& pair, TextList* list) {
        AppendCommandSlice(snapshot, static_cast<uint16_t>(pair.first), static_cast<uint16_t>(pair.second), list);
    };
    for (int i = 0; i < 3; ++i) {
        appendPair(devMode.blobRefs[i], lists.documentStart);
    }

    const bool isOfPages =
        snapshot.model->pdlType == kPdlPcl6 && (snapshot.model->defaultOptionFlags & kModelColorSlicesPerPage) != 0;
    const auto tableOffset = static_cast<int16_t>(devMode.sliceTableOffset);
    constexpr int kSlices = sizeof(PrivateDevMode::blobSlices) / sizeof(BlobSlice);
    constexpr size_t kTableBase = offsetof(PrivateDevMode, extensionTag);
    for (int i = 0; tableOffset > 0 && i < std::min<int>(devMode.sliceCount, kSlices); ++i) {
        const size_t place = kTableBase + static_cast<size_t>(tableOffset) + static_cast<size_t>(i) * sizeof(BlobSlice);
        BlobSlice slice;
        if (place + sizeof(slice) > sizeof(devMode)) {
            break;
        }
        memcpy(&slice, reinterpret_cast<const char*>(&devMode) + place, sizeof(slice));
        AppendCommandSlice(snapshot, static_cast<uint16_t>(slice.start), slice.length & kSliceLengthMask,
                           isOfPages ? lists.page : lists.documentStart);
    }

    TextList* const objectLists[] = {lists.text, lists.image, lists.graphics};
    for (int i = 0; i < 3; ++i) {
        appendPair(devMode.blobRefs[3 + i], objectLists[i]);
    }
}

}  // namespace velmora
