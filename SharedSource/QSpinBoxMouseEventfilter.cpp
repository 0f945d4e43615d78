#include "QSpinBoxMouseEventfilter.h"

#include <QEvent>

QSpinBoxMouseEventFilter::QSpinBoxMouseEventFilter() : QObject(nullptr) {}

QSpinBoxMouseEventFilter::~QSpinBoxMouseEventFilter() {}

bool QSpinBoxMouseEventFilter::IsMousePressed() const
{
    return m_MousePressed;
}

bool QSpinBoxMouseEventFilter::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        m_MousePressed = true;
        break;
    case QEvent::MouseButtonRelease:
        // Buttons aren't counted: the first release ends the press.
        m_MousePressed = false;
        emit mouseReleased();
        break;
    default:
        break;
    }
    return false;
}
