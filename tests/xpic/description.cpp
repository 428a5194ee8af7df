#include "tests/xpic/description.h"

namespace velmora {
namespace {

std::string Printed(const std::vector<Diagnostic>& diagnostics) {
    std::string text;
    for (const Diagnostic& diagnostic : diagnostics) {
        text += FormatDiagnostic(diagnostic) + "\n";
    }
    return text;
}

std::vector<std::byte> Compiled(std::string_view source) {
    CompileResult result = CompileModelText(source, "model.json");
    if (!result.Succeeded()) {
        throw std::invalid_argument(Printed(result.diagnostics));
    }
    return std::move(result.bytes);
}

}  // namespace

Description::Description(std::string_view source) : Description(Compiled(source)) {}

Description::Description(std::vector<std::byte> bytes) : file_(std::move(bytes)) {
    header_ = At<DescriptionFileHeader>(0);
    device_ = At<DeviceModel>(header_.deviceBlockOffset);
}

std::string Description::Text(size_t position) const {
    std::string text;
    while (At<char>(position + text.size()) != '\0') {
        text += At<char>(position + text.size());
    }
    return text;
}

std::string Description::LocalizedString(uint16_t language, size_t reference) const {
    const size_t base = At<uint16_t>(header_.languageTableOffset + 2 * size_t{language});
    return Text(header_.stringPoolOffset + At<uint16_t>(header_.stringIndexOffset + 2 * (base + reference)));
}

std::string Description::Name(size_t reference) const {
    return Text(header_.namePoolOffset + At<uint16_t>(header_.nameIndexOffset + 2 * reference));
}

std::string Description::JobText(size_t reference) const {
    const size_t position = header_.textPoolOffset + At<uint16_t>(header_.textIndexOffset + 2 * reference);
    const std::string text = Text(position);
    if (position + text.size() + 1 > header_.fontPoolOffset) {
        throw std::out_of_range("a text behind the text pool's end");
    }
    return text;
}

std::string FaultsOf(std::string_view source) {
    return Printed(CompileModelText(source, "model.json").diagnostics);
}

std::string BytesAt(const Description& description, size_t position, size_t size) {
    std::string bytes;
    for (size_t i = 0; i < size; ++i) {
        bytes += description.At<char>(position + i);
    }
    return bytes;
}

}  // namespace velmora
