#include "bundle/BundlePaths.h"

#include <gtest/gtest.h>

using namespace sorvane;

namespace {

TEST(BundlePaths, SafeRelativePaths)
{
    const struct {
        const char *path;
        bool safe;
    } table[] = {
        // A ".." component climbs out, wherever it sits.
        {"../x.jpg", false},
        {"a/../b", false},
        // Absolute, or rooted on either separator.
        {"/etc/x", false},
        {"\\x", false},
        {"\\\\server\\share\\x.jpg", false},
        // A colon names a drive (C:x is relative to that drive's current folder) or a stream.
        {"C:x", false},
        {"media/x.jpg:stream", false},
        // Nothing to name.
        {"", false},
        {"   ", false},
        // The root checks apply after trimming.
        {"  /etc/x", false},
        {"../x.jpg ", false},
        // Ordinary paths; empty and "." components name nothing outside.
        {"media/x.jpg", true},
        {"media//x.jpg", true},
        {"./a", true},
        {"media/./x.jpg", true},
        // Dots inside a name are not a parent reference.
        {"a/..b", true},
        {"...", true},
        {"media/été 日本.jpg", true},
    };
    for (const auto &row : table)
        EXPECT_EQ(isSafeBundleRelativePath(QString::fromUtf8(row.path)), row.safe) << '"' << row.path << '"';
}

} // namespace
