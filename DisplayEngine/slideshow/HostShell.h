#pragma once

#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace sorvane {

class ImageItem;

// Services the slideshow engine asks of whatever application hosts it. The engine
// never talks to the desktop itself; a host answers these, and `NullHostShell`
// answers them for a host that offers none.
class HostShell {
public:
    enum class TrashOutcome { moved, cancelled, failed };
    using TrashDone = std::function<void(TrashOutcome outcome, const QString &message)>;

    virtual ~HostShell() = default;

    // Asks the user to confirm and moves the item's file to the trash. `done` is called
    // once, on the main thread, possibly before this returns; `message` explains a failure.
    virtual void moveToTrash(const ImageItem &item, TrashDone done) = 0;
    // The desktop's accessibility option to reduce motion.
    virtual bool prefersReducedMotion() const = 0;
    // After a zoom command: true shows the controls and restarts their hide timer,
    // false hides them.
    virtual bool showControlsAfterCommands() const = 0;
};

} // namespace sorvane
