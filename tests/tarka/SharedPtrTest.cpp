#include <TarkaCPP/TarkaCPP.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <stdexcept>
#include <thread>
#include <vector>

// Counts down the allocations of this test program; the one that finds the
// count at 1 fails. 0 fails none.
static int g_FailingAllocation = 0;

void* operator new(std::size_t size)
{
    if (g_FailingAllocation > 0 && --g_FailingAllocation == 0) {
        throw std::bad_alloc();
    }
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

using KST::TrkAPI::dynamic_pointer_cast;
using KST::TrkAPI::ref_count;
using KST::TrkAPI::shared_ptr;

namespace {

// Counts its own destructions.
class Tracked
{
public:
    explicit Tracked(int* destroyed) : m_Destroyed(destroyed) {}
    virtual ~Tracked() { ++*m_Destroyed; }

private:
    int* m_Destroyed;
};

class DerivedTracked : public Tracked
{
public:
    using Tracked::Tracked;
};

// Reaches the count to drive a counter into misuse.
class ExposedCount : public ref_count<Tracked>
{
public:
    using ref_count<Tracked>::ref_count;
    void ForceCount(int64_t count) { m_Count = count; }
};

TEST(SharedPtrTest, CopiesAndCastsShareOneCounterAndTheLastReleaseDestroysOnce)
{
    int destroyed = 0;
    int otherDestroyed = 0;
    {
        shared_ptr<Tracked> first(new DerivedTracked(&destroyed));
        shared_ptr<Tracked> other(new Tracked(&otherDestroyed));
        other = first;
        EXPECT_EQ(1, otherDestroyed);
        // Self-assignment takes the new reference before dropping the old one.
        other = other;
        EXPECT_EQ(2, first.use_count());
        // A null object still gets its counter; an empty pointer has none.
        EXPECT_EQ(1, shared_ptr<Tracked>(static_cast<Tracked*>(nullptr)).use_count());
        other = shared_ptr<Tracked>();
        EXPECT_EQ(1, first.use_count());

        // A cast that fails gives an empty pointer; one that succeeds shares
        // the counter and keeps the object when the original goes.
        EXPECT_FALSE(dynamic_pointer_cast<DerivedTracked>(
            shared_ptr<Tracked>(new Tracked(&otherDestroyed))));
        shared_ptr<DerivedTracked> derived = dynamic_pointer_cast<DerivedTracked>(first);
        EXPECT_EQ(2, first.use_count());
        first.reset();
        EXPECT_EQ(0, destroyed);
    }
    EXPECT_EQ(1, destroyed);
    EXPECT_EQ(2, otherDestroyed);
}

TEST(SharedPtrTest, ReleaseAtCountZeroThrowsAndLeavesTheObject)
{
    int destroyed = 0;
    ExposedCount* counter = new ExposedCount(new Tracked(&destroyed));
    counter->AddRef();
    counter->ReleaseRef();
    EXPECT_EQ(1, counter->UseCount());

    counter->ForceCount(0);
    try {
        counter->ReleaseRef();
        FAIL() << "no exception";
    } catch (const std::logic_error& error) {
        EXPECT_STREQ("shared pointer, used incorectly", error.what());
    }
    EXPECT_EQ(0, destroyed);
    // The failed release keeps the lock; the destructor releases it.
    counter->ForceCount(1);
    delete counter;
    EXPECT_EQ(1, destroyed);
}

TEST(SharedPtrTest, CopiesOnSeveralThreadsLoseNoCount)
{
    int destroyed = 0;
    {
        shared_ptr<Tracked> shared(new Tracked(&destroyed));
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&shared] {
                for (int i = 0; i < 20000; ++i) {
                    shared_ptr<Tracked> copy(shared);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(1, shared.use_count());
    }
    EXPECT_EQ(1, destroyed);
}

} // namespace

TEST(SharedPtrTest, AnObjectWhoseCounterCannotBeMadeIsDestroyedBeforeBadAllocLeaves)
{
    // The counter, with its lock inside, is the one allocation.
    int destroyed = 0;
    Tracked* object = new Tracked(&destroyed);
    g_FailingAllocation = 1;
    EXPECT_THROW(shared_ptr<Tracked> pointer(object), std::bad_alloc);
    g_FailingAllocation = 0;
    EXPECT_EQ(1, destroyed);
}
