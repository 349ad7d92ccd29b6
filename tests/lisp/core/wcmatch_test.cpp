#include "host/lisp/core/wcmatch.h"

#include <gtest/gtest.h>

#include <random>

namespace lisp::testing {

namespace {

// The slow model: tries every way, element by element; no bracket groups.
bool slowOne(TextView text, TextView pattern) {
  if (pattern.empty()) return text.empty();
  if (pattern[0] == GC_T('*')) {
    for (size_t i = 0; i <= text.size(); ++i)
      if (slowOne(text.substr(i), pattern.substr(1))) return true;
    return false;
  }
  if (text.empty()) return false;
  const GCHAR c = text[0];
  bool fits = false;
  size_t length = 1;
  switch (pattern[0]) {
    case GC_T('#'): fits = isDigit(c); break;
    case GC_T('@'): fits = isLetter(c); break;
    case GC_T('.'): fits = !isDigit(c) && !isLetter(c); break;
    case GC_T('?'): fits = true; break;
    case GC_T('`'):
      length = pattern.size() > 1 ? 2 : 1;
      fits = c == pattern[length - 1];
      break;
    default: fits = c == pattern[0];
  }
  return fits && slowOne(text.substr(1), pattern.substr(length));
}

bool slowMatch(TextView text, TextView pattern) {
  for (size_t at = 0;;) {
    size_t end = at;
    while (end < pattern.size() && pattern[end] != GC_T(','))
      end += pattern[end] == GC_T('`') && end + 1 < pattern.size() ? 2 : 1;
    TextView part = pattern.substr(at, end - at);
    const bool negate = !part.empty() && part[0] == GC_T('~');
    if (slowOne(text, negate ? part.substr(1) : part) != negate) return true;
    if (end >= pattern.size()) return false;
    at = end + 1;
  }
}

Text anyOf(std::mt19937& random, TextView alphabet, size_t most) {
  Text text;
  for (size_t n = random() % (most + 1); n > 0; --n) text.push_back(alphabet[random() % alphabet.size()]);
  return text;
}

TEST(Wildcards, AgreeWithTheSlowModel) {
  std::mt19937 random(7);
  int matches = 0;
  for (int i = 0; i < 300'000; ++i) {
    const Text text = anyOf(random, GC_T("ab1-*"), 6);
    const Text pattern = anyOf(random, GC_T("ab1**#@.?~,`"), 7);
    const bool slow = slowMatch(text, pattern);
    ASSERT_EQ(wildcardMatch(text, pattern), slow) << toUtf8(text) << " ~ " << toUtf8(pattern);
    matches += slow;
  }
  EXPECT_GT(matches, 10'000);
}

TEST(Wildcards, StayFastOnHostilePatterns) {
  EXPECT_FALSE(wildcardMatch(Text(5000, GC_T('a')), Text(GC_T("*a*a*a*a*a*a*a*a*a*b"))));
}

TEST(Wildcards, Groups) {
  const auto matches = [](const char* text, const char* pattern) {
    return wildcardMatch(fromUtf8(text), fromUtf8(pattern));
  };
  EXPECT_TRUE(matches("b", "[a-c]"));
  EXPECT_FALSE(matches("d", "[a-c]"));
  EXPECT_TRUE(matches("d", "[~a-c]"));
  EXPECT_TRUE(matches("-", "[a-]"));
  EXPECT_TRUE(matches("]", "[]]"));
  EXPECT_TRUE(matches(",", "[,]"));
  EXPECT_TRUE(matches("[a", "[a"));
  EXPECT_TRUE(matches("x", "[a`]x]"));
  EXPECT_TRUE(matches("ż", "@"));
}

}  // namespace

}  // namespace lisp::testing
