#include "host/lisp/core/heap.h"

#include <gtest/gtest.h>

#include "tests/lisp/core/transcript.h"

namespace lisp::testing {

namespace {

class HeapTest : public ::testing::Test {
 protected:
  EvalResult run(const char* text) { return interpreter.evalFormsFrom(fromUtf8(text), GC_T("test")); }

  RecordingHost host;
  Environment environment;
  Interpreter interpreter{host, environment};
  Vm& vm = interpreter.vm();
};

TEST_F(HeapTest, GarbageIsReused) {
  // Two hundred times a million cells and strings would be gigabytes.
  run("(defun churn () (repeat 200 (setq l nil) (repeat 20000 (setq l (cons (strcat \"a\" \"b\") l)))))");
  ASSERT_EQ(run("(churn)").status, EvalStatus::Done);
  EXPECT_GE(vm.heap().statistics().collections, 3u);
  EXPECT_LT(vm.heap().statistics().bytes, 64u << 20);
}

TEST_F(HeapTest, WhatIsReachableSurvivesEveryPhase) {
  // A structure that is rebuilt in part while collections run; its sum shows whether anything was lost.
  run("(setq table nil i 0)"
      "(while (< i 2000) (setq table (cons (list i (itoa i) (* 1.5 i)) table) i (1+ i)))"
      "(defun sum () (apply '+ (mapcar '(lambda (e) (+ (car e) (atoi (cadr e)) (caddr e))) table)))"
      "(setq before (sum))"
      "(repeat 1200 (setq table (mapcar '(lambda (e) (if (= 0 (rem (car e) 3)) (list (car e) (itoa (car e)) (* 1.5 "
      "(car e))) e)) table)))");
  const EvalResult result = run("(list before (sum))");
  ASSERT_TRUE(result.value.isPair());
  EXPECT_EQ(result.value.head().asDouble(), 1999.0 * 2000 / 2 * 3.5);
  EXPECT_EQ(result.value.tail().head().asDouble(), result.value.head().asDouble());
  EXPECT_GE(vm.heap().statistics().collections, 2u);
}

TEST(GreyStackTest, KeepsOrderOverManyChunks) {
  GreyStack stack;
  constexpr int32_t kMany = 100'000;
  // Three steps up, two down, and down again: chunks come, go and come back.
  int32_t next = 0, height = 0;
  std::vector<int32_t> model;
  while (height < kMany) {
    for (int i = 0; i < 3000; ++i, ++next, ++height) {
      stack.push(LispValue::integer(next));
      model.push_back(next);
    }
    for (int i = 0; i < 2000; ++i, --height) {
      ASSERT_EQ(stack.pop().asInteger(), model.back());
      model.pop_back();
    }
  }
  while (!stack.empty()) {
    ASSERT_EQ(stack.pop().asInteger(), model.back());
    model.pop_back();
  }
  EXPECT_TRUE(model.empty());
  stack.push(LispValue::t());
  EXPECT_TRUE(stack.pop() == LispValue::t());
}

TEST_F(HeapTest, StructuresDeepInTheirHeadsAreMarkedWhole) {
  run("(setq deep nil) (repeat 300000 (setq deep (list deep 1)))");
  vm.heap().collect();
  const EvalResult result = run("(setq n 0 at deep) (while at (setq n (+ n (cadr at)) at (car at))) n");
  ASSERT_EQ(result.status, EvalStatus::Done);
  EXPECT_EQ(result.value.asInteger(), 300000);
}

TEST_F(HeapTest, RootsHoldAndReleaseValues) {
  static int released = 0;
  static const OpaqueType kCounted = {"COUNTED", [](uint64_t, Text&) {}, [](uint64_t) { ++released; }};
  released = 0;
  {
    Root kept(vm, interpreter.opaque(kCounted, 1));
    vm.heap().collect();
    EXPECT_EQ(released, 0);
  }
  vm.heap().collect();
  EXPECT_EQ(released, 1);
}

TEST_F(HeapTest, SelectionSetsTellTheirHostWhenTheyEnd) {
  struct CountingHost : RecordingHost {
    void releaseSelectionSet(uint64_t handle) override { released.push_back(handle); }
    std::vector<uint64_t> released;
  } counting;
  {
    Interpreter second(counting, environment);
    second.setVariable(GC_T("ss"), second.selectionSet(7));
    second.selectionSet(8);
    second.vm().heap().collect();
    EXPECT_EQ(counting.released, std::vector<uint64_t>{8});
  }
  EXPECT_EQ(counting.released, (std::vector<uint64_t>{8, 7}));
}

TEST_F(HeapTest, DeadLambdasLeaveTheCompilerCache) {
  run("(defun churn () (repeat 300000 (mapcar (list 'lambda '(x) '(1+ x)) '(1))))");
  ASSERT_EQ(run("(churn)").status, EvalStatus::Done);
  EXPECT_LT(vm.heap().statistics().bytes, 256u << 20);
}

TEST_F(HeapTest, TheMemoryLimitIsAnError) {
  vm.heap().setMemoryLimit(64u << 20);
  const EvalResult endless = run("(setq l nil) (while T (setq l (cons 1 l)))");
  EXPECT_EQ(endless.status, EvalStatus::MemoryLimit);
  EXPECT_EQ(toUtf8(endless.message), "memory limit reached");
  EXPECT_EQ(run("(setq l nil) (gc) (+ 1 2)").value, LispValue::integer(3));
  const EvalResult text = run("(setq s \"x\") (while T (setq s (strcat s s)))");
  EXPECT_EQ(text.status, EvalStatus::MemoryLimit);
  EXPECT_EQ(run("(setq s nil) (strlen (vl-catch-all-error-message (vl-catch-all-apply '(lambda () (setq s \"x\") "
                "(while T (setq s (strcat s s)))) nil)))")
                .value,
            LispValue::integer(20));
}

TEST_F(HeapTest, DeepAndLongDataAreMarkedWithoutRecursion) {
  run("(setq deep nil) (repeat 1000000 (setq deep (list deep)))"
      "(setq long nil) (repeat 1000000 (setq long (cons '(1) long)))"
      "(setq comb nil) (repeat 1000000 (setq comb (cons comb 1)))");
  vm.heap().collect();
  const EvalResult result =
      run("(list (equal deep (list (car deep))) (length long) (strlen (vl-prin1-to-string comb)))");
  EXPECT_EQ(toUtf8(interpreter.print(result.value)), "(T 1000000 6000003)");
}

}  // namespace

}  // namespace lisp::testing
