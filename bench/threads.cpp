// Worker threads: how long the main thread is held up by each run of a merge, and how much faster
// two workers read two documents than one.

#include "bench/compare.h"
#include "bench/documents.h"
#include "bench/subject.h"

#include "kestan/core/creationobserver.h"
#include "kestan/feature/placemark.h"
#include "kestan/host/pump.h"
#include "kestan/read/parsejob.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

using namespace vorrel;
using namespace vorrel::kestan;

namespace bench {

namespace {

constexpr double kBudget = 0.004;

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

class Job final : public ParseJob {
public:
  Job(WorkerThread* worker, const QString& url, const std::string& text)
      : ParseJob(worker, url, QByteArray::fromRawData(text.data(), static_cast<int>(text.size())),
                 2, nullptr, false) {}
  void OnPreMerge() override {}
  void OnPostMerge() override { isMerged = true; }

  bool isMerged = false;
};

/// Features with an id each, of which every second refers into another document, and styles.
std::string MakeLargeDocument(int features, int styles, const std::string& prefix) {
  std::string text = "<kml><Document>";
  for (int i = 0; i < styles; ++i)
    text += "<Style id='" + prefix + "s" + std::to_string(i) +
            "'><LineStyle><width>2</width></LineStyle></Style>";
  for (int i = 0; i < features; ++i)
    text += "<Placemark id='" + prefix + "p" + std::to_string(i) + "'><styleUrl>" +
            (i % 2 ? "other.kml#" : "#" + prefix + "s") + std::to_string(i % styles) +
            "</styleUrl><Point><coordinates>1,2</coordinates></Point></Placemark>";
  return text + "</Document></kml>";
}

/// Reads the text on the worker, and merges it by runs with the budget. Seconds of each run, by the
/// clock of the wall or of the processor.
std::vector<double> Merge(WorkerThread& worker, const std::string& text, bool byWall,
                          std::vector<RefPtr<Job>>& jobs) {
  const QString url = QStringLiteral("/dir/%1.kml").arg(jobs.size());
  jobs.push_back(new Job(&worker, url, text));
  jobs.back()->Start();
  worker.WaitUntilIdle();
  std::vector<double> runs;
  while (!jobs.back()->isMerged) {
    const double begun = Now();
    const double processor = Seconds([] { Pump::Run(kBudget); });
    runs.push_back(byWall ? Now() - begun : processor);
  }
  return runs;
}

void Print(const char* name, std::vector<double> runs) {
  std::sort(runs.begin(), runs.end());
  const auto at = [&runs](double share) {
    return 1e3 * runs[static_cast<std::size_t>(share * static_cast<double>(runs.size() - 1))];
  };
  double sum = 0.0;
  for (const double run : runs)
    sum += run;
  std::printf("%-44s %4zu runs %8.1f ms   median %5.2f   90%% %5.2f   99%% %5.2f   longest %5.2f\n",
              name, runs.size(), 1e3 * sum, at(0.5), at(0.9), at(0.99), at(1.0));
  std::fflush(stdout);
}

class Counter final : public CreationObserver {
public:
  Counter() : CreationObserver(Placemark::GetClassSchema()) {}
  void OnPostCreate(const Event&) override { ++seen; }
  int seen = 0;
};

void MeasureMerges() {
  const std::string text = MakeLargeDocument(100000, 10000, "");
  for (const bool byWall : {true, false}) {
    std::printf("runs of at most %.0f ms, in ms of the %s\n", 1e3 * kBudget,
                byWall ? "wall clock" : "processor");
    WorkerThread worker;
    std::vector<RefPtr<Job>> jobs;
    Print("100,000 features, 10,000 styles", Merge(worker, text, byWall, jobs));
    {
      const Counter counter;
      Print("the same again, with an observer of features", Merge(worker, text, byWall, jobs));
    }
    for (int i = 0; i < 4; ++i)
      Merge(worker, text, byWall, jobs);
    Print("beside six of them", Merge(worker, text, byWall, jobs));
    Print("a small one beside seven", Merge(worker, MakeLargeDocument(10, 1, ""), byWall, jobs));
  }
}

/// Seconds by the wall clock, and by that of the processor for the whole process, until two
/// documents have been read by so many workers.
struct Times {
  double wall;
  double processor;
};

double ProcessSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

Times ReadTwo(std::vector<std::unique_ptr<WorkerThread>>& workers, std::size_t count,
              const std::string& text) {
  std::vector<RefPtr<Job>> jobs;
  for (std::size_t i = 0; i < 2; ++i)
    jobs.push_back(new Job(workers[i % count].get(), QStringLiteral("/dir/%1.kml").arg(i), text));
  const double begun = Now();
  const double processor = ProcessSeconds();
  for (const RefPtr<Job>& job : jobs)
    job->Start();
  for (const auto& worker : workers)
    worker->WaitUntilIdle();
  const Times times{Now() - begun, ProcessSeconds() - processor};
  while (!jobs[0]->isMerged || !jobs[1]->isMerged)
    Pump::Run(1.0);
  return times;
}

/// Arithmetic without memory: what two threads gain on it is what the machine has to give.
void Reckon() {
  volatile double result = 1.0;
  for (int i = 0; i < 20000000; ++i)
    result = result * 1.0000001;
}

double GetYardstick(int rounds) {
  std::vector<double> gains;
  for (int i = 0; i < rounds; ++i) {
    const double begun = Now();
    Reckon();
    Reckon();
    const double middle = Now();
    std::thread other(Reckon);
    Reckon();
    other.join();
    gains.push_back((middle - begun) / (Now() - middle));
  }
  return Median(gains);
}

void MeasureReading(std::size_t megabytes, int rounds) {
  std::printf("two documents of %zu MB, read by two workers against one; medians of %d rounds\n",
              megabytes, rounds);
  for (const Kind kind : {Kind::kPlacemarks, Kind::kCoordinates, Kind::kMix}) {
    const std::string text = MakeDocument(kind, megabytes << 20U).text;
    std::vector<std::unique_ptr<WorkerThread>> workers;
    workers.push_back(std::make_unique<WorkerThread>());
    workers.push_back(std::make_unique<WorkerThread>());
    std::vector<double> gains;
    std::vector<double> costs;
    double one = 1e9;
    double two = 1e9;
    for (int i = 0; i <= rounds; ++i) {
      const Times alone = ReadTwo(workers, 1, text);
      const Times together = ReadTwo(workers, 2, text);
      if (i == 0)
        continue; // warms caches and the allocator
      one = std::min(one, alone.wall);
      two = std::min(two, together.wall);
      gains.push_back(alone.wall / together.wall);
      costs.push_back(together.processor / alone.processor);
    }
    std::printf("%-12s %.2f times as fast (best times: %.2f, %.0f ms against %.0f ms); %.2f of the "
                "processor time\n",
                Name(kind), Median(gains), one / two, 1e3 * two, 1e3 * one, Median(costs));
    std::fflush(stdout);
  }
  std::printf("arithmetic   %.2f times as fast: all that there's to gain\n", GetYardstick(rounds));
}

} // namespace

} // namespace bench

int main(int argc, char** argv) {
  const bench::Subject subject;
  const auto wants = [&](const char* part) { return argc < 2 || !std::strcmp(argv[1], part); };
  if (!wants("merge") && !wants("read")) {
    std::fputs("usage: kestan-bench-threads [merge | read [MEGABYTES [ROUNDS]]]\n", stderr);
    return 2;
  }
  if (wants("merge"))
    bench::MeasureMerges();
  if (wants("read"))
    bench::MeasureReading(argc > 2 ? static_cast<std::size_t>(std::atoi(argv[2])) : 16,
                          argc > 3 ? std::atoi(argv[3]) : 7);
  return 0;
}
