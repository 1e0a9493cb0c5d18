#include "bundle/BundleReadme.h"

#include <QList>

namespace sorvane {

QString BundleReadme::text(const QString &title, qint64 itemCount, const QString &createdUtc, BundleFlavor flavor)
{
    QString text;
    text += title + QLatin1Char('\n');
    // One rule character per character of the title, as a person would count them.
    text += QString(title.toUcs4().size(), QLatin1Char('=')) + QStringLiteral("\n\n");
    text += QStringLiteral("This folder is a Sorvane slideshow bundle.\n\n");
    text += QStringLiteral("Photos and videos: %1\n").arg(itemCount);
    text += QStringLiteral("Created: %1\n\n").arg(createdUtc);
    if (flavor == BundleFlavor::withPlayer) {
        text += QStringLiteral("To play it: open \"bundle.json\"'s folder with the player in this folder.\n");
        text += QStringLiteral("Nothing is installed, and nothing is changed on your computer.\n\n");
    } else {
        text += QStringLiteral("To play it: open this folder in Vindra or Sorvane.\n\n");
    }
    text += QStringLiteral("You can copy this whole folder anywhere \u2014 a USB stick, another computer,\n");
    text += QStringLiteral("or a cloud drive. Keep the folder together; the files inside refer to each other.\n");
    return text;
}

} // namespace sorvane
