// Shows one collage wall in a window for a while and measures what it costs to draw:
// frames swapped, process CPU per frame, the gaps between frames, and resident memory.
//
//   bench_wall [--pool N] [--layout flow|varied|scatter|none] [--interval S] [--seconds T]
//              [--warmup W] [--rss-every S] [--auto-cycle] [--pointer-pause] [--no-ticker] [--cache-mb N]
//              [--size WxH] [--seed N] [--xserver-pid PID] [--screenshot PNG] PHOTO-FOLDER | PHOTO...
//
// The wall is the product's own: CollageRenderer over a CollageWallModel on the real clock and
// timers, thumbnails through the collage image provider. `--layout none` shows a black window
// with one tiny spinning square instead, so that frames keep coming: the cost of a Qt Quick
// frame with nothing to draw, the baseline the walls are compared with. Behind every wall the same
// square turns unseen (unless --no-ticker), so every layout draws every frame and a long gap
// between two frames is a stall.
//
// Frame and CPU figures cover the time after the warm-up (default 5 s) to the end of the run
// (--seconds, counted from the window being shown); the warm-up's longest gap is printed apart,
// since the first thumbnails are decoded then. RSS is sampled from the start every --rss-every
// seconds; its growth is from the first sample at or after the warm-up to the last.
//
// The Flow wall's pointer pause is off unless --pointer-pause: with it, a pointer resting over
// the window holds the scroll. --cache-mb bounds the thumbnail cache (default: the player's).

#include "collage/CollageLayout.h"
#include "collage/CollageSlideshowSettingsStore.h"
#include "collage/CollageWallModel.h"
#include "media/ImageItem.h"
#include "media/ThumbnailCache.h"
#include "slideshow/InMemoryPreferences.h"
#include "slideshow/QtTimerScheduler.h"
#include "slideshow/SystemClock.h"
#include "views/CollageImageProvider.h"
#include "views/DecodedMemory.h"
#include "views/QtThumbnailDecoder.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QJSValue>
#include <QLoggingCategory>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>
#include <QScreen>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

Q_IMPORT_QML_PLUGIN(Sorvane_ViewsPlugin)

using namespace sorvane;

