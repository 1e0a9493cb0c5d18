#include "core/SlideshowLog.h"

Q_LOGGING_CATEGORY(lcSlideshow, "sorvane.slideshow")
Q_LOGGING_CATEGORY(lcSlideshowItems, "sorvane.slideshow.items", QtWarningMsg)
