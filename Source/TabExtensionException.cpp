#include "TabExtensionException.h"

#include "Qt4Compat.h"

namespace {

// Building an exception must never throw itself, so a text that can't be
// copied is left out.
void AssignAscii(QString& target, const char* text) noexcept
{
    if (text == nullptr) {
        return;
    }
    try {
        target = Qt4Compat::FromAscii(text);
    } catch (...) {
    }
}

} // namespace

TabExtensionException::TabExtensionException(const char* origin, const char* message, int code)
    : m_Origin(), m_Message(), m_Code(code)
{
    AssignAscii(m_Origin, origin);
    AssignAscii(m_Message, message);
}

TENotSupported::TENotSupported(const char* origin, const char* message)
    : TabExtensionException(origin, message, 4)
{}
