// A compiled description file as its readers find it: by the published structs, nothing else.
#pragma once

#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "driver/devdesc/description_format.h"
#include "tools/xpic/compile.h"

namespace velmora {

constexpr uint16_t kGerman = 0x07;
constexpr uint16_t kEnglish = 0x09;
constexpr uint16_t kFrench = 0x0C;
constexpr uint16_t kJapanese = 0x11;

// A field of a byte-packed record by value, wherever the record lies.
template <class Record, class Field>
Field FieldOf(const Record& record, Field Record::*field) {
    Field value;
    std::memcpy(&value, &(record.*field), sizeof value);
    return value;
}

class Description {
  public:
    // Compiles; a source with faults is thrown, with its faults as the text.
    explicit Description(std::string_view source);
    explicit Description(std::vector<std::byte> bytes);

    const DescriptionFileHeader& Header() const { return header_; }
    const DeviceModel& Device() const { return device_; }
    size_t BlockSize() const { return header_.languageTableOffset - header_.deviceBlockOffset; }
    const std::vector<std::byte>& File() const { return file_; }

    // Anything that lies at a position of the file. Throws beyond its end.
    template <class T>
    T At(size_t position) const {
        T value;
        if (position + sizeof value > file_.size()) {
            throw std::out_of_range("a read behind the file's end");
        }
        std::memcpy(&value, file_.data() + position, sizeof value);
        return value;
    }

    // Where a pointer slot leads to, as a file position; 0 when it is absent.
    size_t Slot(size_t slot) const {
        const auto offset = At<uint64_t>(header_.deviceBlockOffset + slot);
        return offset == 0 ? 0 : header_.deviceBlockOffset + offset;
    }

    // The records of a table up to the one whose given field is 0; none for an absent table.
    template <class Record, class Field>
    std::vector<Record> Table(size_t slot, Field Record::*endMark, size_t first = 0) const {
        std::vector<Record> records;
        if (Slot(slot) == 0) {
            return records;
        }
        for (size_t i = first;; ++i) {
            const auto record = At<Record>(Slot(slot) + i * sizeof(Record));
            if (FieldOf(record, endMark) == 0) {
                return records;
            }
            records.push_back(record);
        }
    }

    std::string Text(size_t position) const;
    std::string LocalizedString(uint16_t language, size_t reference) const;
    std::string Name(size_t reference) const;
    std::string JobText(size_t reference) const;

  private:
    std::vector<std::byte> file_;
    DescriptionFileHeader header_;
    DeviceModel device_;
};

// The faults of a source, as the command prints them, one a line.
std::string FaultsOf(std::string_view source);

// The bytes of a pool that begins at a position.
std::string BytesAt(const Description& description, size_t position, size_t size);

}  // namespace velmora
