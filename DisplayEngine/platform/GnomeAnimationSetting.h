#pragma once

#include <QByteArray>

#include <functional>
#include <optional>

namespace sorvane {

// GNOME's `org.gnome.desktop.interface enable-animations`, read through `gsettings`.
class GnomeAnimationSetting {
public:
    // A desktop that answers slower than this is treated as silent.
    static constexpr int kTimeoutMs = 500;

    // Runs gsettings without waiting for it (start-up goes on) and calls `answer` once, on
    // this thread's event loop: nothing when gsettings is missing, slow, fails or knows no
    // such key.
    static void read(std::function<void(std::optional<bool>)> answer);
    // The tool's output: "true" or "false" and a line end; anything else is nothing.
    static std::optional<bool> parse(const QByteArray &output);
};

} // namespace sorvane
