#include "tools/xpic/string_pools.h"

#include <algorithm>

#include "driver/devdesc/description_format.h"

namespace velmora {
namespace {

constexpr size_t kMostReferences = INT16_MAX;  // references are read as i16
constexpr size_t kMostIndexed = UINT16_MAX;    // bases and offsets are u16

void AppendText(Bytes& pool, const std::string& text) {
    const auto* first = reinterpret_cast<const std::byte*>(text.c_str());
    pool.insert(pool.end(), first, first + text.size() + 1);
}

Bytes OffsetTable(const std::vector<size_t>& offsets) {
    Bytes table;
    for (size_t offset : offsets) {
        AppendU16(table, offset);
    }
    return table;
}

void CheckLimit(LimitFaults& faults, size_t value, size_t limit, const std::string& what) {
    if (value > limit) {
        faults.push_back({.found = std::to_string(value) + " " + what, .expected = "at most " + std::to_string(limit)});
    }
}

}  // namespace

void AppendU16(Bytes& bytes, size_t value) {
    bytes.push_back(static_cast<std::byte>(value & 0xFF));
    bytes.push_back(static_cast<std::byte>(value >> 8 & 0xFF));
}

void AppendU32(Bytes& bytes, size_t value) {
    AppendU16(bytes, value);
    AppendU16(bytes, value >> 16);
}

uint16_t FixedPool::Add(const std::string& text) {
    if (text.empty()) {
        return 0;
    }
    const auto [entry, isNew] = numbers_.emplace(text, offsets_.size());
    if (isNew) {
        offsets_.push_back(pool_.size());
        AppendText(pool_, text);
    }
    return static_cast<uint16_t>(entry->second);
}

void FixedPool::Check(LimitFaults& faults) const {
    CheckLimit(faults, offsets_.size() - 1, kMostReferences, noun_);
    CheckLimit(faults, offsets_.back(), kMostIndexed, "bytes of " + noun_ + " before the last of them");
}

Bytes FixedPool::Index() const {
    return OffsetTable(offsets_);
}

int16_t LocalizedPool::Add(const LocalizedText& text) {
    if (text.resourceId != 0) {
        return static_cast<int16_t>(-text.resourceId);
    }
    if (text.byLanguage.empty()) {
        return 0;
    }
    const auto [entry, isNew] = numbers_.emplace(text.byLanguage, texts_.size() + 1);
    if (isNew) {
        texts_.push_back(&entry->first);
    }
    return static_cast<int16_t>(entry->second);
}

void LocalizedPool::Check(LimitFaults& faults) const {
    CheckLimit(faults, texts_.size(), kMostReferences, "different display texts");
    CheckLimit(faults, texts_.size() * (languages_.size() - 1), kMostIndexed,
               "display texts of the languages before the last");
    const std::vector<size_t> offsets = Layout(nullptr);
    CheckLimit(faults, *std::max_element(offsets.begin(), offsets.end()), kMostIndexed,
               "bytes of display texts before the last of them");
}

Bytes LocalizedPool::LanguageTable() const {
    std::vector<size_t> bases(kPrimaryLanguages, 0);
    for (size_t i = 0; i < languages_.size(); ++i) {
        bases[languages_[i]->primaryId] = i * texts_.size();
    }
    return OffsetTable(bases);
}

Bytes LocalizedPool::Index() const {
    return OffsetTable(Layout(nullptr));
}

Bytes LocalizedPool::Pool() const {
    Bytes pool;
    Layout(&pool);
    return pool;
}

std::vector<size_t> LocalizedPool::Layout(Bytes* pool) const {
    std::map<std::string_view, size_t> placed;
    std::vector<size_t> offsets{0};
    size_t end = 1;  // an empty text stands first, for entry 0
    if (pool != nullptr) {
        pool->assign(1, std::byte{0});
    }
    placed.emplace("", 0);
    for (size_t language = 0; language < languages_.size(); ++language) {
        for (const std::vector<std::string>* text : texts_) {
            const std::string& own = (*text)[language];
            const auto [place, isNew] = placed.emplace(own, end);
            offsets.push_back(place->second);
            if (isNew) {
                end += own.size() + 1;
                if (pool != nullptr) {
                    AppendText(*pool, own);
                }
            }
        }
    }
    return offsets;
}

}  // namespace velmora
