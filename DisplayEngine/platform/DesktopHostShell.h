#pragma once

#include "slideshow/HostShell.h"

#include <functional>
#include <memory>
#include <optional>

namespace sorvane {

class Preferences;

// The host services of the desktop: the freedesktop trash behind a confirmation the
// application asks, and the desktop's reduce-motion option.
class DesktopHostShell final : public HostShell {
public:
    // The application asks the user whether to trash the item (its own dialog) and calls
    // `answer` once with the choice, now or later, on the main thread.
    using Answer = std::function<void(bool confirmed)>;
    using ConfirmTrash = std::function<void(const ImageItem &item, Answer answer)>;
    // Asks for the desktop's animation switch and calls back once, now or later, on the main
    // thread: true when animations are on, nothing when the desktop does not say
    // (`GnomeAnimationSetting::read` on a GNOME-style desktop).
    using AnimationsAnswer = std::function<void(std::optional<bool> enabled)>;
    using ReadAnimationsEnabled = std::function<void(AnimationsAnswer answer)>;

    // The preference key that stands in when the desktop does not say.
    static const QString reduceMotionKey;

    // `preferences` must outlive the shell. The desktop's switch is asked here, once; until it
    // answers the preference stands in.
    DesktopHostShell(const Preferences &preferences, ConfirmTrash confirm, const ReadAnimationsEnabled &readAnimations);
    ~DesktopHostShell() override;

    void moveToTrash(const ImageItem &item, TrashDone done) override;
    bool prefersReducedMotion() const override;
    bool showControlsAfterCommands() const override { return true; }

private:
    const Preferences &m_preferences;
    ConfirmTrash m_confirm;
    std::optional<bool> m_animationsEnabled;
    // Lets an answer that comes after the shell is gone do nothing.
    std::shared_ptr<bool> m_alive;
};

} // namespace sorvane
