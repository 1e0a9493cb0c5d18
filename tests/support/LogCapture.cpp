#include "support/LogCapture.h"

#include <QLoggingCategory>

#include <mutex>
#include <utility>

namespace sorvane::test {

namespace {

std::mutex s_mutex;
std::vector<std::string> s_lines;

const char *levelName(QtMsgType type)
{
    return type == QtDebugMsg   ? "debug"
        : type == QtInfoMsg     ? "info"
        : type == QtWarningMsg  ? "warning"
        : type == QtCriticalMsg ? "critical"
                                : "fatal";
}

void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    std::string line = logLine(context.category ? context.category : "default", levelName(type), text);
    std::lock_guard lock(s_mutex);
    s_lines.push_back(std::move(line));
}

} // namespace

std::string logLine(const char *category, const char *level, const QString &text)
{
    return std::string(category) + " " + level + ": " + text.toStdString();
}

LogCapture::LogCapture(const QString &filterRules) : m_setRules(!filterRules.isEmpty())
{
    if (m_setRules)
        QLoggingCategory::setFilterRules(filterRules);
    take(); // lines an earlier, failed test left behind
    m_previousHandler = qInstallMessageHandler(&handle);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previousHandler);
    if (m_setRules) // one capture at a time: no rules were set by code before it
        QLoggingCategory::setFilterRules(QString());
}

std::vector<std::string> LogCapture::take()
{
    std::lock_guard lock(s_mutex);
    return std::exchange(s_lines, {});
}

} // namespace sorvane::test
