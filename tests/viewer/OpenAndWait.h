#ifndef OPENANDWAIT_H
#define OPENANDWAIT_H

#include "ViewerWindow.h"

#include <QCoreApplication>
#include <QElapsedTimer>

// Runs the event loop until the window tells of the camera's opening, which
// happens on a thread of its own; false if it didn't open in time.
inline bool WaitForOpening(ViewerWindow& window, int timeoutMs = 30000)
{
    int outcome = -1;
    QMetaObject::Connection connection = QObject::connect(
        &window, &ViewerWindow::cameraOpened, [&outcome](bool opened) { outcome = opened; });
    QElapsedTimer timer;
    timer.start();
    while (outcome < 0 && timer.elapsed() < timeoutMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    QObject::disconnect(connection);
    return outcome == 1;
}

inline bool OpenAndWait(ViewerWindow& window, const QString& name)
{
    window.OpenCamera(name);
    return WaitForOpening(window);
}

#endif
