// Runs the transcripts of the language, each in an interpreter of its own: once as it is, and once with a garbage
// collection at every safe point.
#include <gtest/gtest.h>

#include <algorithm>

#include "host/lisp/core/file_handle.h"
#include "tests/lisp/core/transcript.h"

namespace lisp::testing {

namespace {

const std::string kFolder = GC_SOURCE_DIR "/tests/transcripts/lisp/";

std::vector<std::string> transcriptNames() {
  std::vector<std::string> names;
  for (const Text& name : files::list(fromUtf8(kFolder), false, true))
    if (name.ends_with(GC_T(".txt"))) names.push_back(toUtf8(files::baseOf(name)));
  std::sort(names.begin(), names.end());
  return names;
}

void run(const std::string& name, bool stress) {
  RecordingHost host;
  ScratchEnvironment environment;
  Interpreter interpreter(host, environment);
  const auto exchanges = readTranscript(kFolder + name + ".txt");
  ASSERT_FALSE(exchanges.empty());
  interpreter.vm().setStress(stress);
  for (const Exchange& exchange : exchanges)
    EXPECT_EQ(perform(interpreter, host, exchange.form), exchange.expected)
        << name << ".txt:" << exchange.line << ": " << exchange.form;
}

}  // namespace

class Transcripts : public ::testing::TestWithParam<std::string> {};

TEST_P(Transcripts, GiveWhatTheySay) { run(GetParam(), false); }
// Depth and a collection of the whole stack at every call would take the square of the depth.
TEST_P(Transcripts, GiveTheSameUnderCollectorStress) {
  if (GetParam() == "depth") GTEST_SKIP();
  run(GetParam(), true);
}

INSTANTIATE_TEST_SUITE_P(Language, Transcripts, ::testing::ValuesIn(transcriptNames()),
                         [](const auto& transcript) { return transcript.param; });

}  // namespace lisp::testing
