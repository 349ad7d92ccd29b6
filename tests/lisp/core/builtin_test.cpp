#include "host/lisp/core/builtin.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "tests/lisp/core/transcript.h"

namespace lisp::testing {

namespace {

Builtin::Counts countsOf(const char* signature) { return Builtin{"x", signature, "", ""}.counts(); }

TEST(Builtins, SignaturesTellArgumentCounts) {
  const auto expect = [](const char* signature, uint32_t min, uint32_t max) {
    EXPECT_EQ(countsOf(signature).min, min) << signature;
    EXPECT_EQ(countsOf(signature).max, max) << signature;
  };
  expect("(gc) -> nil", 0, 0);
  expect("(car list) -> x", 1, 1);
  expect("(princ [x [file]]) -> x", 0, 2);
  expect("(mapcar function list...) -> list", 2, UINT32_MAX);
  expect("(+ [number]...) -> number", 0, UINT32_MAX);
  expect("(equal x y [fuzz]) -> T | nil", 2, 3);
  expect("(vl-string-mismatch string1 string2 [position1 [position2 [ignore-case]]]) -> integer", 2, 5);
}

TEST(Builtins, EveryRowIsComplete) {
  std::set<std::string> names;
  for (const Builtin* row = firstBuiltin(); row; row = row->next) {
    const std::string name = row->name;
    EXPECT_TRUE(names.insert(name).second) << name << " is there twice";
    EXPECT_TRUE(std::string(row->signature).starts_with("(" + name)) << row->signature;
    const std::string help = row->help;
    EXPECT_TRUE(help.size() > 5 && help.ends_with(".")) << name << ": " << help;
    EXPECT_NE(std::string(row->group), "");
  }
  EXPECT_GT(names.size(), 200u);
}

// What real programs call, in so far as it needs no drawing.
TEST(Builtins, NothingCommonIsMissing) {
  const char* const kNames[] = {"defun",
                                "quote",
                                "setq",
                                "if",
                                "progn",
                                "while",
                                "and",
                                "cond",
                                "mapcar",
                                "lambda",
                                "not",
                                "foreach",
                                "or",
                                "repeat",
                                "null",
                                "apply",
                                "type",
                                "vl-load-com",
                                "load",
                                "function",
                                "vl-catch-all-apply",
                                "eval",
                                "vl-catch-all-error-p",
                                "read",
                                "exit",
                                "set",
                                "vl-catch-all-error-message",
                                "vl-symbol-name",
                                "boundp",
                                "vl-bt",
                                "vl-symbol-value",
                                "gc",
                                "atoms-family",
                                "vl-symbolp",
                                "vl-bb-ref",
                                "vl-bb-set",
                                "defun-q",
                                "vl-propagate",
                                "quit",
                                "ver",
                                "autoload",
                                "vl-exit-with-value",
                                "vl-acad-defun",
                                "vl-exit-with-error",
                                "trace",
                                "list",
                                "car",
                                "cons",
                                "cdr",
                                "assoc",
                                "cadr",
                                "append",
                                "length",
                                "member",
                                "reverse",
                                "nth",
                                "subst",
                                "caddr",
                                "last",
                                "vl-remove",
                                "listp",
                                "vl-sort",
                                "vl-remove-if",
                                "vl-remove-if-not",
                                "vl-position",
                                "caar",
                                "cddr",
                                "vl-some",
                                "cadddr",
                                "cdar",
                                "cadar",
                                "atom",
                                "vl-list*",
                                "caadr",
                                "acad_strlsort",
                                "cdddr",
                                "vl-consp",
                                "vl-every",
                                "cdadr",
                                "cadadr",
                                "caddar",
                                "vl-list-length",
                                "vl-sort-i",
                                "vl-member-if",
                                "cddddr",
                                "caaar",
                                "vl-member-if-not",
                                "=",
                                "+",
                                "1+",
                                "-",
                                "<",
                                "*",
                                "/",
                                "/=",
                                "1-",
                                ">",
                                "equal",
                                "<=",
                                "fix",
                                "eq",
                                ">=",
                                "logand",
                                "abs",
                                "zerop",
                                "max",
                                "sin",
                                "cos",
                                "rem",
                                "numberp",
                                "minusp",
                                "min",
                                "float",
                                "atan",
                                "sqrt",
                                "lsh",
                                "boole",
                                "expt",
                                "logior",
                                "cvunit",
                                "log",
                                "~",
                                "exp",
                                "gcd",
                                "lcm",
                                "strcat",
                                "itoa",
                                "strcase",
                                "rtos",
                                "wcmatch",
                                "substr",
                                "strlen",
                                "atoi",
                                "vl-string-search",
                                "atof",
                                "chr",
                                "vl-princ-to-string",
                                "vl-string->list",
                                "vl-prin1-to-string",
                                "ascii",
                                "vl-string-right-trim",
                                "vl-string-subst",
                                "distof",
                                "vl-list->string",
                                "vl-string-position",
                                "vl-string-trim",
                                "vl-string-translate",
                                "angtos",
                                "vl-string-left-trim",
                                "snvalid",
                                "angtof",
                                "vl-string-elt",
                                "vl-string-mismatch",
                                "princ",
                                "close",
                                "prompt",
                                "write-line",
                                "open",
                                "findfile",
                                "alert",
                                "vl-file-delete",
                                "getenv",
                                "terpri",
                                "print",
                                "read-line",
                                "vl-filename-mktemp",
                                "menucmd",
                                "vl-directory-files",
                                "vl-filename-base",
                                "vl-filename-directory",
                                "vl-file-directory-p",
                                "setenv",
                                "vl-registry-read",
                                "vl-filename-extension",
                                "prin1",
                                "vl-file-copy",
                                "vl-registry-write",
                                "textscr",
                                "vl-file-size",
                                "textpage",
                                "vl-mkdir",
                                "vl-file-rename",
                                "graphscr",
                                "vl-file-systime",
                                "read-char",
                                "write-char",
                                "distance",
                                "angle",
                                "polar",
                                "inters",
                                "vl-registry-delete",
                                "vl-registry-descendents",
                                "vl-load-all"};
  std::set<std::string> names;
  for (const Builtin* row = firstBuiltin(); row; row = row->next) names.insert(row->name);
  for (const char* name : kNames) EXPECT_EQ(names.count(name), 1u) << name;
}

// No builtin may crash or hang, whatever it is called with.
TEST(Builtins, SurviveEveryKindOfArgument) {
  RecordingHost host;
  ScratchEnvironment environment;
  Interpreter interpreter(host, environment);
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(toUtf8(environment.temporaryDirectory()));  // some of these calls make files
  const auto run = [&](const std::string& text) { return interpreter.evalFormsFrom(fromUtf8(text), GC_T("x")); };
  run("(setq some-file (open (vl-filename-mktemp) \"w\"))");
  const std::vector<std::string> values = {"nil",
                                           "T",
                                           "0",
                                           "-1",
                                           "7",
                                           "2147483647",
                                           "2.5",
                                           "1e300",
                                           "\"\"",
                                           "\"a1\"",
                                           "'sym",
                                           "'(1 2)",
                                           "'(1.0 2.0 3.0)",
                                           "'(1 . 2)",
                                           "'((1 . 2) (a b))",
                                           "car",
                                           "'(lambda (x) x)",
                                           "some-file",
                                           "(princ)"};
  const std::set<std::string> ends = {"exit", "quit", "vl-exit-with-error", "vl-exit-with-value"};
  int calls = 0;
  for (const Builtin* row = firstBuiltin(); row; row = row->next) {
    const bool special = row->kind == SubrKind::Special || row->kind == SubrKind::Macro;
    if (special || ends.count(row->name) || row->name[0] == '%') continue;
    const uint32_t most = std::min(row->counts().max, row->counts().min + 1);
    for (uint32_t count = row->counts().min; count <= most && count <= 3; ++count) {
      std::vector<size_t> index(count, 0);
      for (bool more = true; more;) {
        std::string form = std::string("(vl-catch-all-apply '") + row->name + " (list";
        for (const size_t i : index) form += " " + values[i];
        const EvalResult result = run(form + "))");
        EXPECT_EQ(result.status, EvalStatus::Done) << form << ": " << toUtf8(result.message);
        ++calls;
        more = false;
        for (size_t& i : index) {
          // With three arguments every other value is enough.
          i += count == 3 ? 2 : 1;
          if (i < values.size()) {
            more = true;
            break;
          }
          i = 0;
        }
      }
    }
  }
  std::filesystem::current_path(before);
  EXPECT_GT(calls, 10'000);
}

}  // namespace

}  // namespace lisp::testing
