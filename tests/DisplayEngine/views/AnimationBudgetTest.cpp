#include "views/AnimationBudget.h"

#include "TestImages.h"

#include <gtest/gtest.h>

#include <QtEndian>

namespace sorvane {
namespace {

// A GIF with a `side` x `side` canvas and `frames` one-pixel frames.
QByteArray gif(quint16 side, int frames)
{
    QByteArray out("GIF89a");
    const quint16 le = qToLittleEndian(side);
    out.append(reinterpret_cast<const char *>(&le), 2).append(reinterpret_cast<const char *>(&le), 2);
    out.append("\x80\x00\x00\x00\x00\x00\xff\xff\xff", 9);
    for (int i = 0; i < frames; ++i) {
        out.append("\x21\xf9\x04\x00\x01\x00\x00\x00", 8);
        out.append("\x2c\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02\x44\x01\x00", 15);
    }
    return out.append(';');
}

TEST(AnimationBudgetTest, RefusesWhenCanvasTimesFramesExceedsTheBudget)
{
    struct Row {
        QSize canvas;
        int frames;
        bool refused;
    };
    const Row rows[] = {
        {{500, 500}, 100, false}, // 100 MB
        {{1280, 720}, 40, false}, // 147 MB
        {{1280, 720}, 60, true}, // 221 MB
        {{4000, 3000}, 1, false}, // one canvas counts twice: 96 MB
        {{8000, 8000}, 1, true},
        {{16383, 16383}, -1, true}, // count unknown
        {{65535, 65535}, 3000, true}, // 17 GB a frame: no overflow on the way
        {{1, 1}, 2'000'000'000, true},
    };
    for (const Row &row : rows) {
        const QString why = AnimationBudget::refusal(row.canvas, row.frames);
        EXPECT_EQ(!why.isEmpty(), row.refused) << row.canvas.width() << "x" << row.canvas.height() << " " << row.frames;
    }
}

using AnimationBudgetFileTest = test::FileTest;

TEST_F(AnimationBudgetFileTest, ReadsCanvasAndFrameCountFromTheFile)
{
    EXPECT_EQ(AnimationBudget::refusal(write("small.gif", gif(64, 50))), QString());
    EXPECT_EQ(AnimationBudget::refusal(write("bomb.gif", gif(4000, 3000))),
        QStringLiteral("its 4000 x 4000 canvas with 3000 frame(s) needs more than 192 MiB to animate"));
    // Not an image at all: left to the view, which reports its own failure.
    EXPECT_EQ(AnimationBudget::refusal(write("noise.gif", QByteArray(100, 'x'))), QString());
}

} // namespace
} // namespace sorvane