namespace {

using SteadyClock = std::chrono::steady_clock;

enum class Layout { flow, varied, scatter, none };

struct Options {
    QStringList inputs;
    int pool = 0; // 0: one item per file
    Layout layout = Layout::flow;
    std::optional<double> interval;
    // The size the player gives its walls' cache.
    int cacheMegabytes = int(CollageImageProvider::kWallCacheBytes / (1024 * 1024));
    double seconds = 60;
    double warmup = 5;
    double rssEvery = 5;
    bool autoCycle = false;
    bool ticker = true;
    bool pointerPause = false;
    QSize size;
    quint64 seed = 1;
    qint64 xserverPid = 0;
    QString screenshot;
};

const char *layoutName(Layout layout)
{
    switch (layout) {
    case Layout::flow:
        return "flow";
    case Layout::varied:
        return "varied";
    case Layout::scatter:
        return "scatter";
    case Layout::none:
        return "none";
    }
    return "";
}

std::optional<Options> parseArguments(const QStringList &args)
{
    Options options;
    for (int i = 1; i < args.size(); ++i) {
        const QString &arg = args[i];
        const bool hasValue = i + 1 < args.size();
        bool ok = true;
        if (arg == QLatin1StringView("--pool") && hasValue) {
            options.pool = args[++i].toInt(&ok);
        } else if (arg == QLatin1StringView("--layout") && hasValue) {
            const QString name = args[++i];
            if (name == QLatin1StringView("flow"))
                options.layout = Layout::flow;
            else if (name == QLatin1StringView("varied"))
                options.layout = Layout::varied;
            else if (name == QLatin1StringView("scatter"))
                options.layout = Layout::scatter;
            else if (name == QLatin1StringView("none"))
                options.layout = Layout::none;
            else
                return std::nullopt;
        } else if (arg == QLatin1StringView("--interval") && hasValue) {
            options.interval = args[++i].toDouble(&ok);
        } else if (arg == QLatin1StringView("--cache-mb") && hasValue) {
            options.cacheMegabytes = args[++i].toInt(&ok);
        } else if (arg == QLatin1StringView("--seconds") && hasValue) {
            options.seconds = args[++i].toDouble(&ok);
        } else if (arg == QLatin1StringView("--warmup") && hasValue) {
            options.warmup = args[++i].toDouble(&ok);
        } else if (arg == QLatin1StringView("--rss-every") && hasValue) {
            options.rssEvery = args[++i].toDouble(&ok);
        } else if (arg == QLatin1StringView("--auto-cycle")) {
            options.autoCycle = true;
        } else if (arg == QLatin1StringView("--pointer-pause")) {
            options.pointerPause = true;
        } else if (arg == QLatin1StringView("--no-ticker")) {
            options.ticker = false;
        } else if (arg == QLatin1StringView("--size") && hasValue) {
            const QStringList parts = args[++i].split(QLatin1Char('x'));
            if (parts.size() != 2)
                return std::nullopt;
            bool okHeight = true;
            options.size = QSize(parts[0].toInt(&ok), parts[1].toInt(&okHeight));
            ok = ok && okHeight && options.size.width() > 0 && options.size.height() > 0;
        } else if (arg == QLatin1StringView("--seed") && hasValue) {
            options.seed = args[++i].toULongLong(&ok);
        } else if (arg == QLatin1StringView("--xserver-pid") && hasValue) {
            options.xserverPid = args[++i].toLongLong(&ok);
        } else if (arg == QLatin1StringView("--screenshot") && hasValue) {
            options.screenshot = args[++i];
        } else if (arg.startsWith(QLatin1StringView("--"))) {
            return std::nullopt;
        } else {
            options.inputs.append(arg);
        }
        if (!ok)
            return std::nullopt;
    }
    if (options.pool < 0 || options.cacheMegabytes <= 0 || options.seconds <= 0 || options.warmup < 0
        || options.warmup >= options.seconds || options.rssEvery <= 0 || (options.interval && *options.interval <= 0))
        return std::nullopt;
    if (options.layout != Layout::none && options.inputs.isEmpty())
        return std::nullopt;
    return options;
}

// The photos named, or found (not recursively) in the folders named, in name order.
QStringList photoFiles(const QStringList &inputs)
{
    static const QStringList patterns {QStringLiteral("*.jpg"), QStringLiteral("*.jpeg"), QStringLiteral("*.png"),
        QStringLiteral("*.JPG"), QStringLiteral("*.JPEG"), QStringLiteral("*.PNG")};
    QStringList files;
    for (const QString &input : inputs) {
        const QFileInfo info(input);
        if (info.isDir()) {
            for (const QFileInfo &entry : QDir(input).entryInfoList(patterns, QDir::Files, QDir::Name))
                files.append(entry.absoluteFilePath());
        } else if (info.isFile()) {
            files.append(info.absoluteFilePath());
        }
    }
    return files;
}

// `count` items. Past the number of files, each further item gets its own link to a file, because
// the thumbnail cache keys on the URL: a reused URL would be a cache hit, not another photo.
std::optional<QList<ImageItem>> makePool(const QStringList &files, int count, QTemporaryDir &links)
{
    QList<ImageItem> pool;
    pool.reserve(count);
    for (int i = 0; i < count; ++i) {
        const QString &file = files[i % files.size()];
        QString path = file;
        if (i >= files.size()) {
            path = links.filePath(
                QStringLiteral("item-%1.%2").arg(i, 6, 10, QLatin1Char('0')).arg(QFileInfo(file).suffix()));
            const QByteArray from = QFile::encodeName(file), to = QFile::encodeName(path);
            // A hard link where the file system allows one (a symlink's target is read through its name).
            if (::link(from.constData(), to.constData()) != 0 && ::symlink(from.constData(), to.constData()) != 0) {
                std::fprintf(stderr, "bench_wall: cannot link %s\n", to.constData());
                return std::nullopt;
            }
        }
        pool.append(ImageItem(QUrl::fromLocalFile(path), QFileInfo(path).fileName(), i));
    }
    return pool;
}

double cpuSeconds()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)
        + double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// utime + stime of another process, from /proc/PID/stat; nullopt when it cannot be read.
