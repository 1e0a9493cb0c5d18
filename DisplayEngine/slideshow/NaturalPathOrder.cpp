#include "slideshow/NaturalPathOrder.h"

namespace sorvane {

namespace {

// A digit run becomes this marker, then its significant-digit count, then the
// digits without leading zeros: the shorter number sorts first, and equal lengths
// compare digit by digit. The marker is the lowest digit, so numbers keep their
// usual place relative to punctuation and letters.
constexpr char16_t digitRunMarker = u'0';

} // namespace

QString NaturalPathOrder::sortKey(QStringView path)
{
    const QString folded = path.toString().toCaseFolded();
    QString key;
    key.reserve(folded.size() + 8);
    const qsizetype n = folded.size();
    qsizetype i = 0;
    while (i < n) {
        const QChar ch = folded.at(i);
        if (ch.digitValue() < 0) {
            key.append(ch);
            ++i;
            continue;
        }
        qsizetype end = i;
        while (end < n && folded.at(end).digitValue() >= 0)
            ++end;
        qsizetype first = i;
        while (first < end - 1 && folded.at(first).digitValue() == 0)
            ++first;
        const qsizetype digits = end - first;
        key.append(QChar(digitRunMarker));
        // A run longer than a code unit can count is not a number anyone sorts by.
        key.append(QChar(char16_t(std::min<qsizetype>(digits, 0xFFFF))));
        for (qsizetype d = first; d < end; ++d)
            key.append(QChar(char16_t(u'0' + folded.at(d).digitValue())));
        i = end;
    }
    return key;
}

QString NaturalPathOrder::pathOf(const QUrl &url)
{
    return url.isLocalFile() ? url.toLocalFile() : url.path();
}

} // namespace sorvane
