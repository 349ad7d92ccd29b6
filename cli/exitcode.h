// Exit codes of gcad, the same for every subcommand.
#pragma once

namespace cli {

enum ExitCode : int {
  kDone = 0,
  kLispError = 1,
  kUsage = 2,
  kCannotRead = 3,
  kCannotWrite = 4,
  kAuditErrors = 5,
  kTimeLimit = 6,
  kMemoryLimit = 7,
  kSomeFailed = 8,
  kInterrupted = 130
};

}  // namespace cli
