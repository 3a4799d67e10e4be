// What a callback may do to the other callbacks, and to the objects behind them, while a
// received interaction is being delivered over a thread:// federation: removed callbacks
// and deleted controllers are never called again, callbacks added meanwhile wait for the
// next interaction. Under the sanitizer build and memcheck a call into freed memory is
// reported even where a plain build happens to survive it.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "vistrelControl.h"

namespace {

// A sending and a receiving connection on one thread:// federation of the test's own.
class Delivery : public ::testing::Test {
 protected:
  Delivery()
      : federation_("thread://" +
                    std::string(::testing::UnitTest::GetInstance()->current_test_info()->name())),
        sender_(federation_.c_str(), "sender", static_cast<DtFomMapper*>(nullptr), VC_FDD_FILE),
        receiver_(federation_.c_str(), "receiver", static_cast<DtFomMapper*>(nullptr),
                  VC_FDD_FILE) {
    DtVistrelControlRegister(&sender_);
    DtVistrelControlRegister(&receiver_);
    // Counts every interaction that reaches the receiver, whatever the callbacks under
    // test do; registered first, so it runs before them.
    DtVistrelControlInteraction::addCallback(&receiver_, &Delivery::arrived, &arrivals_);
  }
  ~Delivery() override {
    DtVistrelControlInteraction::removeCallback(&receiver_, &Delivery::arrived, &arrivals_);
  }

  // Sends one status report of `viewer`, signed by `sender`, and waits until it is
  // delivered (at most a few seconds; the federation is in this process).
  void report(const char* viewer = "viewer-1", const char* sender = "vistrel") {
    ASSERT_TRUE(sender_.connected()) << sender_.errorText();
    ASSERT_TRUE(receiver_.connected()) << receiver_.errorText();
    DtTetherVCPdu pdu;
    pdu.setStatusCommand(true);
    pdu.setViewerId(viewer);
    pdu.setSenderId(sender);
    DtVistrelControlInteraction inter;
    inter.setVcPdu(pdu);
    ASSERT_TRUE(sender_.sendInteraction(inter));
    const int before = arrivals_;
    for (int i = 0; i < 250 && arrivals_ == before; ++i) receiver_.drainInput(0.02);
    ASSERT_EQ(arrivals_, before + 1);
  }

  static void arrived(DtVistrelControlInteraction*, void* usr) { ++*static_cast<int*>(usr); }

