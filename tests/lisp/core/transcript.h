// Transcripts: readable tests of the language. A line that starts with
//   #  is a comment     >  is LISP to evaluate (more such lines continue the form)
//   |  is a printed line     =  is the value as prin1 shows it     !  is the message of an uncaught error
// Everything a form prints and gives is compared.
#pragma once

#include <string>
#include <vector>

#include "host/lisp/core/interpreter.h"

namespace lisp::testing {

struct Exchange {
  int line = 0;  // of the form in the file
  std::string form;
  std::vector<std::string> expected;  // the lines after the form, with their marks
};

std::vector<Exchange> readTranscript(const std::string& path);

// Collects what programs print and feeds them typed lines.
class RecordingHost : public HostCalls {
 public:
  void write(TextView text) override { printed += toUtf8(text); }
  bool readLine(Text& line) override;
  void alert(TextView text) override { printed += toUtf8(text) + "\n"; }

  std::string printed;
  std::vector<std::string> typed;
};

// Temporary files go to a folder of this environment's own, which ends with it.
class ScratchEnvironment : public Environment {
 public:
  ScratchEnvironment();
  ~ScratchEnvironment() override;
  Text temporaryDirectory() const override { return m_folder; }

 private:
  Text m_folder;
};

// What a form printed and gave, in the lines of a transcript.
std::vector<std::string> perform(Interpreter& interpreter, RecordingHost& host, const std::string& form);

}  // namespace lisp::testing
