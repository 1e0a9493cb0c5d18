#include "slideshow/NaturalPathOrder.h"

#include <algorithm>

namespace sorvane {

namespace {

// A digit run becomes this marker, then its significant-digit count, then the
// digits without leading zeros: the shorter number sorts first, and equal lengths
// compare digit by digit. The marker is the lowest digit, so numbers keep their
// usual place relative to punctuation and letters.
constexpr char digitRunMarker = '0';
// A count takes one byte; longer runs are not numbers anyone sorts by.
constexpr qsizetype longestCountedRun = 255;

int digitOf(QChar ch)
{
    const char16_t unit = ch.unicode();
    if (unit < 0x80)
        return unit >= u'0' && unit <= u'9' ? unit - u'0' : -1;
    return ch.digitValue();
}

} // namespace

std::string NaturalPathOrder::sortKey(QStringView path)
{
    std::string key;
    appendSortKey(path, key);
    return key;
}

void NaturalPathOrder::appendSortKey(QStringView path, std::string &key)
{
    const qsizetype n = path.size();
    qsizetype i = 0;
    while (i < n) {
        const char16_t unit = path.at(i).unicode();
        if (unit < 0x80 && !(unit >= u'0' && unit <= u'9')) {
            key.push_back(char(unit >= u'A' && unit <= u'Z' ? unit + (u'a' - u'A') : unit));
            ++i;
            continue;
        }
        if (digitOf(path.at(i)) < 0) {
            // Other letters: fold a whole run at once, accents dropped as a file browser
            // does ("Été" sorts with the e's); UTF-8 keeps code point order.
            qsizetype end = i + 1;
            while (end < n && path.at(end).unicode() >= 0x80 && digitOf(path.at(end)) < 0)
                ++end;
            QString run = path.sliced(i, end - i).toString().normalized(QString::NormalizationForm_D);
            run.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing; });
            key += run.toCaseFolded().toStdString();
            i = end;
            continue;
        }
        qsizetype end = i;
        while (end < n && digitOf(path.at(end)) >= 0)
            ++end;
        qsizetype first = i;
        while (first < end - 1 && digitOf(path.at(first)) == 0)
            ++first;
        key.push_back(digitRunMarker);
        key.push_back(char(std::min(end - first, longestCountedRun)));
        for (qsizetype d = first; d < end; ++d)
            key.push_back(char('0' + digitOf(path.at(d))));
        i = end;
    }
}

QString NaturalPathOrder::pathOf(const QUrl &url)
{
    return url.isLocalFile() ? url.toLocalFile() : url.path();
}

} // namespace sorvane
