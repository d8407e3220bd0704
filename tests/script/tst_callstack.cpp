#include <QTest>

#include "script/CallStack.h"
#include "support/ScratchMain.h"

using namespace kelmora;
using namespace kelmora::script;

using Caller = CallStack::Caller;

class TestCallStack : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void finishedListsDoNotPileUp();
  void whatHasMoreToDoStays();
  void aListWaitsForTheOneItsLastLineCalled();
  void onlyLinesOfListsMakeACircle();
  void aCircleIsLeftToWhatStoodAroundIt();
  void knowsWhetherItHoldsAList();
};

namespace {

void finish(CallStack& stack) {
  auto& list = std::get<CallStack::List>(stack.innermost());
  list.next = list.actions.size();
}

const QStringList& actionsOf(CallStack& stack) {
  return std::get<CallStack::List>(stack.innermost()).actions;
}

}  // namespace

void TestCallStack::finishedListsDoNotPileUp() {
  CallStack stack;
  stack.push(QStringList{"a"});
  for (int round = 0; round < 100; ++round) {
    finish(stack);
    stack.call("a", {"/cond a"}, Caller::Other);
    // The outermost list stays, although all of its actions have begun.
    QCOMPARE(stack.size(), 2);
  }
  stack.pop();
  QCOMPARE(actionsOf(stack), QStringList{"a"});
}

void TestCallStack::whatHasMoreToDoStays() {
  CallStack stack;
  stack.push(QStringList{"a"});
  stack.call("a", {"/cond a", "x"}, Caller::Other);
  stack.call("a", {"/cond a", "x"}, Caller::Other);
  QCOMPARE(stack.size(), 3);
  stack.push(Repeat{"a", 2});
  stack.call("a", {"/cond a", "x"}, Caller::Other);
  QCOMPARE(stack.size(), 5);
}

void TestCallStack::aListWaitsForTheOneItsLastLineCalled() {
  CallStack stack;
  stack.push(QStringList{"a"});
  stack.call("a", {"b"}, Caller::List);
  finish(stack);
  stack.call("b", {"a"}, Caller::List);
  QCOMPARE(stack.size(), 3);
  QVERIFY(stack.isCircle("a", Caller::List));
}

void TestCallStack::onlyLinesOfListsMakeACircle() {
  CallStack stack;
  stack.push(QStringList{"a"});
  QVERIFY(!stack.isCircle("a", Caller::List));
  stack.call("a", {"/cond b", "x"}, Caller::List);
  QVERIFY(stack.isCircle("a", Caller::List));
  QVERIFY(!stack.isCircle("a", Caller::Other));
  QVERIFY(!stack.isCircle("b", Caller::List));
  stack.call("b", {"a", "x"}, Caller::Other);
  QVERIFY(stack.isCircle("b", Caller::List));
  QVERIFY(!stack.isCircle("a", Caller::List));
  stack.call("a", {"b"}, Caller::List);
  QVERIFY(stack.isCircle("a", Caller::List));
  QVERIFY(stack.isCircle("b", Caller::List));
  // Once the inner list of "a" has ended, calling "a" is no circle. Its outer list
  // counts again as soon as it is the innermost one.
  stack.pop();
  QVERIFY(!stack.isCircle("a", Caller::List));
  stack.pop();
  QVERIFY(stack.isCircle("a", Caller::List));
  QVERIFY(!stack.isCircle("b", Caller::List));
  stack.pop();
  QVERIFY(!stack.isCircle("a", Caller::List));
}

void TestCallStack::aCircleIsLeftToWhatStoodAroundIt() {
  CallStack stack;
  stack.push(QStringList{"go"});
  stack.call("go", {"a", "z"}, Caller::List);
  stack.call("a", {"b"}, Caller::List);
  stack.call("b", {"c"}, Caller::List);
  stack.call("c", {"b"}, Caller::List);
  stack.leave("b");
  QCOMPARE(actionsOf(stack), QStringList{"b"});
  QVERIFY(stack.isCircle("a", Caller::List));
  QVERIFY(!stack.isCircle("b", Caller::List));
  QVERIFY(!stack.isCircle("c", Caller::List));
  stack.leave("a");
  QCOMPARE(actionsOf(stack), (QStringList{"a", "z"}));
}

void TestCallStack::knowsWhetherItHoldsAList() {
  CallStack stack;
  QVERIFY(stack.isEmpty());
  QVERIFY(!stack.holdsList());
  stack.push(Once{"x"});
  stack.push(Repeat{"x", 2});
  stack.push(CallStack::ConditionLoop{"x", 2});
  QVERIFY(!stack.holdsList());
  stack.call("a", {"x"}, Caller::Other);
  QVERIFY(stack.holdsList());
  stack.pop();
  QVERIFY(!stack.holdsList());
  QVERIFY(!stack.isEmpty());
}

KELMORA_TEST_MAIN(TestCallStack)
#include "tst_callstack.moc"
