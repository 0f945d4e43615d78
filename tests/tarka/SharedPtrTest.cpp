#include <TarkaCPP/TarkaCPP.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using KST::TrkAPI::dynamic_pointer_cast;
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
}

} // namespace
