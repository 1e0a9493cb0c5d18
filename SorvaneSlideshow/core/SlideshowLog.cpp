#include "core/SlideshowLog.h"

Q_LOGGING_CATEGORY(lcSlideshow, "sorvane.slideshow")
