#include "driver/ptprovider/root_index.h"

#include <oleauto.h>

#include <cstring>

#include "driver/base/heap.h"
#include "driver/base/text.h"
#include "driver/ptprovider/print_schema.h"

namespace velmora {
namespace {

constexpr const WCHAR* kKinds[] = {element_name::kFeature, element_name::kProperty, element_name::kParameterInit,
                                   element_name::kParameterDef};
constexpr size_t kFirstCapacity = 64;

// FNV-1a, as published.
uint32_t Hash(const WCHAR* text) {
    uint32_t hash = 0x811C9DC5;
    for (; *text != 0; ++text) {
        hash = (hash ^ *text) * 0x01000193;
    }
    return hash;
}

}  // namespace

const WCHAR* IndexedKind(const WCHAR* localName) {
    for (const WCHAR* kind : kKinds) {
        if (kind == localName || TextsEqual(kind, localName)) {
            return kind;
        }
    }
    return nullptr;
}

void RootIndex::Clear() {
    for (size_t i = 0; i < count_; ++i) {
        SysFreeString(entries_[i].uri);
        SysFreeString(entries_[i].localName);
        entries_[i].element->Release();
    }
    HeapOwner<Entry>(entries_).Reset(nullptr);
    entries_ = nullptr;
    count_ = 0;
    capacity_ = 0;
    isComplete_ = false;
}

bool RootIndex::Add(const WCHAR* kind, OwnedBstr* uri, OwnedBstr* localName, ComReference<IXMLDOMElement> element) {
    if (!*uri || !*localName) {
        Clear();
        return false;
    }
    if (count_ == capacity_) {
        const size_t capacity = capacity_ > 0 ? capacity_ * 2 : kFirstCapacity;
        auto larger = HeapOwner<Entry>::Allocate(capacity);
        if (!larger) {
            Clear();
            return false;
        }
        if (count_ > 0) {
            memcpy(larger.Get(), entries_, count_ * sizeof(Entry));
        }
        HeapOwner<Entry>(entries_).Reset(nullptr);
        entries_ = larger.Release();
        capacity_ = capacity;
    }
    const uint32_t hash = Hash(localName->Text());
    entries_[count_++] = {kind, hash, uri->Detach(), localName->Detach(), element.Detach()};
    return true;
}

IXMLDOMElement* RootIndex::Find(const WCHAR* kind, const WCHAR* uri, const WCHAR* localName) const {
    const uint32_t hash = Hash(localName);
    for (size_t i = 0; i < count_; ++i) {
        const Entry& entry = entries_[i];
        if (entry.hash == hash && entry.kind == kind && TextsEqual<WCHAR>(entry.localName, localName) &&
            TextsEqual<WCHAR>(entry.uri, uri)) {
            return entry.element;
        }
    }
    return nullptr;
}

}  // namespace velmora
