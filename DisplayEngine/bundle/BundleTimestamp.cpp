#include "bundle/BundleTimestamp.h"

#include <QRegularExpression>

#include <array>

namespace sorvane {

namespace {

struct IsoForm {
    QRegularExpression shape;
    Qt::DateFormat format;
};

// Qt's ISO parser also takes forms a manifest must not carry (no zone, read as
// local time; a date alone; minutes without seconds), so the exact shape is
// checked first and Qt only converts. Built once: the patterns are compiled here
// so that later matches from any thread only read them.
const std::array<IsoForm, 2> &isoForms()
{
    static const std::array<IsoForm, 2> forms = [] {
        const QString date = QStringLiteral("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}");
        const QString zone = QStringLiteral("(?:Z|[+-][0-9]{2}:[0-9]{2})");
        std::array<IsoForm, 2> made = {
            IsoForm {QRegularExpression(QRegularExpression::anchoredPattern(date + zone)), Qt::ISODate},
            IsoForm {QRegularExpression(QRegularExpression::anchoredPattern(date + QStringLiteral("\\.[0-9]+") + zone)),
                Qt::ISODateWithMs},
        };
        for (IsoForm &form : made)
            form.shape.optimize();
        return made;
    }();
    return forms;
}

bool isBlank(const QString &text)
{
    // Spaces and tabs only: a newline makes the text non-blank (and unparsable).
    for (const QChar c : text) {
        if (c != u' ' && c != u'\t')
            return false;
    }
    return true;
}

} // namespace

std::optional<QDateTime> BundleTimestamp::parse(const std::optional<QString> &text)
{
    if (!text || isBlank(*text))
        return std::nullopt;
    // Trimming only decides blankness; the stored text is parsed as it is.
    for (const IsoForm &form : isoForms()) {
        if (!form.shape.match(*text).hasMatch())
            continue;
        const QDateTime date = QDateTime::fromString(*text, form.format);
        if (date.isValid())
            return date.toUTC();
    }
    return std::nullopt;
}

QString BundleTimestamp::format(const QDateTime &date)
{
    return date.toUTC().toString(Qt::ISODate);
}

} // namespace sorvane
