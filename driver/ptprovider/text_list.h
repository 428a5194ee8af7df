// Lists of texts that a print ticket carries as the values of one property.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <utility>

#include "driver/base/heap.h"

namespace velmora {

// Texts in their order. The array and each text are blocks of the process heap that the list owns.
struct TextList {
    int32_t count = 0;
    WCHAR** texts = nullptr;  // `count` NUL-terminated texts; null for none

    TextList() = default;
    TextList(TextList&& other) noexcept
        : count(std::exchange(other.count, 0)), texts(std::exchange(other.texts, nullptr)) {}
    TextList& operator=(TextList&& other) noexcept {
        std::swap(count, other.count);
        std::swap(texts, other.texts);
        return *this;
    }
    TextList(const TextList&) = delete;
    TextList& operator=(const TextList&) = delete;
    ~TextList() { Clear(); }

    WCHAR** begin() const { return texts; }
    WCHAR** end() const { return texts + count; }

    // Takes a text: the array is replaced by one that is an entry longer. False, and the text freed, where there is no
    // memory for it or the text is null.
    bool Append(HeapOwner<WCHAR> text) {
        if (!text || count == INT32_MAX) {
            return false;
        }
        const auto held = static_cast<size_t>(count);
        auto longer = HeapOwner<WCHAR*>::Allocate(held + 1);
        if (!longer) {
            return false;
        }
        for (size_t i = 0; i < held; ++i) {
            longer.Get()[i] = texts[i];
        }
        longer.Get()[held] = text.Release();
        HeapOwner<WCHAR*>(texts).Reset(nullptr);
        texts = longer.Release();
        ++count;
        return true;
    }

    void Clear() {
        for (WCHAR* text : *this) {
            HeapOwner<WCHAR>(text).Reset(nullptr);
        }
        HeapOwner<WCHAR*>(texts).Reset(nullptr);
        texts = nullptr;
        count = 0;
    }
};

}  // namespace velmora
