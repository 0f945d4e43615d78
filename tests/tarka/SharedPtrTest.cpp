#include <TarkaCPP/TarkaCPP.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

using KST::TrkAPI::dynamic_pointer_cast;
using KST::TrkAPI::ref_count;
using KST::TrkAPI::shared_ptr;

namespace {

const int CopyingThreads = 4;
const int CopiesPerThread = 20000;

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

        // Copies on several threads lose no count.
        std::vector<std::thread> threads;
        for (int t = 0; t < CopyingThreads; ++t) {
            threads.emplace_back([&derived] {
                for (int i = 0; i < CopiesPerThread; ++i) {
                    shared_ptr<DerivedTracked> copy(derived);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(1, derived.use_count());
    }
    EXPECT_EQ(1, destroyed);
    EXPECT_EQ(2, otherDestroyed);

    // Released at count zero, a counter throws and keeps its object.
    ExposedCount* counter = new ExposedCount(new Tracked(&destroyed));
    counter->ForceCount(0);
    EXPECT_THAT([counter] { counter->ReleaseRef(); },
                testing::ThrowsMessage<std::logic_error>("shared pointer, used incorectly"));
    EXPECT_EQ(1, destroyed);
    // The failed release keeps the lock; the destructor releases it.
    delete counter;
    EXPECT_EQ(2, destroyed);
}

} // namespace
