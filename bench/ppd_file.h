// A model as a PPD file, opened by CUPS' PPD library: another printing system's work on the same content.
#pragma once

#include <cups/ppd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "tools/xpic/model_source.h"

namespace velmora {

struct PpdDeleter {
    void operator()(ppd_file_t* ppd) const { ppdClose(ppd); }
};
using OwnedPpd = std::unique_ptr<ppd_file_t, PpdDeleter>;

// The model's papers, trays, media, resolutions, features and constraints, with their texts in one language. What
// constraints say of installable options is left out.
std::string PpdText(const ModelSource& model);

class PpdFile {
  public:
    // Writes the file.
    PpdFile(const ModelSource& model, std::filesystem::path file);

    OwnedPpd Open() const;
    // With the default of every option marked.
    OwnedPpd OpenMarked() const;

  private:
    std::filesystem::path file_;
};

// The choices of a PPD file's options, by the record's place in its list of the model.
std::string PpdChoice(const char* option, size_t index);
inline constexpr const char* kPpdPaper = "PageSize";
inline constexpr const char* kPpdTray = "InputSlot";
inline constexpr const char* kPpdMedium = "MediaType";

}  // namespace velmora
