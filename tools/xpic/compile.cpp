#include "tools/xpic/compile.h"

#include <fstream>
#include <iterator>

#include "tools/xpic/container.h"
#include "tools/xpic/file_content.h"
#include "tools/xpic/layout.h"
#include "tools/xpic/load_model.h"

namespace velmora {

CompileResult CompileModel(const std::filesystem::path& source) {
    const std::optional<std::string> text = ReadFileContent(source);
    if (!text) {
        CompileResult result;
        result.diagnostics.push_back(
            {source.string(), {}, std::string(kRootPath), "no file that can be read", "a model source"});
        return result;
    }
    return CompileModelText(*text, source);
}

CompileResult CompileModelText(std::string_view text, const std::filesystem::path& file) {
    CompileResult result;
    result.model = LoadModelSource(text, file, result.document, result.diagnostics);
    if (result.model) {
        LimitFaults faults;
        result.bytes = BuildDescription(*result.model, faults);
        for (LimitFault& fault : faults) {
            const SourcePlace place = result.document.Locate(fault.path);
            result.diagnostics.push_back(
                {result.document.FileName(place), place.position, place.path, fault.found, fault.expected});
        }
    }
    if (!result.bytes.empty() && result.model->layout) {
        std::optional<Bytes> arranged = ApplyLayout(*result.model->layout, result.bytes);
        if (!arranged) {
            const SourcePlace place = result.document.Locate(MemberPath(std::string(kRootPath), "layout"));
            result.diagnostics.push_back(
                {result.document.FileName(place), place.position, place.path, DescribeOutput(result.bytes),
                 "the arrangement of this model: leave \"layout\" out once the model is changed"});
        }
        result.bytes = arranged.value_or(Bytes{});
    }
    SortDiagnostics(result.diagnostics);
    return result;
}

Bytes BuildDescription(const ModelSource& model, LimitFaults& faults) {
    TextPools pools{LocalizedPool(model.languages)};
    const Bytes block = BuildDeviceBlock(model, pools, faults);
    return faults.empty() ? BuildContainer(model, block, pools) : Bytes{};
}

void WriteFileAtomically(const std::filesystem::path& file, const std::vector<std::byte>& bytes) {
    const std::filesystem::path temporary = file.string() + ".new";
    std::error_code error;
    {
        std::ofstream stream(temporary, std::ios::binary | std::ios::trunc);
        stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        stream.close();
        if (!stream) {
            error = std::make_error_code(std::errc::io_error);
        }
    }
    if (!error) {
        std::filesystem::rename(temporary, file, error);
    }
    if (error) {
        std::error_code ignored;
        std::filesystem::remove(temporary, ignored);
        throw std::filesystem::filesystem_error("can't write", file, error);
    }
}

}  // namespace velmora
