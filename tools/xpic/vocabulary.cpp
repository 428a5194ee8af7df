#include "tools/xpic/vocabulary.h"

#include "driver/devdesc/device_model.h"

namespace velmora {
namespace {

constexpr Word kPdls[] = {
    {"pcl6", kPdlPcl6},   {"pcl5", kPdlPcl5}, {"postscript", kPdlPostScript},
    {"image", kPdlImage}, {"xps", kPdlXps},   {"own", kPdlOwn},
};
constexpr Word kColors[] = {{"none", kColorNone}, {"color", kColor}, {"secondKind", kColorSecondKind}};
constexpr Word kJobNames[] = {{"name", 0}, {"display", kJobNamedByDisplay}};
constexpr Word kDescriptions[] = {{"record", 0}, {"text", kDescriptionsAreText}};
constexpr Word kIcmIntents[] = {
    {"none", 0}, {"businessGraphics", 1}, {"photo", 2}, {"relativeColorimetric", 3}, {"absoluteColorimetric", 4},
};
constexpr Word kIcmOffers[] = {{"none", 0}, {"offered", 1}, {"withoutOptions", 2}};
constexpr Word kImageModes[] = {
    {"none", 0},     {"bgr24", 1},     {"rgb24", 2},     {"bgr32", 4},     {"rgb32", 8},       {"gray8", 16},
    {"gray4", 32},   {"gray2", 64},    {"gray1", 128},   {"cmy24", 256},   {"cmy3", 512},      {"cmyk32", 4096},
    {"cmyk6", 8192}, {"cmyk4", 16384}, {"cmyk7", 32768}, {"cmyk8", 65536}, {"cmyk16", 131072},
};
constexpr Word kOptionFlags[] = {
    {"plainPcl5", kModelPlainPcl5},
    {"colorSlicesPerPage", kModelColorSlicesPerPage},
    {"noPostScriptJobName", kModelNoPostScriptJobName},
};
constexpr Word kBins[] = {
    {"upper", 1},          {"lower", 2},     {"middle", 3},      {"manual", 4},      {"envelope", 5},
    {"envelopeManual", 6}, {"auto", 7},      {"tractor", 8},     {"smallFormat", 9}, {"largeFormat", 10},
    {"largeCapacity", 11}, {"cassette", 14}, {"formSource", 15},
};
constexpr Word kMedia[] = {{"standard", 1}, {"transparency", 2}, {"glossy", 3}};
constexpr Word kOrientations[] = {{"portrait", 1}, {"landscape", 2}};
constexpr Word kTrayOptions[] = {{"secondTray", 2}};
constexpr Word kDeviceOptions[] = {{"duplexUnit", 0}, {"extraOption", 1}, {"borderless", 3}, {"stapler", 4}};
constexpr Word kColorGroupNames[] = {{"text", 1}, {"image", 2}, {"graphics", 3}, {"general", 4}};

constexpr Language kLanguageTable[] = {
    {"af", 0x36, "CP1252"}, {"ar", 0x01, "CP1256"}, {"az", 0x2C, "CP1254"}, {"ba", 0x6D, "CP1251"},
    {"be", 0x23, "CP1251"}, {"bg", 0x02, "CP1251"}, {"br", 0x7E, "CP1252"}, {"ca", 0x03, "CP1252"},
    {"co", 0x83, "CP1252"}, {"cs", 0x05, "CP1250"}, {"cy", 0x52, "CP1252"}, {"da", 0x06, "CP1252"},
    {"de", 0x07, "CP1252"}, {"el", 0x08, "CP1253"}, {"en", 0x09, "CP1252"}, {"es", 0x0A, "CP1252"},
    {"et", 0x25, "CP1257"}, {"eu", 0x2D, "CP1252"}, {"fa", 0x29, "CP1256"}, {"fi", 0x0B, "CP1252"},
    {"fo", 0x38, "CP1252"}, {"fr", 0x0C, "CP1252"}, {"fy", 0x62, "CP1252"}, {"ga", 0x3C, "CP1252"},
    {"gd", 0x91, "CP1252"}, {"gl", 0x56, "CP1252"}, {"ha", 0x68, "CP1252"}, {"he", 0x0D, "CP1255"},
    {"hr", 0x1A, "CP1250"}, {"hu", 0x0E, "CP1250"}, {"id", 0x21, "CP1252"}, {"ig", 0x70, "CP1252"},
    {"is", 0x0F, "CP1252"}, {"it", 0x10, "CP1252"}, {"ja", 0x11, "CP932"},  {"kk", 0x3F, "CP1251"},
    {"kl", 0x6F, "CP1252"}, {"ko", 0x12, "CP949"},  {"ku", 0x92, "CP1256"}, {"ky", 0x40, "CP1251"},
    {"lb", 0x6E, "CP1252"}, {"lt", 0x27, "CP1257"}, {"lv", 0x26, "CP1257"}, {"mi", 0x81, "CP1252"},
    {"mk", 0x2F, "CP1251"}, {"mn", 0x50, "CP1251"}, {"ms", 0x3E, "CP1252"}, {"nb", 0x14, "CP1252"},
    {"nl", 0x13, "CP1252"}, {"oc", 0x82, "CP1252"}, {"pl", 0x15, "CP1250"}, {"pt", 0x16, "CP1252"},
    {"qu", 0x6B, "CP1252"}, {"rm", 0x17, "CP1252"}, {"ro", 0x18, "CP1250"}, {"ru", 0x19, "CP1251"},
    {"rw", 0x87, "CP1252"}, {"se", 0x3B, "CP1252"}, {"sk", 0x1B, "CP1250"}, {"sl", 0x24, "CP1250"},
    {"sq", 0x1C, "CP1250"}, {"sv", 0x1D, "CP1252"}, {"sw", 0x41, "CP1252"}, {"tg", 0x28, "CP1251"},
    {"th", 0x1E, "CP874"},  {"tk", 0x42, "CP1250"}, {"tn", 0x32, "CP1252"}, {"tr", 0x1F, "CP1254"},
    {"tt", 0x44, "CP1251"}, {"ug", 0x80, "CP1256"}, {"uk", 0x22, "CP1251"}, {"ur", 0x20, "CP1256"},
    {"uz", 0x43, "CP1254"}, {"vi", 0x2A, "CP1258"}, {"wo", 0x88, "CP1252"}, {"xh", 0x34, "CP1252"},
    {"yo", 0x6A, "CP1252"}, {"zh", 0x04, "CP936"},  {"zu", 0x35, "CP1252"},
};

}  // namespace

constinit const Words kPdlWords = kPdls;
constinit const Words kColorWords = kColors;
constinit const Words kJobNameWords = kJobNames;
constinit const Words kDescriptionWords = kDescriptions;
constinit const Words kIcmIntentWords = kIcmIntents;
constinit const Words kIcmOfferWords = kIcmOffers;
constinit const Words kImageModeWords = kImageModes;
constinit const Words kOptionFlagWords = kOptionFlags;
constinit const Words kBinWords = kBins;
constinit const Words kMediaWords = kMedia;
constinit const Words kOrientationWords = kOrientations;
constinit const Words kTrayOptionWords = kTrayOptions;
constinit const Words kDeviceOptionWords = kDeviceOptions;
constinit const Words kColorGroupWords = kColorGroupNames;
constinit const std::span<const Language> kLanguages = kLanguageTable;

const Language* FindLanguage(std::string_view code) {
    for (const Language& language : kLanguages) {
        if (language.code == code) {
            return &language;
        }
    }
    return nullptr;
}

}  // namespace velmora
