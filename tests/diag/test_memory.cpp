#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "diag/CMemMan.h"
#include "platform/MessageBox.h"
#include "support/TestFolder.h"

namespace {

using Kind = MemoryManager::Kind;

int destroyed = 0;
struct Counted {
    char bytes[8] = {};
    ~Counted() { ++destroyed; }
};
template <int>
struct Base {
    virtual ~Base() = default;
    int number = 0;
};
using Left = Base<0>;
using Right = Base<1>;
struct Both : Left, Right {
    explicit Both(int given) { Left::number = given; }
    Both(const Both&) = delete;
    Both& operator=(const Both&) = delete;
    ~Both() override { ++destroyed; }
};

class Memory : public testing::Test {
  protected:
    void SetUp() override { destroyed = 0; }
    std::string Reported() {
        std::string text = support::ErrorLogWithoutStacks();
        support::ClearErrorLog();
        return text;
    }
    Counted* Make() { return new2<Counted>({"Counted", "Counted(1)", "Maker", 7}); }

    support::TestFolder folder;
    MemoryManager& manager = MemoryManager::Default();
    const std::size_t before = manager.LiveBlocks();
};

TEST_F(Memory, ObjectsAndArraysAreMadeAndFreedInSilence) {
    Both* both = new2<Both>({"Both", "Both(5)", "Maker", 1}, 5);
    EXPECT_EQ(both->Left::number, 5);
    unsigned* zeros = new2Array<unsigned>({"unsigned int", "unsigned int", "Maker", 2}, 100);
    EXPECT_EQ(zeros[0] + zeros[99], 0U);
    Counted* array = new2Array<Counted>({"Counted", "Counted", "Maker", 3}, 3);
    EXPECT_EQ(manager.LiveBlocks(), before + 3);
    delete2(static_cast<Right*>(both), "Test", 1);  // through a base that does not begin the object
    EXPECT_EQ(destroyed, 1);
    delete2Array(array, "Test", 2);
    delete2Array(zeros, "Test", 3);
    EXPECT_EQ(destroyed, 4);
    EXPECT_EQ(manager.LiveBlocks(), before);
    EXPECT_EQ(Reported(), "");
}

TEST_F(Memory, DeletesOfNothingAreReportedAndLeftAlone) {
    delete2(static_cast<Counted*>(nullptr), "Test", 10);
    EXPECT_EQ(Reported(),
              "TEST_POINTER: bad pointer tested: addr\n  -call stack:\n\n"
              "Error: delete being used on a null pointer.\n  -delete call made in Test line 10.\n  -call stack:\n\n");
    const std::string unknown =
        "Error: delete used on memory that doesn't exist.\n  -delete call made in Test line 11\n  -call stack:\n\n\n";
    Both* both = new2<Both>({"Both", "Both(5)", "Maker", 1}, 5);
    Right* base = both;
    delete2(base, "Test", 11);
    delete2(base, "Test", 11);
    const std::string again = Reported();
    EXPECT_NE(again.find(unknown), std::string::npos) << again;
    EXPECT_EQ(destroyed, 1);
    EXPECT_TRUE(manager.HasCriticalError());
}

TEST_F(Memory, TheWrongFormIsReportedAndTheBlockGoesInItsOwn) {
    const std::string head = "Error: Wrong delete operator used when freeing memory.\n";
    const std::string tail =
        "  -delete call made in Test line 5.\n  -call made on memory that was allocated in Maker line 7.\n"
        "  -call stack:\n\n";
    delete2Array(Make(), "Test", 5);
    EXPECT_EQ(Reported(), head + "  -Delete array used on memory allocated with new (non-array).\n" + tail);
    EXPECT_EQ(destroyed, 1);
    delete2(new2Array<Counted>({"Counted", "Counted", "Maker", 7}, 4), "Test", 5);
    EXPECT_EQ(Reported(), head + "  -Delete (non-array) used on memory allocated with new array.\n" + tail);
    EXPECT_EQ(destroyed, 5);
}

TEST_F(Memory, DamagedGuardsAreReportedByDeletesAndChecks) {
    const std::string block =
        "  -object: Counted(1)\n  -Allocated in Maker line 7.\n  -Call stack for allocation:\n  -Call stack for this ";
    // The guards are the allocator's own memory, so writing there is what a faulty caller would do.
    Counted* counted = Make();
    volatile char* bytes = counted->bytes;
    bytes[8] = 0;
    manager.CheckAll();
    EXPECT_EQ(Reported(), "WARNING: Damage to memory AFTER an allocation.\n" + block + "check:\n\n\n");
    bytes[-1] = 0;
    delete2(counted, "Test", 5);
    EXPECT_EQ(Reported(),
              "WARNING: Damage to memory BEFORE an allocation.\nWARNING: Damage to memory AFTER an "
              "allocation.\n" +
                  block + "delete:\n\n\n");
    EXPECT_EQ(destroyed, 1);
}

TEST_F(Memory, DeclarationsAndMissingMemoryAreReported) {
    delete2(new2<Counted>({"Counted", "Count", "Maker", 1}), "Test", 1);
    EXPECT_EQ(Reported(),
              "object declaration doesn't match type name provided to new2.\n  -type name: Counted\n"
              "  -object dec: Count\n  -call stack:\n\n");
    EXPECT_EQ(new2Array<unsigned>({"unsigned int", "unsigned int", "Maker", 1}, 0x40000000U), nullptr);
    EXPECT_EQ(Reported(), "Out of memory trying to alloc?  A call to now must have failed...\n  -call stack:\n\n");
    EXPECT_EQ(manager.LiveBlocks(), before);
}

std::vector<std::string> boxes;
platform::BoxAnswer KeepBox(const std::string& text, const std::string& caption, platform::BoxKind, bool owned) {
    boxes.push_back(caption + "|" + text + (owned ? "|owned" : ""));
    return platform::BoxAnswer::Ok;
}

struct Block {
    alignas(8) unsigned char bytes[64] = {};
    void Enter(MemoryManager& into, Kind kind, std::size_t size, const AllocationSite& site) {
        into.Register(kind, bytes + 8, bytes, size, 1, site);
    }
};

TEST_F(Memory, TheFinalReportListsLeaksNewestFirst) {
    const auto handlerBefore = platform::SetMessageBoxHandler(KeepBox);
    boxes.clear();
    Block first;
    Block second;
    { MemoryManager clean; }
    EXPECT_TRUE(boxes.empty() && Reported().empty());
    MemoryManager own;
    first.Enter(own, Kind::Object, 4, {"A", "A(1)", "Maker", 3});
    second.Enter(own, Kind::Array, 40, {"B", "B", "Other", 9});
    second.bytes[48] = 0;
    own.Finish();
    const std::string log = Reported();
    const std::string expected =
        "\nTotal memory leaks: 44 bytes in 2 allocation(s).\n\n -- List of memory leaks --\n"
        "Array of \"B\" (40 bytes total):\n  -Allocated in Other line 9.\n  -call stack of allocation:\n\n"
        "Object \"A(1)\" (4 bytes total):\n  -Allocated in Maker line 3.\n  -call stack of allocation:\n\n";
    EXPECT_EQ(log.substr(log.find("\nTotal")), expected);
    const std::vector<std::string> expectedBoxes = {
        "Critical Memory Error|Critical memory management errors occured.\nCheck _error.txt for details.\n",
        "Memory Leaks|Memory was allocated and never freed.\n44 byte(s) leaked.\n2 total unfreed allocations.\n"
        "See _error.txt for details.\n"};
    EXPECT_EQ(boxes, expectedBoxes);
    // Afterwards nothing is registered, checked or given back.
    EXPECT_EQ(own.CheckDelete(Kind::Object, first.bytes + 8, "Test", 1).kind, Kind::None);
    first.Enter(own, Kind::Object, 4, {"A", "A(1)", "Maker", 3});
    own.Finish();
    EXPECT_TRUE(own.LiveBlocks() == 0 && boxes.size() == 2 && Reported().empty());
    platform::SetMessageBoxHandler(handlerBefore);
}

}  // namespace