  std::string federation_;
  DtExerciseConn sender_;
  DtExerciseConn receiver_;
  int arrivals_ = 0;
};

// ------------------------------------------------------------------ the connection's callbacks

// A step that a connection-level callback runs on each call, with the connection.
struct Step {
  std::function<void(DtExerciseConn&)> action;
  DtExerciseConn* conn = nullptr;
  int calls = 0;
  static void run(DtVistrelControlInteraction*, void* usr) {
    auto* step = static_cast<Step*>(usr);
    ++step->calls;
    if (step->action) step->action(*step->conn);
  }
};

TEST_F(Delivery, ConnectionSkipsCallbacksRemovedAndDefersThoseAddedMeanwhile) {
  Step removed, added, remover;
  removed.conn = added.conn = remover.conn = &receiver_;
  remover.action = [&](DtExerciseConn& c) {
    if (remover.calls != 1) return;
    DtVistrelControlInteraction::removeCallback(&c, &Step::run, &removed);
    DtVistrelControlInteraction::addCallback(&c, &Step::run, &added);
  };
  DtVistrelControlInteraction::addCallback(&receiver_, &Step::run, &remover);
  DtVistrelControlInteraction::addCallback(&receiver_, &Step::run, &removed);
  report();
  EXPECT_EQ(remover.calls, 1);
  EXPECT_EQ(removed.calls, 0);  // removed before its turn came
  EXPECT_EQ(added.calls, 0);    // registered after the interaction came
  report();
  EXPECT_EQ(remover.calls, 2);
  EXPECT_EQ(removed.calls, 0);
  EXPECT_EQ(added.calls, 1);
  // Removed and registered again during one delivery, it is a new registration: not
  // called by that delivery.
  remover.action = [&](DtExerciseConn& c) {
    DtVistrelControlInteraction::removeCallback(&c, &Step::run, &added);
    DtVistrelControlInteraction::addCallback(&c, &Step::run, &added);
  };
  report();
  EXPECT_EQ(added.calls, 1);
  remover.action = nullptr;
  report();
  EXPECT_EQ(added.calls, 2);
  DtVistrelControlInteraction::removeCallback(&receiver_, &Step::run, &added);
  DtVistrelControlInteraction::removeCallback(&receiver_, &Step::run, &remover);
}

TEST_F(Delivery, ConnectionKeepsTheOtherRegistrationsOfARemovedDuplicate) {
  // The same function and data registered twice: the first call removes one of them,
  // the other one is still registered and still called.
  Step twice;
  twice.conn = &receiver_;
  twice.action = [&](DtExerciseConn& c) {
    if (twice.calls == 1) DtVistrelControlInteraction::removeCallback(&c, &Step::run, &twice);
  };
  DtVistrelControlInteraction::addCallback(&receiver_, &Step::run, &twice);
  DtVistrelControlInteraction::addCallback(&receiver_, &Step::run, &twice);
  report();
  EXPECT_EQ(twice.calls, 2);
  report();
  EXPECT_EQ(twice.calls, 3);
  DtVistrelControlInteraction::removeCallback(&receiver_, &Step::run, &twice);
  report();
  EXPECT_EQ(twice.calls, 3);
}

// ------------------------------------------------------------------ controllers

// A view-mode-change callback's data: counts its calls and runs an action.
struct Watch {
  std::function<void()> action;
  std::vector<std::string> viewers;
  static void seen(const DtVistrelControlPdu& pdu, void* usr) {
    auto* watch = static_cast<Watch*>(usr);
    watch->viewers.push_back(pdu.viewerId().c_str());
    if (watch->action) watch->action();
  }
};

TEST_F(Delivery, ControllerDeletedByAnotherControllersCallbackIsNotCalled) {
  auto first = std::make_unique<DtVistrelRemoteController>(&receiver_);
  auto second = std::make_unique<DtVistrelRemoteController>(&receiver_);
  Watch firstWatch, secondWatch;
  first->addViewModeChangeCallback(&Watch::seen, &firstWatch, "0:0:0");
  second->addViewModeChangeCallback(&Watch::seen, &secondWatch, "0:0:0");
  firstWatch.action = [&] { second.reset(); };
  report("viewer-4");
  EXPECT_EQ(second, nullptr);
  EXPECT_EQ(firstWatch.viewers, std::vector<std::string>{"viewer-4"});
  EXPECT_TRUE(secondWatch.viewers.empty());
  // The connection goes on delivering to the controller that is left.
  firstWatch.action = nullptr;
  report("viewer-5");
  EXPECT_EQ(firstWatch.viewers, (std::vector<std::string>{"viewer-4", "viewer-5"}));
}

TEST_F(Delivery, ControllerDeletedByItsOwnCallbackStopsItsDelivery) {
  auto doomed = std::make_unique<DtVistrelRemoteController>(&receiver_);
  DtVistrelRemoteController survivor(&receiver_);
  Watch killer, after, other;
  doomed->addViewModeChangeCallback(&Watch::seen, &killer, "0:0:0");
  doomed->addViewModeChangeCallback(&Watch::seen, &after, "viewer-1");
  survivor.addViewModeChangeCallback(&Watch::seen, &other, "viewer-1");
  killer.action = [&] { doomed.reset(); };
  report("viewer-1");
  EXPECT_EQ(killer.viewers.size(), 1u);
  EXPECT_TRUE(after.viewers.empty());  // its record went with the controller
  EXPECT_EQ(other.viewers.size(), 1u);
}

TEST_F(Delivery, ViewModeCallbackRemovedByAnotherIsNotCalled) {
  DtVistrelRemoteController controller(&receiver_);
  // The removed callback's data is freed at once, as an application would: calling it
  // afterwards is a use after free.
  auto victim = std::make_unique<Watch>();
  Watch remover, late;
  remover.action = [&] {
    if (!victim) return;
    controller.removeViewModeChangeCallback(&Watch::seen, victim.get(), "viewer-2");
    victim.reset();
    controller.addViewModeChangeCallback(&Watch::seen, &late, "0:0:0");
  };
  controller.addViewModeChangeCallback(&Watch::seen, &remover, "0:0:0");
  controller.addViewModeChangeCallback(&Watch::seen, victim.get(), "viewer-2");
  report("viewer-2");
  EXPECT_EQ(remover.viewers.size(), 1u);
  EXPECT_TRUE(late.viewers.empty());  // added during the delivery: waits for the next
  report("viewer-3");
  EXPECT_EQ(remover.viewers.size(), 2u);
  EXPECT_EQ(late.viewers, std::vector<std::string>{"viewer-3"});
}

TEST_F(Delivery, ViewModeCallbackRemovingItselfAndItsDuplicates) {
  // All records of one triple go at once, including the ones still waiting their turn.
  DtVistrelRemoteController controller(&receiver_);
  Watch self;
  self.action = [&] { controller.removeViewModeChangeCallback(&Watch::seen, &self, "0:0:0"); };
  // More than a delivery keeps inline: the blanking reaches the overflow too.
  for (int i = 0; i < 12; ++i) controller.addViewModeChangeCallback(&Watch::seen, &self, "0:0:0");
  report();
  EXPECT_EQ(self.viewers.size(), 1u);
  report();
  EXPECT_EQ(self.viewers.size(), 1u);
}

// ------------------------------------------------------------------ the own-command filter

// Names itself through the accessor only, as a subclass may.
class RenamedController : public DtVistrelRemoteController {
 public:
  using DtVistrelRemoteController::DtVistrelRemoteController;
  const DtString& controllerId() const override { return name_; }

 private:
  DtString name_{"renamed-ctl"};
};

TEST_F(Delivery, OwnCommandFilterUsesTheOverriddenControllerId) {
  RenamedController controller(&receiver_);
  Watch watch;
  controller.addViewModeChangeCallback(&Watch::seen, &watch, "0:0:0");
  report("viewer-1", "renamed-ctl");  // what our own commands carry: an echo
  EXPECT_TRUE(watch.viewers.empty());
  report("viewer-2", "");  // the member itself is still empty
  EXPECT_EQ(watch.viewers, std::vector<std::string>{"viewer-2"});
  controller.setIgnoreCommandsSentFromUs(false);
  report("viewer-3", "renamed-ctl");
  EXPECT_EQ(watch.viewers, (std::vector<std::string>{"viewer-2", "viewer-3"}));
}

}  // namespace
