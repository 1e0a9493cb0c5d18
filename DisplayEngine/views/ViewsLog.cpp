#include "views/ViewsLog.h"

Q_LOGGING_CATEGORY(lcViews, "sorvane.views")
