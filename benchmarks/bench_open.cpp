// Times the opening of a large bundle, phase by phase.
//
//   bench_open [--dir PATH] [--items N] [--runs N] [--open-only]
//
// --open-only times nothing and runs just the open, --runs times: a clean
// target for a profiler (perf record, valgrind --tool=callgrind).
//
// Without --dir the bundle is generated in a temporary folder that is removed at
// exit. With --dir it is generated there once and reused by later runs (delete the
// folder to regenerate).

#include "bundle/BundleFormat.h"
#include "bundle/BundleManifest.h"
#include "bundle/BundleReader.h"
#include "bundle/JsonOutline.h"
#include "bundle/ManifestTextReader.h"
#include "bundle/Sha256.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

using namespace sorvane;

namespace {

using Clock = std::chrono::steady_clock;

struct Options {
    QString dir;
    int items = 10000;
    int runs = 21;
    bool openOnly = false;
};

std::optional<Options> parseArguments(const QStringList &arguments)
{
    Options options;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString &arg = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        if (arg == QLatin1StringView("--dir") && hasValue) {
            options.dir = arguments[++i];
        } else if (arg == QLatin1StringView("--items") && hasValue) {
            options.items = arguments[++i].toInt();
        } else if (arg == QLatin1StringView("--runs") && hasValue) {
            options.runs = arguments[++i].toInt();
        } else if (arg == QLatin1StringView("--open-only")) {
            options.openOnly = true;
        } else {
            return std::nullopt;
        }
    }
    if (options.items < 1 || options.runs < 1)
        return std::nullopt;
    return options;
}

// Deterministic bytes so that two generations of the same bundle are identical.
QByteArray fillerBytes(int size, quint32 seed)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 x = 2463534242u ^ (seed * 2654435761u);
    for (int i = 0; i < size; ++i) {
        x ^= x << 13;
        x ^= x >> 17;
        x ^= x << 5;
        bytes[i] = char(x & 0xFF);
    }
    return bytes;
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

