// Bitmaps, icons and cursors of modules, and the system's own icons and cursors.
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <span>
#include <tuple>

#include "platform/gdi/dibs.h"
#include "platform/gdi/pixels.h"
#include "platform/gdi/system_icons.h"
#include "platform/kernel/failures.h"
#include "platform/kernel/faults.h"
#include "platform/kernel/modules.h"
#include "platform/kernel/settings.h"
#include "platform/kernel/text.h"
#include "platform/resources/resource_file.h"

namespace host {
namespace {

constexpr int kIconSide = 32;
constexpr WORD kIconGroup = 1;  // the type in a group's header
constexpr std::array<uint8_t, 8> kPngSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

struct Icon {
    static constexpr GdiKind kKind = GdiKind::kIcon;
    std::string Describe() const { return "icon of " + std::to_string(width) + " x " + std::to_string(height); }

    Picture picture;  // alpha multiplied in
    int width;        // as it is drawn where no size is told
    int height;
};

struct Cursor {
    static constexpr GdiKind kKind = GdiKind::kCursor;
    std::string Describe() const { return "cursor"; }
};

// An image of an icon, as its group tells of it.
#pragma pack(push, 2)
struct GroupEntry {
    BYTE width;  // 0: 256
    BYTE height;
    BYTE colors;
    BYTE reserved;
    WORD planes;
    WORD bits;
    DWORD bytes;
    WORD id;  // of the RT_ICON resource
};
struct GroupHeader {
    WORD reserved;
    WORD type;
    WORD count;
};
#pragma pack(pop)
static_assert(sizeof(GroupEntry) == 14 && sizeof(GroupHeader) == 6);

int SideOf(BYTE side) {
    return side != 0 ? side : 256;
}

std::span<const uint8_t> FindBytes(const ResourceFile& resources, LPCWSTR type, LPCWSTR name) {
    const ResourceEntry* const entry =
        resources.Find(ResourceKey::FromArgument(type), ResourceKey::FromArgument(name), CurrentSettings().language);
    return entry ? std::span<const uint8_t>(entry->data) : std::span<const uint8_t>();
}

// The image of the group whose width is the nearest, with the most colours. None: the bytes are no group of icons.
std::optional<GroupEntry> ChooseImage(std::span<const uint8_t> group, int width) {
    GroupHeader header = {};
    if (group.size() >= sizeof header) {
        std::memcpy(&header, group.data(), sizeof header);
    }
    if (header.type != kIconGroup || header.count == 0 ||
        group.size() < sizeof header + header.count * sizeof(GroupEntry)) {
        Fail(ERROR_INVALID_DATA);
        return std::nullopt;
    }
    std::optional<GroupEntry> best;
    for (size_t i = 0; i < header.count; ++i) {
        GroupEntry entry;
        std::memcpy(&entry, group.data() + sizeof header + i * sizeof entry, sizeof entry);
        const auto distance = [&](const GroupEntry& image) { return std::abs(SideOf(image.width) - width); };
        if (!best || distance(entry) < distance(*best) ||
            (distance(entry) == distance(*best) && entry.bits > best->bits)) {
            best = entry;
        }
    }
    return best;
}

uint32_t MultiplyAlpha(uint32_t pixel) {
    const uint32_t alpha = pixel >> 24;
    uint32_t multiplied = alpha << 24;
    for (int shift = 0; shift < 24; shift += 8) {
        multiplied |= (((pixel >> shift) & 0xFF) * alpha + 127) / 255 << shift;
    }
    return multiplied;
}

// A DIB of the colours, then a row of bits for each row, set where nothing is drawn. Pixels that the mask would invert
// aren't drawn either. Where the colours have alpha, the mask counts for nothing.
bool ReadMaskedDib(std::span<const uint8_t> bytes, Picture* picture) {
    BITMAPINFOHEADER header;
    if (bytes.size() < sizeof header) {
        return Fail(ERROR_INVALID_DATA);
    }
    std::memcpy(&header, bytes.data(), sizeof header);
    size_t end = 0;
    if (header.biHeight < 2) {
        return Fail(ERROR_INVALID_DATA);
    }
    if (!ReadPackedDib(bytes, header.biHeight / 2, picture, &end)) {
        return false;
    }
    std::vector<uint32_t>& pixels = picture->pixels;
    const bool hasAlpha = std::any_of(pixels.begin(), pixels.end(), [](uint32_t pixel) { return pixel >> 24 != 0; });
    const DibLayout mask = {picture->width, picture->height, 1, false};
    if (!hasAlpha && mask.Bytes() > bytes.size() - end) {
        return Fail(ERROR_INVALID_DATA);
    }
    for (size_t i = 0; i < pixels.size(); ++i) {
        if (!hasAlpha) {
            const size_t x = i % static_cast<size_t>(picture->width);
            const size_t line = static_cast<size_t>(picture->height) - 1 - i / static_cast<size_t>(picture->width);
            const bool leftOut = bytes[end + line * mask.RowBytes() + x / 8] >> (7 - x % 8) & 1;
            pixels[i] = leftOut ? 0 : pixels[i] | 0xFF000000;
        }
        pixels[i] = MultiplyAlpha(pixels[i]);
    }
    return true;
}

bool ReadPng(std::span<const uint8_t> bytes, Picture* picture) {
    const auto read = [](void* rest, unsigned char* data, unsigned length) {
        auto& left = *static_cast<std::span<const uint8_t>*>(rest);
        if (length > left.size()) {
            return CAIRO_STATUS_READ_ERROR;
        }
        std::copy_n(left.begin(), length, data);
        left = left.subspan(length);
        return CAIRO_STATUS_SUCCESS;
    };
    cairo_surface_t* const image = cairo_image_surface_create_from_png_stream(read, &bytes);
    const cairo_format_t format = cairo_image_surface_get_format(image);
    const bool good = cairo_surface_status(image) == CAIRO_STATUS_SUCCESS &&
                      (format == CAIRO_FORMAT_ARGB32 || format == CAIRO_FORMAT_RGB24);
    if (good) {
        picture->width = cairo_image_surface_get_width(image);
        picture->height = cairo_image_surface_get_height(image);
        for (int y = 0; y < picture->height; ++y) {
            const auto* const row = reinterpret_cast<const uint32_t*>(cairo_image_surface_get_data(image) +
                                                                      y * cairo_image_surface_get_stride(image));
            picture->pixels.insert(picture->pixels.end(), row, row + picture->width);
        }
        if (format == CAIRO_FORMAT_RGB24) {
            std::for_each(picture->pixels.begin(), picture->pixels.end(), [](uint32_t& p) { p |= 0xFF000000; });
        }
    }
    cairo_surface_destroy(image);
    return good || Fail(ERROR_INVALID_DATA);
}

std::optional<Icon> ReadIcon(const ResourceFile& resources, LPCWSTR name, int width, int height) {
    const std::span<const uint8_t> group = FindBytes(resources, RT_GROUP_ICON, name);
    if (group.empty()) {
        return std::nullopt;
    }
    const auto chosen = ChooseImage(group, width != 0 ? width : kIconSide);
    const auto bytes =
        chosen ? FindBytes(resources, RT_ICON, MAKEINTRESOURCEW(chosen->id)) : std::span<const uint8_t>();
    if (bytes.empty()) {
        return std::nullopt;
    }
    const bool isPng =
        bytes.size() > kPngSignature.size() && std::equal(kPngSignature.begin(), kPngSignature.end(), bytes.begin());
    Icon icon = {};
    if (!(isPng ? ReadPng(bytes, &icon.picture) : ReadMaskedDib(bytes, &icon.picture))) {
        return std::nullopt;
    }
    icon.width = width != 0 ? width : icon.picture.width;
    icon.height = height != 0 ? height : icon.picture.height;
    return icon;
}

// The icon of a module, or the system's where `instance` is null. A size of 0: the image's own.
std::optional<Icon> FindIcon(HINSTANCE instance, LPCWSTR name, int width, int height) {
    if (instance) {
        const auto resources = ResourcesOf(instance);
        return resources ? ReadIcon(*resources, name, width, height) : std::nullopt;
    }
    width = width != 0 ? width : kIconSide;
    height = height != 0 ? height : kIconSide;
    auto picture = IS_INTRESOURCE(name) ? DrawSystemIcon(LOWORD(name), width, height) : std::nullopt;
    if (!picture) {
        Fail(ERROR_RESOURCE_NAME_NOT_FOUND);
        return std::nullopt;
    }
    return Icon{std::move(*picture), width, height};
}

// Of a module, a name and a size there is one shared icon.
HANDLE SharedIcon(HINSTANCE instance, LPCWSTR name, int width, int height) {
    using Key = std::tuple<HINSTANCE, uint16_t, std::u16string, int, int>;
    static auto& icons = *new std::map<Key, HANDLE>;
    const ResourceKey resource = ResourceKey::FromArgument(name);
    const Key key = {instance, resource.id, FoldCase(resource.text), width, height};
    const auto known = icons.find(key);
    if (known != icons.end() && IsOpen(known->second)) {
        return known->second;
    }
    auto icon = FindIcon(instance, name, width, height);
    return icon ? OwnHandle(&icons[key], [&] { return std::move(*icon); }) : nullptr;
}

HCURSOR SystemCursor(HINSTANCE instance, LPCWSTR name) {
    static const LPCWSTR kNames[] = {IDC_ARROW, IDC_WAIT, IDC_SIZEWE, IDC_HAND};
    static std::array<HANDLE, std::size(kNames)> cursors = {};
    const auto* const found = std::find(std::begin(kNames), std::end(kNames), name);
    if (instance || found == std::end(kNames)) {
        FailUnsupported("a cursor of a module, or of this name");
        return nullptr;
    }
    return static_cast<HCURSOR>(OwnHandle(&cursors[static_cast<size_t>(found - kNames)], [] { return Cursor(); }));
}

// An arrow until it is set.
HCURSOR& CurrentCursor() {
    static HCURSOR arrow = nullptr;
    static HCURSOR current = nullptr;
    if (!IsOpen(arrow)) {
        arrow = current = SystemCursor(nullptr, IDC_ARROW);  // of a new machine
    }
    return current;
}

HBITMAP LoadPicture(HINSTANCE instance, LPCWSTR name, int width, int height, bool isSection) {
    const auto resources = ResourcesOf(instance);
    const auto bytes = resources ? FindBytes(*resources, RT_BITMAP, name) : std::span<const uint8_t>();
    Picture picture;
    size_t end = 0;
    if (bytes.empty() || !ReadPackedDib(bytes, 0, &picture, &end)) {
        return nullptr;
    }
    if ((width != 0 && width != picture.width) || (height != 0 && height != picture.height)) {
        FailUnsupported("LoadImageW (of a bitmap at another size than its own)");
        return nullptr;
    }
    auto surface = std::make_shared<Surface>(picture.width, picture.height, false,
                                             isSection ? Surface::Order::kBottomUp : Surface::Order::kTopDown);
    for (int y = 0; y < picture.height; ++y) {
        std::transform(picture.pixels.begin() + static_cast<ptrdiff_t>(y) * picture.width,
                       picture.pixels.begin() + static_cast<ptrdiff_t>(y + 1) * picture.width, surface->Row(y),
                       [](uint32_t pixel) { return pixel & kColorBits; });
    }
    return static_cast<HBITMAP>(AddThing(Bitmap{std::move(surface), isSection}));
}

void DrawPicture(const Canvas& canvas, Picture& picture, const RECT& rect) {
    Painter painter(canvas);
    cairo_surface_t* const image =
        cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(picture.pixels.data()),
                                            CAIRO_FORMAT_ARGB32, picture.width, picture.height, picture.width * 4);
    const double scaleX = static_cast<double>(rect.right - rect.left) / picture.width;
    const double scaleY = static_cast<double>(rect.bottom - rect.top) / picture.height;
    cairo_translate(painter, rect.left, rect.top);
    cairo_scale(painter, scaleX, scaleY);
    cairo_set_source_surface(painter, image, 0, 0);
    cairo_pattern_set_filter(cairo_get_source(painter),
                             scaleX == 1 && scaleY == 1 ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
    cairo_paint(painter);
    cairo_surface_destroy(image);
}

}  // namespace
}  // namespace host

