// A report of 1,000 pages of 60 lines to PDF, beside the drawing library's glyph calls used
// directly: the same glyphs at the same places, into a file as well.
#include <benchmark/benchmark.h>
#include <cairo-pdf.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "floor.h"
#include "veltgeneral/reporting.h"

namespace veltgeneral {
namespace {

namespace fs = std::filesystem;

constexpr int kLines = 60;
constexpr int kCharacters = 80;
constexpr double kSize = 10;         // points
constexpr double kLineHeight = 0.4;  // cm
constexpr double kTop = 1.5;
constexpr double kLeft = 1.5;
constexpr double kPointsPerCm = 567 / 20.0;

fs::path resultFile(const char* name) {
  return fs::temp_directory_path() / (std::to_string(::getpid()) + name);
}

std::string lineOf(int page, int line) {
  std::string text = "Pagina " + std::to_string(page) + " riga " + std::to_string(line) + " ";
  for (char c = 'a'; text.size() < kCharacters; c = c == 'z' ? 'a' : static_cast<char>(c + 1))
    text += c;
  return text;
}

std::vector<std::string> linesOf(int pages) {
  std::vector<std::string> lines;
  for (int i = 0; i < pages * kLines; ++i) lines.push_back(lineOf(i / kLines, i % kLines));
  return lines;
}

void report(const std::vector<Text>& lines, const std::string& file) {
  ::setenv("VELTGENERAL_PRINTER", ("pdf:" + file).c_str(), 1);
  Reporting report;
  report.setOutputMode(torPRINTER);
  report.openReport();
  Variant size = kSize;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i > 0 && i % kLines == 0) report.newPage();
    const double y = kTop + kLineHeight * static_cast<double>(i % kLines);
    report.prtTesto(kLeft, y, size, false, false, lines[i]);
  }
  report.closeReport();
}

void glyphs(const std::vector<std::string>& lines, const std::string& file) {
  cairo_surface_t* surface = cairo_pdf_surface_create(file.c_str(), 595.276, 841.89);
  cairo_t* page = cairo_create(surface);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_set_font_options(page, options);
  cairo_font_options_destroy(options);
  cairo_select_font_face(page, "Courier New", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(page, kSize);
  // The table that a program writes once which prints ASCII in one font.
  unsigned long index[128] = {};
  for (char c = ' '; c < 127; ++c) {
    cairo_glyph_t* glyph = nullptr;
    int count = 0;
    cairo_scaled_font_text_to_glyphs(cairo_get_scaled_font(page), 0, 0, &c, 1, &glyph, &count,
                                     nullptr, nullptr, nullptr);
    index[static_cast<int>(c)] = glyph[0].index;
    cairo_glyph_free(glyph);
  }
  const double cell = kSize * 1229 / 2048;
  std::vector<cairo_glyph_t> row;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i > 0 && i % kLines == 0) cairo_show_page(page);
    row.clear();
    double x = kLeft * kPointsPerCm;
    const double y = (kTop + kLineHeight * static_cast<double>(i % kLines)) * kPointsPerCm + kSize;
    for (const char c : lines[i]) {
      row.push_back({index[static_cast<int>(c)], x, y});
      x += cell;
    }
    cairo_show_glyphs(page, row.data(), static_cast<int>(row.size()));
  }
  cairo_show_page(page);
  cairo_destroy(page);
  cairo_surface_destroy(surface);
}

double peakMegabytes() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

std::vector<Text> wide(const std::vector<std::string>& lines) {
  std::vector<Text> texts;
  for (const std::string& line : lines) texts.push_back(fromUtf8(line));
  return texts;
}

// How much the process grows at most for nine tenths of the pages; runs before the peer does.
void reportMemory(benchmark::State& state) {
  const fs::path file = resultFile("-memory.pdf");
  const std::vector<Text> texts = wide(linesOf(1000));
  const std::vector<Text> few(texts.begin(), texts.begin() + 100 * kLines);
  report(few, file.string());
  const double before = peakMegabytes();
  for (auto _ : state) report(texts, file.string());
  state.counters["grown_MB"] = peakMegabytes() - before;
  fs::remove(file);
}
BENCHMARK(reportMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

void reportPages(benchmark::State& state) {
  const auto pages = static_cast<int>(state.range(0));
  const fs::path ours = resultFile("-ours.pdf");
  const fs::path theirs = resultFile("-theirs.pdf");
  const std::vector<std::string> lines = linesOf(pages);
  const std::vector<Text> texts = wide(lines);
  bench::against(
      state, [&] { report(texts, ours.string()); }, [&] { glyphs(lines, theirs.string()); });
  fs::remove(ours);
  fs::remove(theirs);
}
BENCHMARK(reportPages)
    ->Arg(1)
    ->Arg(1000)
    ->Iterations(7)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// Where the modules of this build lie.
[[maybe_unused]] const int kModules = ::setenv("VELTGENERAL_MODULE_DIR", MODULE_DIR, 0);

}  // namespace
}  // namespace veltgeneral
