// Times the slideshow view model where a large show is felt.
//
//   bench_slideshow [--mode order|next|all] [--items N] [--runs N]
//
// order: builds a view model over N generated paths (default 100,000) in path order,
//        median of --runs, and times `sort -V` over the same paths for comparison.
// next:  four windows over one claim tracker and 10,000 items step in turn with
//        duplicate avoidance; prints the median time of one `next`.

#include "slideshow/Clock.h"
#include "slideshow/ImageClaimTracker.h"
#include "slideshow/InMemoryPreferences.h"
#include "slideshow/NullHostShell.h"
#include "slideshow/SlideshowViewModel.h"
#include "slideshow/TimerScheduler.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <random>
#include <vector>

using namespace sorvane;

namespace {

using Steady = std::chrono::steady_clock;

class SteadyClock final : public Clock {
public:
    double monotonicSeconds() const override
    {
        return std::chrono::duration<double>(Steady::now().time_since_epoch()).count();
    }
    QDateTime nowUtc() const override { return QDateTime::currentDateTimeUtc(); }
};

// Timers that never fire: the benchmark times the work of a step, not the waiting.
class IdleTimers final : public TimerScheduler {
public:
    TimerId scheduleOnce(double, std::function<void()>) override { return ++m_next; }
    TimerId scheduleRepeating(double, std::function<void()>) override { return ++m_next; }
    void cancel(TimerId) override { }

private:
    TimerId m_next = 0;
};

struct Rig {
    SteadyClock clock;
    IdleTimers timers;
    InMemoryPreferences preferences;
    NullHostShell host;
    SlideshowViewModel::Services services() { return {clock, timers, preferences, host}; }
};

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

// This thread's CPU time: what the work costs whatever else the machine runs.
double threadCpuMilliseconds()
{
    timespec now {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1000.0 + double(now.tv_nsec) / 1.0e6;
}

double millisecondsSince(Steady::time_point start)
{
    return std::chrono::duration<double, std::milli>(Steady::now() - start).count();
}

// Paths as cameras and people name them: numbered files in dated and named folders,
// mixed case, numbers with and without leading zeros.
QStringList generatedPaths(int count)
{
    std::mt19937 random(11);
    const QStringList stems {QStringLiteral("IMG_"), QStringLiteral("DSC"), QStringLiteral("photo "),
        QStringLiteral("Scan-"), QStringLiteral("holiday")};
    QStringList paths;
    paths.reserve(count);
    for (int i = 0; i < count; ++i) {
        const QString folder = QStringLiteral("/media/usb/Photos/%1-%2 Trip %3")
                                   .arg(2000 + int(random() % 25))
                                   .arg(1 + int(random() % 12), 2, 10, QChar(u'0'))
                                   .arg(random() % 40);
        const QString stem = stems[int(random() % stems.size())];
        const bool padded = random() % 2;
        const QString number = padded ? QStringLiteral("%1").arg(random() % 100000, 5, 10, QChar(u'0'))
                                      : QString::number(random() % 100000);
        paths.append(QStringLiteral("%1/%2%3.%4").arg(folder, stem, number, random() % 3 ? "jpg" : "JPG"));
    }
    return paths;
}

void benchOrder(int itemCount, int runs)
{
    const QStringList paths = generatedPaths(itemCount);
    QList<ImageItem> items;
    items.reserve(paths.size());
    for (const QString &path : paths)
        items.append(ImageItem(QUrl::fromLocalFile(path)));

    Rig rig;
    std::vector<double> ours;
    std::vector<double> oursCpu;
    for (int run = 0; run < runs; ++run) {
        const double cpuStart = threadCpuMilliseconds();
        const Steady::time_point start = Steady::now();
        SlideshowViewModel model(rig.services(), items, {}, SortMode::sequential, 1);
        ours.push_back(millisecondsSince(start));
        oursCpu.push_back(threadCpuMilliseconds() - cpuStart);
        if (model.images().size() != items.size())
            std::fprintf(stderr, "lost items\n");
    }

    QTemporaryDir dir;
    const QString listPath = dir.filePath(QStringLiteral("paths.txt"));
    QFile list(listPath);
    if (!list.open(QIODevice::WriteOnly) || list.write(paths.join(u'\n').toUtf8() + '\n') < 0) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(listPath));
        return;
    }
    list.close();
    std::vector<double> baseline;
    for (int run = 0; run < runs; ++run) {
        QProcess sort;
        const Steady::time_point start = Steady::now();
        sort.start(QStringLiteral("sort"),
            {QStringLiteral("-V"), QStringLiteral("-o"), QStringLiteral("/dev/null"), listPath});
        if (!sort.waitForFinished(60000) || sort.exitCode() != 0) {
            std::fprintf(stderr, "sort -V failed\n");
            return;
        }
        baseline.push_back(millisecondsSince(start));
    }
    const double a = median(ours);
    const double b = median(baseline);
    std::printf("order: %d paths, %d runs\n", itemCount, runs);
    std::printf("view model in path order median %.1f ms (CPU %.1f ms)\n", a, median(oursCpu));
    std::printf("sort -V (process) median %.1f ms\n", b);
    std::printf("ratio ours/sort -V %.2f\n", b > 0 ? a / b : 0.0);
}

void benchNext(int runs)
{
    constexpr int itemCount = 10000;
    constexpr int windows = 4;
    QList<ImageItem> items;
    for (int i = 0; i < itemCount; ++i)
        items.append(ImageItem(QUrl::fromLocalFile(QStringLiteral("/show/img%1.jpg").arg(i))));
    Rig rig;
    auto claims = std::make_shared<ImageClaimTracker>();
    std::vector<std::unique_ptr<SlideshowViewModel>> models;
    for (int w = 0; w < windows; ++w) {
        models.push_back(std::make_unique<SlideshowViewModel>(
            rig.services(), items, SlideshowSettings {}, SortMode::random, quint64(w + 1)));
        models.back()->setManager(nullptr, claims);
        models.back()->start();
    }
    const int calls = std::max(1, runs) * 2000;
    std::vector<double> perCall;
    perCall.reserve(size_t(calls));
    for (int call = 0; call < calls; ++call) {
        SlideshowViewModel &model = *models[size_t(call % windows)];
        const Steady::time_point start = Steady::now();
        model.next();
        perCall.push_back(std::chrono::duration<double, std::micro>(Steady::now() - start).count());
    }
    std::printf("next: %d windows, one tracker, %d items, %d calls, claims held %lld\n", windows, itemCount, calls,
        qlonglong(claims->claimedCount()));
    std::printf("next median %.2f us\n", median(perCall));
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QString mode = QStringLiteral("all");
    int items = 100000;
    int runs = 11;
    const QStringList arguments = app.arguments();
    for (qsizetype i = 1; i + 1 < arguments.size(); i += 2) {
        if (arguments[i] == QLatin1StringView("--mode"))
            mode = arguments[i + 1];
        else if (arguments[i] == QLatin1StringView("--items"))
            items = arguments[i + 1].toInt();
        else if (arguments[i] == QLatin1StringView("--runs"))
            runs = arguments[i + 1].toInt();
    }
    if (mode == QLatin1StringView("order") || mode == QLatin1StringView("all"))
        benchOrder(items, std::max(1, runs));
    if (mode == QLatin1StringView("next") || mode == QLatin1StringView("all"))
        benchNext(runs);
    return 0;
}
