#include <TarkaCPP/Mutex.h>

#include <mutex>

namespace KST {
namespace TrkAPI {

Mutex::Mutex(bool initiallyLocked) : m_Handle(new std::mutex)
{
    if (initiallyLocked) {
        Lock();
    }
}

Mutex::~Mutex()
{
    delete static_cast<std::mutex*>(m_Handle);
}

void Mutex::Lock()
{
    static_cast<std::mutex*>(m_Handle)->lock();
}

void Mutex::Unlock()
{
    static_cast<std::mutex*>(m_Handle)->unlock();
}

} // namespace TrkAPI
} // namespace KST
