#include "slideshow/FileNameLine.h"

#include <gtest/gtest.h>

using namespace sorvane;

namespace {

TEST(FileNameLine, WritesThePathInEachFormatOnOneSafeLine)
{
    const QString replacement(QChar::ReplacementCharacter);
    const struct {
        QUrl url;
        QString filenameOnly;
        QString fullPath;
        QString folderAndFilename;
    } rows[] = {
        {QUrl::fromLocalFile("/media/usb/Trip/photo.jpg"), "photo.jpg", "/media/usb/Trip/photo.jpg", "Trip/photo.jpg"},
        {QUrl::fromLocalFile("/photo.jpg"), "photo.jpg", "/photo.jpg", "photo.jpg"},
        {QUrl("file:///show/my%20pic.png"), "my pic.png", "/show/my pic.png", "show/my pic.png"},
        {QUrl("https://example.org/albums/x/y.png"), "y.png", "/albums/x/y.png", "x/y.png"},
        // A stranger's name may carry a line break or turn the text around.
        {QUrl::fromLocalFile(QStringLiteral("/a/b\nc.jpg")), "b" + replacement + "c.jpg",
            "/a/b" + replacement + "c.jpg", "a/b" + replacement + "c.jpg"},
        {QUrl::fromLocalFile(QStringLiteral("/a/gpj.\u202Eexe")), "gpj." + replacement + "exe",
            "/a/gpj." + replacement + "exe", "a/gpj." + replacement + "exe"},
    };
    for (const auto &row : rows) {
        const ImageItem item(row.url);
        const QStringList got {FileNameLine::text(item, FileDisplayFormat::filenameOnly),
            FileNameLine::text(item, FileDisplayFormat::fullPath),
            FileNameLine::text(item, FileDisplayFormat::folderAndFilename)};
        EXPECT_EQ(got, QStringList({row.filenameOnly, row.fullPath, row.folderAndFilename}))
            << row.url.toString().toStdString();
    }
}

} // namespace
