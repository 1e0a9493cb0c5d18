#include "collage/CollageVariedTemplate.h"
#include "bundle/Pcg32.h"

#include <gtest/gtest.h>

#include <QSet>

#include <limits>

namespace sorvane {
namespace {

TEST(CollageVariedTemplate, EveryVariantTilesTheUnitSquare)
{
    for (int variant = 0; variant < CollageVariedTemplate::variantCount; ++variant) {
        const QList<QRectF> rects = CollageVariedTemplate::variant(variant);
        double area = 0;
        for (qsizetype i = 0; i < rects.size(); ++i) {
            area += rects[i].width() * rects[i].height();
            EXPECT_GE(rects[i].left(), -1e-12);
            EXPECT_GE(rects[i].top(), -1e-12);
            EXPECT_LE(rects[i].right(), 1 + 1e-12);
            EXPECT_LE(rects[i].bottom(), 1 + 1e-12);
            for (qsizetype j = i + 1; j < rects.size(); ++j) {
                const QRectF overlap = rects[i].intersected(rects[j]);
                EXPECT_LT(overlap.width() * overlap.height(), 1e-12) << variant << ": " << i << " and " << j;
            }
        }
        EXPECT_NEAR(area, 1.0, 1e-12) << variant;
    }
}

TEST(CollageVariedTemplate, ReshuffleAlwaysPicksAnotherVariantAndReachesThemAll)
{
    Pcg32 random(3);
    for (const int current : {0, 1, 2, 3, 6, -1}) {
        QSet<int> reached;
        for (int i = 0; i < 100; ++i) {
            const int next = CollageVariedTemplate::nextVariant(current, random);
            EXPECT_NE(next, CollageVariedTemplate::normalized(current));
            EXPECT_GE(next, 0);
            EXPECT_LT(next, CollageVariedTemplate::variantCount);
            reached.insert(next);
        }
        EXPECT_EQ(reached.size(), CollageVariedTemplate::variantCount - 1) << current;
    }
}

} // namespace
} // namespace sorvane
