// The steps that turn a source document into a ModelSource. Each reads some of the root's members; later steps refer
// to records of earlier ones by name.
#pragma once

#include <vector>

#include "tools/xpic/model_source.h"
#include "tools/xpic/source_reader.h"

namespace velmora {

// The names that later steps resolve, in the order of the model's tables.
struct ModelNames {
    NameIndex papers{"a paper"};
    NameIndex trays{"a tray"};
    NameIndex extraKeywords{"an extra keyword"};
    NameIndex media{"a medium"};
    NameIndex resolutions{"a resolution"};
    NameIndex patterns{"a pattern"};
    NameIndex commands{"a command"};
    NameIndex colorModes{"a color mode"};
    std::vector<CommandSlice> commandSlices;
    // By group; the value names by feature too.
    std::vector<NameIndex> colorFeatures = std::vector<NameIndex>(kColorGroupCount, NameIndex("a color feature"));
    std::vector<std::vector<NameIndex>> colorValues = std::vector<std::vector<NameIndex>>(kColorGroupCount);
    std::vector<Word> trayOptions;    // bit values of DeviceInfo.installedOptions
    std::vector<Word> deviceOptions;  // bit values of DeviceInfo.optionFlags
};

struct ModelReader {
    SourceContext& context;
    ObjectReader& root;
    ModelSource& model;
    ModelNames& names;
};

// Word lists whose values are bit numbers, as bit values, with a source's own names added.
void ReadOptionNames(ModelReader& reader);

void ReadPatterns(ModelReader& reader);
void ReadFonts(ModelReader& reader);
void ReadImages(ModelReader& reader);
void ReadCommands(ModelReader& reader);

void ReadPapers(ModelReader& reader);
void ReadTrays(ModelReader& reader);
void ReadExtraKeywords(ModelReader& reader);
void ReadMedia(ModelReader& reader);
void ReadResolutions(ModelReader& reader);
void ReadFeatures(ModelReader& reader);
// `memory` is the root's member of that name.
void ReadMemory(ModelReader& reader, ObjectReader& memory);
void ReadFontSubstitutions(ModelReader& reader);
void ReadKeywordLists(ModelReader& reader);

void ReadColorFeatures(ModelReader& reader);
void ReadColorModes(ModelReader& reader);

void ReadMargins(ModelReader& reader);
// Also gives trays, media and extra keywords the mask bits that the constraints need to tell them apart.
void ReadConstraints(ModelReader& reader);

}  // namespace velmora
