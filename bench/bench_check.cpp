// A CHECK round trip on a pseudo-terminal whose printer answers at once: what a status
// query costs on a real line (system calls, the terminal driver, two threads), less the
// line's own transmission time.
#include <benchmark/benchmark.h>

#include <string>

#include "bench_job.h"
#include "models.h"
#include "pty_line.h"

namespace posprint::bench {
namespace {

void RunCheck(benchmark::State& state, const Model& model) {
  PtyLine line(0, model.answers);
  std::string error;
  if (!line.Start(&error)) {
    state.SkipWithError(error.c_str());
    return;
  }
  BenchJob job;
  if (!job.LoadString("<Job><Command name=\"INIT_PRINTER\"/><Command name=\"STOP_PRINTER\"/></Job>", &error)) {
    state.SkipWithError(error.c_str());
    return;
  }
  const std::wstring port(line.SlaveName().begin(), line.SlaveName().end());
  DriverSession session(model.factory, model.parameters, port);
  if (!session.Open(job, &error)) {
    state.SkipWithError(error.c_str());
    return;
  }
  const Nx_Stringa check(L"CHECK");
  const Nx_Stringa portName(port);
  APrinter& driver = session.Driver();
  driver.ClearErrors();
  if (!driver.ExecuteCommand(&job.Parser(), check, IXMLDOMNodePtr(), portName)) {
    state.SkipWithError(("CHECK failed, error " + std::to_string(driver.LastError())).c_str());
    session.Close(job);
    return;
  }
  for (auto _ : state) {
    driver.ClearErrors();
    benchmark::DoNotOptimize(driver.ExecuteCommand(&job.Parser(), check, IXMLDOMNodePtr(), portName));
  }
  session.Close(job);
}

}  // namespace

void RegisterCheckBenchmarks() {
  for (const Model& model : Models()) {
    if (!model.factory) continue;
    benchmark::RegisterBenchmark(("check_pty/" + model.name).c_str(), [&model](benchmark::State& state) {
      RunCheck(state, model);
    })->Unit(benchmark::kMicrosecond)->UseRealTime();
  }
}

}  // namespace posprint::bench
