// Writes N camera-like JPEGs (gradient plus fine noise, so they compress like
// real photos) for the export benchmark: bench_make_photos DIR N WIDTH HEIGHT.

#include <vips/vips.h>

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char *argv[])
{
    if (argc != 5 || VIPS_INIT(argv[0]) != 0) {
        std::fprintf(stderr, "usage: bench_make_photos DIR N WIDTH HEIGHT\n");
        return 2;
    }
    const std::string dir = argv[1];
    const int count = std::atoi(argv[2]), width = std::atoi(argv[3]), height = std::atoi(argv[4]);
    for (int i = 0; i < count; ++i) {
        VipsImage *xy = nullptr, *noise = nullptr, *bands[3] = {}, *joined = nullptr, *photo = nullptr;
        vips_xyz(&xy, width, height, nullptr);
        vips_gaussnoise(&noise, width, height, "sigma", 12.0, "mean", 0.0, "seed", i, nullptr);
        for (int b = 0; b < 3; ++b) {
            VipsImage *axis = nullptr, *ramp = nullptr;
            vips_extract_band(xy, &axis, b % 2, nullptr);
            const double scale = (60.0 + 40 * b + 7 * i) / (b % 2 ? height : width), offset = 40.0 + 30 * b;
            vips_linear1(axis, &ramp, scale, offset, nullptr);
            vips_add(ramp, noise, &bands[b], nullptr);
            g_object_unref(axis);
            g_object_unref(ramp);
        }
        vips_bandjoin(bands, &joined, 3, nullptr);
        vips_cast(joined, &photo, VIPS_FORMAT_UCHAR, nullptr);
        const std::string path = dir + "/photo-" + std::to_string(1000 + i) + ".jpg";
        VipsImage *srgb = nullptr;
        vips_copy(photo, &srgb, "interpretation", VIPS_INTERPRETATION_sRGB, nullptr);
        const int status = vips_jpegsave(srgb, path.c_str(), "Q", 92, nullptr);
        for (VipsImage *image : {xy, noise, bands[0], bands[1], bands[2], joined, photo, srgb})
            g_object_unref(image);
        if (status != 0) {
            std::fprintf(stderr, "bench_make_photos: %s\n", vips_error_buffer());
            return 1;
        }
    }
    return 0;
}
