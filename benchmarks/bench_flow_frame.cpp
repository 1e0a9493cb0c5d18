// Times the model work of one Flow wall frame: the scroll offset from the clock and
// every strip's position, for 8 strips of 30 tiles.
//
//   bench_flow_frame [--runs N] [--frames N]
//
// Each run times --frames consecutive frames at 60 per second and reports the mean
// per frame; the figure printed is the median of the runs. A second phase times a
// frame on which a tile changes: the strips are rebuilt from the wall's slots and
// their anchors moved before the positions are taken.

#include "collage/FlowColumnBuilder.h"
#include "collage/FlowGeometry.h"
#include "collage/FlowScrollClock.h"
#include "collage/FlowScroller.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>
#include <vector>

using namespace sorvane;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int strips = 8;
constexpr int tilesPerStrip = 30;
constexpr double width = 3200; // 8 columns of 400 points
constexpr double height = 1080;

struct Options {
    int runs = 201;
    int frames = 1000;
};

std::optional<Options> parseArguments(int argc, char *argv[])
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const QString arg = QString::fromLocal8Bit(argv[i]);
        const bool hasValue = i + 1 < argc;
        if (arg == QLatin1StringView("--runs") && hasValue)
            options.runs = QString::fromLocal8Bit(argv[++i]).toInt();
        else if (arg == QLatin1StringView("--frames") && hasValue)
            options.frames = QString::fromLocal8Bit(argv[++i]).toInt();
        else
            return std::nullopt;
    }
    if (options.runs < 1 || options.frames < 1)
        return std::nullopt;
    return options;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// Keeps the optimiser from dropping work whose result is otherwise unused.
volatile double sink = 0;

} // namespace

int main(int argc, char *argv[])
{
    const auto options = parseArguments(argc, argv);
    if (!options) {
        std::fprintf(stderr, "usage: bench_flow_frame [--runs N] [--frames N]\n");
        return 2;
    }

    // A wall of 240 slots dealt to the strips in turn, with assorted measured aspects.
    QList<QUuid> slots;
    QList<int> flowColumnOf;
    QHash<QUuid, double> flowAspect;
    const double aspects[] = {1.5, 0.667, 1.0, 1.333, 0.75, 1.778, 0.5625};
    for (int slot = 0; slot < strips * tilesPerStrip; ++slot) {
        slots.append(QUuid::createUuid());
        flowColumnOf.append(slot % strips);
        flowAspect.insert(slots.last(), aspects[slot % 7]);
    }
    const FlowOrientation orientation = FlowOrientation::vertical;
    if (FlowGeometry::effectiveFlowColumnCount(width, height, 0, orientation) != strips) {
        std::fprintf(stderr, "bench_flow_frame: the test wall does not have %d strips\n", strips);
        return 1;
    }

    // Items that come in on tile changes, known and measured beforehand like the pool's.
    QList<QUuid> incoming;
    for (int i = 0; i < 1024; ++i) {
        incoming.append(QUuid::createUuid());
        flowAspect.insert(incoming.last(), aspects[(i + 3) % 7]);
    }

    FlowScrollClock scrollClock(0);
    FlowScroller scroller(true, false);
    scroller.setColumns(
        FlowColumnBuilder::build(slots, flowColumnOf, flowAspect, strips, width, height, orientation), 0);
    std::vector<double> positions;
    double now = 0;
    int nextSlot = 0;
    int nextIncoming = 0;

    // (a) an ordinary frame: offset from the clock, then every strip's position.
    auto frame = [&] {
        now += 1.0 / 60;
        scroller.positions(scrollClock.offset(now), positions);
        sink = sink + positions[strips - 1];
    };
    // (b) a frame on which one tile gets a new item of another aspect.
    auto changeFrame = [&] {
        now += 1.0 / 60;
        const double offset = scrollClock.offset(now);
        slots[nextSlot] = incoming[nextIncoming];
        nextSlot = (nextSlot + 37) % int(slots.size());
        nextIncoming = (nextIncoming + 1) % int(incoming.size());
        scroller.setColumns(
            FlowColumnBuilder::build(slots, flowColumnOf, flowAspect, strips, width, height, orientation), offset);
        scroller.positions(offset, positions);
        sink = sink + positions[0];
    };

    struct Phase {
        const char *label;
        std::function<void()> run;
        std::vector<double> microseconds;
    };
    std::vector<Phase> phases {{"(a) positions only", frame, {}}, {"(b) tile change + positions", changeFrame, {}}};

    for (Phase &phase : phases) {
        for (int i = 0; i < options->frames; ++i)
            phase.run(); // warm-up
    }
    for (int run = 0; run < options->runs; ++run) {
        for (Phase &phase : phases) {
            const auto start = Clock::now();
            for (int i = 0; i < options->frames; ++i)
                phase.run();
            const double total = std::chrono::duration<double, std::micro>(Clock::now() - start).count();
            phase.microseconds.push_back(total / options->frames);
        }
    }

    std::printf("Flow wall: %d strips of %d tiles; %d runs of %d frames\n", strips, tilesPerStrip, options->runs,
        options->frames);
    std::printf("  %-30s %12s  %s\n", "per frame", "median", "(min .. max)");
    for (const Phase &phase : phases) {
        const auto [lo, hi] = std::minmax_element(phase.microseconds.begin(), phase.microseconds.end());
        std::printf("  %-30s %9.3f us  (%.3f .. %.3f)\n", phase.label, median(phase.microseconds), *lo, *hi);
    }
    const double frameMedian = median(phases[0].microseconds);
    std::printf("\nframe median %.3f us; target < 50 us: %s\n", frameMedian, frameMedian < 50 ? "met" : "NOT met");
    return 0;
}
