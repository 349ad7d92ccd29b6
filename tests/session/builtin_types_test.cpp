// Every builtin with every combination of up to three arguments of each kind of value: the answer is a value or one of
// the dialect's errors, nothing stays open, and the document goes on working.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <vector>

#include "host/db/core/store.h"
#include "host/lisp/core/builtin.h"
#include "tests/scratch.h"
#include "tests/session/testhost.h"

namespace {

// What ends the run, waits for a person or counts to two thousand million.
const std::set<std::string> kSpared = {"exit",  "quit",   "vl-exit-with-error", "vl-exit-with-value",
                                       "while", "repeat", "startapp",           "gc"};

// One value of each kind. Behind the first kKinds stand some that more builtins take, for up to two arguments.
constexpr size_t kKinds = 15;
constexpr const char* kValues =
    "(list nil T 5 2147483647 1e308 \"x\" '(1.0 2.0 3.0) '(1 . 2) 'a-symbol car line gone set file (namedobjdict)"
    "      -1 \"LAYER\" '((0 . \"LINE\") (10 0 0 0) (11 1 1 0)) (tblobjname \"LAYER\" \"0\"))";
constexpr const char* kPrepare =
    "(progn (setq line (entmakex '((0 . \"LINE\") (10 0 0 0) (11 1 0 0)))"
    "             gone (entmakex '((0 . \"LINE\") (10 0 0 0) (11 2 0 0)))"
    "             set (ssadd line) file (open \"builtin_types.txt\" \"w\"))"
    "       (entdel gone))";
constexpr const char* kClear =
    "(progn (if (= (type file) 'FILE) (vl-catch-all-apply 'close (list file))) (setq file nil))";

// How the dialect's messages begin.
constexpr std::string_view kMessages[] = {
    "bad argument type",
    "bad argument value",
    "bad association list",
    "bad DXF group",
    "bad function",
    "bad grvecs",
    "bad SSGET",
    "bad table name",
    "divide by zero",
    "LOAD failed",
    "malformed list",
    "no function definition",
    "the object is erased",
    "too few arguments",
    "too many arguments",
    "unknown property",
    "variable setting rejected",
};

bool isKnown(const std::string& message) {
  return std::any_of(std::begin(kMessages), std::end(kMessages),
                     [&](std::string_view start) { return message.starts_with(start); });
}

class BuiltinTypes : public ::testing::Test {
 protected:
  BuiltinTypes() : before(std::filesystem::current_path()) { std::filesystem::current_path(scratch.path()); }
  ~BuiltinTypes() override { std::filesystem::current_path(before); }

  // All argument lists of so many of the values.
  template <class Each>
  static void combinations(const std::vector<lisp::LispValue>& values, size_t count, const Each& each) {
    std::vector<lisp::LispValue> arguments(count);
    std::vector<size_t> digits(count, 0);
    for (;;) {
      for (size_t i = 0; i < count; ++i) arguments[i] = values[digits[i]];
      each(arguments);
      size_t at = 0;
      while (at < count && ++digits[at] == values.size()) digits[at++] = 0;
      if (at == count) return;
    }
  }

  // Values of a document that has nothing else.
  std::vector<lisp::LispValue> freshValues(ap::Document& document) {
    host.evaluate(document, kPrepare);
    host.evaluate(document, (std::string("(setq values ") + kValues + ")").c_str());
    std::vector<lisp::LispValue> values;
    for (lisp::LispValue rest = lisp(document).variable(GC_T("VALUES")); rest.isPair(); rest = rest.tail())
      values.push_back(rest.head());
    return values;
  }
  static lisp::Interpreter& lisp(ap::Document& document) { return lisplib::lispOf(document).interpreter(); }

  void check(ap::Document& document, const lisp::Builtin& builtin) {
    lisp::Interpreter& interpreter = lisp(document);
    std::vector<lisp::LispValue> values = freshValues(document);
    const lisp::LispValue function = interpreter.variable(gc::fromUtf8(upper(builtin.name)));
    GcDbStore& store = document.database()->store();
    for (size_t count = 0; count <= 3; ++count) {
      if (count == 3) values.resize(kKinds);
      combinations(values, count, [&](const std::vector<lisp::LispValue>& arguments) {
        ++calls;
        const lisp::EvalResult result = interpreter.call(function, arguments);
        const std::string message = gc::toUtf8(result.message);
        if (result.status == lisp::EvalStatus::Error && !isKnown(message)) strange[message] = builtin.name;
        const bool ended = result.status == lisp::EvalStatus::Done || result.status == lisp::EvalStatus::Error;
        if (!ended || store.openCount() != 0) report(document, builtin, arguments, result);
        while (store.openCount() != 0) closeAll(store);
        ed::editorOf(document).commandLine().cancelAll();
      });
    }
    host.evaluate(document, kClear);
    host.takeShown();
  }

  void report(ap::Document& document, const lisp::Builtin& builtin, const std::vector<lisp::LispValue>& arguments,
              const lisp::EvalResult& result) {
    std::string call = builtin.name;
    for (const lisp::LispValue argument : arguments) call += " " + gc::toUtf8(lisp(document).print(argument));
    ADD_FAILURE() << "(" << call << ") ended with status " << static_cast<int>(result.status) << ", "
                  << document.database()->store().openCount() << " open: " << gc::toUtf8(result.message);
  }

  static void closeAll(const GcDbStore& store) {
    for (const GcDbObjectId id : store.openObjects()) ignore(id.stub()->object->close());
  }

  static std::string upper(std::string_view name) {
    std::string text(name);
    for (char& each : text) each = static_cast<char>(std::toupper(static_cast<unsigned char>(each)));
    return text;
  }

  gc::test::ScratchFolder scratch;
  std::filesystem::path before;
  TestHost host;
  std::map<std::string, std::string> strange;  // messages of no known form, and who gave them
  size_t calls = 0;
};

TEST_F(BuiltinTypes, EveryCombinationOfThreeArgumentsEndsInAValueOrAnError) {
  for (const lisp::Builtin* builtin = lisp::firstBuiltin(); builtin != nullptr; builtin = builtin->next) {
    const bool callable = builtin->kind == lisp::SubrKind::Plain || builtin->kind == lisp::SubrKind::Native;
    if (!callable || builtin->name[0] == '%' || kSpared.contains(builtin->name)) continue;
    SCOPED_TRACE(builtin->name);
    ap::Document& document = host.open();
    check(document, *builtin);
    EXPECT_EQ(host.evaluate(document, "(+ 1 (strlen \"abc\"))"), "4");
    host.manager->close(document);
  }
  EXPECT_GT(calls, 100000U);
  for (const auto& [message, name] : strange) ADD_FAILURE() << name << ": " << message;
}

}  // namespace