using namespace host;

extern "C" {

HBITMAP WINAPI LoadBitmapW(HINSTANCE instance, LPCWSTR name) {
    if (FaultAsked("LoadBitmapW")) {
        return nullptr;
    }
    const MachineLock lock;
    return LoadPicture(instance, name, 0, 0, false);
}

HICON WINAPI LoadIconW(HINSTANCE instance, LPCWSTR name) {
    if (FaultAsked("LoadIconW")) {
        return nullptr;
    }
    const MachineLock lock;
    return static_cast<HICON>(SharedIcon(instance, name, kIconSide, kIconSide));
}

HCURSOR WINAPI LoadCursorW(HINSTANCE instance, LPCWSTR name) {
    return FaultAsked("LoadCursorW") ? nullptr : SystemCursor(instance, name);
}

HANDLE WINAPI LoadImageW(HINSTANCE instance, LPCWSTR name, UINT type, int width, int height, UINT flags) {
    if (FaultAsked("LoadImageW")) {
        return nullptr;
    }
    const MachineLock lock;
    const bool knownFlags = (flags & ~static_cast<UINT>(LR_CREATEDIBSECTION | LR_SHARED)) == 0;
    if (knownFlags && type == IMAGE_BITMAP && !(flags & LR_SHARED)) {
        return LoadPicture(instance, name, width, height, (flags & LR_CREATEDIBSECTION) != 0);
    }
    if (knownFlags && type == IMAGE_CURSOR) {
        return SystemCursor(instance, name);
    }
    if (!knownFlags || type != IMAGE_ICON || width < 0 || height < 0) {
        FailUnsupported("LoadImageW (of this type, or with these flags)");
        return nullptr;
    }
    if (flags & LR_SHARED) {
        return SharedIcon(instance, name, width, height);
    }
    auto icon = FindIcon(instance, name, width, height);
    return icon ? AddThing(std::move(*icon)) : nullptr;
}

BOOL WINAPI DestroyIcon(HICON icon) {
    const MachineLock lock;
    const GdiObject* const found = FindGdiObject(icon, GdiKind::kIcon);
    if (!found) {
        return FALSE;
    }
    if (found->owner == Owner::kMachine) {
        return FailUnsupported("DestroyIcon (of a shared icon)");
    }
    return RemoveObject(icon, Resource::kGdiObject);
}

BOOL WINAPI DrawIcon(HDC context, int x, int y, HICON icon) {
    return DrawIconEx(context, x, y, icon, kIconSide, kIconSide, 0, nullptr, DI_NORMAL);
}

BOOL WINAPI DrawIconEx(HDC context, int x, int y, HICON icon, int width, int height, UINT step, HBRUSH brush,
                       UINT flags) {
    if (FaultAsked("DrawIconEx")) {
        return FALSE;
    }
    const MachineLock lock;
    const auto canvas = FindCanvas(context);
    const auto found = canvas ? FindThing<Icon>(icon) : nullptr;
    if (!found) {
        return FALSE;
    }
    if (step != 0 || brush || flags != DI_NORMAL || canvas->surface->monochrome || width < 0 || height < 0) {
        return FailUnsupported("DrawIconEx (in this way)");
    }
    const RECT rect = {x, y, x + (width != 0 ? width : found->width), y + (height != 0 ? height : found->height)};
    DrawPicture(*canvas, found->picture, ToSurface(*canvas, rect));
    return TRUE;
}

HCURSOR WINAPI SetCursor(HCURSOR cursor) {
    const MachineLock lock;
    if (cursor && !FindGdiObject(cursor, GdiKind::kCursor)) {
        return nullptr;
    }
    return std::exchange(CurrentCursor(), cursor);
}

HCURSOR WINAPI GetCursor() {
    const MachineLock lock;
    return CurrentCursor();
}

}  // extern "C"
