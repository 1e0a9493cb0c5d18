// Paints the sample media that the demo exports: photos of several shapes and
// orientations (with real EXIF orientation tags), a photo with transparency, a
// HEIC, animated GIF and WebP, a short H.264 video made with the ffmpeg tool,
// and two broken files. Everything is generated, so nothing binary is shipped.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>

#include <vips/vips.h>

#include <cstdio>
#include <functional>
#include <vector>

namespace {

// Owns a libvips image reference.
class Image {
public:
    Image() = default;
    explicit Image(VipsImage *image) : m_image(image) { }
    Image(const Image &) = delete;
    Image &operator=(const Image &) = delete;
    Image(Image &&other) noexcept : m_image(std::exchange(other.m_image, nullptr)) { }
    Image &operator=(Image &&other) noexcept
    {
        std::swap(m_image, other.m_image);
        return *this;
    }
    ~Image()
    {
        if (m_image)
            g_object_unref(m_image);
    }
    VipsImage *get() const { return m_image; }
    VipsImage **out() { return &m_image; }

private:
    VipsImage *m_image = nullptr;
};

bool check(int status, const char *what)
{
    if (status != 0)
        std::fprintf(stderr, "sorvane-sample-media: %s: %s\n", what, vips_error_buffer());
    return status == 0;
}

struct Colour {
    double r, g, b;
};

// A vertical two-colour gradient with a disc (sun or moon) and a caption.
Image scene(int width, int height, Colour top, Colour bottom, Colour disc, const char *caption)
{
    Image xy, y, scaled, sky;
    vips_xyz(xy.out(), width, height, nullptr);
    vips_extract_band(xy.get(), y.out(), 1, nullptr);
    double a[3], b[3];
    const Colour from = top, to = bottom;
    a[0] = (to.r - from.r) / height;
    a[1] = (to.g - from.g) / height;
    a[2] = (to.b - from.b) / height;
    b[0] = from.r;
    b[1] = from.g;
    b[2] = from.b;
    vips_linear(y.get(), scaled.out(), a, b, 3, nullptr);
    vips_cast(scaled.get(), sky.out(), VIPS_FORMAT_UCHAR, nullptr);
    Image canvas;
    vips_copy(sky.get(), canvas.out(), "interpretation", VIPS_INTERPRETATION_sRGB, nullptr);
    vips_image_wio_input(canvas.get());
    const int shorter = std::min(width, height);
    double ink[] = {disc.r, disc.g, disc.b};
    vips_draw_circle(canvas.get(), ink, 3, width * 2 / 3, height / 3, shorter / 7, "fill", TRUE, nullptr);
    double ground[] = {top.r * 0.2, top.g * 0.2, top.b * 0.25};
    vips_draw_rect(canvas.get(), ground, 3, 0, height * 4 / 5, width, height - height * 4 / 5, "fill", TRUE, nullptr);

    Image text;
    const int dpi = std::max(72, shorter / 5);
    if (vips_text(text.out(), caption, "font", "DejaVu Sans Bold 12", "dpi", dpi, nullptr) == 0) {
        double white[] = {255, 255, 255};
        Image coloured, withText;
        // The text image is a mask: paint white through it onto the picture.
        vips_draw_mask(canvas.get(), white, 3, text.get(), width / 20,
            height * 4 / 5 + (height / 5 - text.get()->Ysize) / 2, nullptr);
    } else {
        vips_error_clear();
    }
    return canvas;
}

bool saveJpeg(const Image &image, const QString &path, int orientation)
{
    Image tagged;
    vips_copy(image.get(), tagged.out(), nullptr);
    if (orientation != 1)
        vips_image_set_int(tagged.get(), "orientation", orientation);
    return check(vips_jpegsave(tagged.get(), QFile::encodeName(path).constData(), "Q", 90, nullptr), "jpegsave");
}

// The picture a person should see, stored transformed so that only its EXIF
// orientation tag puts it upright (and unmirrored) again.
bool saveTurned(const Image &upright, const QString &path, int orientation)
{
    auto rotate = [](const Image &in, VipsAngle angle) {
        Image out;
        vips_rot(in.get(), out.out(), angle, nullptr);
        return out;
    };
    auto flip = [](const Image &in, VipsDirection direction) {
        Image out;
        vips_flip(in.get(), out.out(), direction, nullptr);
        return out;
    };
    Image stored;
    switch (orientation) {
    case 2:
        stored = flip(upright, VIPS_DIRECTION_HORIZONTAL);
        break;
    case 3:
        stored = rotate(upright, VIPS_ANGLE_D180);
        break;
    case 4:
        stored = flip(upright, VIPS_DIRECTION_VERTICAL);
        break;
    case 5:
        stored = flip(rotate(upright, VIPS_ANGLE_D90), VIPS_DIRECTION_HORIZONTAL);
        break; // transpose
    case 6:
        stored = rotate(upright, VIPS_ANGLE_D270);
        break;
    case 7:
        stored = flip(rotate(upright, VIPS_ANGLE_D270), VIPS_DIRECTION_HORIZONTAL);
        break; // transverse
    case 8:
        stored = rotate(upright, VIPS_ANGLE_D90);
        break;
    default:
        return saveJpeg(upright, path, 1);
    }
    return stored.get() && saveJpeg(stored, path, orientation);
}

// An animation of `frames` frames stacked vertically, each with the disc moved on.
Image animation(int size, int frames)
{
    Image strip;
    vips_black(strip.out(), size, size * frames, "bands", 3, nullptr);
    Image canvas;
    vips_copy(strip.get(), canvas.out(), "interpretation", VIPS_INTERPRETATION_sRGB, nullptr);
    vips_image_wio_input(canvas.get());
    for (int f = 0; f < frames; ++f) {
        double background[] = {30.0 + f * 20, 40, 90};
        vips_draw_rect(canvas.get(), background, 3, 0, f * size, size, size, "fill", TRUE, nullptr);
        double ink[] = {250, 200, 60};
        const double angle = 2 * M_PI * f / frames;
        vips_draw_circle(canvas.get(), ink, 3, int(size / 2 + size / 3 * std::cos(angle)),
            f * size + int(size / 2 + size / 3 * std::sin(angle)), size / 10, "fill", TRUE, nullptr);
    }
    vips_image_set_int(canvas.get(), "page-height", size);
    std::vector<int> delays(size_t(frames), 150);
    vips_image_set_array_int(canvas.get(), "delay", delays.data(), frames);
    vips_image_set_int(canvas.get(), "loop", 0);
    return canvas;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 2 || VIPS_INIT(argv[0]) != 0) {
        std::fprintf(stderr, "usage: sorvane-sample-media OUTPUT_FOLDER\n");
        return 2;
    }
    const QDir out(QString::fromLocal8Bit(argv[1]));
    QDir(out.path()).removeRecursively();
    QDir().mkpath(out.filePath("trips/2025 coast"));
    auto path = [&](const char *name) { return out.filePath(QString::fromUtf8(name)); };

