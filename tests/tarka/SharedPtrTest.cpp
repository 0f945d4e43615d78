#include <TarkaCPP/TarkaCPP.h>

#include <gtest/gtest.h>

#include <stdexcept>

using KST::TrkAPI::dynamic_pointer_cast;
using KST::TrkAPI::ref_count;
using KST::TrkAPI::ref_count_base;
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

TEST(SharedPtrTest, CopiesAndAssignmentsShareOneCounterAndTheLastReleaseDestroysOnce)
{
    int destroyed = 0;
    {
        shared_ptr<Tracked> first(new Tracked(&destroyed));
        EXPECT_EQ(1, first.use_count());
        {
            shared_ptr<Tracked> copy(first);
            shared_ptr<Tracked> assigned;
            assigned = copy;
            EXPECT_EQ(3, first.use_count());
            EXPECT_EQ(first.get(), assigned.get());

            // Self-assignment and assignment between holders of one object
            // take the new reference before dropping the old one.
            assigned = assigned;
            copy = first;
            EXPECT_EQ(3, first.use_count());
        }
        EXPECT_EQ(1, first.use_count());
        EXPECT_EQ(0, destroyed);

        int otherDestroyed = 0;
        shared_ptr<Tracked> other(new Tracked(&otherDestroyed));
        other = first;
        EXPECT_EQ(1, otherDestroyed);
        EXPECT_EQ(2, first.use_count());
    }
    EXPECT_EQ(1, destroyed);
}

TEST(SharedPtrTest, EmptyPointersTouchNoCounter)
{
    shared_ptr<Tracked> empty;
    shared_ptr<Tracked> copy(empty);
    shared_ptr<Tracked> fromNull(static_cast<Tracked*>(nullptr));
    EXPECT_EQ(0, copy.use_count());
    EXPECT_EQ(0, fromNull.use_count());
    EXPECT_FALSE(copy);

    int destroyed = 0;
    shared_ptr<Tracked> held(new Tracked(&destroyed));
    copy = held;
    EXPECT_EQ(2, held.use_count());
    copy = empty;
    EXPECT_EQ(1, held.use_count());
    EXPECT_EQ(0, empty.use_count());
    held.reset();
    EXPECT_EQ(1, destroyed);
}

TEST(SharedPtrTest, DynamicCastSharesTheCounterOrGivesAnEmptyPointer)
{
    int destroyed = 0;
    {
        shared_ptr<Tracked> base(new DerivedTracked(&destroyed));
        shared_ptr<DerivedTracked> derived = dynamic_pointer_cast<DerivedTracked>(base);
        ASSERT_TRUE(derived);
        EXPECT_EQ(2, base.use_count());
        EXPECT_EQ(base.get(), derived.get());

        shared_ptr<Tracked> plain(new Tracked(&destroyed));
        EXPECT_FALSE(dynamic_pointer_cast<DerivedTracked>(plain));
        EXPECT_EQ(1, plain.use_count());
        EXPECT_FALSE(dynamic_pointer_cast<DerivedTracked>(shared_ptr<Tracked>()));

        base.reset();
        EXPECT_EQ(0, destroyed);
        EXPECT_EQ(1, derived.use_count());
    }
    EXPECT_EQ(2, destroyed);
}

TEST(SharedPtrTest, ReleaseAtCountZeroThrowsAndLeavesTheObject)
{
    int destroyed = 0;
    ExposedCount* counter = new ExposedCount(new Tracked(&destroyed));
    ref_count_base* base = counter;
    base->AddRef();
    EXPECT_EQ(2, base->UseCount());
    base->ReleaseRef();
    EXPECT_EQ(1, base->UseCount());

    counter->ForceCount(0);
    try {
        base->ReleaseRef();
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

} // namespace
