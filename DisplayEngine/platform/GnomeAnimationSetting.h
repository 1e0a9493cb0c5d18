#pragma once

#include <QByteArray>

#include <optional>

namespace sorvane {

// GNOME's `org.gnome.desktop.interface enable-animations`, read through `gsettings`.
class GnomeAnimationSetting {
public:
    // A desktop that answers slower than this is treated as silent: start-up must not wait.
    static constexpr int kTimeoutMs = 500;

    // Nothing when gsettings is missing, slow, fails or knows no such key.
    static std::optional<bool> read();
    // The tool's output: "true" or "false" and a line end; anything else is nothing.
    static std::optional<bool> parse(const QByteArray &output);
};

} // namespace sorvane
