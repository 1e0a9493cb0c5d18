#pragma once

#include <QLoggingCategory>

// Logging categories of the system: messages are the fixed English texts of each component.
Q_DECLARE_LOGGING_CATEGORY(lcEngine)
Q_DECLARE_LOGGING_CATEGORY(lcWriter)
Q_DECLARE_LOGGING_CATEGORY(lcPlayer)