    bool ok = true;
    const Colour dusk {250, 140, 60}, violet {80, 40, 120}, noon {90, 160, 230}, sea {20, 70, 120},
        white {255, 250, 230};
    ok &= saveJpeg(scene(4032, 3024, dusk, violet, white, "Sunset, landscape"), path("sunset.jpg"), 1);
    ok &= saveTurned(
        scene(3024, 4032, noon, sea, white, "Harbour, portrait (EXIF 6)"), path("trips/2025 coast/harbour.jpg"), 6);
    ok &= saveTurned(scene(3024, 4032, sea, noon, dusk, "Lighthouse, portrait (EXIF 8)"),
        path("trips/2025 coast/lighthouse.jpg"), 8);
    ok &= saveTurned(
        scene(4000, 3000, {60, 150, 80}, {20, 60, 30}, white, "Meadow (EXIF 3)"), path("trips/meadow.jpg"), 3);
    ok &= saveJpeg(scene(6000, 2000, noon, dusk, white, "Panorama 3:1"), path("trips/panorama.jpg"), 1);
    // The mirrored orientations too, each a small landscape that must come out as drawn.
    QDir().mkpath(out.filePath("orientations"));
    for (const int orientation : {2, 4, 5, 7}) {
        const QByteArray caption = "EXIF orientation " + QByteArray::number(orientation);
        ok &= saveTurned(scene(1600, 1200, {200, 90, 160}, {40, 20, 60}, white, caption.constData()),
            out.filePath(QStringLiteral("orientations/orientation-%1.jpg").arg(orientation)), orientation);
    }
    ok &= saveJpeg(scene(800, 600, violet, dusk, white, "Small 800 x 600"), path("small.jpg"), 1);
    {
        Image night = scene(2400, 1600, {10, 20, 60}, {0, 0, 10}, {240, 240, 220}, "Night sky (HEIC)");
        ok &= check(vips_heifsave(night.get(), QFile::encodeName(path("night.heic")).constData(), "Q", 60, nullptr),
            "heifsave");
    }
    {
        // A badge with a transparent background.
        Image badge = scene(1600, 1600, noon, violet, dusk, "Badge");
        Image alpha, mask;
        vips_black(mask.out(), 1600, 1600, nullptr);
        vips_image_wio_input(mask.get());
        double opaque[] = {255};
        vips_draw_circle(mask.get(), opaque, 1, 800, 800, 760, "fill", TRUE, nullptr);
        vips_bandjoin2(badge.get(), mask.get(), alpha.out(), nullptr);
        ok &= check(vips_pngsave(alpha.get(), QFile::encodeName(path("badge.png")).constData(), nullptr), "pngsave");
    }
    {
        Image spinner = animation(480, 8);
        ok &= check(
            vips_gifsave(spinner.get(), QFile::encodeName(path("spinner.gif")).constData(), nullptr), "gifsave");
        ok &= check(vips_webpsave(spinner.get(), QFile::encodeName(path("trips/spinner.webp")).constData(), nullptr),
            "webpsave");
    }
    {
        QFile broken(path("broken.jpg"));
        ok &= broken.open(QIODevice::WriteOnly) && broken.write("This is a note, not a photo.\n") > 0;
        QFile whole(path("sunset.jpg"));
        QFile cut(path("truncated.jpg"));
        ok &= whole.open(QIODevice::ReadOnly) && cut.open(QIODevice::WriteOnly)
            && cut.write(whole.read(whole.size() / 2)) > 0;
    }
    // A four-second H.264 clip with a tone, from the ffmpeg tool's test sources.
    const int video = QProcess::execute(QStringLiteral("ffmpeg"),
        {"-v", "error", "-y", "-f", "lavfi", "-i", "testsrc2=size=1280x720:rate=25:duration=4", "-f", "lavfi", "-i",
            "sine=frequency=440:duration=4", "-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac", "-shortest",
            path("trips/2025 coast/waves.mp4")});
    if (video != 0)
        std::fprintf(stderr, "sorvane-sample-media: ffmpeg could not make the sample video\n");
    ok &= video == 0;
    std::printf("%s\n", qPrintable(out.absolutePath()));
    return ok ? 0 : 1;
}
