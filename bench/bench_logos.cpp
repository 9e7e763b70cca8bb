// The logo conversions on their own, as megabytes of BMP file per second: the ESC *
// bit-image bands (PrintBitmap: the TMT70's logo) and the GS v 0 raster image
// (PrintRasterLogo: the presenter and ticket printers' logo), for three logo sizes.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "bench_counters.h"
#include "frame/output.h"
#include "frame/raster_logo.h"
#include "models.h"
#include "platform/otool.h"

namespace posprint::bench {
namespace {

struct Logo {
  const char* file;
  int width;
};
constexpr Logo kLogos[] = {{"logo384x120.bmp", 384}, {"logo576x400.bmp", 576}, {"logo832x600.bmp", 832}};

std::vector<std::uint8_t> ReadLogo(const char* file) {
  std::ifstream in(BenchDirectory() + "/" + file, std::ios::binary);
  return std::vector<std::uint8_t>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// A context on a memory port, as a driver has it after INIT_PRINTER.
PortContext OpenContext() {
  PortContext ctx;
  ctx.handle = otool_OPEN(L"mem:", 0, nullptr);
  ctx.SetTerminator("\r\n");
  return ctx;
}

template <class Print>
void RunLogo(benchmark::State& state, const std::vector<std::uint8_t>& bmp, Print print) {
  PortContext ctx = OpenContext();
  if (bmp.empty() || print(ctx, bmp) != kSuccess) {
    state.SkipWithError("the logo does not print");
    otool_CLOSE(ctx.handle);
    return;
  }
  OperationCounters counters;
  for (auto _ : state) benchmark::DoNotOptimize(print(ctx, bmp));
  counters.Report(state);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(bmp.size()));
  otool_CLOSE(ctx.handle);
}

}  // namespace

void RegisterLogoBenchmarks() {
  // What one command costs on its way to the port: otool_WRITE of three bytes (an ESC !
  // n), through the handle table and the memory back-end.
  Remember(benchmark::RegisterBenchmark("port/otool_WRITE_3_bytes", [](benchmark::State& state) {
    PortContext ctx = OpenContext();
    OperationCounters counters;
    for (auto _ : state) benchmark::DoNotOptimize(otool_WRITE(ctx.handle, "\x1B\x21\x00", 3));
    counters.Report(state);
    otool_CLOSE(ctx.handle);
  }));

  for (const Logo& logo : kLogos) {
    auto* bmp = new std::vector<std::uint8_t>(ReadLogo(logo.file));
    const std::string size = std::string(logo.file).substr(4, std::string(logo.file).size() - 8);  // "384x120"
    // ESC * 8-dot single-density bands, as the TMT70 prints its logo.
    Remember(benchmark::RegisterBenchmark(("logo/PrintBitmap_8dot/" + size).c_str(), [bmp](benchmark::State& state) {
      RunLogo(state, *bmp, [](const PortContext& ctx, const std::vector<std::uint8_t>& b) {
        return PrintBitmap(ctx, b, false, 0);
      });
    }));
    // ESC * 24-dot double-density bands.
    Remember(benchmark::RegisterBenchmark(("logo/PrintBitmap_24dot/" + size).c_str(), [bmp](benchmark::State& state) {
      RunLogo(state, *bmp, [](const PortContext& ctx, const std::vector<std::uint8_t>& b) {
        return PrintBitmap(ctx, b, false, 33);
      });
    }));
    // GS v 0 at normal size, centred on an 832-dot line.
    Remember(benchmark::RegisterBenchmark(("logo/PrintRasterLogo/" + size).c_str(), [bmp](benchmark::State& state) {
      RunLogo(state, *bmp, [](const PortContext& ctx, const std::vector<std::uint8_t>& b) {
        return PrintRasterLogo(ctx, b, 832, false, RasterMargin::kClampToZero);
      });
    }));
    // GS v 0 at double size, as the ticket printers print every logo: only the smallest
    // logo fits the 832-dot line twice as wide.
    if (logo.width * 2 <= 832) {
      Remember(benchmark::RegisterBenchmark(("logo/PrintRasterLogo_double/" + size).c_str(), [bmp](benchmark::State& state) {
        RunLogo(state, *bmp, [](const PortContext& ctx, const std::vector<std::uint8_t>& b) {
          return PrintRasterLogo(ctx, b, 832, true, RasterMargin::kWrapUnsigned);
        });
      }));
    }
  }
}

}  // namespace posprint::bench
