// Google Benchmark over generated documents: parse, write, clone, and the two references.

#include "bench/documents.h"
#include "bench/plainwriter.h"
#include "bench/scenes.h"
#include "bench/subject.h"
#include "bench/wideexpat.h"

#include <benchmark/benchmark.h>

#include <optional>

namespace bench {

namespace {

constexpr std::size_t kBytes = 16U << 20U;

void SetCounters(benchmark::State& state, std::size_t bytes, std::size_t objects) {
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * state.iterations());
  state.counters["objects"] = benchmark::Counter(static_cast<double>(objects),
                                                 benchmark::Counter::kIsIterationInvariantRate);
}

void Read(benchmark::State& state, Kind kind) {
  const Subject subject;
  const Document document = MakeDocument(kind, kBytes);
  for (auto _ : state) {
    std::optional<Subject::Tree> tree = subject.Read(document.text);
    state.PauseTiming();
    tree.reset();
    state.ResumeTiming();
  }
  SetCounters(state, document.text.size(), document.objects);
}

void ReadReference(benchmark::State& state, Kind kind) {
  const WideExpat expat;
  const Document document = MakeDocument(kind, kBytes);
  for (auto _ : state) {
    expat.Parse(document.text);
  }
  SetCounters(state, document.text.size(), document.objects);
}

void Write(benchmark::State& state, Kind kind) {
  const Subject subject;
  const Document document = MakeDocument(kind, kBytes);
  const Subject::Tree tree = subject.Read(document.text);
  std::size_t bytes = 0;
  for (auto _ : state) {
    bytes = static_cast<std::size_t>(subject.Write(tree).size());
  }
  SetCounters(state, bytes, document.objects);
}

void WriteReference(benchmark::State& state, Kind kind) {
  const Subject subject;
  const Document document = MakeDocument(kind, kBytes);
  const PlainWriter plain(subject.Write(subject.Read(document.text)).toStdString());
  std::size_t bytes = 0;
  for (auto _ : state) {
    bytes = plain.Write();
  }
  SetCounters(state, bytes, document.objects);
}

void Clone(benchmark::State& state, Kind kind) {
  const Subject subject;
  const Document document = MakeDocument(kind, kBytes);
  const Subject::Tree tree = subject.Read(document.text);
  for (auto _ : state) {
    std::optional<Subject::Tree> copy = subject.Clone(tree);
    state.PauseTiming();
    copy.reset();
    state.ResumeTiming();
  }
  SetCounters(state, document.text.size(), document.objects);
}

void Destroy(benchmark::State& state, Kind kind) {
  const Subject subject;
  const Document document = MakeDocument(kind, kBytes);
  for (auto _ : state) {
    state.PauseTiming();
    std::optional<Subject::Tree> tree = subject.Read(document.text);
    state.ResumeTiming();
    tree.reset();
  }
  SetCounters(state, document.text.size(), document.objects);
}

void SetCount(benchmark::State& state, std::size_t count) {
  state.SetItemsProcessed(static_cast<std::int64_t>(count) * state.iterations());
  state.SetComplexityN(static_cast<std::int64_t>(count));
}

void AskStyle(benchmark::State& state, Look look) {
  const Subject subject;
  const StyledFeatures features(subject, look, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(features.Ask());
  }
  SetCount(state, features.size());
}

void AskStyleReference(benchmark::State& state) {
  const Subject subject;
  const StyledFeatures features(subject, Look::kShared, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(features.AskPlain());
  }
  SetCount(state, features.size());
}

/// What was merged is merged again.
void MergeStyle(benchmark::State& state, Look look) {
  const Subject subject;
  StyledFeatures features(subject, look, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    features.ChangeSharedStyle();
    state.ResumeTiming();
    benchmark::DoNotOptimize(features.Ask());
  }
  SetCount(state, features.size());
}

void ChangeField(benchmark::State& state, Audience audience) {
  const Subject subject;
  WatchedFeatures features(subject, audience, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    features.Change();
  }
  SetCount(state, features.size());
}

void AskUrl(benchmark::State& state) {
  const Subject subject;
  ViewedLinks links(subject, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(links.Ask());
  }
  SetCount(state, links.size());
}

void ReadReferences(benchmark::State& state, References references) {
  const Subject subject;
  const auto count = static_cast<std::size_t>(state.range(0));
  const std::string text = MakeReferences(references, count);
  for (auto _ : state) {
    subject.Read(text);
  }
  SetCount(state, count);
}

void DrawRegions(benchmark::State& state, Sight sight) {
  const Subject subject;
  RegionFrames frames(subject, sight, static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    frames.Draw();
  }
  SetCount(state, frames.size());
}

/// At sizes that tell linear from quadratic.
template <class... Arguments> void RegisterCounts(const std::string& name, Arguments... arguments) {
  benchmark::RegisterBenchmark(name.c_str(), arguments...)
      ->RangeMultiplier(10)
      ->Range(1000, 100000)
      ->Unit(benchmark::kMicrosecond)
      ->Complexity();
}

void RegisterScenes() {
  for (const Look look : {Look::kShared, Look::kMerged, Look::kMap}) {
    RegisterCounts(std::string("style/") + Name(look), AskStyle, look);
  }
  RegisterCounts("style-reference", AskStyleReference);
  for (const Look look : {Look::kMerged, Look::kOwn}) {
    RegisterCounts(std::string("merge/") + Name(look), MergeStyle, look);
  }
  for (const Audience audience :
       {Audience::kNobody, Audience::kObserver, Audience::kOwners, Audience::kObservedOwners}) {
    RegisterCounts(std::string("change/") + Name(audience), ChangeField, audience);
  }
  for (const Sight sight : {Sight::kStill, Sight::kMoving, Sight::kReplacing}) {
    RegisterCounts(std::string("regions/") + Name(sight), DrawRegions, sight);
  }
  RegisterCounts("url/templates", AskUrl);
  RegisterCounts("references/forward", ReadReferences, References::kForward);
  RegisterCounts("references/forward to one", ReadReferences, References::kForwardToOne);
  RegisterCounts("references/backward", ReadReferences, References::kBackward);
}

void Register(const char* name, void (*benchmark)(benchmark::State&, Kind)) {
  for (const Kind kind : {Kind::kPlacemarks, Kind::kCoordinates, Kind::kMix}) {
    const std::string full = std::string(name) + "/" + Name(kind);
    benchmark::RegisterBenchmark(full.c_str(), benchmark, kind)->Unit(benchmark::kMillisecond);
  }
}

} // namespace

} // namespace bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 2;
  }
  bench::Register("read", bench::Read);
  bench::Register("read-reference", bench::ReadReference);
  bench::Register("write", bench::Write);
  bench::Register("write-reference", bench::WriteReference);
  bench::Register("clone", bench::Clone);
  bench::Register("destroy", bench::Destroy);
  bench::RegisterScenes();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
