// Driver benchmarks on the memory port: each field kind, and the reference receipt and
// label as a whole, for every model that is built. Job elements are parsed once, before
// the timed loop; the printer is opened (INIT_PRINTER, CHECK) before it too.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "bench_counters.h"
#include "bench_job.h"
#include "models.h"

namespace posprint::bench {
namespace {

// One job file per model, shared by that model's benchmarks (the parsed document must
// outlive them all).
BenchJob* LoadJob(const std::string& file) {
  auto* job = new BenchJob();
  std::string error;
  if (!job->Load(BenchDirectory() + "/" + file, &error)) {
    std::fprintf(stderr, "bench: %s\n", error.c_str());
    delete job;
    return nullptr;
  }
  return job;
}

// The whole ticket (START_PRINT .. STOP_PRINT) once a timed iteration.
void RunTicket(benchmark::State& state, const Model& model, BenchJob* job) {
  DriverSession session(model.factory, model.parameters, model.memoryPort);
  std::string error;
  if (!session.Open(*job, &error)) {
    state.SkipWithError(error.c_str());
    return;
  }
  const std::string failure = session.FirstFailure(*job);  // also the warm-up ticket
  if (!failure.empty()) {
    state.SkipWithError(failure.c_str());
    return;
  }
  OperationCounters counters;
  for (auto _ : state) {
    session.Driver().ClearErrors();
    benchmark::DoNotOptimize(session.RunTicket(*job));
  }
  counters.Report(state);
  session.Close(*job);
}

// One NEWPRINT element (the ticket step `index`) once a timed iteration.
void RunField(benchmark::State& state, const Model& model, BenchJob* job, std::size_t index) {
  DriverSession session(model.factory, model.parameters, model.memoryPort);
  std::string error;
  if (!session.Open(*job, &error)) {
    state.SkipWithError(error.c_str());
    return;
  }
  const JobStep& step = job->Ticket()[index];
  const Nx_Stringa port(model.memoryPort);
  APrinter& driver = session.Driver();
  driver.ClearErrors();
  if (!driver.ExecuteCommand(&job->Parser(), step.command, step.node, port)) {
    const std::string message = "not printed by " + model.name + " (error " + std::to_string(driver.LastError()) + ")";
    state.SkipWithError(message.c_str());
    return;
  }
  OperationCounters counters;
  for (auto _ : state) {
    driver.ClearErrors();
    benchmark::DoNotOptimize(driver.ExecuteCommand(&job->Parser(), step.command, step.node, port));
  }
  counters.Report(state);
  session.Close(*job);
}

}  // namespace

FakeClock& BenchClock() {
  static FakeClock clock;
  return clock;
}

namespace {
std::vector<benchmark::internal::Benchmark*>& Registered() {
  static std::vector<benchmark::internal::Benchmark*> all;
  return all;
}
}  // namespace

benchmark::internal::Benchmark* Remember(benchmark::internal::Benchmark* b) {
  Registered().push_back(b);
  return b;
}

void FixIterations(long long iterations) {
  if (iterations <= 0) return;
  for (benchmark::internal::Benchmark* b : Registered()) b->Iterations(iterations);
}

void RegisterDriverBenchmarks() {
  for (const Model& model : Models()) {
    if (!model.factory) continue;
    BenchJob* fields = LoadJob("fields.xml");
    if (fields) {
      for (std::size_t i = 0; i < fields->Ticket().size(); ++i) {
        std::string field = fields->Ticket()[i].label.substr(9);  // after "NEWPRINT "
        for (char& c : field) c = c == ' ' ? '_' : c;
        const std::string name = "field/" + model.name + "/" + field;
        Remember(benchmark::RegisterBenchmark(name.c_str(), [&model, fields, i](benchmark::State& state) {
          RunField(state, model, fields, i);
        }))->Unit(benchmark::kNanosecond);
      }
    }
    const bool receipt = model.paper == Paper::kReceipt;
    BenchJob* reference = LoadJob(receipt ? "receipt.xml" : "label.xml");
    if (!reference) continue;
    const std::string name = std::string(receipt ? "receipt/" : "label/") + model.name;
    Remember(benchmark::RegisterBenchmark(name.c_str(), [&model, reference](benchmark::State& state) {
      RunTicket(state, model, reference);
    }))->Unit(benchmark::kMicrosecond);
  }
}

}  // namespace posprint::bench
