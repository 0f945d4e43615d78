#ifndef TABEXTENSIONEXCEPTION_H
#define TABEXTENSIONEXCEPTION_H

#include <QString>

// Thrown by a tab's constructor when the tab can't exist; m_Code becomes the
// result that the host receives from CreateTab.
class TabExtensionException
{
public:
    // Never throws: a text that can't be copied stays null.
    TabExtensionException(const char* origin, const char* message, int code);

    QString m_Origin;
    QString m_Message;
    qint32 m_Code;
};

// The camera has no features that the tab can serve.
class TENotSupported : public TabExtensionException
{
public:
    TENotSupported(const char* origin, const char* message);
};

#endif
