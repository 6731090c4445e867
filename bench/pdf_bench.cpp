// A long table from its command file to a PDF, beside the same pages drawn with Cairo's own calls
// by a program that knows everything beforehand: the place of each cell and the number of pages.
#include <benchmark/benchmark.h>
#include <cairo-pdf.h>
#include <sys/resource.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "drawing/face.h"
#include "drawing/geometry.h"
#include "pdf/vbravpdf.h"

namespace veltgeneral {
namespace {

namespace fs = std::filesystem;
using drawing::kPointsPerCm;

constexpr std::size_t kColumns = 6;
constexpr std::array<double, kColumns> kWidths{1.5, 6, 2, 2, 2.5, 3};
constexpr double kRowHeight = 16.84;
constexpr int kRowsPerPage = 42;

using Row = std::array<std::string, kColumns>;

Row rowOf(int i) {
  const std::string n = std::to_string(i);
  return {n,         "Article number " + n + " of the list", std::to_string(i % 97),
          n + ".50", std::to_string(3 * i) + ".00",          "X" + n};
}

class Folder {
 public:
  Folder() {
    std::string name = (fs::temp_directory_path() / "veltgeneral-bench-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
  }
  ~Folder() { fs::remove_all(path_); }
  std::string operator/(const char* name) const { return path_ / name; }

 private:
  fs::path path_;
};

void writeCommands(const std::string& path, int rows) {
  std::ofstream out(path);
  out << "footer\ntext 19 28.5 \"Page {page} of {pages}\" right\nend\n"
         "table 1.5 6 2 right 2 right 2.5 right 3\n"
         "head \"No\" \"Article\" \"Quantity\" \"Price\" \"Sum\" \"Code\"\n";
  for (int i = 0; i < rows; ++i) {
    out << "row";
    for (const std::string& cell : rowOf(i)) out << " \"" << cell << '"';
    out << '\n';
  }
  out << "end\n";
}

class Direct {
 public:
  Direct(const std::string& path, int rows)
      : surface_(cairo_pdf_surface_create(path.c_str(), drawing::kA4.width, drawing::kA4.height)),
        context_(cairo_create(surface_.get())),
        pages_((rows + kRowsPerPage - 1) / kRowsPerPage) {
    cairo_set_font_face(context_.get(), face_.handle());
    cairo_set_font_size(context_.get(), 10);
  }

  void run(int rows) {
    for (int i = 0; i < rows; ++i) {
      if (i % kRowsPerPage == 0) beginPage(i / kRowsPerPage + 1);
      row(rowOf(i));
    }
    cairo_show_page(context_.get());
    cairo_surface_finish(surface_.get());
  }

 private:
  void beginPage(int number) {
    if (number > 1) cairo_show_page(context_.get());
    text(15 * kPointsPerCm, 28.5 * kPointsPerCm,
         "Page " + std::to_string(number) + " of " + std::to_string(pages_));
    y_ = 2 * kPointsPerCm;
    row({"No", "Article", "Quantity", "Price", "Sum", "Code"});
  }

  void row(const Row& cells) {
    double x = 2 * kPointsPerCm;
    for (std::size_t i = 0; i < kColumns; ++i) {
      text(x, y_, cells[i]);
      x += kWidths[i] * kPointsPerCm;
    }
    y_ += kRowHeight;
    cairo_move_to(context_.get(), 2 * kPointsPerCm, y_);
    cairo_line_to(context_.get(), x, y_);
    cairo_stroke(context_.get());
  }

  void text(double x, double y, const std::string& text) {
    std::size_t count = 0;
    for (const char c : text) {
      const drawing::Glyph glyph = face_.glyph(static_cast<unsigned char>(c));
      glyphs_[count++] = {glyph.index, x, y + 10};
      x += glyph.advance * 10;
    }
    cairo_show_glyphs(context_.get(), glyphs_.data(), static_cast<int>(count));
  }

  drawing::Face face_{{"Arial"}};
  drawing::Handle<cairo_surface_t, cairo_surface_destroy> surface_;
  drawing::Handle<cairo_t, cairo_destroy> context_;
  int pages_;
  double y_ = 0;
  std::array<cairo_glyph_t, 256> glyphs_;
};

double secondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double peakMegabytes() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

void table(benchmark::State& state) {
  const Folder folder;
  const int rows = static_cast<int>(state.range(0));
  const std::string commands = folder / "a.txt";
  const std::string document = folder / "a.pdf";
  const auto generate = [&] {
    char message[150];
    if (VBRavpdf(commands.c_str(), document.c_str(), message) != 0)
      state.SkipWithError(std::string(message, sizeof message).c_str());
  };
  // A short one first: what every document costs is not growth.
  writeCommands(commands, 1000);
  generate();
  const double before = peakMegabytes();
  writeCommands(commands, rows);
  double growth = 0;
  double ours = 0;
  double theirs = 0;
  for (auto _ : state) {
    const double seconds = secondsOf(generate);
    growth = std::max(growth, peakMegabytes() - before);
    state.SetIterationTime(seconds);
    ours += seconds;
    theirs += secondsOf([&] { Direct(folder / "b.pdf", rows).run(rows); });
  }
  state.SetItemsProcessed(state.iterations() * rows);
  state.counters["times_cairo"] = ours / theirs;
  state.counters["grown_MB"] = growth;
}
BENCHMARK(table)->Arg(10'000)->Arg(100'000)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace veltgeneral
