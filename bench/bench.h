// What the benchmarks have in common: their times, figures against limits, and the memory of the project's programs.
#pragma once

#include <filesystem>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

// Least time of each work that was measured, in nanoseconds. A run with a filter leaves works out.
class Times {
  public:
    void Set(const std::string& work, double nanoseconds) { times_[work] = nanoseconds; }
    bool Has(const std::string& work) const { return times_.contains(work); }
    // Not a number where the work wasn't measured, and so is every figure that is made of it.
    double at(const std::string& work) const {
        const auto found = times_.find(work);
        return found != times_.end() ? found->second : std::numeric_limits<double>::quiet_NaN();
    }
    // The work that took the longest of those that were measured; the first where none was.
    const std::string& Slowest(const std::vector<std::string>& works) const;
    const std::map<std::string, double>& All() const { return times_; }

    bool isWhole = true;  // no work was left out: summaries of several can be printed

  private:
    std::map<std::string, double> times_;
};

class CallTables;

// A subject's benchmarks. Making it measures programs and registers its works; when they have run, it prints the
// figures of what was measured.
class Bench {
  public:
    virtual ~Bench() = default;
    // False where a figure is above its limit.
    virtual bool Judge(const Times& times) const = 0;
    // Adds what belongs in the tables at the end.
    virtual void AddRows(CallTables*) const {}
};

std::unique_ptr<Bench> MakeDriverBench();
std::unique_ptr<Bench> MakeXpicBench();

// Each of the work's measurements goes on for at least `seconds`.
void RegisterWork(const std::string& name, std::function<void()> work, double seconds = 0.1);

// Ends the program where a work doesn't do what it is measured for.
void Require(bool holds, std::string_view what);

// Prints a figure with its limit; false where it is above that. One that is not a number wasn't measured.
bool PrintFigure(const std::string& what, double value, const char* unit, double limit);

// Twice the model may cost this much more than the model.
inline constexpr double kMostGrowth = 2.5;

// The sources of the project's models.
std::vector<std::filesystem::path> ProjectModels();

// The folder of the built programs' folders.
std::filesystem::path ToolsFolder();

// A folder of its own below the system's temporary one, removed at the end.
class TemporaryFolder {
  public:
    explicit TemporaryFolder(const std::string& name);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    const std::filesystem::path& Path() const { return path_; }

  private:
    std::filesystem::path path_;
};

void WriteText(const std::filesystem::path& file, const std::string& text);

// Runs a program without its output and returns its peak memory in MiB, or that of this program so far where it is
// more: to be measured before works are made. A program that fails ends this one.
double PeakOf(const std::vector<std::string>& command);

}  // namespace velmora