std::optional<double> processCpuSeconds(qint64 pid)
{
    if (pid <= 0)
        return std::nullopt;
    std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (!std::getline(stat, line))
        return std::nullopt;
    // The command name may hold spaces; the fields after it are counted from its closing parenthesis.
    const size_t close = line.rfind(')');
    if (close == std::string::npos)
        return std::nullopt;
    std::istringstream fields(line.substr(close + 2));
    std::string field;
    unsigned long long utime = 0, stime = 0;
    for (int index = 3; fields >> field; ++index) {
        if (index == 14)
            utime = std::stoull(field);
        else if (index == 15) {
            stime = std::stoull(field);
            return double(utime + stime) / double(sysconf(_SC_CLK_TCK));
        }
    }
    return std::nullopt;
}

// CPU seconds of each of this process's threads, by thread id, with the thread's name.
struct ThreadCpu {
    std::string name;
    double seconds = 0;
};
std::map<long, ThreadCpu> threadCpu()
{
    std::map<long, ThreadCpu> threads;
    for (const QFileInfo &task :
        QDir(QStringLiteral("/proc/self/task")).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        std::ifstream stat(task.absoluteFilePath().toStdString() + "/stat");
        std::string line;
        if (!std::getline(stat, line))
            continue;
        const size_t open = line.find('('), close = line.rfind(')');
        if (open == std::string::npos || close == std::string::npos)
            continue;
        std::istringstream fields(line.substr(close + 2));
        std::string field;
        unsigned long long utime = 0, stime = 0;
        for (int index = 3; fields >> field && index <= 15; ++index) {
            if (index == 14)
                utime = std::stoull(field);
            else if (index == 15)
                stime = std::stoull(field);
        }
        threads[task.fileName().toLong()]
            = {line.substr(open + 1, close - open - 1), double(utime + stime) / double(sysconf(_SC_CLK_TCK))};
    }
    return threads;
}

// Threads of a kind share a name but for a number ("llvmpipe-0", "llvmpipe-1"): counted together.
std::string threadKind(const std::string &name)
{
    if (name == "bench_wall")
        return "GUI thread";
    std::string kind = name;
    while (!kind.empty() && (std::isdigit(static_cast<unsigned char>(kind.back())) || kind.back() == '-'))
        kind.pop_back();
    return kind;
}

double rssMegabytes()
{
    std::ifstream statm("/proc/self/statm");
    unsigned long long size = 0, resident = 0;
    statm >> size >> resident;
    return double(resident) * double(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

// A field of /proc/self/status in MB ("VmHWM", ...).
double statusMegabytes(const std::string &name)
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind(name + ":", 0) == 0)
            return std::stod(line.substr(name.size() + 1)) / 1024.0;
    }
    return 0;
}

// Frame timing, fed from whichever thread swaps the frames (the render thread under the
// threaded loop): only counters and a short list of long gaps, so measuring does not grow memory.
class FrameStats {
public:
    static constexpr double longGap = 0.050;

    struct Gap {
        double at; // seconds since the start, when the late frame was swapped
        double length;
    };
    struct Window {
        long frames = 0;
        double longest = 0;
        double longestAt = 0;
        long longGaps = 0;
        std::vector<Gap> gaps; // the long ones, at most kKeptGaps
        std::array<long, 1001> histogram {}; // gaps in whole milliseconds, the last bucket for >= 1 s
    };
    static constexpr size_t kKeptGaps = 64;

    explicit FrameStats(SteadyClock::time_point start, double warmup) : m_start(start), m_warmup(warmup) { }

