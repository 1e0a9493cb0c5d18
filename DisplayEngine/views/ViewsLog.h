#pragma once

#include <QLoggingCategory>

// Logging category of the slide views (decoding, image ids).
Q_DECLARE_LOGGING_CATEGORY(lcViews)
