// Giving results through a method's out parameters: owned by the caller, E_INVALIDARG where there is no place for them.
#pragma once

#include <oleauto.h>

#include <cstddef>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "platform/kernel/heap.h"

namespace host {

// E_OUTOFMEMORY and null where the memory ran out.
HRESULT GiveText(std::u16string_view text, BSTR* out);
// S_FALSE and null: there is none.
HRESULT GiveNoText(BSTR* out);
// As VT_BSTR.
HRESULT GiveText(std::u16string_view text, VARIANT* out);
// S_FALSE and VT_NULL: there is none.
HRESULT GiveNoText(VARIANT* out);

template <class T>
HRESULT GiveValue(T value, T* out) {
    if (out == nullptr) {
        return E_INVALIDARG;
    }
    *out = value;
    return S_OK;
}

// Null is an empty text, as published.
inline std::u16string_view TextOf(BSTR text) {
    return text == nullptr ? std::u16string_view() : std::u16string_view(text, SysStringLen(text));
}

// A text as it is, a number in digits; none of any other type.
std::optional<std::u16string> TextOf(const VARIANT& value);

// Of an object that has it in its interfaces: an owned reference, or E_NOINTERFACE and null.
template <class Interface>
HRESULT GiveInterface(Interface* object, REFIID interfaceId, std::initializer_list<const IID*> interfaces, void** out) {
    if (out == nullptr) {
        return E_POINTER;
    }
    for (const IID* has : interfaces) {
        if (*has == interfaceId) {
            object->AddRef();
            *out = object;
            return S_OK;
        }
    }
    *out = nullptr;
    return E_NOINTERFACE;
}

// Base of objects that stand in the ledger as a block each. Made with one reference, by `new (std::nothrow)`, which
// gives null where the memory ran out or the test wants this allocation to fail. One thread at a time uses an object.
template <class Interface>
class BlockObject : public Interface {
  public:
    BlockObject() = default;
    virtual ~BlockObject() = default;
    BlockObject(const BlockObject&) = delete;
    BlockObject& operator=(const BlockObject&) = delete;

    static void* operator new(size_t bytes, const std::nothrow_t&) noexcept {
        return AllocateBlock(Resource::kComReference, bytes, false);
    }
    static void operator delete(void* block) { FreeBlock(Resource::kComReference, block); }
    static void operator delete(void* block, const std::nothrow_t&) { FreeBlock(Resource::kComReference, block); }

    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }

  private:
    ULONG references_ = 1;
};

}  // namespace host
