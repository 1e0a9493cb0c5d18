#include "core/SlideshowCommandLine.h"

#include "slideshow/PhaseDelay.h"
#include "slideshow/SlideshowViewModel.h"

#include <QHash>

#include <functional>

namespace sorvane {

namespace {

using Options = SlideshowRunOptions;
// Stores the value of one option; a reason when the value is not one it takes.
using Setter = std::function<std::optional<QString>(Options &, const QString &)>;

template <typename T> Setter word(std::optional<T> Options::*member, QList<std::pair<QString, T>> words)
{
    return [member, words](Options &options, const QString &value) -> std::optional<QString> {
        QStringList names;
        for (const auto &[name, meaning] : words) {
            if (name == value) {
                options.*member = meaning;
                return std::nullopt;
            }
            names << name;
        }
        return QStringLiteral("takes %1, not \"%2\"").arg(names.join(QLatin1Char('|')), value);
    };
}

Setter seconds(std::optional<double> Options::*member, double low, double high)
{
    return [member, low, high](Options &options, const QString &value) -> std::optional<QString> {
        bool ok = false;
        const double number = value.toDouble(&ok);
        // Written out so that NaN fails it too.
        if (!ok || !(number >= low && number <= high))
            return QStringLiteral("takes seconds from %1 to %2, not \"%3\"").arg(low).arg(high).arg(value);
        options.*member = number;
        return std::nullopt;
    };
}

const QHash<QString, Setter> &setters()
{
    using Target = SlideshowLaunchRequest::MonitorTarget;
    using Mode = SlideshowLaunchRequest::Mode;
    static const QHash<QString, Setter> table {
        {QStringLiteral("screens"),
            word<Target>(&Options::screens, {{"current", Target::current}, {"all", Target::all}})},
        {QStringLiteral("mode"),
            word<Mode>(&Options::mode, {{"standard", Mode::standard}, {"collage", Mode::collage}})},
        {QStringLiteral("layout"),
            word<CollageLayout>(&Options::layout,
                {{"flow", CollageLayout::flow}, {"varied", CollageLayout::collage},
                    {"scatter", CollageLayout::scatter}})},
        {QStringLiteral("sort"),
            word<SortMode>(&Options::sort,
                {{"random", SortMode::random}, {"sequential", SortMode::sequential},
                    {"created", SortMode::creationDate}, {"modified", SortMode::modifiedDate}})},
        {QStringLiteral("interval"),
            seconds(&Options::interval, SlideshowViewModel::minimumSlideDuration,
                SlideshowViewModel::maximumSlideDuration)},
        {QStringLiteral("transition"),
            [](Options &options, const QString &value) {
                QList<std::pair<QString, TransitionStyle>> styles;
                for (TransitionStyle style : allTransitionStyles)
                    styles.append({toRaw(style), style});
                return word<TransitionStyle>(&Options::transition, styles)(options, value);
            }},
        {QStringLiteral("scope"),
            word<ControlScope>(&Options::scope,
                {{"independent", ControlScope::focusedOnly}, {"linked", ControlScope::all},
                    {"mirrored", ControlScope::mirrored}})},
        {QStringLiteral("sync"),
            word<SyncMode>(&Options::sync, {{"synchronized", SyncMode::synchronized}, {"phased", SyncMode::phased}})},
        {QStringLiteral("phase-delay"), seconds(&Options::phaseDelay, PhaseDelay::minimum, PhaseDelay::maximum)},
    };
    return table;
}

} // namespace

SlideshowCommandLine::Result SlideshowCommandLine::parse(const QStringList &arguments)
{
    Options options;
    bool optionsEnded = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        if (optionsEnded || !argument.startsWith(QLatin1Char('-')) || argument == QLatin1String("-")) {
            options.paths << argument;
            continue;
        }
        if (argument == QLatin1String("--")) {
            optionsEnded = true;
            continue;
        }
        if (argument == QLatin1String("--help") || argument == QLatin1String("-h"))
            return Help {};
        if (argument == QLatin1String("--version"))
            return Version {};
        const qsizetype equals = argument.indexOf(QLatin1Char('='));
        const QString name = argument.mid(2, equals < 0 ? -1 : equals - 2);
        const auto setter = setters().constFind(name);
        if (!argument.startsWith(QLatin1String("--")) || setter == setters().constEnd())
            return Usage {QStringLiteral("unknown option %1").arg(argument.left(equals < 0 ? -1 : equals))};
        QString value;
        if (equals >= 0) {
            value = argument.mid(equals + 1);
        } else if (i + 1 < arguments.size()) {
            value = arguments[++i];
        } else {
            return Usage {QStringLiteral("--%1 needs a value").arg(name)};
        }
        if (const std::optional<QString> wrong = (*setter)(options, value))
            return Usage {QStringLiteral("--%1 %2").arg(name, *wrong)};
    }
    if (options.layout && options.mode == SlideshowLaunchRequest::Mode::standard)
        return Usage {QStringLiteral("--layout needs --mode collage")};
    if (options.paths.isEmpty())
        return Usage {QStringLiteral("no folder or file to play")};
    return options;
}

QString SlideshowCommandLine::helpText()
{
    return QStringLiteral("Usage: SorvaneSlideshow [OPTIONS] PATH...\n"
                          "Plays the photos and videos of the folders (with their subfolders) and files given,\n"
                          "full screen. Options change this run only; the stored settings stay as they are.\n"
                          "\n"
                          "  --screens current|all        the display of the active window, or every display\n"
                          "  --mode standard|collage      one photo at a time, or a wall of photos\n"
                          "  --layout flow|varied|scatter the wall's layout (implies --mode collage)\n"
                          "  --sort random|sequential|created|modified\n"
                          "  --interval SECONDS           how long each photo stays (1 to 60)\n"
                          "  --transition none|crossFade|kenBurns|slide|zoom|flip|random\n"
                          "  --scope independent|linked|mirrored   which windows a key reaches\n"
                          "  --sync synchronized|phased   linked windows advance together or in turn\n"
                          "  --phase-delay SECONDS        the pause between phased windows (0.1 to 5)\n"
                          "  --help, --version\n"
                          "\n"
                          "Keys: Space pause, arrows step, / lists every key, Escape stops.\n");
}

} // namespace sorvane
