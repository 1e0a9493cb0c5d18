#pragma once

#include <vips/vips.h>

#include <utility>

namespace sorvane {

// One reference to a libvips image, released on scope exit.
class VipsImageRef {
public:
    VipsImageRef() = default;
    explicit VipsImageRef(VipsImage *image) : m_image(image) { }
    ~VipsImageRef() { reset(); }
    VipsImageRef(const VipsImageRef &) = delete;
    VipsImageRef &operator=(const VipsImageRef &) = delete;
    VipsImageRef(VipsImageRef &&other) noexcept : m_image(std::exchange(other.m_image, nullptr)) { }
    VipsImageRef &operator=(VipsImageRef &&other) noexcept
    {
        if (this != &other) {
            reset();
            m_image = std::exchange(other.m_image, nullptr);
        }
        return *this;
    }

    static VipsImageRef share(VipsImage *image)
    {
        g_object_ref(image);
        return VipsImageRef(image);
    }

    VipsImage *get() const { return m_image; }
    VipsImage *operator->() const { return m_image; }
    explicit operator bool() const { return m_image != nullptr; }
    // For libvips' output parameters.
    VipsImage **out()
    {
        reset();
        return &m_image;
    }
    void reset()
    {
        if (m_image)
            g_object_unref(m_image);
        m_image = nullptr;
    }

private:
    VipsImage *m_image = nullptr;
};

} // namespace sorvane
