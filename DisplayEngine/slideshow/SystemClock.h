#pragma once

#include "slideshow/Clock.h"

#include <QElapsedTimer>

namespace sorvane {

class SystemClock final : public Clock {
public:
    SystemClock() { m_started.start(); }
    double monotonicSeconds() const override { return double(m_started.nsecsElapsed()) / 1e9; }
    QDateTime nowUtc() const override { return QDateTime::currentDateTimeUtc(); }

private:
    QElapsedTimer m_started;
};

} // namespace sorvane
