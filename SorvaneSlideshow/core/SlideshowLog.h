#pragma once

#include <QLoggingCategory>

// The slideshow application's own log lines.
Q_DECLARE_LOGGING_CATEGORY(lcSlideshow)
// One debug line per item change in a window: which display shows which file. Off unless
// QT_LOGGING_RULES asks for it ("sorvane.slideshow.items.debug=true").
Q_DECLARE_LOGGING_CATEGORY(lcSlideshowItems)
