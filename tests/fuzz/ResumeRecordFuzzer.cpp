// Fuzz target for the player's resume record: every input is the record file of
// one bundle, as a hand-edited or damaged computer might hold it.
//
// A record that loads belongs to the bundle asked for, has a real timestamp and
// only ever offers a start position inside the play order. Saving it and loading
// it again gives it back, less any fraction of a second.

#include "FuzzSupport.h"
#include "core/ResumeRecord.h"
#include "core/ResumeStore.h"

#include <QDir>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <limits>

using namespace sorvane;

namespace {

const QString bundleId = QStringLiteral("4F1C2E7A-fuzz");

const ResumeStore &store()
{
    static QTemporaryDir folder(QDir::tempPath() + QStringLiteral("/sorvane-fuzz-resume-XXXXXX"));
    static const ResumeStore made(folder.path());
    return made;
}

void checkStartPosition(const ResumeRecord &record)
{
    for (const qsizetype length : {qsizetype(0), qsizetype(1), qsizetype(7), std::numeric_limits<qsizetype>::max()}) {
        const std::optional<qint64> start = record.startPosition(length);
        FUZZ_CHECK(start.has_value() == (record.itemIndex >= 0 && record.itemIndex < length));
        FUZZ_CHECK(!start || (*start >= 0 && *start < length && *start == record.itemIndex));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    fuzz::quietMessages();
    const ResumeStore &resume = store();
    const QString path = *resume.filePath(bundleId);
    fuzz::writeFile(path, fuzz::bytes(data, size));

    const std::optional<ResumeRecord> loaded = resume.load(bundleId);
    // Another bundle never sees this record.
    FUZZ_CHECK(!resume.load(bundleId + QLatin1Char('x')));
    if (!loaded)
        return 0;
    FUZZ_CHECK(loaded->bundleId == bundleId);
    FUZZ_CHECK(loaded->savedUtc.isValid());
    checkStartPosition(*loaded);

    // What loaded can be written back, and reads as the same record.
    FUZZ_CHECK(resume.save(*loaded), fuzz::bytes(data, size));
    const std::optional<ResumeRecord> again = resume.load(bundleId);
    FUZZ_CHECK(again.has_value(), fuzz::bytes(data, size));
    ResumeRecord expected = *loaded;
    expected.savedUtc = expected.savedUtc.addMSecs(-expected.savedUtc.time().msec());
    FUZZ_CHECK(*again == expected, fuzz::bytes(data, size) + "\n" + QJsonDocument(again->toJson()).toJson());
    return 0;
}
