#include "views/SlideImageProvider.h"
#include "views/SlideSource.h"

#include "TestPaths.h"

#include "bundle/BundleWireValues.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QQuickTextureFactory>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUrl>

#include <memory>

namespace sorvane {
namespace {

constexpr ImageFilter kFilters[]
    = {ImageFilter::none, ImageFilter::blackAndWhite, ImageFilter::sepia, ImageFilter::vintage};
constexpr ImageScalingMode kScalings[]
    = {ImageScalingMode::fitToScreen, ImageScalingMode::fillScreen, ImageScalingMode::actualSize};

TEST(SlideImageProvider, IdsCarryAnyPathThroughAnImageUrl)
{
    const QSize requested(1920, 1080);
    for (const QString &path : kPaths) {
        for (const ImageFilter filter : kFilters) {
            for (const ImageScalingMode scaling : kScalings) {
                SCOPED_TRACE(::testing::Message() << path.toStdString() << " " << toWire(filter).toStdString() << " "
                                                  << toWire(scaling).toStdString());
                const SlideDecodeRequest expected {path, requested, scaling, filter};
                const QString id = SlideImageProvider::imageId(path, scaling, filter);
                EXPECT_EQ(SlideImageProvider::parseId(id, requested), expected);
                EXPECT_EQ(SlideImageProvider::parseId(idAsQmlSeesIt(QStringLiteral("image://slide/") + id), requested),
                    expected);
            }
        }
    }
}

TEST(SlideImageProvider, RejectsIdsItDidNotMake)
{
    const char *ids[] = {
        "",
        "sepia",
        "sepia/fit_to_screen",
        "sepia/fit_to_screen/",
        "/fit_to_screen/%2Fa.jpg",
        "sepia//%2Fa.jpg",
        "sepiaa/fit_to_screen/%2Fa.jpg",
        "Sepia/fit_to_screen/%2Fa.jpg",
        "sepia/fit/%2Fa.jpg",
        "sepia/fit_to_screen/a.jpg",
        "sepia/fit_to_screen/photos%2Fa.jpg",
        "sepia/fit_to_screen//photos/a.jpg",
        "fit_to_screen/sepia/%2Fa.jpg",
    };
    for (const char *id : ids)
        EXPECT_EQ(SlideImageProvider::parseId(QString::fromLatin1(id), {100, 100}), std::nullopt) << id;
}

TEST(SlideSource, GivesNoUrlForWhatItCannotServe)
{
    struct Case {
        QUrl file;
        const char *scaling;
        const char *filter;
    };
    const QUrl file = QUrl::fromLocalFile(QStringLiteral("/photos/a.jpg"));
    const Case cases[] = {
        {QUrl(QStringLiteral("https://example.com/a.jpg")), "fit_to_screen", "none"},
        {QUrl(QStringLiteral("/photos/a.jpg")), "fit_to_screen", "none"},
        {QUrl(), "fit_to_screen", "none"},
        {file, "fit", "none"},
        {file, "fit_to_screen", "grey"},
        {file, "", ""},
    };
    const SlideSource source;
    for (const Case &c : cases) {
        EXPECT_EQ(source.imageUrl(c.file, QString::fromLatin1(c.scaling), QString::fromLatin1(c.filter)), QString())
            << c.file.toString().toStdString() << " " << c.scaling << " " << c.filter;
    }
}

class SlideImageProviderResponse : public ::testing::Test {
protected:
    // Waits (bounded) for the response to finish; false when it never does.
    static bool finishes(QQuickImageResponse *response)
    {
        QSignalSpy finished(response, &QQuickImageResponse::finished);
        return finished.wait(10000) && finished.count() == 1;
    }

    QTemporaryDir dir;
    SlideImageProvider provider;
};

TEST_F(SlideImageProviderResponse, DeliversTheDecodedSlide)
{
    const QString path = dir.filePath(QStringLiteral("slide one.png"));
    QImage picture(400, 200, QImage::Format_RGB32);
    picture.fill(qRgb(200, 40, 40));
    ASSERT_TRUE(picture.save(path));

    const std::unique_ptr<QQuickImageResponse> response(provider.requestImageResponse(
        SlideImageProvider::imageId(path, ImageScalingMode::fitToScreen, ImageFilter::blackAndWhite), {100, 100}));
    ASSERT_TRUE(finishes(response.get()));
    EXPECT_EQ(response->errorString(), QString());
    const std::unique_ptr<QQuickTextureFactory> texture(response->textureFactory());
    ASSERT_TRUE(texture);
    const QImage image = texture->image();
    EXPECT_EQ(image.size(), QSize(100, 50));
    const QRgb pixel = image.pixel(50, 25);
    EXPECT_EQ(qRed(pixel), qGreen(pixel));
    EXPECT_EQ(qGreen(pixel), qBlue(pixel));
}

TEST_F(SlideImageProviderResponse, ReportsWhyASlideCannotBeShown)
{
    const QString garbage = dir.filePath(QStringLiteral("garbage.jpg"));
    {
        QFile file(garbage);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("no picture in here");
    }
    const QString ids[] = {
        SlideImageProvider::imageId(
            dir.filePath(QStringLiteral("missing.jpg")), ImageScalingMode::fitToScreen, ImageFilter::none),
        SlideImageProvider::imageId(garbage, ImageScalingMode::fillScreen, ImageFilter::sepia),
        QStringLiteral("not/an/id/at/all"),
        QString(),
    };
    for (const QString &id : ids) {
        SCOPED_TRACE(id.toStdString());
        const std::unique_ptr<QQuickImageResponse> response(provider.requestImageResponse(id, {100, 100}));
        ASSERT_TRUE(finishes(response.get()));
        EXPECT_FALSE(response->errorString().isEmpty());
        EXPECT_EQ(std::unique_ptr<QQuickTextureFactory>(response->textureFactory()), nullptr);
    }
}

} // namespace
} // namespace sorvane
