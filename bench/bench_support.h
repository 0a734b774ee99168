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

// From the spawn.
struct Timing {
    double first_byte;               // without output the end of the output
    std::vector<double> next_bytes;  // as they come, one after the other
    double exit;
    double peak_mib;  // of resident memory, if it was asked for
};

// Puts other values in the place of those that the demo's configuration brings along, so that the
// next run has to write them.
void ForgetTheConfiguration(const std::string& registry);

// Runs a program, which must end with status 0. The peak is read inside it.
enum class Peak { Ignored, Read };
Timing Run(std::vector<std::string> command, Peak peak = Peak::Ignored);

}  // namespace velto::bench
