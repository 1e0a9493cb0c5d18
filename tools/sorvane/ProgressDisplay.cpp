#include "ProgressDisplay.h"

#include "TextFormat.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

#include <sys/ioctl.h>
#include <unistd.h>

namespace sorvane::cli {

namespace {

const QString clearToEnd = QStringLiteral("\033[K");
const QChar ellipsis(0x2026);
// Long enough for the longest label, so that phase lines line up.
constexpr int labelWidth = 19;
// Rates and time left jump about at the very start of a phase.
constexpr double settleSeconds = 1.0;
constexpr int narrowestFileName = 8;
constexpr int minimumBar = 10;

QString middleElided(const QString &text, int width)
{
    if (text.size() <= width)
        return text;
    if (width <= 1)
        return QString(ellipsis);
    const int head = (width - 1) / 2;
    const int tail = width - 1 - head;
    return text.left(head) + ellipsis + text.right(tail);
}

QString countText(const BundleWriteProgress &progress)
{
    if (progress.total <= 0)
        return QString::number(progress.completed);
    const QString total = QString::number(progress.total);
    return QStringLiteral("%1/%2").arg(progress.completed, int(total.size())).arg(total);
}

double fraction(const BundleWriteProgress &progress)
{
    if (progress.total <= 0)
        return 0;
    return std::clamp(double(progress.completed) / double(progress.total), 0.0, 1.0);
}

// "0:42", "1:02:03": short, for a line that has little room.
QString clockText(double seconds)
{
    const qint64 whole = qint64(std::ceil(seconds));
    const QString minutesAndSeconds
        = QStringLiteral("%1:%2").arg(whole / 60 % 60).arg(whole % 60, 2, 10, QLatin1Char('0'));
    if (whole < 3600)
        return minutesAndSeconds;
    return QStringLiteral("%1:%2").arg(whole / 3600).arg(minutesAndSeconds.rightJustified(5, QLatin1Char('0')));
}

struct Speed {
    QString rate;
    QString timeLeft;
};

// Bytes per second when the phase counts bytes, else items per second.
Speed speed(const BundleWriteProgress &progress, double elapsedSeconds)
{
    Speed speed;
    if (elapsedSeconds < settleSeconds)
        return speed;
    const bool bytes = progress.totalBytes > 0;
    const double done = bytes ? double(progress.completedBytes) : double(progress.completed);
    const double todo = bytes ? double(progress.totalBytes) : double(progress.total);
    if (done <= 0)
        return speed;
    const double perSecond = done / elapsedSeconds;
    if (bytes)
        speed.rate = formatBytes(qint64(perSecond)) + QStringLiteral("/s");
    else
        speed.rate = QStringLiteral("%1 items/s").arg(perSecond, 0, 'f', perSecond < 10 ? 1 : 0);
    if (todo > done)
        speed.timeLeft = clockText((todo - done) / perSecond) + QStringLiteral(" left");
    return speed;
}

QString bar(double done, int width)
{
    const int inner = width - 2;
    const int filled = int(done * inner + 1e-9);
    QString text(inner, QLatin1Char(' '));
    for (int i = 0; i < filled; ++i)
        text[i] = QLatin1Char('=');
    if (filled < inner && filled > 0)
        text[filled] = QLatin1Char('>');
    return QLatin1Char('[') + text + QLatin1Char(']');
}

// One progress line. Without `columns` it is a plain line for logs: no bar, no limit.
QString composeLine(const BundleWriteProgress &progress, double elapsedSeconds, std::optional<int> columns)
{
    const QString head = ProgressDisplay::phaseLabel(progress.phase).leftJustified(labelWidth) + QStringLiteral("  ")
        + countText(progress);
    const bool counted = progress.total > 0;
    const QString percent = counted ? QStringLiteral("%1%").arg(int(fraction(progress) * 100), 3) : QString();
    Speed tail = speed(progress, elapsedSeconds);
    QString file;
    if (progress.currentItem)
        file = QFileInfo(*progress.currentItem).fileName();

    if (!columns) {
        QStringList parts {head};
        for (const QString &part : {percent, tail.rate, tail.timeLeft, file}) {
            if (!part.isEmpty())
                parts << part;
        }
        return parts.join(QStringLiteral("  "));
    }

    const int usable = std::max(*columns - 1, 1);
    int barWidth = counted ? std::clamp(usable / 5, minimumBar, 30) : 0;
    auto fixedWidth = [&] {
        qsizetype width = head.size();
        if (barWidth > 0)
            width += 1 + barWidth;
        if (!percent.isEmpty())
            width += 1 + percent.size();
        for (const QString &part : {tail.rate, tail.timeLeft}) {
            if (!part.isEmpty())
                width += 2 + part.size();
        }
        return width;
    };
    // A shorter bar leaves room for the file name (a fixed room, so that the bar
    // keeps its width from file to file); past that, the least useful parts go
    // first until the rest fits.
    constexpr qsizetype wantedFile = 20;
    if (!file.isEmpty() && barWidth > minimumBar) {
        const qsizetype shortfall = fixedWidth() + 2 + wantedFile - usable;
        if (shortfall > 0)
            barWidth -= int(std::min<qsizetype>(shortfall, barWidth - minimumBar));
    }
    if (fixedWidth() + 2 + std::min<qsizetype>(file.size(), narrowestFileName) > usable)
        file.clear();
    if (fixedWidth() > usable)
        tail.rate.clear();
    if (fixedWidth() > usable)
        tail.timeLeft.clear();
    if (fixedWidth() > usable)
        barWidth = 0;

    QString line = head;
    if (barWidth > 0)
        line += QLatin1Char(' ') + bar(fraction(progress), barWidth);
    if (!percent.isEmpty())
        line += QLatin1Char(' ') + percent;
    if (!file.isEmpty()) {
        const int room = int(usable - fixedWidth() - 2);
        file = middleElided(file, room);
        // Padded so that the rate keeps its place from one file to the next.
        if (!tail.rate.isEmpty() || !tail.timeLeft.isEmpty())
            file = file.leftJustified(room);
        line += QStringLiteral("  ") + file;
    }
    for (const QString &part : {tail.rate, tail.timeLeft}) {
        if (!part.isEmpty())
            line += QStringLiteral("  ") + part;
    }
    return line.left(usable);
}

} // namespace

ProgressDisplay::ProgressDisplay(bool terminal, Output output) : m_terminal(terminal), m_output(std::move(output)) { }

QString ProgressDisplay::phaseLabel(BundleWritePhase phase)
{
    switch (phase) {
    case BundleWritePhase::scanning:
        return QStringLiteral("Scanning");
    case BundleWritePhase::hashing:
        return QStringLiteral("Hashing");
    case BundleWritePhase::writingDerivatives:
        return QStringLiteral("Writing derivatives");
    case BundleWritePhase::copyingOriginals:
        return QStringLiteral("Copying originals");
    case BundleWritePhase::copyingPlayer:
        return QStringLiteral("Copying player");
    case BundleWritePhase::writingManifest:
        return QStringLiteral("Writing manifest");
    case BundleWritePhase::finalizing:
        return QStringLiteral("Finalizing");
    }
    return {};
}

QString ProgressDisplay::liveLine(const BundleWriteProgress &progress, double elapsedSeconds, int columns)
{
    return composeLine(progress, elapsedSeconds, columns);
}

QString ProgressDisplay::summaryLine(const BundleWriteProgress &last, double elapsedSeconds)
{
    QString line = phaseLabel(last.phase).leftJustified(labelWidth) + QStringLiteral("  ") + countText(last);
    if (last.totalBytes > 0 || last.completedBytes > 0)
        line += QStringLiteral("  ") + formatBytes(last.completedBytes);
    return line + QStringLiteral(" in ") + formatDuration(elapsedSeconds);
}

double ProgressDisplay::elapsed(Clock::time_point now) const
{
    return std::chrono::duration<double>(now - m_phaseStart).count();
}

void ProgressDisplay::endPhase(Clock::time_point now)
{
    const QString summary = summaryLine(*m_last, elapsed(now));
    m_output.write(
        m_terminal ? QLatin1Char('\r') + summary + clearToEnd + QLatin1Char('\n') : summary + QLatin1Char('\n'));
    m_lineOpen = false;
}

void ProgressDisplay::update(const BundleWriteProgress &progress)
{
    const std::lock_guard lock(m_mutex);
    if (m_finished)
        return;
    const Clock::time_point now = m_output.now();
    const bool newPhase = !m_last || m_last->phase != progress.phase;
    if (newPhase) {
        if (m_last)
            endPhase(now);
        m_phaseStart = now;
    }
    m_last = progress;

    if (m_terminal) {
        if (!newPhase && now - m_lastShown < terminalInterval)
            return;
        m_output.write(QLatin1Char('\r') + liveLine(progress, elapsed(now), m_output.columns()) + clearToEnd);
        m_lineOpen = true;
        m_lastShown = now;
        return;
    }
    if (newPhase) {
        m_output.write(phaseLabel(progress.phase) + QStringLiteral("...\n"));
        m_lastShown = now;
    } else if (now - m_lastShown >= plainInterval) {
        m_output.write(composeLine(progress, elapsed(now), std::nullopt) + QLatin1Char('\n'));
        m_lastShown = now;
    }
}

void ProgressDisplay::note(const QString &line)
{
    const std::lock_guard lock(m_mutex);
    if (!m_terminal || !m_lineOpen) {
        m_output.write(line + QLatin1Char('\n'));
        return;
    }
    const Clock::time_point now = m_output.now();
    m_output.write(QLatin1Char('\r') + line + clearToEnd + QLatin1Char('\n') + QLatin1Char('\r')
        + liveLine(*m_last, elapsed(now), m_output.columns()) + clearToEnd);
}

void ProgressDisplay::finish(bool succeeded)
{
    const std::lock_guard lock(m_mutex);
    if (m_finished)
        return;
    m_finished = true;
    if (succeeded && m_last)
        endPhase(m_output.now());
    else if (m_lineOpen)
        m_output.write(QStringLiteral("\n")); // keeps the last state in view above the error
}

int terminalColumns()
{
    winsize size {};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    bool ok = false;
    const int columns = qEnvironmentVariableIntValue("COLUMNS", &ok);
    return ok && columns > 0 ? columns : 80;
}

} // namespace sorvane::cli
