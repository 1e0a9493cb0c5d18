#pragma once

#include <QLoggingCategory>

// Logging category of the slide views (decoding, image ids).
Q_DECLARE_LOGGING_CATEGORY(lcViews)
// Frame intervals while a slideshow moves its picture; off unless asked for (one line a frame).
Q_DECLARE_LOGGING_CATEGORY(lcFrames)
