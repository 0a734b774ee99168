// What the benchmarks share: time, processes, and a home of their own.
//
// Times are wall clock, in seconds. What fails ends the run with an exception.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace velto::bench {

using Clock = std::chrono::steady_clock;

void Check(bool good, const std::string& what);
double Since(Clock::time_point start);

// A program that stands beside this one.
std::string Program(const std::string& name);

// A new folder below the system's temporary one, removed at its end.
class Folder {
  public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

struct Timing {
    double first_byte;  // from the spawn; without output to the end of the output
    double exit;
    double peak_mib;  // ru_maxrss of the child
};

// Runs a program, which must end with status 0.
Timing Run(std::vector<std::string> command);

}  // namespace velto::bench
