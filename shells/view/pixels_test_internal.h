// For the tests of pictures: surfaces that free themselves, and their pixels.
#pragma once

#include <cairo.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include <korvolib/graphicstream/painter.h>

namespace kvViewTest {

struct DestroySurface {
    void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
};
using Surface = std::unique_ptr<cairo_surface_t, DestroySurface>;

struct DestroyContext {
    void operator()(cairo_t* context) const noexcept { cairo_destroy(context); }
};
using Context = std::unique_ptr<cairo_t, DestroyContext>;

inline Surface MakeSurface(int width, int height) {
    return Surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
}

/// A pixel as 0xAARRGGBB, multiplied by its alpha.
inline uint32_t PixelAt(cairo_surface_t* surface, int x, int y) {
    cairo_surface_flush(surface);
    const unsigned char* row =
        cairo_image_surface_get_data(surface) + static_cast<ptrdiff_t>(y) * cairo_image_surface_get_stride(surface);
    return reinterpret_cast<const uint32_t*>(row)[x];
}

/// The largest difference of a channel.
inline int Difference(uint32_t a, uint32_t b) {
    int most = 0;
    for (int shift = 0; shift < 32; shift += 8)
        most = std::max(most, std::abs(static_cast<int>(a >> shift & 255) - static_cast<int>(b >> shift & 255)));
    return most;
}

/// The share of pixels of two surfaces of one size that differ by more than 16 of 255 in a channel.
inline double ShareOfDifferentPixels(cairo_surface_t* a, cairo_surface_t* b) {
    const int width = cairo_image_surface_get_width(a);
    const int height = cairo_image_surface_get_height(a);
    int different = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            different += Difference(PixelAt(a, x, y), PixelAt(b, x, y)) > 16;
    }
    return static_cast<double>(different) / (static_cast<double>(width) * height);
}

struct Box {
    int left = 1 << 20;
    int top = 1 << 20;
    int right = 0; // behind the last
    int bottom = 0;
    bool IsEmpty() const { return right <= left; }
};

/// Around the pixels that clearly differ from the first one.
inline Box BoxOf(cairo_surface_t* surface) {
    Box box;
    const uint32_t ground = PixelAt(surface, 0, 0);
    for (int y = 0; y < cairo_image_surface_get_height(surface); ++y) {
        for (int x = 0; x < cairo_image_surface_get_width(surface); ++x) {
            if (Difference(PixelAt(surface, x, y), ground) > 48)
                box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                       std::max(box.bottom, y + 1)};
        }
    }
    return box;
}

/// A PNG file of 16 × 8 pixels with the id 1001: a ramp of red and green with a see-through corner and black
/// squares.
class RampPicture final : public kvKorvo::kvGS::KCGSImageProvider {
  public:
    RampPicture() {
        const Surface surface = MakeSurface(16, 8);
        auto* pixels = reinterpret_cast<uint32_t*>(cairo_image_surface_get_data(surface.get()));
        for (uint32_t i = 0; i < 128; ++i)
            pixels[i] = i < 4 ? 0 : 0xFF000020 | (i % 16 * 16) << 16 | (i / 16 * 32) << 8;
        for (const uint32_t i : {40u, 42u, 57u, 59u, 74u, 76u})
            pixels[i] = 0xFF000000;
        cairo_surface_mark_dirty(surface.get());
        cairo_surface_write_to_png_stream(surface.get(), Append, &m_png);
    }
    std::span<const uint8_t> GetImagePNG(int32_t resID) noexcept override {
        return resID == 1001 ? std::span<const uint8_t>(m_png) : std::span<const uint8_t>();
    }

  private:
    static cairo_status_t Append(void* png, const unsigned char* bytes, unsigned int count) {
        static_cast<std::vector<uint8_t>*>(png)->insert(static_cast<std::vector<uint8_t>*>(png)->end(), bytes,
                                                        bytes + count);
        return CAIRO_STATUS_SUCCESS;
    }
    std::vector<uint8_t> m_png;
};

} // namespace kvViewTest
