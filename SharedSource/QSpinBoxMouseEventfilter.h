#ifndef QSPINBOXMOUSEEVENTFILTER_H
#define QSPINBOXMOUSEEVENTFILTER_H

#include <QObject>

// Tells whether a mouse button is held down on the spin box it is installed
// on, which the spin box itself can't say. It only watches: every event goes
// on to the spin box as usual.
class QSpinBoxMouseEventFilter : public QObject
{
    Q_OBJECT

public:
    QSpinBoxMouseEventFilter();
    ~QSpinBoxMouseEventFilter() override;

    bool IsMousePressed() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void mouseReleased();

private:
    bool m_MousePressed = false;
};

#endif // QSPINBOXMOUSEEVENTFILTER_H
