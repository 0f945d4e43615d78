#ifndef QT4COMPAT_H
#define QT4COMPAT_H

// The Qt 4 calls that tabs rely on and Qt 5 keeps only as deprecated API.
// Their deprecation warnings are silenced here and nowhere else.

#include <QByteArray>
#include <QString>
#include <QtGlobal>

namespace Qt4Compat {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

inline QByteArray ToAscii(const QString& text)
{
    return text.toAscii();
}

inline QString FromAscii(const char* text, int size = -1)
{
    return QString::fromAscii(text, size);
}

inline QString FromAscii(const QByteArray& text)
{
    return QString::fromAscii(text);
}

inline QtMsgHandler InstallMsgHandler(QtMsgHandler handler)
{
    return qInstallMsgHandler(handler);
}

QT_WARNING_POP

} // namespace Qt4Compat

#endif
