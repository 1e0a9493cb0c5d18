#pragma once

#include <QLoggingCategory>

// The slideshow application's own log lines.
Q_DECLARE_LOGGING_CATEGORY(lcSlideshow)
