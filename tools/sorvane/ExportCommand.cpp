#include "ExportCommand.h"

#include "CommandLine.h"
#include "ExportOptions.h"
#include "ExportSummary.h"
#include "ProgressDisplay.h"

#include "bundle/BundleWriter.h"
#include "codecs/FfmpegVideoSource.h"
#include "codecs/VipsDerivativeEncoder.h"

#include <QFileInfo>
#include <QLoggingCategory>

#include <atomic>
#include <csignal>
#include <memory>
#include <optional>
#include <thread>

#include <pthread.h>
#include <unistd.h>

namespace sorvane::cli {

namespace {

// Set by the first Ctrl-C; the writer polls it and winds down, removing its staging folder.
std::atomic<bool> cancelRequested {false};
static_assert(std::atomic<bool>::is_always_lock_free, "read from a signal handler");

void onCancelSignal(int)
{
    if (cancelRequested.exchange(true))
        ::_exit(exitCancelled); // the second Ctrl-C: the user wants out now
    static const char note[] = "\nCancelling; press Ctrl-C again to stop at once.\n";
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, note, sizeof note - 1);
}

// Ctrl-C and SIGTERM cancel the export while it runs; the previous handlers come back afterwards.
class CancelOnSignals {
public:
    CancelOnSignals()
    {
        cancelRequested = false;
        struct sigaction action { };
        action.sa_handler = onCancelSignal;
        sigemptyset(&action.sa_mask);
        action.sa_flags = SA_RESTART;
        ::sigaction(SIGINT, &action, &m_previousInterrupt);
        ::sigaction(SIGTERM, &action, &m_previousTerminate);
    }
    ~CancelOnSignals()
    {
        ::sigaction(SIGINT, &m_previousInterrupt, nullptr);
        ::sigaction(SIGTERM, &m_previousTerminate, nullptr);
    }
    CancelOnSignals(const CancelOnSignals &) = delete;
    CancelOnSignals &operator=(const CancelOnSignals &) = delete;

private:
    struct sigaction m_previousInterrupt { };
    struct sigaction m_previousTerminate { };
};

// Runs the write on a worker thread while this one waits. The worker, and every
// thread it starts, has the cancel signals blocked, so they are always handled
// here and never interrupt a file operation of the writer.
BundleWriteResult write(const BundleWriteRequest &request, const BundleWriter::ProgressCallback &progress)
{
    sigset_t cancelSignals;
    sigemptyset(&cancelSignals);
    sigaddset(&cancelSignals, SIGINT);
    sigaddset(&cancelSignals, SIGTERM);
    sigset_t previous;
    ::pthread_sigmask(SIG_BLOCK, &cancelSignals, &previous);
    BundleWriteResult result;
    std::thread worker([&] { result = BundleWriter::write(request, progress, [] { return cancelRequested.load(); }); });
    ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    worker.join();
    return result;
}

// While a write runs, log lines go through the progress display so that they do not cut through its line.
class LogThroughDisplay {
public:
    explicit LogThroughDisplay(ProgressDisplay *display)
    {
        s_display = display;
        m_previous = qInstallMessageHandler(handle);
    }
    ~LogThroughDisplay()
    {
        qInstallMessageHandler(m_previous);
        s_display = nullptr;
    }
    LogThroughDisplay(const LogThroughDisplay &) = delete;
    LogThroughDisplay &operator=(const LogThroughDisplay &) = delete;

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        s_display.load()->note(qFormatLogMessage(type, context, message));
    }

    static inline std::atomic<ProgressDisplay *> s_display {nullptr};
    QtMessageHandler m_previous = nullptr;
};

int usageError(QTextStream &err, const QString &message)
{
    err << "sorvane export: " << message << "\n"
        << "Run 'sorvane export --help' for usage.\n";
    return exitUsage;
}

bool pathExists(const QString &path)
{
    return QFileInfo::exists(path);
}

int dryRun(const BundleWriteRequest &request, QTextStream &out, QTextStream &err)
{
    const BundleSourceScan scan = BundleWriter::scan(request);
    if (scan.sources.empty()) {
        err << "sorvane export: " << toString(BundleWriteErrorCode::noSourceMedia)
            << ": No supported media found in the sources.\n";
        return exitFailed;
    }
    out << dryRunText(scan, plannedBundle(request, pathExists));
    return exitOk;
}

} // namespace

int runExport(const QStringList &arguments, QTextStream &out, QTextStream &err)
{
    const ExportParseResult parsed = parseExportOptions(arguments, ExportEnvironment::current());
    if (!parsed.ok())
        return usageError(err, parsed.usageError);
    const ExportOptions &options = *parsed.options;
    if (options.help) {
        out << exportHelp();
        return exitOk;
    }

    // Every failure of a write comes back in its result and is printed from there;
    // the writer's own log lines would only say it twice.
    if (options.verbose)
        configureLogging(true);
    else
        QLoggingCategory::setFilterRules(QStringLiteral("sorvane.*.debug=false\nsorvane.*.info=false\n"
                                                        "sorvane.writer.warning=false"));

    BundleWriteRequest request = options.request;
    request.derivativeEncoder = std::make_shared<VipsDerivativeEncoder>();
    request.videoSource = std::make_shared<FfmpegVideoSource>();
    if (options.dryRun)
        return dryRun(request, out, err);

    err.flush();
    std::unique_ptr<ProgressDisplay> display;
    BundleWriter::ProgressCallback progress;
    if (!options.quiet) {
        display = std::make_unique<ProgressDisplay>(::isatty(STDERR_FILENO) == 1,
            ProgressDisplay::Output {[&err](const QString &text) {
                                         err << text;
                                         err.flush();
                                     },
                terminalColumns, [] { return ProgressDisplay::Clock::now(); }});
        progress = [&display](const BundleWriteProgress &update) { display->update(update); };
    }

    BundleWriteResult result;
    {
        const CancelOnSignals cancelOnSignals;
        std::optional<LogThroughDisplay> logThroughDisplay;
        if (display)
            logThroughDisplay.emplace(display.get());
        result = write(request, progress);
    }
    if (display)
        display->finish(result.ok());

    if (result.ok()) {
        const QString bundlePath = result.bundlePath.value_or(QString());
        if (options.quiet)
            out << bundlePath << "\n";
        else
            out << exportSummary(result, tierFileCounts(bundlePath));
        return exitOk;
    }
    if (result.errorCode == BundleWriteErrorCode::cancelled)
        err << "Cancelled.\n";
    else
        err << "sorvane export: " << toString(*result.errorCode) << ": " << result.errorMessage.value_or(QString())
            << "\n";
    err << reportList(result.reports);
    return result.errorCode == BundleWriteErrorCode::cancelled ? exitCancelled : exitFailed;
}

} // namespace sorvane::cli
