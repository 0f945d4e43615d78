#include "GLibLog.h"

#include <glib.h>

#include <mutex>

namespace KST {
namespace TrkAPI {
namespace GenICam {

namespace {

thread_local unsigned long t_Warnings = 0;

void CountWarnings(const gchar*, GLogLevelFlags level, const gchar*, gpointer)
{
    if (level & (G_LOG_LEVEL_ERROR | G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING)) {
        ++t_Warnings;
    }
}

} // namespace

void InstallGLibLog()
{
    static std::once_flag installed;
    std::call_once(installed, [] { g_log_set_default_handler(CountWarnings, nullptr); });
}

GLibWarnings::GLibWarnings() : m_Start(t_Warnings) {}

bool GLibWarnings::Seen() const
{
    return t_Warnings != m_Start;
}

} // namespace GenICam
} // namespace TrkAPI
} // namespace KST
