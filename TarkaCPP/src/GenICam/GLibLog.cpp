#include "GLibLog.h"

#include <glib.h>

#include <mutex>

namespace KST {
namespace TrkAPI {
namespace GenICam {

namespace {

// Aravis's own messages, and those of its description parser.
const char* const AravisDomains[] = {"Aravis", "XML"};

thread_local unsigned long t_Warnings = 0;
// Calls of the backend running on this thread, nested ones included.
thread_local unsigned t_Calls = 0;

void OnAravisMessage(const gchar* domain, GLogLevelFlags level, const gchar* message, gpointer)
{
    if (t_Calls == 0) {
        g_log_default_handler(domain, level, message, nullptr);
    } else if (level & (G_LOG_LEVEL_ERROR | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING)) {
        ++t_Warnings;
    }
}

} // namespace

void InstallGLibLog()
{
    static std::once_flag installed;
    std::call_once(installed, [] {
        for (const char* domain : AravisDomains) {
            g_log_set_handler(domain,
                              static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK | G_LOG_FLAG_FATAL |
                                                          G_LOG_FLAG_RECURSION),
                              OnAravisMessage, nullptr);
        }
    });
}

GLibWarnings::GLibWarnings() : m_Start(t_Warnings)
{
    ++t_Calls;
}

GLibWarnings::~GLibWarnings()
{
    --t_Calls;
}

bool GLibWarnings::Seen() const
{
    return t_Warnings != m_Start;
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
