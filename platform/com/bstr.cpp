#include <oleauto.h>

#include <cstring>
#include <limits>

#include "platform/com/results.h"
#include "platform/kernel/heap.h"

namespace host {
namespace {

// Stands before the text. The count is at its end, where the published layout has it.
struct Prefix {
    uint32_t unused;
    uint32_t bytes;
};
static_assert(sizeof(Prefix) == 8);

Prefix* PrefixOf(BSTR text) {
    return reinterpret_cast<Prefix*>(text) - 1;
}

}  // namespace

HRESULT GiveText(std::u16string_view text, BSTR* out) {
    if (out == nullptr) {
        return E_INVALIDARG;
    }
    *out = SysAllocStringLen(text.data() != nullptr ? text.data() : TEXT(""), static_cast<UINT>(text.size()));
    return *out != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT GiveNoText(BSTR* out) {
    return GiveValue<BSTR>(nullptr, out) == S_OK ? S_FALSE : E_INVALIDARG;
}

}  // namespace host

extern "C" {

BSTR WINAPI SysAllocString(const OLECHAR* text) {
    return text == nullptr ? nullptr
                           : SysAllocStringLen(text, static_cast<UINT>(std::char_traits<char16_t>::length(text)));
}

BSTR WINAPI SysAllocStringLen(const OLECHAR* text, UINT length) {
    if (length > (std::numeric_limits<uint32_t>::max() - sizeof(host::Prefix) - sizeof(OLECHAR)) / sizeof(OLECHAR)) {
        return nullptr;
    }
    const size_t bytes = length * sizeof(OLECHAR);
    void* block = host::AllocateBlock(host::Resource::kBstr, sizeof(host::Prefix) + bytes + sizeof(OLECHAR), false);
    if (block == nullptr) {
        return nullptr;
    }
    auto* prefix = new (block) host::Prefix{0, static_cast<uint32_t>(bytes)};
    auto* copy = reinterpret_cast<BSTR>(prefix + 1);
    if (text != nullptr && bytes != 0) {
        memcpy(copy, text, bytes);
    }
    copy[length] = 0;
    return copy;
}

void WINAPI SysFreeString(BSTR text) {
    if (text != nullptr) {
        host::DemandBlock("SysFreeString", host::Resource::kBstr, host::PrefixOf(text));
        host::FreeBlock(host::Resource::kBstr, host::PrefixOf(text));
    }
}

UINT WINAPI SysStringLen(BSTR text) {
    return SysStringByteLen(text) / sizeof(OLECHAR);
}

UINT WINAPI SysStringByteLen(BSTR text) {
    return text == nullptr ? 0 : host::PrefixOf(text)->bytes;
}

}  // extern "C"
