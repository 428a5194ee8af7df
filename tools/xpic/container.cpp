#include "tools/xpic/container.h"

#include <algorithm>
#include <cstring>

#include "driver/devdesc/description_format.h"

namespace velmora {
namespace {

struct IndexedPool {
    Bytes index;  // u32 offsets
    Bytes pool;
};

// Blocks one after the other, each found by its entry of the index.
template <class Blocks, class Get>
IndexedPool Gather(const Blocks& blocks, Get get) {
    IndexedPool result;
    for (const auto& block : blocks) {
        const Bytes& bytes = get(block);
        AppendU32(result.index, result.pool.size());
        result.pool.insert(result.pool.end(), bytes.begin(), bytes.end());
    }
    return result;
}

class FileWriter {
  public:
    explicit FileWriter(Bytes& file) : file_(file) {}

    // Returns where the section begins; sections begin at multiples of 4.
    uint32_t Append(const Bytes& section) {
        constexpr size_t kAlignment = 4;
        file_.resize((file_.size() + kAlignment - 1) / kAlignment * kAlignment);
        return AppendDirectly(section);
    }

    // Without a gap to the section before.
    uint32_t AppendDirectly(const Bytes& section) {
        const size_t start = file_.size();
        file_.resize(start + section.size());
        std::copy(section.begin(), section.end(), file_.begin() + static_cast<ptrdiff_t>(start));
        return static_cast<uint32_t>(start);
    }

  private:
    Bytes& file_;
};

}  // namespace

Bytes BuildContainer(const ModelSource& model, const Bytes& block, const TextPools& pools) {
    const auto same = [](const Bytes& bytes) -> const Bytes& { return bytes; };
    IndexedPool fonts = Gather(model.fonts, same);
    AppendU32(fonts.index, fonts.pool.size());  // ends the last record
    const IndexedPool images = Gather(model.images, same);
    const IndexedPool patterns =
        Gather(model.patterns, [](const PatternSource& pattern) -> const Bytes& { return pattern.block; });

    DescriptionFileHeader header{};
    Bytes file(sizeof header);
    FileWriter writer(file);
    header.deviceBlockOffset = writer.AppendDirectly(block);
    header.languageTableOffset = writer.AppendDirectly(pools.strings.LanguageTable());  // ends the block
    header.stringIndexOffset = writer.Append(pools.strings.Index());
    header.stringPoolOffset = writer.Append(pools.strings.Pool());
    header.nameIndexOffset = writer.Append(pools.names.Index());
    header.namePoolOffset = writer.Append(pools.names.Pool());
    header.textIndexOffset = writer.Append(pools.texts.Index());
    header.textPoolOffset = writer.Append(pools.texts.Pool());
    header.fontPoolOffset = writer.AppendDirectly(fonts.pool);  // ends the text pool
    header.fontIndexOffset = writer.Append(fonts.index);
    header.imageIndexOffset = writer.Append(images.index);
    header.imagePoolOffset = writer.Append(images.pool);
    header.patternIndexOffset = writer.Append(patterns.index);
    header.patternPoolOffset = writer.Append(patterns.pool);
    header.blobOffset = writer.Append(model.blob);
    header.blobSize = static_cast<uint32_t>(model.blob.size());
    std::memcpy(file.data(), &header, sizeof header);
    return file;
}

}  // namespace velmora
