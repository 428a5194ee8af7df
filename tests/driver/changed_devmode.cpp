#include "tests/driver/changed_devmode.h"

#include <sstream>
#include <stdexcept>

#include "driver/devmode/devmode_fields.h"

namespace driver_test {
namespace {

using velmora::FieldDescriptor;

// False where none of the fields has this name.
bool SetNumber(std::span<const FieldDescriptor> fields, const std::string& name, int64_t value, void* part) {
    for (const FieldDescriptor& field : fields) {
        if (name == field.name) {
            WriteFieldNumber(field, part, 0, value);
            return true;
        }
    }
    return false;
}

}  // namespace

velmora::VelmoraDevMode With(const velmora::VelmoraDevMode& devMode, const std::string& settings) {
    velmora::VelmoraDevMode changed = devMode;
    std::istringstream stream(settings);
    for (std::string setting; stream >> setting;) {
        const size_t equals = setting.find('=');
        const std::string name = setting.substr(0, equals);
        const int64_t value = std::stoll(setting.substr(equals + 1), nullptr, 0);
        if (!SetNumber(velmora::PublicFields(), name, value, &changed.publicPart) &&
            !SetNumber(velmora::PrivateFields(), name, value, &changed.privatePart)) {
            throw std::invalid_argument("no field " + name);
        }
    }
    return changed;
}

}  // namespace driver_test
