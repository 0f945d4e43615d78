#ifndef USERINPUT_H
#define USERINPUT_H

// What the tests do in a user's place: let the event loop run while they
// wait, and use the mouse.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QWidget>

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

// Runs the event loop for the whole time.
inline void RunFor(int milliseconds)
{
    RunUntil([] { return false; }, milliseconds);
}

// A press, move or release with the left button, held from the press until
// the release.
inline void SendMouse(QWidget* widget, QEvent::Type type, const QPoint& at)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held =
        type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

#endif
