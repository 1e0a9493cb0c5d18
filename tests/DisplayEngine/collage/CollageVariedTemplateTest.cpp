#include "collage/CollageVariedTemplate.h"
#include "bundle/Pcg32.h"

#include <gtest/gtest.h>

#include <QSet>

#include <limits>

namespace sorvane {
namespace {

void expectRect(const QRectF &actual, const QRectF &expected, const std::string &where)
{
    EXPECT_DOUBLE_EQ(actual.x(), expected.x()) << where;
    EXPECT_DOUBLE_EQ(actual.y(), expected.y()) << where;
    EXPECT_DOUBLE_EQ(actual.width(), expected.width()) << where;
    EXPECT_DOUBLE_EQ(actual.height(), expected.height()) << where;
}

TEST(CollageVariedTemplate, VariantsAreTheBaseAndItsMirrorImages)
{
    struct Case {
        int variantIndex;
        QList<QRectF> expected;
    };
    const QList<QRectF> base {
        {0.0, 0.0, 0.6, 0.62},
        {0.6, 0.0, 0.4, 0.31},
        {0.6, 0.31, 0.4, 0.31},
        {0.0, 0.62, 0.3, 0.38},
        {0.3, 0.62, 0.3, 0.38},
        {0.6, 0.62, 0.4, 0.38},
    };
    const QList<QRectF> leftRight {
        {0.4, 0.0, 0.6, 0.62},
        {0.0, 0.0, 0.4, 0.31},
        {0.0, 0.31, 0.4, 0.31},
        {0.7, 0.62, 0.3, 0.38},
        {0.4, 0.62, 0.3, 0.38},
        {0.0, 0.62, 0.4, 0.38},
    };
    const QList<QRectF> topBottom {
        {0.0, 0.38, 0.6, 0.62},
        {0.6, 0.69, 0.4, 0.31},
        {0.6, 0.38, 0.4, 0.31},
        {0.0, 0.0, 0.3, 0.38},
        {0.3, 0.0, 0.3, 0.38},
        {0.6, 0.0, 0.4, 0.38},
    };
    const QList<QRectF> both {
        {0.4, 0.38, 0.6, 0.62},
        {0.0, 0.69, 0.4, 0.31},
        {0.0, 0.38, 0.4, 0.31},
        {0.7, 0.0, 0.3, 0.38},
        {0.4, 0.0, 0.3, 0.38},
        {0.0, 0.0, 0.4, 0.38},
    };
    const Case cases[] = {
        {0, base},
        {1, leftRight},
        {2, topBottom},
        {3, both},
        {4, base},
        {7, both},
        {-1, both},
        {-4, base},
        {-3, leftRight},
        {std::numeric_limits<int>::min(), base},
        {std::numeric_limits<int>::max(), both},
    };
    EXPECT_EQ(CollageVariedTemplate::baseTemplate().size(), CollageVariedTemplate::slotCount);
    for (qsizetype slot = 0; slot < base.size(); ++slot)
        expectRect(CollageVariedTemplate::baseTemplate()[slot], base[slot], "base slot " + std::to_string(slot));
    for (const Case &c : cases) {
        const QList<QRectF> rects = CollageVariedTemplate::variant(c.variantIndex);
        ASSERT_EQ(rects.size(), 6);
        for (qsizetype slot = 0; slot < 6; ++slot) {
            expectRect(rects[slot], c.expected[slot],
                "variant " + std::to_string(c.variantIndex) + " slot " + std::to_string(slot));
        }
    }
}

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
