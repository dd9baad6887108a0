#include "extension/CommandBitmaps.h"

#include "extension/detail/CommandBitmapArt.h"

#include <cstddef>

namespace tess {
namespace {

constexpr std::size_t kBitmapCount = std::size(detail::kCommandBitmapArt);

static_assert(detail::kBitmapArtSize == CommandBitmap::Width && detail::kBitmapArtSize == CommandBitmap::Height,
              "the character art must match the bitmap size");

constexpr const detail::BitmapColour& Colour(char key) {
    for (const detail::BitmapColour& colour : detail::kBitmapPalette)
        if (colour.Key == key)
            return colour;
    throw "a character of the bitmap art is not in the palette"; // stops the compilation
}

constexpr std::size_t Length(const char* text) {
    std::size_t n = 0;
    while (text[n] != '\0')
        ++n;
    return n;
}

constexpr CommandBitmap Expand(const detail::BitmapArt& art) {
    CommandBitmap bitmap;
    bitmap.Id = art.Id;
    std::size_t at = 0;
    for (const char* row : art.Rows) {
        if (Length(row) != static_cast<std::size_t>(CommandBitmap::Width))
            throw "a row of the bitmap art has the wrong width";
        for (std::size_t x = 0; x < static_cast<std::size_t>(CommandBitmap::Width); ++x) {
            const detail::BitmapColour& colour = Colour(row[x]);
            bitmap.Pixels[at++] = colour.Red;
            bitmap.Pixels[at++] = colour.Green;
            bitmap.Pixels[at++] = colour.Blue;
        }
    }
    return bitmap;
}

constexpr std::array<CommandBitmap, kBitmapCount> ExpandAll() {
    std::array<CommandBitmap, kBitmapCount> bitmaps{};
    for (std::size_t i = 0; i < kBitmapCount; ++i)
        bitmaps[i] = Expand(detail::kCommandBitmapArt[i]);
    return bitmaps;
}

// Expanded while compiling: the library carries the finished pixels.
constexpr std::array<CommandBitmap, kBitmapCount> kBitmaps = ExpandAll();

} // namespace

const CommandBitmap* LoadCommandBitmap(std::int32_t id) {
    for (const CommandBitmap& bitmap : kBitmaps)
        if (bitmap.Id == id)
            return &bitmap;
    return nullptr;
}

std::span<const CommandBitmap> AllCommandBitmaps() { return kBitmaps; }

} // namespace tess
