#include "host/lisp/core/reader.h"

#include <gtest/gtest.h>

#include "tests/lisp/core/transcript.h"

namespace lisp::testing {

namespace {

class ReaderTest : public ::testing::Test {
 protected:
  SourcePosition failureOf(TextView text, std::string& message) {
    Reader reader(text, vm.heap(), vm.symbols());
    LispValue form;
    try {
      while (reader.next(form)) {
      }
    } catch (const LispError& error) {
      message = toUtf8(error.message);
      return reader.position();
    }
    return {};
  }

  RecordingHost host;
  Environment environment;
  Interpreter interpreter{host, environment};
  Vm& vm = interpreter.vm();
};

TEST_F(ReaderTest, EveryLineEndCounts) {
  const Text text = Text(GC_T("a\nb\r\nc\rd ;x\n;|y\r\nz|; e"));
  Reader reader(text, vm.heap(), vm.symbols());
  LispValue form;
  const uint32_t lines[] = {1, 2, 3, 4, 6};
  const uint32_t columns[] = {1, 1, 1, 1, 5};
  for (int i = 0; i < 5; ++i) {
    ASSERT_TRUE(reader.next(form));
    EXPECT_EQ(reader.position().line, lines[i]);
    EXPECT_EQ(reader.position().column, columns[i]);
  }
  EXPECT_FALSE(reader.next(form));
}

TEST_F(ReaderTest, ListsRememberWhereTheyBegin) {
  FormPositions positions;
  const Text text(GC_T("(a\n  (b c)\n '(d))"));
  Reader reader(text, vm.heap(), vm.symbols(), &positions);
  LispValue form;
  ASSERT_TRUE(reader.next(form));
  EXPECT_EQ(positions.find(form.asCons()).line, 1u);
  const LispValue second = form.tail().head();
  EXPECT_EQ(positions.find(second.asCons()).line, 2u);
  EXPECT_EQ(positions.find(second.asCons()).column, 3u);
  EXPECT_EQ(positions.find(form.tail().tail().head().asCons()).line, 3u);
  EXPECT_EQ(positions.find(second.tail().asCons()).line, 0u) << "a tail is no list of its own";
}

TEST_F(ReaderTest, ErrorsTellWhere) {
  std::string message;
  EXPECT_EQ(failureOf(GC_T("(ok)\n (a (b)\n"), message).line, 2u);
  EXPECT_EQ(message, "malformed list on input");
  EXPECT_EQ(failureOf(GC_T("(ok)\n\n  )"), message).line, 3u);
  EXPECT_EQ(message, "extra right paren on input");
  const SourcePosition open = failureOf(GC_T("(a\n \"bc)\n"), message);
  EXPECT_EQ(open.line, 2u);
  EXPECT_EQ(open.column, 2u);
  EXPECT_EQ(message, "malformed string on input");
}

TEST_F(ReaderTest, CodePages) {
  EXPECT_EQ(decodeSource("\xEF\xBB\xBF(\xC5\xBC)"), Text(GC_T("(ż)")));
  EXPECT_EQ(decodeSource("\xC5\xBC"), Text(GC_T("ż")));
  EXPECT_EQ(decodeSource("caf\xE9 \x80"), Text(GC_T("café €")));
  EXPECT_EQ(fromUtf8(toUtf8(GC_T("ż\U0001F600"))), Text(GC_T("ż\U0001F600")));
  EXPECT_FALSE(isValidUtf8("\xC0\x80"));
  EXPECT_FALSE(isValidUtf8("\xED\xA0\x80"));
  EXPECT_EQ(fromUtf8("a\xFFz"), Text(GC_T("a\xFFFDz")));
}

TEST_F(ReaderTest, NoDepthIsTooMuch) {
  const size_t depth = 1'000'000;
  const Text text(Text(depth, GC_T('(')) + Text(depth, GC_T(')')));
  Reader reader(text, vm.heap(), vm.symbols());
  LispValue form;
  ASSERT_TRUE(reader.next(form));
  const Text printed = vm.print(form, PrintStyle::Quoted);
  // The innermost () is nil.
  EXPECT_EQ(printed.size(), 2 * (depth - 1) + 3);
  Text quotes(depth, GC_T('\''));
  Reader second(quotes.append(GC_T("x")), vm.heap(), vm.symbols());
  ASSERT_TRUE(second.next(form));
}

}  // namespace

}  // namespace lisp::testing
