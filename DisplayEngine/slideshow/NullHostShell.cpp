#include "slideshow/NullHostShell.h"

namespace sorvane {

void NullHostShell::moveToTrash(const ImageItem &, TrashDone done)
{
    done(TrashOutcome::failed, QStringLiteral("This application cannot move files to the trash."));
}

} // namespace sorvane
