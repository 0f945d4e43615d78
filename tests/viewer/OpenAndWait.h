#ifndef OPENANDWAIT_H
#define OPENANDWAIT_H

#include "UserInput.h"
#include "ViewerWindow.h"

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
