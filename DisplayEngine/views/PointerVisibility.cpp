#include "views/PointerVisibility.h"

#include <QCursor>
#include <QGuiApplication>

namespace sorvane {

PointerVisibility::~PointerVisibility()
{
    if (m_hidden && QGuiApplication::instance())
        QGuiApplication::restoreOverrideCursor();
}

void PointerVisibility::setHidden(bool hidden)
{
    if (hidden == m_hidden)
        return;
    m_hidden = hidden;
    if (hidden)
        QGuiApplication::setOverrideCursor(QCursor(Qt::BlankCursor));
    else
        QGuiApplication::restoreOverrideCursor();
}

} // namespace sorvane
