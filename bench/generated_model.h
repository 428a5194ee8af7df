// Models of any size.
#pragma once

#include <string>

namespace velmora {

// Ids of a generated model's papers go on from this one, beyond those that PCL models give a meaning of their own.
inline constexpr int kFirstPaperId = 1000;

// Records of a generated model.
struct ModelExtent {
    int papers;
    int media;
    int options;               // of all features together
    bool isTranslated = true;  // texts in three languages, else in one

    std::string Name() const;
};

// By which growth with the model is measured, up to the most that a description holds.
inline constexpr ModelExtent kTenfolds[] = {{10, 8, 10, false}, {100, 80, 100, false}, {1000, 800, 1000, false}};

// Ten times the model may cost this much more than the model.
inline constexpr double kMostTenfold = 13;

// The model's source. Labels differ, and are short: those of the largest models have to lie within the 65535 bytes of
// the string pool, where there are three languages with up to 1,000 papers, 200 media and 500 options.
std::string GeneratedSource(const ModelExtent& extent);

}  // namespace velmora
