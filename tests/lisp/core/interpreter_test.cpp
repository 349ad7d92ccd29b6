#include "host/lisp/core/interpreter.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "host/lisp/core/watchdog.h"
#include "tests/lisp/core/transcript.h"

namespace lisp::testing {

namespace {

// Code 1 adds numbers, 2 calls back, 3 makes a list, 4 interrupts, 5 names the running function.
class CallingHost : public RecordingHost {
 public:
  LispValue callExternal(int code, Args& args) override {
    switch (code) {
      case 1: {
        double sum = 0;
        while (args.more()) sum += args.real();
        return LispValue::real(sum);
      }
      case 2: {
        const LispValue argument = args[1];
        const EvalResult result = interpreter->call(args[0], {&argument, 1});
        return result.status == EvalStatus::Done ? result.value : args.newString(TextView(result.message));
      }
      case 3: {
        const double xyz[] = {1, 2, 3};
        return args.cons(interpreter->entityName(0x7FF6'1234'5678'9ABC), args.newPoint(xyz, 3));
      }
      case 4: interpreter->interrupt(); return LispValue::nil();
      default: return args.newString(args.vm().currentFunctionName());
    }
  }
  Interpreter* interpreter = nullptr;
};

class InterpreterTest : public ::testing::Test {
 protected:
  InterpreterTest() {
    host.interpreter = &interpreter;
    for (int code = 1; code <= 5; ++code) {
      Text name(GC_T("ext"));
      appendInteger(name, code);
      interpreter.define(name, code);
    }
  }
  EvalResult run(const char* text) { return interpreter.evalFormsFrom(fromUtf8(text), GC_T("test.lsp")); }
  std::string value(const char* text) {
    const EvalResult result = run(text);
    return result.status == EvalStatus::Done ? toUtf8(interpreter.print(result.value)) : "! " + toUtf8(result.message);
  }

  CallingHost host;
  Environment environment;
  Interpreter interpreter{host, environment};
};

TEST_F(InterpreterTest, ExternalFunctions) {
  EXPECT_EQ(value("(ext1 1 2.5 3)"), "6.5");
  EXPECT_EQ(value("(ext1 1 \"x\")"), "! bad argument type: numberp: \"x\"");
  EXPECT_EQ(value("(type ext1)"), "EXRXSUBR");
  EXPECT_EQ(value("(mapcar 'ext1 '(1 2) '(10 20))"), "(11.0 22.0)");
  EXPECT_EQ(value("(apply 'ext1 '(1 2 3))"), "6.0");
  EXPECT_EQ(value("(ext3)"), "(<Entity name: 7ff6123456789abc> 1.0 2.0 3.0)");
  EXPECT_EQ(value("(list (type (car (ext3))) (equal (ext3) (ext3)) (eq (car (ext3)) (car (ext3))))"), "(ENAME T T)");
  EXPECT_EQ(value("(defun who () (ext5)) (who)"), "\"WHO\"");
  interpreter.undefine(GC_T("ext1"));
  EXPECT_EQ(value("(ext1)"), "! no function definition: EXT1");
}

TEST_F(InterpreterTest, CallbacksFromTheHost) {
  EXPECT_EQ(value("(defun twice (x) (* 2 x)) (ext2 'twice 4)"), "8");
  EXPECT_EQ(value("(ext2 '(lambda (x) (car x)) 5)"), "\"bad argument type: listp 5\"");
  EXPECT_EQ(value("(setq x 1) (defun f (x) (ext2 '(lambda (y) (setq x 9) (car y)) 5) x) (list (f 2) x)"), "(9 1)");
  // The C++ stack is guarded: endless mutual recursion through the host is an error.
  EXPECT_NE(value("(defun loop (n) (ext2 'loop n)) (loop 1)").find("stack limit reached"), std::string::npos);
  interpreter.vm().setStress(true);
  EXPECT_EQ(value("(ext2 '(lambda (x) (list x (strcat \"a\" \"b\") (ext3))) '(1))"),
            "((1) \"ab\" (<Entity name: 7ff6123456789abc> 1.0 2.0 3.0))");
}

TEST_F(InterpreterTest, ErrorsComeWithABackTrace) {
  const EvalResult result =
      run("(defun inner (x)\n  (list 1)\n  (car x))\n(defun outer ()\n  (mapcar 'inner '(5)))\n\n(outer)");
  ASSERT_EQ(result.status, EvalStatus::Error);
  ASSERT_EQ(result.trace.size(), 4u);
  EXPECT_EQ(toUtf8(result.trace[0].function), "INNER");
  EXPECT_EQ(toUtf8(result.trace[0].file), "test.lsp");
  EXPECT_EQ(result.trace[0].line, 3u);
  EXPECT_EQ(result.trace[0].column, 3u);
  EXPECT_EQ(toUtf8(result.trace[1].function), "MAPCAR");
  EXPECT_EQ(toUtf8(result.trace[2].function), "OUTER");
  EXPECT_EQ(result.trace[2].line, 5u);
  EXPECT_EQ(result.trace[3].line, 7u);
  EXPECT_TRUE(host.printed.ends_with("; error: bad argument type: listp 5\n")) << host.printed;
}

TEST_F(InterpreterTest, ReadErrorsTellWhere) {
  const EvalResult result = run("(setq a 1)\n(setq b\n");
  EXPECT_EQ(result.status, EvalStatus::Error);
  ASSERT_EQ(result.trace.size(), 1u);
  EXPECT_EQ(result.trace[0].line, 2u);
  EXPECT_EQ(value("a"), "1");
}

TEST_F(InterpreterTest, ExitCarriesACode) {
  const EvalResult result = run("(defun f () (exit 3)) (f) (princ \"never\")");
  EXPECT_EQ(result.status, EvalStatus::Exit);
  EXPECT_EQ(result.exitCode, 3);
  EXPECT_EQ(host.printed, "");
}

TEST_F(InterpreterTest, FormsAreObserved) {
  struct Observer : FormObserver {
    bool formDone(LispValue v) override {
      values.push_back(v);
      return values.size() < 2;
    }
    std::vector<LispValue> values;
  } observer;
  interpreter.evalFormsFrom(GC_T("(setq a 1) (setq a 2) (setq a 3)"), GC_T("x"), &observer);
  EXPECT_EQ(observer.values, (std::vector<LispValue>{LispValue::integer(1), LispValue::integer(2)}));
  EXPECT_EQ(value("a"), "2");
}

TEST_F(InterpreterTest, InterruptsAreCancellations) {
  const EvalResult result = run("(ext4) (princ \"on\") (while T)");
  EXPECT_EQ(result.status, EvalStatus::Cancelled);
  EXPECT_EQ(toUtf8(result.message), "Function cancelled");
  EXPECT_EQ(value("(vl-catch-all-error-message (vl-catch-all-apply '(lambda () (ext4) (while T)) nil))"),
            "\"Function cancelled\"");
}

TEST_F(InterpreterTest, TheTimeLimitCannotBeCaughtButIsTold) {
  EvalResult result;
  {
    Watchdog watchdog(interpreter, 0.05);
    result = run("(defun *error* (m) (princ \"handled\")) (while T (vl-catch-all-apply '(lambda () (while T)) nil))");
  }
  EXPECT_EQ(result.status, EvalStatus::TimeLimit);
  EXPECT_EQ(host.printed, "handled") << "*error* is called, once";
  EXPECT_EQ(value("(+ 1 2)"), "3") << "the limit is over with the watchdog";
  {
    Watchdog watchdog(interpreter, 100);
    EXPECT_EQ(value("(+ 1 2)"), "3");
  }
}

TEST_F(InterpreterTest, InterpretersShareTheBlackboardOnly) {
  const auto shared = std::make_shared<SharedSpace>();
  InterpreterOptions options;
  options.shared = shared;
  Interpreter a(host, environment, options), b(host, environment, options);
  a.evalFormsFrom(GC_T("(setq x 1) (vl-bb-set 'y '(2 (3 . \"z\")))"), GC_T("a"));
  const EvalResult result = b.evalFormsFrom(GC_T("(list x (vl-bb-ref 'y))"), GC_T("b"));
  EXPECT_EQ(toUtf8(b.print(result.value)), "(nil (2 (3 . \"z\")))");
  a.evalFormsFrom(GC_T("(vl-propagate 'x)"), GC_T("a"));
  EXPECT_EQ(b.variable(GC_T("x")), LispValue::integer(1));
}

TEST_F(InterpreterTest, TypedInput) {
  host.typed = {"first line", "ab", ""};
  EXPECT_EQ(value("(list (read-line) (read-char) (read-char) (read-char) (read-char))"),
            "(\"first line\" 97 98 10 10)");
}

TEST_F(InterpreterTest, OutputComesBeforeWhatTheHostPrints) {
  struct PrintingHost : RecordingHost {
    LispValue callExternal(int, Args&) override {
      printed += "<host>";
      return LispValue::nil();
    }
  } printing;
  Interpreter second(printing, environment);
  second.define(GC_T("say"), 1);
  second.evalFormsFrom(GC_T("(progn (princ \"a\") (say) (princ \"b\"))"), GC_T("x"));
  EXPECT_EQ(printing.printed, "a<host>b");
}

TEST_F(InterpreterTest, NestedFormsOfAnyDepthEvaluate) {
  const size_t depth = 100'000;
  Text text;
  for (size_t i = 0; i < depth; ++i) text.append(GC_T("(1+ "));
  text.push_back(GC_T('0'));
  text.append(depth, GC_T(')'));
  EXPECT_EQ(interpreter.evalFormsFrom(text, GC_T("deep")).value, LispValue::integer(static_cast<int32_t>(depth)));
  Text tests;
  for (size_t i = 0; i < 2000; ++i) tests.append(GC_T("(if (and T "));
  tests.append(GC_T("1"));
  for (size_t i = 0; i < 2000; ++i) tests.append(GC_T(") 1 2)"));
  EXPECT_EQ(interpreter.evalFormsFrom(tests, GC_T("deep")).value, LispValue::integer(1));
}

TEST_F(InterpreterTest, RecursionOverLongLists) {
  EXPECT_EQ(value("(defun rev (l) (if l (append (rev (cdr l)) nil) nil))"
                  "(defun len (l) (if l (1+ (len (cdr l))) 0))"
                  "(setq l nil) (repeat 100000 (setq l (cons 1 l))) (len l)"),
            "100000");
  EXPECT_EQ(value("(defun count (n) (if (= n 0) 0 (1+ (count (1- n))))) (count 150000)"), "150000");
  EXPECT_EQ(value("(defun walk (n) (if (= n 0) 0 (1+ (apply '+ (mapcar 'walk (list (1- n))))))) (walk 100000)"),
            "100000");
}

TEST_F(InterpreterTest, TheDepthIsAChoice) {
  InterpreterOptions options;
  options.limits.depth = 1000;
  Interpreter small(host, environment, options);
  EXPECT_EQ(small.evalFormsFrom(GC_T("(defun c (n) (if (= n 0) 0 (1+ (c (1- n))))) (c 900)"), GC_T("x")).status,
            EvalStatus::Done);
  const EvalResult result =
      small.evalFormsFrom(GC_T("(setq handled nil) (defun *error* (m) (setq handled m)) (c 1100)"), GC_T("x"));
  EXPECT_EQ(toUtf8(result.message), "stack limit reached");
  EXPECT_TRUE(small.variable(GC_T("handled")).isString()) << "the handler still has room to run";
}

}  // namespace

}  // namespace lisp::testing
