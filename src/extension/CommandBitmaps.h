#pragma once
// The pictures of the commands: 16 x 16 pixels, 24 bits per pixel, kept in the
// library under the ids of the command table.

#include <array>
#include <cstdint>
#include <span>

namespace tess {

struct CommandBitmap {
    static constexpr std::int32_t Width = 16;         //!< pixels
    static constexpr std::int32_t Height = 16;        //!< pixels
    static constexpr std::int32_t BitsPerPixel = 24;
    static constexpr std::int32_t BytesPerPixel = BitsPerPixel / 8;
    std::int32_t Id = 0;
    //! Rows top first, each pixel red, green, blue.
    std::array<std::uint8_t, Width * Height * BytesPerPixel> Pixels{};
};

//! The picture of a bitmap id, or null for an id the library does not have.
const CommandBitmap* LoadCommandBitmap(std::int32_t id);
//! Every picture of the library.
std::span<const CommandBitmap> AllCommandBitmaps();

} // namespace tess
