// Lines typed at a terminal: with history and completion where the platform's line editor was found at build time,
// plain elsewhere.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/ed/input/source.h"

namespace cli {

class LineEditor : public ed::InputSource {
 public:
  // What a word that is being typed may become.
  class Completer {
   public:
    virtual ~Completer() = default;
    virtual std::vector<std::string> complete(const std::string& start) = 0;
  };
  // The completer outlives the editor; null for none.
  static std::unique_ptr<LineEditor> make(Completer* completer);
  // The prompt of the next line; empty when a message of the program's own asks.
  virtual void setPrompt(const std::string& prompt) = 0;
};

}  // namespace cli