    void swapped()
    {
        const double now = std::chrono::duration<double>(SteadyClock::now() - m_start).count();
        const std::lock_guard lock(m_mutex);
        if (m_stopped)
            return;
        if (!m_swapThreadKnown) {
            m_swapThreadKnown = true;
            m_swapOnGuiThread = QThread::currentThread() == qApp->thread();
            m_firstFrameAt = now;
        }
        Window &window = now < m_warmup ? m_warm : m_measured;
        ++window.frames;
        // A gap belongs to the part of the run its late frame falls in; the first frame has none.
        if (m_last >= 0) {
            const double gap = now - m_last;
            ++window.histogram[std::min<size_t>(size_t(gap * 1000), window.histogram.size() - 1)];
            if (gap > window.longest) {
                window.longest = gap;
                window.longestAt = now;
            }
            if (gap > longGap) {
                ++window.longGaps;
                if (window.gaps.size() < kKeptGaps)
                    window.gaps.push_back({now, gap});
            }
        }
        m_last = now;
    }

    void stop()
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
    }

    // Read after stop().
    const Window &warm() const { return m_warm; }
    const Window &measured() const { return m_measured; }
    bool swapOnGuiThread() const { return m_swapOnGuiThread; }
    double firstFrameAt() const { return m_firstFrameAt; }

    static double percentileMs(const Window &window, double fraction)
    {
        long total = 0;
        for (long count : window.histogram)
            total += count;
        if (total == 0)
            return 0;
        const long wanted = std::max(1L, long(double(total) * fraction + 0.5));
        long seen = 0;
        for (size_t ms = 0; ms < window.histogram.size(); ++ms) {
            seen += window.histogram[ms];
            if (seen >= wanted)
                return double(ms) + 0.5;
        }
        return double(window.histogram.size());
    }

private:
    const SteadyClock::time_point m_start;
    const double m_warmup;
    std::mutex m_mutex;
    bool m_stopped = false;
    bool m_swapThreadKnown = false;
    bool m_swapOnGuiThread = false;
    double m_firstFrameAt = -1;
    double m_last = -1;
    Window m_warm;
    Window m_measured;
};

// A tiny square turns on every frame behind the wall, hidden by the wall's background, so that
// frames keep coming whatever the layout: Varied and Scatter otherwise draw only while something
// moves, and then a long gap between frames would be idle time rather than a stall.
const char *wallQml = R"(
import QtQuick
import QtQuick.Window
import Sorvane.Views

Window {
    id: root
    required property CollageWallModel wall
    required property bool ticker
    property int tilesShown: 0
    color: "black"
    Rectangle {
        id: spinner
        width: 4
        height: 4
        color: "#202020"
        visible: root.ticker
        FrameAnimation {
            running: root.ticker
            onTriggered: spinner.rotation = (spinner.rotation + frameTime * 360) % 360
        }
    }
    CollageRenderer {
        objectName: "wallRenderer"
        wall: root.wall
        width: root.width
        height: root.height
        onTileShown: root.tilesShown++
    }
}
)";

// Nothing but a black window and the same tiny square, visible: the cost of a Qt Quick frame with
// next to nothing to draw.
const char *emptyQml = R"(
import QtQuick
import QtQuick.Window

Window {
    id: root
    property int tilesShown: 0
    color: "black"
    Rectangle {
        anchors.fill: parent
        color: "black"
    }
    Rectangle {
        id: spinner
        width: 4
        height: 4
        anchors.centerIn: parent
        color: "#202020"
        FrameAnimation {
            running: true
            onTriggered: spinner.rotation = (spinner.rotation + frameTime * 360) % 360
        }
    }
}
)";

std::atomic<long> warningCount = 0;
QtMessageHandler previousHandler = nullptr;

