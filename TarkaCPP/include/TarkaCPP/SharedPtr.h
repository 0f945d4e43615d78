#ifndef TARKACPP_SHAREDPTR_H
#define TARKACPP_SHAREDPTR_H

#include <TarkaCPP/Mutex.h>

#include <new>
#include <stdexcept>
#include <stdint.h>

namespace KST {
namespace TrkAPI {

// Interface of a reference counter shared by the copies of one shared_ptr.
class ref_count_base
{
public:
    virtual void AddRef() = 0;
    virtual void ReleaseRef() = 0;
    virtual int64_t UseCount() = 0;

protected:
    // Counters delete themselves; never through this interface.
    ~ref_count_base() {}
};

// Counter that owns one object and destroys it, under its lock, with the
// last reference.
template <class T>
class ref_count : public virtual ref_count_base
{
public:
    explicit ref_count(T* object) : m_Object(object), m_Count(1), m_Mutex(false) {}

    ref_count(const ref_count&) = delete;
    ref_count& operator=(const ref_count&) = delete;

    virtual ~ref_count()
    {
        if (m_Object != nullptr) {
            delete m_Object;
        }
        m_Mutex.Unlock();
    }

    void AddRef() override
    {
        m_Mutex.Lock();
        ++m_Count;
        m_Mutex.Unlock();
    }

    void ReleaseRef() override
    {
        m_Mutex.Lock();
        if (m_Count == 0) {
            // Released more often than taken; the lock stays held.
            throw std::logic_error("shared pointer, used incorectly");
        }
        if (m_Count > 1) {
            --m_Count;
            m_Mutex.Unlock();
            return;
        }
        delete this;
    }

    int64_t UseCount() override { return m_Count; }

protected:
    T* m_Object;
    int64_t m_Count;
    Mutex m_Mutex;
};

// Reference-counted pointer through which the library hands out features and
// takes observers. Copies share one counter; the object goes with the last.
template <class T>
class shared_ptr
{
public:
    shared_ptr() : m_RefCount(nullptr), m_Object(nullptr) {}

    // Also a null object gets a counter. If the counter can't be made, the
    // object is destroyed and std::bad_alloc leaves.
    explicit shared_ptr(T* object) : m_RefCount(nullptr), m_Object(nullptr)
    {
        try {
            m_RefCount = new ref_count<T>(object);
        } catch (...) {
            delete object;
            throw std::bad_alloc();
        }
        m_Object = object;
    }

    shared_ptr(const shared_ptr& other) : m_RefCount(other.m_RefCount), m_Object(other.m_Object)
    {
        if (m_RefCount != nullptr) {
            m_RefCount->AddRef();
        }
    }

    // A release may throw "shared pointer, used incorectly" on misuse.
    virtual ~shared_ptr() noexcept(false)
    {
        if (m_RefCount != nullptr) {
            m_RefCount->ReleaseRef();
        }
    }

    shared_ptr& operator=(const shared_ptr& other)
    {
        ref_count_base* oldCount = m_RefCount;
        if (other.m_RefCount != nullptr) {
            other.m_RefCount->AddRef();
        }
        m_RefCount = other.m_RefCount;
        m_Object = other.m_Object;
        if (oldCount != nullptr) {
            oldCount->ReleaseRef();
        }
        return *this;
    }

    void reset() { *this = shared_ptr(); }

    T* get() const { return m_Object; }
    T* operator->() const { return m_Object; }
    T& operator*() const { return *m_Object; }
    explicit operator bool() const { return m_Object != nullptr; }

    // Number of holders of the object; 0 for an empty pointer. Read without the lock.
    int64_t use_count() const { return m_RefCount != nullptr ? m_RefCount->UseCount() : 0; }

    bool operator==(const shared_ptr& other) const { return m_Object == other.m_Object; }
    bool operator!=(const shared_ptr& other) const { return m_Object != other.m_Object; }

private:
    template <class U>
    friend class shared_ptr;
    template <class To, class From>
    friend shared_ptr<To> dynamic_pointer_cast(const shared_ptr<From>& from);

    ref_count_base* m_RefCount;
    T* m_Object;
};

// Casts the object dynamically; on success the result shares the counter.
template <class To, class From>
shared_ptr<To> dynamic_pointer_cast(const shared_ptr<From>& from)
{
    shared_ptr<To> result;
    To* object = dynamic_cast<To*>(from.m_Object);
    if (object != nullptr && from.m_RefCount != nullptr) {
        from.m_RefCount->AddRef();
        result.m_RefCount = from.m_RefCount;
        result.m_Object = object;
    }
    return result;
}

} // namespace TrkAPI
} // namespace KST

#endif
