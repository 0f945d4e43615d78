#ifndef OPENANDWAIT_H
#define OPENANDWAIT_H

#include "ViewerWindow.h"

#include <QCoreApplication>
#include <QElapsedTimer>

// Runs the event loop until done() or the time limit; returns done().
template <class Done>
bool RunUntil(Done done, int limitMs = 30000)
{
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < limitMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return done();
}

// Runs the event loop until the window tells of the camera's opening, which
// happens on a thread of its own; false if it didn't open in time.
inline bool WaitForOpening(ViewerWindow& window)
{
    int outcome = -1;
    QMetaObject::Connection connection = QObject::connect(
        &window, &ViewerWindow::cameraOpened, [&outcome](bool opened) { outcome = opened; });
    RunUntil([&outcome] { return outcome >= 0; });
    QObject::disconnect(connection);
    return outcome == 1;
}

// Tries up to attempts times, as a user would choose a device again that a
// busy network let discovery miss.
inline bool OpenAndWait(ViewerWindow& window, const QString& name, int attempts = 1)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        window.OpenCamera(name);
        if (WaitForOpening(window)) {
            return true;
        }
    }
    return false;
}

#endif
