#include "DebugLine.h"

#include <QtGlobal>

DebugLine::DebugLine() : m_Stream(&m_Text) {}

DebugLine::~DebugLine()
{
    m_Stream.flush();
    qt_message_output(QtDebugMsg, QMessageLogContext(), m_Text);
}

DebugLine& DebugLine::operator<<(const char* text)
{
    m_Stream << text << ' ';
    return *this;
}

DebugLine& DebugLine::operator<<(const QString& text)
{
    m_Stream << '"' << text << '"' << ' ';
    return *this;
}

DebugLine& DebugLine::operator<<(int value)
{
    m_Stream << value << ' ';
    return *this;
}

DebugLine& DebugLine::operator<<(long long value)
{
    m_Stream << value << ' ';
    return *this;
}

DebugLine& DebugLine::operator<<(double value)
{
    m_Stream << value << ' ';
    return *this;
}
