#pragma once

#include "bundle/BundleWriteProgress.h"

#include <QString>

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>

namespace sorvane::cli {

// Shows an export's progress: on a terminal one line per phase, redrawn in place
// and left as a summary when the phase ends; elsewhere (a log, a pipe) plain
// lines at a calm pace. Updates may come from any thread.
class ProgressDisplay {
public:
    using Clock = std::chrono::steady_clock;

    struct Output {
        std::function<void(const QString &)> write; // the text as is, flushed
        std::function<int()> columns; // terminal width
        std::function<Clock::time_point()> now;
    };

    ProgressDisplay(bool terminal, Output output);

    void update(const BundleWriteProgress &progress);
    // A log line, printed above the live line rather than through it.
    void note(const QString &line);
    // Ends the display: the last phase's summary when the export succeeded, else
    // just a clean line for the error that follows.
    void finish(bool succeeded);

    static QString phaseLabel(BundleWritePhase phase);
    // The live line of a phase, at most `columns` - 1 wide so the terminal never wraps.
    static QString liveLine(const BundleWriteProgress &progress, double elapsedSeconds, int columns);
    // The line a finished phase leaves: "Hashing  240/240  1.2 GB in 3.1 s".
    static QString summaryLine(const BundleWriteProgress &last, double elapsedSeconds);

    // Redraws of the live line, and plain progress lines, are at least this far apart.
    static constexpr std::chrono::milliseconds terminalInterval {100};
    static constexpr std::chrono::milliseconds plainInterval {2000};

private:
    void endPhase(Clock::time_point now);
    double elapsed(Clock::time_point now) const;

    std::mutex m_mutex;
    const bool m_terminal;
    const Output m_output;
    std::optional<BundleWriteProgress> m_last; // latest update of the current phase
    Clock::time_point m_phaseStart;
    Clock::time_point m_lastShown;
    bool m_lineOpen = false; // a live line is on screen
    bool m_finished = false;
};

// Columns of the terminal on standard error: the window size, else $COLUMNS, else 80.
int terminalColumns();

} // namespace sorvane::cli
