#pragma once

#include <QString>
#include <QTemporaryDir>

#include <functional>
#include <map>
#include <mutex>
#include <vector>

namespace sorvane::test {

// A folder of sample files, each made the first time a test asks for it: by a shell command
// line run in the folder (any other sample the command names is made before it), or by a
// function given the folder and the file's path. Test programs make only what they use.
class SampleFolder {
public:
    using Maker = std::function<bool(SampleFolder &folder, const QString &path)>;
    struct Sample {
        QString file;
        QString command;
        Maker make = {};
    };

    explicit SampleFolder(std::vector<Sample> samples);

    // The absolute path of `file`, made first when it is a sample not made yet. A sample that
    // cannot be made fails the test.
    QString path(const QString &file);

private:
    QTemporaryDir m_dir;
    std::vector<Sample> m_samples;
    std::map<QString, bool> m_made;
    std::recursive_mutex m_mutex;
};

} // namespace sorvane::test
