#ifndef DEBUGLINE_H
#define DEBUGLINE_H

#include <QString>
#include <QTextStream>

// A debug-level log line spaced the way tabs write their lines: every item
// is followed by one blank, the last one too, and a QString item stands in
// double quotation marks. Qt 5's QDebug drops the last blank, so the line is
// composed here and handed to Qt's message output as it stands when the
// object goes out of scope.
class DebugLine
{
public:
    DebugLine();
    ~DebugLine();

    DebugLine(const DebugLine&) = delete;
    DebugLine& operator=(const DebugLine&) = delete;

    DebugLine& operator<<(const char* text);
    DebugLine& operator<<(const QString& text);
    DebugLine& operator<<(int value);
    DebugLine& operator<<(long long value);
    DebugLine& operator<<(double value);

private:
    QString m_Text;
    QTextStream m_Stream;
};

#endif
