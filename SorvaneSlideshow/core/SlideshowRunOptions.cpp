#include "core/SlideshowRunOptions.h"

#include "slideshow/SlideshowGlobalSettings.h"
#include "slideshow/SlideshowSettings.h"

namespace sorvane {

SlideshowLaunchRequest SlideshowRunOptions::launchRequest() const
{
    SlideshowLaunchRequest request;
    request.monitor = screens.value_or(SlideshowLaunchRequest::MonitorTarget::current);
    request.mode
        = mode.value_or(layout ? SlideshowLaunchRequest::Mode::collage : SlideshowLaunchRequest::Mode::standard);
    if (request.mode == SlideshowLaunchRequest::Mode::collage)
        request.layout = layout;
    return request;
}

void SlideshowRunOptions::applyTo(SlideshowSettings &settings) const
{
    if (interval)
        settings.defaultDuration = *interval;
    if (transition)
        settings.transitionStyle = *transition;
}

void SlideshowRunOptions::applyTo(SlideshowGlobalSettings &global) const
{
    if (scope)
        global.setControlScope(*scope);
    if (sync)
        global.setSyncMode(*sync);
    if (phaseDelay)
        global.setPhaseDelay(*phaseDelay);
}

} // namespace sorvane
