#pragma once

#include <QString>
#include <QtGlobal>

#include <string>
#include <vector>

namespace sorvane::test {

// Collects every Qt message as "category level: text" so a test can compare the exact lines.
// Code under test logs from worker threads too, hence the lock. One capture at a time: the
// lines are kept in one place for the whole program.
class LogCapture {
public:
    // `filterRules`, when given, are applied while the capture lives, so that a test sees
    // messages whatever the environment's logging rules say.
    explicit LogCapture(const QString &filterRules = {});
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    // The lines captured since the last call (or since the capture began).
    std::vector<std::string> take();

private:
    bool m_setRules;
    QtMessageHandler m_previousHandler = nullptr;
};

// A line as the capture records it: level is debug, info, warning, critical or fatal.
std::string logLine(const char *category, const char *level, const QString &text);

} // namespace sorvane::test
