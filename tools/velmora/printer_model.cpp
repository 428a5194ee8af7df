#include "tools/velmora/printer_model.h"

#include "driver/devdesc/description_file.h"
#include "driver/devdesc/model_tables.h"
#include "driver/devdesc/paper_lookup.h"
#include "driver/entry/resource_module.h"
#include "platform/kernel/text.h"
#include "tools/velmora/command_error.h"
#include "tools/velmora/escapes.h"
#include "tools/velmora/spooler_client.h"

namespace velmora {

PrinterModel::PrinterModel(const std::string& printerName)
    : printer_(OpenNamedPrinter(printerName)),
      file_(OpenDescriptionFile(printer_.Get())),
      model_(LoadDeviceModel(file_.Get())),
      options_(GetDeviceInfo(printer_.Get(), model_.Get())),
      texts_(LoadResourceModule(printer_.Get(), nullptr)) {
    if (!model_ || !options_) {
        throw CommandError("printer \"" + printerName + "\": the driver can't read a model from \"" +
                           DriverOf(printer_.Get()).modelFile + "\"; install the model again");
    }
}

std::string PrinterModel::Localized(int reference) const {
    WCHAR text[kTextCapacity];
    ReadLocalizedString(file_.Get(), UserPrimaryLanguage(), texts_.Get(), static_cast<int16_t>(reference), text,
                        kTextCapacity);
    return host::ToUtf8(text);
}

std::string PrinterModel::Name(int reference) const {
    WCHAR text[kTextCapacity];
    ReadName(file_.Get(), static_cast<int16_t>(reference), text, kTextCapacity);
    return host::ToUtf8(text);
}

std::string PrinterModel::Text(int reference) const {
    char text[kTextCapacity];
    ReadText(file_.Get(), static_cast<int16_t>(reference), text);
    return text[0] != 0 ? Quoted(FromAnsi(text)) : std::string();
}

std::string PrinterModel::PaperName(int64_t paperId) const {
    for (const PaperRecord& paper : RecordList(model_->paperTable)) {
        if (paper.paperId == paperId) {
            return Localized(paper.nameRef);
        }
    }
    return {};
}

std::string PrinterModel::PaperOrCustomSizeName(int64_t paperId) const {
    constexpr int64_t kLastPaper = 32767;
    std::string name = PaperName(paperId);
    return name.empty() && paperId >= kFirstCustomPaper && paperId <= kLastPaper
               ? "custom size " + std::to_string(paperId - kFirstCustomPaper)
               : name;
}

std::string PrinterModel::TrayName(int64_t binId) const {
    for (const BinRecord& tray : RecordList(model_->binTable)) {
        if (tray.binId == binId) {
            return Localized(tray.nameRef);
        }
    }
    return {};
}

std::string PrinterModel::MediumName(int64_t index) const {
    const MediaRecord* const medium = index >= 0 ? RecordAt(model_->mediaTable, static_cast<size_t>(index)) : nullptr;
    return medium ? Localized(medium->nameRef) : std::string();
}

std::string PrinterModel::ColorModeName(const ColorModeRecord& mode) const {
    return Localized(static_cast<int16_t>(mode.nameRef));
}

std::optional<PrinterModel> ModelOf(const std::string& printerName) {
    try {
        return std::optional<PrinterModel>(std::in_place, printerName);
    } catch (const CommandError&) {
        return std::nullopt;
    }
}

}  // namespace velmora
