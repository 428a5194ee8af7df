// Owners of COM references and of the texts and values that COM's calls pass.
#pragma once

#include <oleauto.h>
#include <unknwn.h>
#include <windows.h>

#include <utility>

#include "driver/base/text.h"

namespace velmora {

// Owns a reference to an object, or none.
template <class Interface>
class ComReference {
  public:
    ComReference() = default;
    // Takes over a reference that the caller owns.
    explicit ComReference(Interface* owned) : object_(owned) {}
    ComReference(ComReference&& other) noexcept : object_(other.Detach()) {}
    ComReference& operator=(ComReference&& other) noexcept {
        if (this != &other) {
            Reset(other.Detach());
        }
        return *this;
    }
    ComReference(const ComReference&) = delete;
    ComReference& operator=(const ComReference&) = delete;
    ~ComReference() { Reset(); }

    // A reference of its own to somebody else's object; null gives none.
    static ComReference Share(Interface* object) {
        if (object) {
            object->AddRef();
        }
        return ComReference(object);
    }

    Interface* Get() const { return object_; }
    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

    // Gives the reference to the caller.
    Interface* Detach() { return std::exchange(object_, nullptr); }

    // Takes over `owned` in place of what it had.
    void Reset(Interface* owned = nullptr) {
        Interface* const before = std::exchange(object_, owned);
        if (before) {
            before->Release();
        }
    }

    // For a call that gives a reference by an argument; what it had is released.
    Interface** Receive() {
        Reset();
        return &object_;
    }

    // The object's other interface; E_INVALIDARG without object.
    template <class Other>
    HRESULT Query(REFIID interfaceId, ComReference<Other>* other) const {
        void* found = nullptr;
        const HRESULT result = object_ ? object_->QueryInterface(interfaceId, &found) : E_INVALIDARG;
        other->Reset(SUCCEEDED(result) ? static_cast<Other*>(found) : nullptr);
        return result;
    }

  private:
    Interface* object_ = nullptr;
};

// Owns a BSTR, or none; none reads as the empty text.
class OwnedBstr {
  public:
    OwnedBstr() = default;
    // A copy; none where there is no memory or `text` is null.
    explicit OwnedBstr(const WCHAR* text) : text_(SysAllocString(text)) {}
    OwnedBstr(OwnedBstr&& other) noexcept : text_(other.Detach()) {}
    OwnedBstr& operator=(OwnedBstr&& other) noexcept {
        if (this != &other) {
            Reset(other.Detach());
        }
        return *this;
    }
    OwnedBstr(const OwnedBstr&) = delete;
    OwnedBstr& operator=(const OwnedBstr&) = delete;
    ~OwnedBstr() { Reset(); }

    // `length` characters that the caller fills in; none without memory.
    static OwnedBstr OfLength(size_t length) {
        OwnedBstr text;
        text.text_ = SysAllocStringLen(nullptr, static_cast<UINT>(length));
        return text;
    }

    BSTR Get() const { return text_; }
    const WCHAR* Text() const { return text_ ? text_ : TEXT(""); }
    size_t Length() const { return SysStringLen(text_); }
    explicit operator bool() const { return text_ != nullptr; }
    bool Is(const WCHAR* text) const { return TextsEqual(Text(), text); }

    BSTR Detach() { return std::exchange(text_, nullptr); }
    void Reset(BSTR owned = nullptr) {
        BSTR const before = std::exchange(text_, owned);
        SysFreeString(before);
    }
    BSTR* Receive() {
        Reset();
        return &text_;
    }

  private:
    BSTR text_ = nullptr;
};

// Whether a text that is passed on could be made.
inline HRESULT MadeOf(const OwnedBstr& text) {
    return text ? S_OK : E_OUTOFMEMORY;
}

// Owns what a VARIANT holds.
class OwnedVariant {
  public:
    OwnedVariant() { VariantInit(&value_); }
    OwnedVariant(const OwnedVariant&) = delete;
    OwnedVariant& operator=(const OwnedVariant&) = delete;
    ~OwnedVariant() { VariantClear(&value_); }

    VARIANT* Receive() {
        VariantClear(&value_);
        return &value_;
    }
    // The text that it holds, or null where it holds none.
    const WCHAR* Text() const { return value_.vt == VT_BSTR ? (value_.bstrVal ? value_.bstrVal : TEXT("")) : nullptr; }

  private:
    VARIANT value_;
};

// An output that the caller may not want.
template <class Output>
class Wanted {
  public:
    explicit Wanted(Output* output) : output_(output ? output : &own_) {}
    Output* Get() { return output_; }
    Output* operator->() { return output_; }

  private:
    Output own_;
    Output* output_;
};

}  // namespace velmora
