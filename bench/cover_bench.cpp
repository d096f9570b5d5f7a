// A cover as a list shows it: from the disk cache to the list's size (goal: under 15 ms),
// and the display adjustment of a cached cover alone.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <QGuiApplication>
#include <QImage>
#include <filesystem>
#include <string>

#include "async_image_response.h"
#include "cover_cache.h"
#include "device_path.h"
#include "display_adjustment.h"

namespace {

const char kUrl[] = "http://127.0.0.1:1/covers/1.jpg";

// A grey cover of the width the cache keeps, with some detail for the encoder.
QImage cachedCover() {
  QImage image(400, 600, QImage::Format_Grayscale8);
  for (int y = 0; y < image.height(); ++y) {
    uchar *line = image.scanLine(y);
    for (int x = 0; x < image.width(); ++x) line[x] = static_cast<uchar>((x * 7 + y * 3 + (x * y) % 13) % 256);
  }
  return image;
}

void CoverFromDiskCache(benchmark::State &state) {
  const std::string file = lumenpress::platform::MapDevicePath("/tmp/bench_cover.jpeg");
  cachedCover().save(QString::fromStdString(file));
  coverCache().addFile(kUrl, file, false);
  for (auto _ : state) {
    AsyncImageResponse response(kUrl, QSize(158, 208));
    response.run();
    if (!response.errorString().isEmpty()) state.SkipWithError("the cover did not load");
  }
  state.SetLabel("goal: under 15 ms");
}
BENCHMARK(CoverFromDiskCache)->Unit(benchmark::kMillisecond);

void DisplayAdjustment400x600(benchmark::State &state) {
  const QImage cover = cachedCover();
  for (auto _ : state) {
    QImage image = cover;
    applyDisplayAdjustment(&image);
    benchmark::DoNotOptimize(image.constBits());
  }
}
BENCHMARK(DisplayAdjustment400x600)->Unit(benchmark::kMillisecond);

}  // namespace

// A device root of its own, so the cover cache never touches the user's.
int main(int argc, char **argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  std::string root = std::filesystem::temp_directory_path().string() + "/lp-bench-XXXXXX";
  if (!mkdtemp(root.data())) return 1;
  setenv("LUMENPRESS_DEVICE_ROOT", root.c_str(), 1);
  QGuiApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::error_code error;
  std::filesystem::remove_all(root, error);
  return 0;
}
