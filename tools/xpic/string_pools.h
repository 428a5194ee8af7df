// The numbered texts of a description file: each pool hands out references while records are laid out and is written
// out at the end.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/xpic/diagnostic.h"
#include "tools/xpic/model_source.h"
#include "tools/xpic/source_document.h"

namespace velmora {

// A format limit that a model exceeds, for whoever knows where it was read from.
struct LimitFault {
    std::string found;
    std::string expected;
    std::string path = std::string(kRootPath);  // of what exceeds it in the source
};
using LimitFaults = std::vector<LimitFault>;

// Names, or texts: the same in every language. Equal ones share a reference.
class FixedPool {
  public:
    // `noun` stands in faults: "names".
    explicit FixedPool(std::string_view noun) : noun_(noun) {}

    // 0 for an empty text. Numbers run on past the format's limits; Check tells.
    uint16_t Add(const std::string& text);
    void Check(LimitFaults& faults) const;
    // The u16 offsets (entry 0 is unused), and the texts with their terminators.
    Bytes Index() const;
    const Bytes& Pool() const { return pool_; }

  private:
    std::string noun_;
    std::map<std::string, size_t> numbers_;
    std::vector<size_t> offsets_{0};
    Bytes pool_{std::byte{0}};
};

// Localised texts. A reference counts from each language's base.
class LocalizedPool {
  public:
    explicit LocalizedPool(std::vector<const Language*> languages) : languages_(std::move(languages)) {}

    // 0 for an absent text, negative for one of the resource module.
    int16_t Add(const LocalizedText& text);
    void Check(LimitFaults& faults) const;
    // The u16 bases by primary language; languages that the model lacks share the first one's.
    Bytes LanguageTable() const;
    Bytes Index() const;
    Bytes Pool() const;

  private:
    // Where each text of each language lies in the pool, language by language; equal texts lie once.
    std::vector<size_t> Layout(Bytes* pool) const;

    std::vector<const Language*> languages_;
    std::map<std::vector<std::string>, size_t> numbers_;
    std::vector<const std::vector<std::string>*> texts_;  // keys of numbers_, by reference - 1
};

void AppendU16(Bytes& bytes, size_t value);
void AppendU32(Bytes& bytes, size_t value);

}  // namespace velmora
