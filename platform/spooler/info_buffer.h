// The published layout of what the spooler's calls fill in: the structures of a level first, in one run, and behind
// them what their pointers lead to.
#pragma once

#include <windows.h>

#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "platform/spooler/failures.h"

namespace host {

template <class Info>
class InfoBuffer {
  public:
    InfoBuffer() {
        // As much as one structure mostly has.
        tail_.reserve(4096);
        texts_.reserve(16);
    }

    // Begins the next structure, zero-filled; what follows is about this one. The reference holds until the next Add.
    Info& Add() { return infos_.emplace_back(); }

    // Text with its terminator behind the structures, and the field that points at it.
    void Text(LPWSTR Info::*field, std::u16string_view text) {
        const size_t start = Append(text.data(), text.size() * sizeof(WCHAR), alignof(WCHAR));
        tail_.resize(tail_.size() + sizeof(WCHAR));
        texts_.push_back({infos_.size() - 1, field, start});
    }

    // Text, or a null pointer where there is none.
    void OptionalText(LPWSTR Info::*field, std::u16string_view text) {
        if (!text.empty()) {
            Text(field, text);
        }
    }

    // A device mode, aligned as the structures are; a null pointer where it is empty.
    void DeviceMode(LPDEVMODEW Info::*field, std::span<const BYTE> deviceMode) {
        if (!deviceMode.empty()) {
            deviceModes_.push_back(
                {infos_.size() - 1, field, Append(deviceMode.data(), deviceMode.size(), alignof(void*))});
        }
    }

    // Fills the caller's buffer, or fails with ERROR_INSUFFICIENT_BUFFER and leaves it alone; the size needed is told
    // either way. `returned` receives the number of structures where the call has such a parameter; otherwise it is
    // null and `hasCount` false.
    bool CopyTo(LPBYTE buffer, DWORD size, LPDWORD needed, LPDWORD returned, bool hasCount) {
        if (!needed || (hasCount && !returned)) {
            return Fail(RPC_X_NULL_REF_POINTER);
        }
        if (!buffer && size != 0) {
            return Fail(ERROR_INVALID_USER_BUFFER);
        }
        const size_t structures = infos_.size() * sizeof(Info);
        *needed = static_cast<DWORD>(structures + tail_.size());
        if (returned) {
            *returned = 0;
        }
        if (size < *needed) {
            return Fail(ERROR_INSUFFICIENT_BUFFER);
        }
        if (*needed == 0) {
            return true;
        }
        BYTE* const behind = buffer + structures;
        for (const auto& link : texts_) {
            infos_[link.index].*link.field = reinterpret_cast<LPWSTR>(behind + link.start);
        }
        for (const auto& link : deviceModes_) {
            infos_[link.index].*link.field = reinterpret_cast<LPDEVMODEW>(behind + link.start);
        }
        memcpy(buffer, infos_.data(), structures);
        if (!tail_.empty()) {
            memcpy(behind, tail_.data(), tail_.size());
        }
        if (returned) {
            *returned = static_cast<DWORD>(infos_.size());
        }
        return true;
    }

  private:
    static_assert(sizeof(Info) % alignof(void*) == 0);

    template <class Pointer>
    struct Link {
        size_t index;  // of the structure
        Pointer Info::*field;
        size_t start;  // in the tail
    };

    size_t Append(const void* bytes, size_t size, size_t alignment) {
        const size_t start = (tail_.size() + alignment - 1) / alignment * alignment;
        tail_.resize(start);
        const auto* const first = static_cast<const BYTE*>(bytes);
        tail_.insert(tail_.end(), first, first + size);
        return start;
    }

    std::vector<Info> infos_;
    std::vector<BYTE> tail_;
    std::vector<Link<LPWSTR>> texts_;
    std::vector<Link<LPDEVMODEW>> deviceModes_;
};

}  // namespace host
