#include <gtest/gtest.h>
#include <windows.h>

int main(int argc, char** argv) {
  // A crash ends the run with a number of its own; nobody is there to press a button.
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
