// Printers with all that print tickets can name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "driver/ptprovider/printer_snapshot.h"
#include "fuzz/model_printers.h"
#include "fuzz/ticket_words.h"

namespace fuzz {

// A name in a namespace.
using Name = std::pair<Text, Text>;

// A printer of a model with the user's custom size, watermarks and overlays, and the names that its tickets can have.
struct TicketPrinter : ModelPrinter {
    std::map<OptionList, std::vector<Name>> options;
    std::vector<std::pair<Name, std::vector<Name>>> features;  // the model's own with their options
    std::vector<std::pair<int32_t, int32_t>> paperSizes;
    Texts overlays;      // their paths
    size_t entries = 0;  // of all lists
    velmora::OwnedSnapshot snapshot;

    // `isXpsWriter`: the driver is the system's XPS writer's, whose tickets have features of their own.
    TicketPrinter(const std::filesystem::path& source, bool isXpsWriter);

  private:
    void StoreUsersThings();
    template <class Entry>
    std::vector<Name> NamesOf(const velmora::EntryList<Entry>& list) {
        std::vector<Name> names;
        for (const Entry& entry : list) {
            names.emplace_back(entry.name.namespaceUri ? entry.name.namespaceUri : u"", entry.name.keyword);
        }
        entries += list.count;
        return names;
    }
};

}  // namespace fuzz
