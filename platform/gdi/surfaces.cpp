#include "platform/gdi/surfaces.h"

#include <cairo.h>

namespace host {

bool WritePng(const Surface& surface, const std::filesystem::path& file) {
    auto* const pixels = reinterpret_cast<unsigned char*>(const_cast<uint32_t*>(surface.Row(0)));
    cairo_surface_t* const image = cairo_image_surface_create_for_data(pixels, CAIRO_FORMAT_RGB24, surface.width,
                                                                       surface.height, surface.Stride());
    const cairo_status_t status = cairo_surface_write_to_png(image, file.c_str());
    cairo_surface_destroy(image);
    return status == CAIRO_STATUS_SUCCESS;
}

}  // namespace host
