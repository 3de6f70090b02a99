#include <korvolib/alg/param_parts.h>

#include <functional>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <tests/support/allocation_count.h>

using namespace kvKorvoV12_9_0_320;

namespace {

struct Actor : KCParamController {
    int Told = 0;
    std::function<void()> Act;
    void OnParamChanged(size_t) noexcept override {
        ++Told;
        if (Act)
            Act();
    }
};

} // namespace

TEST(ParamGraph, HoldsAsManyPointsAsItsCapacity) {
    KCParamGraph graph;
    EXPECT_FALSE(graph.AddPoint({0.0, 0.0}));
    EXPECT_TRUE(graph.Resize(2));
    EXPECT_TRUE(graph.AddPoint({1.0, 2.0}));
    EXPECT_TRUE(graph.AddPoint({3.0, 4.0}));
    EXPECT_FALSE(graph.AddPoint({5.0, 6.0}));
    EXPECT_EQ(graph.GetPoints().size(), 2u);
    EXPECT_EQ(graph.GetPoints()[1], (KUPoint<double>{3.0, 4.0}));
}

TEST(ParamGraph, ShrinkingDropsTheLastPointsAndClearingKeepsTheCapacity) {
    KCParamGraph graph;
    graph.Resize(3);
    graph.AddPoint({1.0, 2.0});
    graph.AddPoint({3.0, 4.0});
    EXPECT_TRUE(graph.Resize(1));
    EXPECT_EQ(graph.GetPoints().size(), 1u);
    graph.Clear();
    EXPECT_EQ(graph.GetCapacity(), 1u);
    EXPECT_TRUE(graph.GetPoints().empty());
}

TEST(ParamGraph, FillingDoesNotAllocateNorDoesFillingACopy) {
    KCParamGraph graph;
    graph.Resize(100);
    KCParamGraph copy(graph), assigned;
    assigned = graph;
    const kvTest::AllocationCount count;
    for (KCParamGraph* each : {&graph, &copy, &assigned})
        while (each->AddPoint({1.0, 1.0})) {
        }
    EXPECT_EQ(count.Taken(), 0u);
    EXPECT_EQ(copy.GetPoints().size() + assigned.GetPoints().size(), 200u);
}

TEST(ParamGraph, AnImpossibleCapacityChangesNothing) {
    KCParamGraph graph;
    graph.Resize(1);
    EXPECT_FALSE(graph.Resize(std::numeric_limits<size_t>::max()));
    EXPECT_EQ(graph.GetCapacity(), 1u);
}

TEST(ParamBindings, TellEveryoneOnceInTheOrderInWhichTheyCame) {
    KCParamBindings bindings;
    Actor a, b;
    std::string order;
    a.Act = [&] { order += 'a'; };
    b.Act = [&] { order += 'b'; };
    bindings.Add(&b);
    bindings.Add(&a);
    bindings.Notify(0);
    EXPECT_EQ(order, "ba");
}

TEST(ParamBindings, OneMayLeaveWhileItIsTold) {
    KCParamBindings bindings;
    Actor a, b, c;
    for (Actor* actor : {&a, &b, &c})
        bindings.Add(actor);
    b.Act = [&] { bindings.Remove(&b); };
    bindings.Notify(0);
    EXPECT_EQ(a.Told + b.Told + c.Told, 3);
    EXPECT_FALSE(bindings.Contains(&b));
}

TEST(ParamBindings, WhoeverIsRemovedMeanwhileIsToldNoMore) {
    KCParamBindings bindings;
    Actor a, b, c;
    for (Actor* actor : {&a, &b, &c})
        bindings.Add(actor);
    a.Act = [&] { bindings.Clear(); };
    bindings.Notify(0);
    EXPECT_EQ(a.Told, 1);
    EXPECT_EQ(b.Told + c.Told, 0);
}

TEST(ParamBindings, RemovingAnEarlierOneSkipsNobody) {
    KCParamBindings bindings;
    Actor a, b, c;
    for (Actor* actor : {&a, &b, &c})
        bindings.Add(actor);
    b.Act = [&] { bindings.Remove(&a); };
    bindings.Notify(0);
    EXPECT_EQ(a.Told, 1);
    EXPECT_EQ(b.Told, 1);
    EXPECT_EQ(c.Told, 1);
}

TEST(ParamBindings, ComingAndGoingForeverEnds) {
    KCParamBindings bindings;
    Actor a, b;
    for (Actor* actor : {&a, &b})
        actor->Act = [&bindings, actor] {
            bindings.Remove(actor);
            bindings.Add(actor);
        };
    bindings.Add(&a);
    bindings.Add(&b);
    bindings.Notify(0);
    EXPECT_EQ(a.Told, 1);
    EXPECT_EQ(b.Told, 1);
}
