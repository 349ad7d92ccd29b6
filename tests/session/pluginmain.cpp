// On Windows the module imports from the program gcad.exe itself, so these tests are a plug-in of that program: loaded,
// they run and end the process with their result.
#ifdef _WIN32

#include <gtest/gtest.h>

#include <cstdlib>

#include "rx/rxapp.h"

extern "C" __declspec(dllexport) int gcrxEntryPoint(unsigned message, void*) {
  if (message != GcRx::kInitAppMsg) return GcRx::kRetOK;
  int count = 1;
  char name[] = "session_test";
  char* arguments[] = {name, nullptr};
  testing::InitGoogleTest(&count, arguments);  // more by the variables GTEST_...
  const int result = RUN_ALL_TESTS();
  std::fflush(stdout);
  std::_Exit(result);
}

#endif
