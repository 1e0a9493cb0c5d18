#pragma once

#include "core/SlideshowRunOptions.h"

#include <QString>
#include <QStringList>

#include <variant>

namespace sorvane {

// Reads the slideshow application's arguments (without the program name). Pure: it
// prints nothing and never exits, so every case is tested as data.
class SlideshowCommandLine {
public:
    struct Help {
        bool operator==(const Help &) const = default;
    };
    struct Version {
        bool operator==(const Version &) const = default;
    };
    // Wrong usage, with a one-line reason.
    struct Usage {
        QString reason;
        bool operator==(const Usage &) const = default;
    };
    using Result = std::variant<SlideshowRunOptions, Help, Version, Usage>;

    // The exit status of wrong usage.
    static constexpr int usageExitCode = 2;

    static Result parse(const QStringList &arguments);
    static QString helpText();
};

} // namespace sorvane
