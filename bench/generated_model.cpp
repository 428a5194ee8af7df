#include "bench/generated_model.h"

#include <algorithm>

namespace velmora {
namespace {

constexpr int kMostFeatures = 25;
constexpr int kMostConstraints = 20;

std::string LabelOf(bool isTranslated, const char* english, const char* german, const char* japanese, int number) {
    const std::string digits = std::to_string(number);
    if (!isTranslated) {
        return std::string("\"label\": \"") + english + digits + "\"";
    }
    return std::string("\"label\": {\"en\": \"") + english + digits + "\", \"de\": \"" + german + digits +
           "\", \"ja\": \"" + japanese + digits + "\"}";
}

template <class Element>
std::string List(int first, int end, Element element) {
    std::string list = "[";
    for (int i = first; i < end; ++i) {
        list += (i > first ? ", " : "") + element(i);
    }
    return list + "]";
}

}  // namespace

std::string ModelExtent::Name() const {
    return std::to_string(papers) + " papers, " + std::to_string(media) + " media, " + std::to_string(options) +
           " options";
}

std::string GeneratedSource(const ModelExtent& extent) {
    const int features = std::min(kMostFeatures, extent.options);
    const int constraints = std::min(kMostConstraints, extent.media);
    const auto label = [&](const char* english, const char* german, const char* japanese, int number) {
        return LabelOf(extent.isTranslated, english, german, japanese, number);
    };
    const auto paper = [&](int i) {
        const std::string number = std::to_string(i);
        return "{\"name\": \"Size " + number + "\", \"id\": " + std::to_string(kFirstPaperId + i) + ", " +
               label("Size ", "Maß ", "寸法 ", i) + ", \"keyword\": \"vb:S" + number +
               "\", \"widthMm\": " + std::to_string(90 + i % 200) + ", \"lengthMm\": " + std::to_string(150 + i % 250) +
               "}";
    };
    const auto medium = [&](int i) {
        const std::string number = std::to_string(i);
        return "{\"name\": \"Medium " + number + "\", " + label("Medium ", "Material ", "用紙 ", i) +
               ", \"keyword\": \"vb:M" + number + "\", \"jobText\": \"@PJL SET MEDIATYPE=M" + number + "\\r\\n\"}";
    };
    const auto option = [&](int i) {
        const std::string number = std::to_string(i);
        return "{\"name\": \"Option " + number + "\", " + label("Option ", "Auswahl ", "設定 ", i) +
               ", \"keyword\": \"vb:O" + number + "\", \"jobValue\": \"V" + number + "\"}";
    };
    const auto feature = [&](int i) {
        const std::string number = std::to_string(i);
        return "{\"name\": \"Feature " + number + "\", \"keyword\": \"vb:F" + number + "\", \"jobKey\": \"F" + number +
               "\", \"options\": " + List(i * extent.options / features, (i + 1) * extent.options / features, option) +
               "}";
    };
    const auto constraint = [&](int i) {
        return "{\"papers\": [\"Size " + std::to_string(i * extent.papers / constraints) +
               "\"], \"media\": [\"Medium " + std::to_string(i * extent.media / constraints) + "\"], \"duplex\": true}";
    };
    return R"({"modelName": "Bench", "pdl": "pcl6", "languages": )" +
           std::string(extent.isTranslated ? "[\"en\", \"de\", \"ja\"]" : "[\"en\"]") +
           R"(, "resolutions": [{"name": "Draft",
        "dpi": 300}, {"name": "Fine", "dpi": 600}], "margins": [{"allMm": 4.2}], "customSizes": {"minWidthMm": 76,
        "maxWidthMm": 297, "minLengthMm": 127, "maxLengthMm": 1200}, "papers": )" +
           List(0, extent.papers, paper) + ", \"media\": " + List(0, extent.media, medium) +
           ", \"features\": " + List(0, features, feature) + ", \"constraints\": " + List(0, constraints, constraint) +
           "}";
}

}  // namespace velmora
