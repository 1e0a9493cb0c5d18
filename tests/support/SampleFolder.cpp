#include "support/SampleFolder.h"

#include <QProcess>

#include <algorithm>

#include <gtest/gtest.h>

namespace sorvane::test {

SampleFolder::SampleFolder(std::vector<Sample> samples) : m_samples(std::move(samples)) { }

QString SampleFolder::path(const QString &file)
{
    const QString target = m_dir.filePath(file);
    std::lock_guard lock(m_mutex);
    const auto sample
        = std::find_if(m_samples.begin(), m_samples.end(), [&](const Sample &s) { return s.file == file; });
    if (sample == m_samples.end() || m_made.contains(file))
        return target;
    m_made[file] = true;
    if (sample->make) {
        EXPECT_TRUE(sample->make(*this, target)) << "sample " << file.toStdString() << " could not be made";
        return target;
    }
    for (const Sample &other : m_samples) {
        if (other.file != file && sample->command.contains(other.file))
            path(other.file);
    }
    QProcess process;
    process.setWorkingDirectory(m_dir.path());
    process.start(QStringLiteral("sh"), {QStringLiteral("-c"), sample->command});
    const bool ok
        = process.waitForFinished(120000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    EXPECT_TRUE(ok) << sample->command.toStdString() << ": " << process.readAllStandardError().toStdString();
    return target;
}

} // namespace sorvane::test
