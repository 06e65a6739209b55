// Tests of the reference count and the owning pointer.
#include "FEL_pointer.h"

#include <gtest/gtest.h>

namespace {

// Counts its live instances and may own a child, so that tests see destruction.
class Probe : public FEL_mutex_reference_counted_object {
  public:
    explicit Probe(int* live, const std::string& name = "probe")
        : FEL_mutex_reference_counted_object(name), live(live) {
        ++*live;
    }
    ~Probe() override { --*live; }
    FEL_pointer<Probe> child;

  private:
    int* live;
};

// The parent holds the only reference to the child; moving the pointer from parent to child
// releases the parent, which releases the child: the child survives only if it was taken first.
TEST(FEL_pointer, TakesTheNewReferenceBeforeReleasingTheOld) {
    int live = 0;
    FEL_pointer<Probe> p(new Probe(&live, "parent"));
    p->child = new Probe(&live, "child");
    EXPECT_EQ(live, 2);
    p = p->child;
    EXPECT_EQ(live, 1);
    EXPECT_EQ(p->get_name(), "child");
    EXPECT_EQ(p->get_reference_count(), 1);
}

}  // namespace
