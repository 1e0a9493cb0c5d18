#include "EngineLog.h"

Q_LOGGING_CATEGORY(lcEngine, "sorvane.engine")
Q_LOGGING_CATEGORY(lcWriter, "sorvane.writer")
Q_LOGGING_CATEGORY(lcPlayer, "sorvane.player")
