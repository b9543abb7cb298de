#include "cli/Png.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
#define STB_IMAGE_WRITE_STATIC
#include <stb/stb_image_write.h>

namespace cli {

std::vector<std::uint8_t> EncodePng(const Picture& picture) {
    constexpr int bytesPerPixel = 3;
    const auto append = [](void* file, void* bytes, int count) {
        const auto* first = static_cast<const std::uint8_t*>(bytes);
        auto& png = *static_cast<std::vector<std::uint8_t>*>(file);
        png.insert(png.end(), first, first + count);
    };
    std::vector<std::uint8_t> png;
    stbi_write_png_to_func(append, &png, picture.Width, picture.Height, bytesPerPixel, picture.Pixels.data(),
                           picture.Width * bytesPerPixel);
    return png;
}

}  // namespace cli
