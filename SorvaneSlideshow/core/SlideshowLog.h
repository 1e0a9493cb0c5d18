#pragma once

#include <QLoggingCategory>

// The slideshow application's own log lines.
Q_DECLARE_LOGGING_CATEGORY(lcSlideshow)
// Which file each screen shows, one line per change: tests follow the show by it.
Q_DECLARE_LOGGING_CATEGORY(lcSlideshowItems)