QString timestamp(int day, int second)
{
    return QStringLiteral("2023-%1-%2T%3:%4:%5Z")
        .arg(1 + day % 12, 2, 10, QLatin1Char('0'))
        .arg(1 + day % 28, 2, 10, QLatin1Char('0'))
        .arg(second / 3600 % 24, 2, 10, QLatin1Char('0'))
        .arg(second / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(second % 60, 2, 10, QLatin1Char('0'));
}

// Two tiers per item, each a small real file, described the way a writer would.
bool generateBundle(const QString &root, int itemCount)
{
    QDir dir(root);
    if (!dir.mkpath(QStringLiteral("media/tile")) || !dir.mkpath(QStringLiteral("media/full")))
        return false;

    BundleManifest manifest;
    manifest.format = QStringLiteral("sorvane.bundle");
    manifest.formatVersion = 2;
    manifest.minReaderVersion = 1;
    manifest.title = QStringLiteral("Open benchmark");
    BundlePlaybackJSON playback;
    playback.sort = QStringLiteral("random");
    playback.shuffleSeed = 42;
    manifest.playback = playback;
    manifest.items = std::vector<BundleItem> {};
    manifest.itemsKeyPresent = true;
    manifest.items->reserve(size_t(itemCount));

    for (int i = 0; i < itemCount; ++i) {
        BundleItem item;
        const QString id = QStringLiteral("%1").arg(quint64(i) * 0x9E3779B97F4A7C15ull, 16, 16, QLatin1Char('0'));
        item.id = id;
        item.mediaType = QStringLiteral("image");
        item.sourceName = QStringLiteral("IMG_%1.JPG").arg(i, 5, 10, QLatin1Char('0'));
        item.sourceBytes = 3'000'000 + i;
        item.sourceCreatedUtc = timestamp(i, i * 37);
        item.sourceModifiedUtc = timestamp(i, i * 37 + 5);
        item.capturedUtc = timestamp(i, i * 37);
        struct Tier {
            const char *name;
            int size;
            qint64 w;
            qint64 h;
        };
        const Tier tiers[] = {{"full", 500 + (i * 7) % 300, 2160, 1440}, {"tile", 200 + (i * 13) % 200, 1200, 800}};
        for (const Tier &tier : tiers) {
            const QString name = QString::fromLatin1(tier.name);
            const QString relative = QStringLiteral("media/%1/%2.jpg").arg(name, id);
            const QByteArray bytes = fillerBytes(tier.size, quint32(i * 2 + (tier.name[0] == 't')));
            if (!writeFile(dir.filePath(relative), bytes))
                return false;
            BundleAsset asset;
            asset.path = relative;
            asset.w = tier.w;
            asset.h = tier.h;
            asset.bytes = bytes.size();
            asset.sha256 = Sha256::ofBytes(bytes);
            item.assets.emplace_back(name, asset);
        }
        manifest.items->push_back(std::move(item));
    }
    // Written last, so a half-generated folder is never taken for a finished one.
    return writeFile(dir.filePath(QStringLiteral("bundle.json")), manifest.toJson().serialize());
}

bool bundleIsUsable(const QString &root, int itemCount)
{
    QFile file(QDir(root).filePath(QStringLiteral("bundle.json")));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
    const BundleManifest manifest = BundleManifest::fromJson(object);
    return manifest.items && int(manifest.items->size()) == itemCount;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

double millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// CPU time of the calling thread: on a busy machine it stays close to the idle
// figure while wall time does not. The size-level open runs on one thread.
double threadCpuMilliseconds()
{
    timespec now {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

// Keeps the optimiser from dropping work whose result is otherwise unused.
volatile size_t sink = 0;

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const auto options = parseArguments(QCoreApplication::arguments());
    if (!options) {
        std::fprintf(stderr, "usage: bench_open [--dir PATH] [--items N] [--runs N] [--open-only]\n");
        return 2;
    }

    std::optional<QTemporaryDir> temporary;
    QString root = options->dir;
    if (root.isEmpty()) {
        temporary.emplace();
        if (!temporary->isValid()) {
            std::fprintf(stderr, "bench_open: cannot create a temporary folder\n");
            return 1;
        }
        root = temporary->path();
    }
    root = QFileInfo(root).absoluteFilePath();
    if (!bundleIsUsable(root, options->items)) {
        std::printf("Generating a %d-item bundle in %s ...\n", options->items, qPrintable(root));
        std::fflush(stdout);
        const auto start = Clock::now();
        if (!generateBundle(root, options->items)) {
            std::fprintf(stderr, "bench_open: could not write the bundle\n");
            return 1;
        }
        std::printf("  generated in %.1f s\n", millisecondsSince(start) / 1000);
    } else {
        std::printf("Reusing the %d-item bundle in %s\n", options->items, qPrintable(root));
    }

    BundleOpenOptions openOptions;
    openOptions.verification = BundleVerification::sizeAndCount;
    if (options->openOnly) {
        for (int run = 0; run < options->runs; ++run) {
            const BundleOpenResult result = BundleReader::open(root, openOptions);
            if (!result.ok())
                return 1;
            sink = sink + result.bundle->items.size();
        }
        return 0;
    }

    const QString manifestPath = QDir(root).filePath(QStringLiteral("bundle.json"));
    const qint64 manifestBytes = QFileInfo(manifestPath).size();

    // One open up front: checks the bundle is good and reads the text (b) outlines.
    QByteArray text;
    {
        QFile file(manifestPath);
        if (!file.open(QIODevice::ReadOnly))
            return 1;
        text = file.readAll();
        const BundleOpenResult result = BundleReader::open(root, openOptions);
        if (!result.ok()) {
            std::fprintf(stderr, "bench_open: the bundle did not open: %s\n", qPrintable(result.error->message));
            return 1;
        }
        if (result.bundle->items.size() != size_t(options->items) || !result.reports().empty()) {
            std::fprintf(stderr, "bench_open: expected %d playable items and no reports, got %zu and %zu\n",
                options->items, result.bundle->items.size(), result.reports().size());
            return 1;
        }
    }

    // Each phase hands back what it built, to be freed after the clock stops: the
    // player keeps an opened bundle, so freeing it is no part of opening.
    using Kept = std::shared_ptr<const void>;
    // (a) read the file and make the typed manifest from its text
    auto parse = [&]() -> Kept {
        QFile file(manifestPath);
        if (!file.open(QIODevice::ReadOnly))
            std::abort();
        auto read = std::make_shared<ManifestTextReader::Result>(ManifestTextReader::read(file.readAll()));
        sink = sink + read->manifest->items->size();
        return read;
    };
    // (b) of which: the checking pass over the text that builds nothing
    auto build = [&]() -> Kept {
        auto outline = std::make_shared<JsonOutline>(
            JsonOutline::of(text, BundleManifest::memberNames, QLatin1StringView("items"), BundleFormat::maxItems));
        sink = sink + outline->entries.size();
        return outline;
    };
    // (c) the whole open, as the player does it
    auto open = [&]() -> Kept {
        auto result = std::make_shared<BundleOpenResult>(BundleReader::open(root, openOptions));
        sink = sink + result->bundle->items.size();
        return result;
    };
    // (d) the play order of an opened bundle
    const std::shared_ptr<OpenedBundle> opened = BundleReader::open(root, openOptions).bundle;
    auto order = [&]() -> Kept {
        auto positions = std::make_shared<std::vector<qsizetype>>(opened->playOrder());
        sink = sink + positions->size();
        return positions;
    };

    struct Phase {
        const char *label;
        std::function<Kept()> run;
        std::vector<double> ms;
        std::vector<double> cpuMs;
    };
    std::vector<Phase> phases {{"(a) read + ManifestTextReader", parse, {}, {}},
        {"(b) of which JsonOutline", build, {}, {}}, {"(c) BundleReader::open (size)", open, {}, {}},
        {"(d) playOrder (random)", order, {}, {}}};

    // Warm the page cache, the dentry cache and the allocator before measuring.
    for (int i = 0; i < 2; ++i) {
        for (Phase &phase : phases)
            phase.run();
    }
    // Interleaved, so that a burst of load elsewhere hits every phase alike.
    for (int run = 0; run < options->runs; ++run) {
        for (Phase &phase : phases) {
            const double cpuStart = threadCpuMilliseconds();
            const auto start = Clock::now();
            Kept kept = phase.run();
            phase.ms.push_back(millisecondsSince(start));
            phase.cpuMs.push_back(threadCpuMilliseconds() - cpuStart);
            kept.reset();
        }
    }

    const double a = median(phases[0].ms);
    const double b = median(phases[1].ms);
    const double c = median(phases[2].ms);
    const double d = median(phases[3].ms);
    const int items = options->items;

    std::printf("\nBundle: %d items, %d files, manifest %.2f MB; %d runs\n", items, items * 2,
        double(manifestBytes) / 1e6, options->runs);
    std::printf("  %-32s %9s  %-17s  %7s  %8s\n", "", "median", "wall (min .. max)", "per item", "CPU");
    for (const Phase &phase : phases) {
        const auto [lo, hi] = std::minmax_element(phase.ms.begin(), phase.ms.end());
        std::printf("  %-32s %6.2f ms  (%.2f .. %.2f)  %5.2f us  %5.2f ms\n", phase.label, median(phase.ms), *lo, *hi,
            median(phase.ms) * 1000 / items, median(phase.cpuMs));
    }

    // File checks and assembly are what the open does beyond (a).
    const double checks = std::max(0.0, c - a);
    const double total = c + d;
    std::printf("\nShare of open + play order (%.2f ms):\n", total);
    std::printf("  %-32s %5.1f %%\n", "outline (b)", 100 * b / total);
    std::printf("  %-32s %5.1f %%\n", "entries parsed (a-b)", 100 * std::max(0.0, a - b) / total);
    std::printf("  %-32s %5.1f %%\n", "file checks + items (c-a)", 100 * checks / total);
    std::printf("  %-32s %5.1f %%\n", "play order (d)", 100 * d / total);
    std::printf("\nopen median %.2f ms (CPU %.2f ms), %.2f us/item; target <= 100 ms: %s\n", c, median(phases[2].cpuMs),
        c * 1000 / items, c <= 100 ? "met" : "NOT met");
    return 0;
}
