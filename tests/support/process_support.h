// Test support for the suites (and the benchmarks): running copies
// of this program at the same time, killing one halfway, and holding a file
// the way another process of the suite would. The only place of this suite
// that talks to the operating system.
#pragma once

#include <string>
#include <vector>

namespace korvalen::testing {

// Starts `count` copies of this program with the given arguments, all at once
// in the current directory, each with the environment variable
// KORVALEN_WORKER set to its index (0 to count-1). Waits for all of them and
// returns how many ended successfully.
int RunCopiesOfThisProgram(const std::vector<std::string>& arguments, int count);

// The same for a test program, each copy running only the tests of
// gtest_filter (disabled ones included).
int RunTestsInCopies(const std::string& gtest_filter, int count);

// The arguments that make a copy of a test program run only the tests of
// gtest_filter (disabled ones included).
std::vector<std::string> TestsOnly(const std::string& gtest_filter);

// One copy of this program running in the current directory, started with
// KORVALEN_WORKER set to `worker` (in its environment alone: copies may be
// started from several threads at once); killed and waited for when it goes
// out of scope still running.
class RunningCopy {
 public:
  RunningCopy(const std::vector<std::string>& arguments, int worker);
  ~RunningCopy();
  RunningCopy(const RunningCopy&) = delete;
  RunningCopy& operator=(const RunningCopy&) = delete;

  bool started() const { return started_; }
  // Ends it at once, as a crash or the task manager would (SIGKILL,
  // TerminateProcess); Wait tells when it is gone.
  void Kill();
  // Waits for its end; true when it ended successfully.
  bool Wait();

 private:
  bool started_ = false;
  long long process_ = -1;
};

// The folder this test program lies in.
std::string ProgramDirectory();

// The value of an environment variable, or "" when it is not set; setting it
// for this process and the copies it starts.
std::string Environment(const char* name);
void SetEnvironment(const char* name, const std::string& value);

// Holds a file as the unique-name generator holds its counter, so that the
// generator must wait: no sharing on Windows, an exclusive flock elsewhere.
class ExclusiveHold {
 public:
  explicit ExclusiveHold(const std::string& name);
  ~ExclusiveHold();
  ExclusiveHold(const ExclusiveHold&) = delete;
  ExclusiveHold& operator=(const ExclusiveHold&) = delete;

  bool held() const { return held_; }
  void Release();

 private:
  bool held_ = false;
  long long handle_ = -1;
};

// True where a message box is a real modal window that would wait for a user.
bool MessageBoxesAreWindows();

}  // namespace korvalen::testing