// Passes every message on, counting the warnings, so the summary tells whether any was printed.
void countingHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg)
        ++warningCount;
    previousHandler(type, context, message);
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    // As the player: the load slots' narration of every request is not wanted here.
    QLoggingCategory::setFilterRules(QStringLiteral("sorvane.engine.debug=false"));
    previousHandler = qInstallMessageHandler(countingHandler);
    const std::optional<Options> parsed = parseArguments(app.arguments());
    if (!parsed) {
        std::fprintf(stderr,
            "usage: bench_wall [--pool N] [--layout flow|varied|scatter|none] [--interval S]\n"
            "                  [--seconds T] [--warmup W] [--rss-every S] [--auto-cycle]\n"
            "                  [--pointer-pause] [--no-ticker] [--cache-mb N] [--size WxH] [--seed N]\n"
            "                  [--xserver-pid PID] [--screenshot PNG] PHOTO-FOLDER | PHOTO...\n");
        return 2;
    }
    const Options &options = *parsed;

    QList<ImageItem> pool;
    QTemporaryDir links;
    if (options.layout != Layout::none) {
        const QStringList files = photoFiles(options.inputs);
        if (files.isEmpty()) {
            std::fprintf(stderr, "bench_wall: no photos found\n");
            return 1;
        }
        if (!links.isValid()) {
            std::fprintf(stderr, "bench_wall: cannot make a temporary folder\n");
            return 1;
        }
        const std::optional<QList<ImageItem>> made
            = makePool(files, options.pool > 0 ? options.pool : files.size(), links);
        if (!made)
            return 1;
        pool = *made;
        std::printf("pool: %lld items from %lld files\n", qlonglong(pool.size()), qlonglong(files.size()));
    }

    SystemClock clock;
    QtTimerScheduler timers;
    InMemoryPreferences preferences;
    CollageSlideshowSettingsStore store(preferences);
    if (options.interval)
        store.setImageChangeInterval(*options.interval);
    store.setFlowAutoCycleTiles(options.autoCycle);
    // Nobody moves the pointer here, so the figures must not depend on where it rests: over the
    // window, the hover events Qt Quick sends after each frame would count as movements.
    if (!options.pointerPause)
        store.setFlowScrollPointerPause(0);
    CollageWallModel model(clock, timers, options.seed);
    model.setSettingsStore(&store);
    model.setLayout(options.layout == Layout::scatter ? CollageLayout::scatter
            : options.layout == Layout::varied        ? CollageLayout::collage
                                                      : CollageLayout::flow);
    model.setPool(pool, 1);
    long wallChanges = 0;
    QObject::connect(&model, &CollageWallModel::wallChanged, &app, [&wallChanges] { ++wallChanges; });

    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(CollageImageProvider::kProviderName,
        new CollageImageProvider(std::make_shared<ThumbnailCache>(std::make_shared<QtThumbnailDecoder>(),
            qint64(options.cacheMegabytes) * 1024 * 1024, CollageImageProvider::kWallCacheCount)));
    QQmlComponent component(&engine);
    component.setData(options.layout == Layout::none ? emptyQml : wallQml, QUrl(QStringLiteral("bench_wall.qml")));
    QVariantMap properties;
    if (options.layout != Layout::none) {
        properties.insert(QStringLiteral("wall"), QVariant::fromValue(static_cast<QObject *>(&model)));
        properties.insert(QStringLiteral("ticker"), options.ticker);
    }
    std::unique_ptr<QObject> root(component.createWithInitialProperties(properties));
    auto *window = qobject_cast<QQuickWindow *>(root.get());
    if (!window) {
        std::fprintf(stderr, "bench_wall: the window could not be made: %s\n", qPrintable(component.errorString()));
        return 1;
    }

    QScreen *screen = QGuiApplication::primaryScreen();
    const QRect geometry
        = options.size.isValid() ? QRect(screen->geometry().topLeft(), options.size) : screen->geometry();
    window->setFlags(Qt::Window | Qt::FramelessWindowHint);
    window->setGeometry(geometry);

    QString glRenderer = QStringLiteral("?");
    QObject::connect(
        window, &QQuickWindow::sceneGraphInitialized, window,
        [&glRenderer] {
            if (QOpenGLContext *context = QOpenGLContext::currentContext()) {
                const auto *name = context->functions()->glGetString(GL_RENDERER);
                if (name)
                    glRenderer = QString::fromLatin1(reinterpret_cast<const char *>(name));
            }
        },
        Qt::DirectConnection);

    const SteadyClock::time_point start = SteadyClock::now();
    FrameStats frames(start, options.warmup);
    QObject::connect(
        window, &QQuickWindow::frameSwapped, window, [&frames] { frames.swapped(); }, Qt::DirectConnection);
    const auto sinceStart = [start] { return std::chrono::duration<double>(SteadyClock::now() - start).count(); };

    if (options.size.isValid())
        window->show();
    else
        window->showFullScreen();
    // As the player does once its first picture is up.
    DecodedMemory::returnLargeBuffersAtOnce();

    struct Sample {
        double at;
        double rss;
    };
    std::vector<Sample> rssSamples;
    const auto sampleRss = [&] { rssSamples.push_back({sinceStart(), rssMegabytes()}); };
    sampleRss();
    QTimer rssTimer;
    // Coarse timers may fire 5 % early, which would put a sample before the end of the warm-up.
    rssTimer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&rssTimer, &QTimer::timeout, &app, sampleRss);
    rssTimer.start(int(options.rssEvery * 1000));

    // The GUI thread's own stalls: a timer due every 10 ms that runs late by more than 50 ms means
    // the event loop was busy (bindings, JavaScript, the model) or the process had no core.
    struct GuiStalls {
        double last = -1;
        double longest = 0, longestAt = 0;
        long count = 0;
        std::vector<FrameStats::Gap> kept;
    } guiStalls;
    bool measuring = false;
    QTimer stallProbe;
    stallProbe.setTimerType(Qt::PreciseTimer);
    QObject::connect(&stallProbe, &QTimer::timeout, &app, [&] {
        const double now = sinceStart();
        const double late = guiStalls.last < 0 ? 0 : now - guiStalls.last - 0.010;
        guiStalls.last = now;
        if (!measuring)
            return;
        if (late > guiStalls.longest) {
            guiStalls.longest = late;
            guiStalls.longestAt = now;
        }
        if (late > FrameStats::longGap) {
            ++guiStalls.count;
            if (guiStalls.kept.size() < FrameStats::kKeptGaps)
                guiStalls.kept.push_back({now, late});
        }
    });
    stallProbe.start(10);

    // Whether the Flow strips really scroll, in the model and on screen: the offsets the model
    // gives and those the view last took (its `offsets`), read once a second, should both move.
    QObject *renderer = window->findChild<QObject *>(QStringLiteral("wallRenderer"));
    struct ScrollWatch {
        QVariantList model;
        QVariant view;
        long seconds = 0, modelMoving = 0, viewMoving = 0;
        QString viewValue;
    } scroll;
    QTimer scrollProbe;
    QObject::connect(&scrollProbe, &QTimer::timeout, &app, [&] {
        const QVariantList offsets = model.flowOffsets();
        QVariant view = renderer ? renderer->property("offsets") : QVariant();
        if (view.userType() == qMetaTypeId<QJSValue>())
            view = view.value<QJSValue>().toVariant();
        if (measuring) {
            ++scroll.seconds;
            if (offsets != scroll.model)
                ++scroll.modelMoving;
            // Anything but a list (a NaN never equals itself) counts as standing still.
            const bool isList = view.userType() != QMetaType::Double && view.canConvert<QVariantList>();
            if (isList && view.toList() != scroll.view.toList())
                ++scroll.viewMoving;
        }
        scroll.model = offsets;
        scroll.view = view;
        scroll.viewValue
            = QString::fromLatin1(view.typeName() ? view.typeName() : "invalid") + QLatin1Char(' ') + view.toString();
    });
    if (options.layout == Layout::flow)
        scrollProbe.start(1000);

    struct Mark {
        double at = 0, cpu = 0;
        std::optional<double> xserverCpu;
        long changes = 0, tilesShown = 0;
        std::map<long, ThreadCpu> threads;
    };
    const auto mark = [&] {
        return Mark {sinceStart(), cpuSeconds(), processCpuSeconds(options.xserverPid), wallChanges,
            window->property("tilesShown").toInt(), threadCpu()};
    };
    Mark warmEnd, end;
    QTimer::singleShot(int(options.warmup * 1000), Qt::PreciseTimer, &app, [&] {
        warmEnd = mark();
        measuring = true;
    });
    QTimer::singleShot(int(options.seconds * 1000), Qt::PreciseTimer, &app, [&] {
        frames.stop();
        measuring = false;
        end = mark();
        sampleRss();
        if (!options.screenshot.isEmpty()) {
            const QImage image = window->grabWindow();
            if (image.isNull() || !image.save(options.screenshot))
                std::fprintf(
                    stderr, "bench_wall: the screenshot could not be saved to %s\n", qPrintable(options.screenshot));
        }
        app.quit();
    });
    app.exec();

    const FrameStats::Window &measured = frames.measured();
    const FrameStats::Window &warm = frames.warm();
    const double span = end.at - warmEnd.at;
    const double cpu = end.cpu - warmEnd.cpu;
    const QByteArray loop = qgetenv("QSG_RENDER_LOOP");
    std::printf("layout: %s, window %dx%d, interval %s s, auto-cycle %s, ticker %s, thumbnail cache %d MB, %.0f s "
                "(warm-up %.0f s)\n",
        layoutName(options.layout), window->width(), window->height(),
        qPrintable(QString::number(store.imageChangeInterval())), options.autoCycle ? "on" : "off",
        options.layout == Layout::none || options.ticker ? "on" : "off", options.cacheMegabytes, options.seconds,
        options.warmup);
    std::printf("render loop: %s (QSG_RENDER_LOOP=%s), frames swapped on the %s thread; GL renderer: %s\n",
        frames.swapOnGuiThread() ? "basic" : "threaded", loop.isEmpty() ? "unset" : loop.constData(),
        frames.swapOnGuiThread() ? "GUI" : "render", qPrintable(glRenderer));
    std::printf("first frame: %.0f ms after show\n", frames.firstFrameAt() * 1000);
    std::printf("warm-up: %ld frames, longest gap %.1f ms, %ld gaps > 50 ms\n", warm.frames, warm.longest * 1000,
        warm.longGaps);
    std::printf("frames: %ld in %.1f s = %.1f fps\n", measured.frames, span, double(measured.frames) / span);
    std::printf("cpu: %.2f s = %.1f %% of one core, %.2f ms per frame\n", cpu, 100 * cpu / span,
        measured.frames ? 1000 * cpu / double(measured.frames) : 0.0);
    // Threads that ended during the run are missing from /proc: their share shows as "ended".
    std::map<std::string, double> byKind;
    double counted = 0;
    for (const auto &[tid, thread] : end.threads) {
        const auto before = warmEnd.threads.find(tid);
        const double used = thread.seconds - (before != warmEnd.threads.end() ? before->second.seconds : 0.0);
        byKind[threadKind(thread.name)] += used;
        counted += used;
    }
    if (cpu - counted > 0.005)
        byKind["ended"] += cpu - counted;
    std::vector<std::pair<std::string, double>> kinds(byKind.begin(), byKind.end());
    std::sort(kinds.begin(), kinds.end(), [](const auto &a, const auto &b) { return a.second > b.second; });
    std::printf("cpu by thread:");
    for (const auto &[kind, used] : kinds) {
        if (cpu > 0 && used / cpu >= 0.005)
            std::printf(" %s %.0f %%,", kind.c_str(), 100 * used / cpu);
    }
    std::printf(" of the process's\n");
    if (end.xserverCpu && warmEnd.xserverCpu) {
        const double xcpu = *end.xserverCpu - *warmEnd.xserverCpu;
        std::printf("x server cpu: %.2f s = %.1f %% of one core, %.2f ms per frame\n", xcpu, 100 * xcpu / span,
            measured.frames ? 1000 * xcpu / double(measured.frames) : 0.0);
    }
    std::printf("frame gaps: median %.1f ms, p99 %.1f ms, longest %.1f ms (at %.1f s), %ld > 50 ms\n",
        FrameStats::percentileMs(measured, 0.5), FrameStats::percentileMs(measured, 0.99), measured.longest * 1000,
        measured.longestAt, measured.longGaps);
    if (!measured.gaps.empty()) {
        std::printf("gaps > 50 ms (at s: ms):");
        for (const FrameStats::Gap &gap : measured.gaps)
            std::printf(" %.1f:%.0f", gap.at, gap.length * 1000);
        std::printf(measured.gaps.size() < size_t(measured.longGaps) ? " ...\n" : "\n");
    }
    std::printf("gui thread: longest stall %.1f ms (at %.1f s), %ld > 50 ms\n", guiStalls.longest * 1000,
        guiStalls.longestAt, guiStalls.count);
    if (!guiStalls.kept.empty()) {
        std::printf("gui stalls > 50 ms (at s: ms):");
        for (const FrameStats::Gap &gap : guiStalls.kept)
            std::printf(" %.1f:%.0f", gap.at, gap.length * 1000);
        std::printf(guiStalls.kept.size() < size_t(guiStalls.count) ? " ...\n" : "\n");
    }
    std::printf("wall changes: %ld, tile images arrived: %ld\n", end.changes - warmEnd.changes,
        end.tilesShown - warmEnd.tilesShown);
    if (options.layout == Layout::flow) {
        const QVariantList strips = model.flowStrips();
        long tiles = 0, delegates = 0;
        for (const QVariant &strip : strips) {
            const QVariantMap map = strip.toMap();
            const long count = long(map.value(QStringLiteral("tiles")).toList().size());
            tiles += count;
            delegates += count * map.value(QStringLiteral("copies")).toInt();
        }
        std::printf("flow strips: %lld, %ld tiles, %ld tile views with the copies\n", qlonglong(strips.size()), tiles,
            delegates);
        std::printf("flow scroll: the model's offsets moved in %ld of %ld one-second samples, the view's in %ld "
                    "(its last: %s)\n",
            scroll.modelMoving, scroll.seconds, scroll.viewMoving, qPrintable(scroll.viewValue.left(60)));
    }

    std::printf("rss samples (s: MB):");
    for (const Sample &sample : rssSamples)
        std::printf(" %.0f:%.1f", sample.at, sample.rss);
    std::printf("\n");
    const auto [low, high] = std::minmax_element(
        rssSamples.begin(), rssSamples.end(), [](const Sample &a, const Sample &b) { return a.rss < b.rss; });
    const auto settled = std::find_if(
        rssSamples.begin(), rssSamples.end(), [&](const Sample &sample) { return sample.at >= options.warmup - 0.01; });
    const Sample first = settled != rssSamples.end() ? *settled : rssSamples.front();
    const Sample last = rssSamples.back();
    std::printf("rss: min %.1f MB, max %.1f MB, peak (VmHWM) %.1f MB; after warm-up %.1f MB at %.0f s -> %.1f MB at "
                "%.0f s, growth %+.1f MB (%+.1f %%)\n",
        low->rss, high->rss, statusMegabytes("VmHWM"), first.rss, first.at, last.rss, last.at, last.rss - first.rss,
        100 * (last.rss - first.rss) / first.rss);
    std::printf("rss at the end: anonymous %.1f MB, files %.1f MB, shared memory %.1f MB\n", statusMegabytes("RssAnon"),
        statusMegabytes("RssFile"), statusMegabytes("RssShmem"));
    std::printf("warnings printed: %ld\n", long(warningCount));
    return 0;
}
