// Test support: running copies of this test program at the same time, as the
// separate programs of the suite that share the state files. The only place
// of this suite that talks to the operating system.
#pragma once

#include <string>

namespace korvalen::testing {

// Starts `count` copies of this test program in the current directory, each
// running only the tests of `gtest_filter` (disabled ones included), with the
// environment variable KORVALEN_WORKER set to its index. Waits for all of them
// and returns how many ended successfully.
int RunWorkers(const std::string& gtest_filter, int count);

// The copy's index, or "" in a program that was not started by RunWorkers.
std::string WorkerIndex();

}  // namespace korvalen::testing
