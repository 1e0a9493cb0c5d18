#include "slideshow/TransitionLayers.h"
#include "slideshow/TransitionSpeed.h"

#include <gtest/gtest.h>

using namespace sorvane;

namespace {

using S = TransitionStyle;
constexpr auto forward = TransitionDirection::forward;
constexpr auto backward = TransitionDirection::backward;

TEST(TransitionLayers, EveryStyleDrawsBothLayers)
{
    // A 200 x 100 layer; the incoming slide drifts along (1, -0.5) and is half way through
    // its drift, the outgoing one drifted along (-1, 1) all the way.
    const struct {
        S style;
        TransitionDirection direction;
        double p;
        bool incoming;
        double scale, x, y, rotation, opacity;
    } rows[] = {
        {S::none, forward, 0.3, true, 1, 0, 0, 0, 1},
        {S::none, forward, 0.3, false, 1, 0, 0, 0, 0},
        {S::crossFade, forward, 0.3, true, 1, 0, 0, 0, 0.3},
        {S::crossFade, backward, 0.3, false, 1, 0, 0, 0, 0.7},
        {S::random, forward, 0.3, true, 1, 0, 0, 0, 0.3},
        {S::kenBurns, forward, 0.5, true, 1.06, 4, -1, 0, 0.5},
        {S::kenBurns, forward, 0.5, false, 1.12, -8, 4, 0, 0.5},
        {S::zoom, forward, 0, true, 1.08, 0, 0, 0, 0},
        {S::zoom, forward, 0, false, 1, 0, 0, 0, 1},
        {S::zoom, backward, 1, true, 1, 0, 0, 0, 1},
        {S::slide, forward, 0, true, 1, 200, 0, 0, 1},
        {S::slide, forward, 0.5, false, 1, -100, 0, 0, 1},
        {S::slide, backward, 0, true, 1, -200, 0, 0, 1},
        {S::slide, backward, 0.5, false, 1, 100, 0, 0, 1},
        {S::slide, backward, 1, true, 1, 0, 0, 0, 1},
        {S::flip, forward, 0.25, true, 1, 0, 0, 67.5, 0},
        {S::flip, forward, 0.25, false, 1, 0, 0, -22.5, 1},
        {S::flip, backward, 0.5, true, 1, 0, 0, 45, 1},
        {S::flip, backward, 0.5, false, 1, 0, 0, -45, 0},
        {S::flip, forward, 1, true, 1, 0, 0, 0, 1},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(toRaw(row.style).toStdString() + " p=" + std::to_string(row.p)
            + (row.direction == backward ? " backward" : "") + (row.incoming ? " incoming" : " outgoing"));
        const TransitionMotion motion {row.style, row.p, row.direction, QSizeF(1, -0.5), 0.5, QSizeF(-1, 1), 1};
        EXPECT_DOUBLE_EQ(TransitionLayers::scale(motion, row.incoming), row.scale);
        const QPointF offset = TransitionLayers::offset(motion, row.incoming, QSizeF(200, 100));
        EXPECT_DOUBLE_EQ(offset.x(), row.x);
        EXPECT_DOUBLE_EQ(offset.y(), row.y);
        EXPECT_DOUBLE_EQ(TransitionLayers::rotation(motion, row.incoming), row.rotation);
        EXPECT_DOUBLE_EQ(TransitionLayers::opacity(motion, row.incoming), row.opacity);
    }
}

TEST(TransitionSpeed, ADurationShowsTheNearestPresetTiesGoingToTheSlower)
{
    const struct {
        double duration;
        TransitionSpeed speed;
    } rows[] = {{0.8, TransitionSpeed::slow}, {0.45, TransitionSpeed::normal}, {0.2, TransitionSpeed::fast},
        {0.6, TransitionSpeed::normal}, {5, TransitionSpeed::slow}, {0, TransitionSpeed::fast}};
    for (const auto &row : rows)
        EXPECT_EQ(speedForDuration(row.duration), row.speed) << row.duration;
    for (const TransitionSpeed speed : allTransitionSpeeds)
        EXPECT_EQ(speedForDuration(seconds(speed)), speed) << toRaw(speed).toStdString();
}

TEST(TransitionStyle, RawValuesReadBackAndNothingElseReads)
{
    for (const S style : allTransitionStyles)
        EXPECT_EQ(fromRaw<S>(toRaw(style)), style);
    EXPECT_EQ(toRaw(S::crossFade), "crossFade");
    EXPECT_EQ(label(S::crossFade), "Cross-fade");
    for (const char *raw : {"", "CrossFade", "cross-fade", "Random", "fade"})
        EXPECT_EQ(fromRaw<S>(QString::fromLatin1(raw)), std::nullopt) << raw;
}

} // namespace
