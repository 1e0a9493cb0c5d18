#pragma once

#include <vips/vips.h>

#include <utility>

namespace sorvane::test {

// Owns one reference to a libvips image, so that early returns in fixture code leak nothing.
struct ImageRef {
    VipsImage *image = nullptr;
    ImageRef() = default;
    explicit ImageRef(VipsImage *owned) : image(owned) { }
    ImageRef(ImageRef &&other) noexcept : image(std::exchange(other.image, nullptr)) { }
    ImageRef &operator=(ImageRef &&other) noexcept
    {
        std::swap(image, other.image);
        return *this;
    }
    ImageRef(const ImageRef &) = delete;
    ImageRef &operator=(const ImageRef &) = delete;
    ~ImageRef()
    {
        if (image)
            g_object_unref(image);
    }
    VipsImage **out() { return &image; }
};

} // namespace sorvane::test
