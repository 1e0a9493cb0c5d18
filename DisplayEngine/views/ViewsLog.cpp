#include "views/ViewsLog.h"

Q_LOGGING_CATEGORY(lcViews, "sorvane.views")
Q_LOGGING_CATEGORY(lcFrames, "sorvane.frames", QtWarningMsg)
