// What the members ask of a surface, and the lines that are cut off a text.
#include <gtest/gtest.h>

#include <ctime>
#include <functional>
#include <sstream>
#include <tuple>

#include "automation/locale.h"
#include "platform/report_surfaces.h"
#include "support/error_of.h"
#include "veltgeneral/reporting.h"

namespace veltgeneral {
namespace {

using platform::ErrorNumber;
using platform::ReportSurface;

// What is asked of the surfaces, call by call.
struct Record {
  std::string calls;    // each ends in "; "
  std::string refused;  // the call of that name answers 482

  template <class... Words>
  ErrorNumber note(const char* call, const Words&... words) {
    std::ostringstream line;
    line << call;
    ((line << ' ' << words), ...);
    calls += line.str() + "; ";
    return refused == call ? 482 : 0;
  }
};

class RecordingSurface : public ReportSurface {
 public:
  explicit RecordingSurface(Record& record) : record_(record) {}

  ErrorNumber setFontName(TextView v) noexcept override { return record_.note("face", toUtf8(v)); }
  ErrorNumber setFontSize(float v) noexcept override { return record_.note("size", v); }
  ErrorNumber setFontBold(bool v) noexcept override { return record_.note("bold", v); }
  ErrorNumber setFontItalic(bool v) noexcept override { return record_.note("italic", v); }
  ErrorNumber setCurrentX(float v) noexcept override { return record_.note("x", x_ = v); }
  ErrorNumber setCurrentY(float v) noexcept override { return record_.note("y", y_ = v); }
  ErrorNumber getCurrentX(float& v) noexcept override { return record_.note("x is", v = x_); }
  ErrorNumber getCurrentY(float& v) noexcept override { return record_.note("y is", v = y_); }
  ErrorNumber printText(TextView text) noexcept override {
    x_ += 100 * static_cast<float>(text.size());
    return record_.note("text", toUtf8(text));
  }
  ErrorNumber drawBox(float x1, float y1, float x2, float y2, std::int32_t c) noexcept override {
    return record_.note("box", x1, y1, x2, y2, c);
  }
  ErrorNumber newPage() noexcept override { return record_.note("page"); }
  ErrorNumber endDocument() noexcept override { return record_.note("end"); }
  ErrorNumber show() noexcept override { return record_.note("show"); }
  ErrorNumber unload() noexcept override { return record_.note("unload"); }

 private:
  Record& record_;
  float x_ = 0, y_ = 0;
};

struct RecordingSurfaces : platform::ReportSurfaces {
  Record record;
  RecordingSurface onForm{record};

  ReportSurface& form() noexcept override { return onForm; }
  ErrorNumber openPrinter(std::int16_t paper,
                          std::unique_ptr<ReportSurface>& to) noexcept override {
    to = std::make_unique<RecordingSurface>(record);
    return record.note("paper", paper);
  }
  ErrorNumber serviceEvents() noexcept override { return record.note("service"); }
};

// What `draw` asks of the surface that `mode` stands for.
template <class Draw>
std::string asked(std::int32_t mode, Draw&& draw) {
  RecordingSurfaces surfaces;
  Reporting report(surfaces);
  report.setOutputMode(static_cast<typeOutputReport>(mode));
  draw(report);
  return surfaces.record.calls;
}

// A box: what fills it, then its left, top, right and bottom edge.
std::string box(double x1, double y1, double x2, double y2, std::int32_t color = 0) {
  Record record;
  if (color != 0) record.note("box", x1, y1, x2, y2, color);
  record.note("box", x1, y1, x1, y2, 0);
  record.note("box", x1, y1, x2, y1, 0);
  record.note("box", x2, y1, x2, y2, 0);
  record.note("box", x1, y2, x2, y2, 0);
  return record.calls;
}

// A text: its font, its place, where a y of 0 is not asked for, and its characters.
std::string text(const char* words, double size, bool bold, bool italic, double x, double y) {
  Record record;
  record.note("face Courier New; size", size);
  record.note("bold", bold);
  record.note("italic", italic);
  record.note("x", x);
  if (y != 0) record.note("y", y);
  record.note("text", words);
  return record.calls;
}

void session(Reporting& report) {
  report.openReport();
  report.newPage();
  report.closeReport();
}

void twoTexts(Reporting& report) {
  Variant size = std::int16_t{10};
  report.prtTesto(10.0, 5.0, size, true, false, u"è");
  report.prtTesto(Text(u"1"), Empty{}, size, false, true, u"same line");
  EXPECT_EQ(size, Variant(std::int16_t{10}));
}

void band(Reporting& report) {
  Variant size = 10.0;
  report.prtBoxWithTesto(1.2, 2.0, size, false, true, u"abc", 0x00FFFF, 5.0);
}

TEST(Reporting, AsksTheSurfaceInForce) {
  const auto boxOf = [](std::int32_t color) {
    return [color](Reporting& report) {
      report.prtBox(std::int16_t{1}, 2.0f, Text(u"3"), Currency{40000}, color);
    };
  };
  const std::string frame = box(567, 567, 10773, 15309);
  const auto framed = [](const Variant& header, const Variant& number, const Variant& bold) {
    return
        [=](Reporting& report) { report.prtLayoutPaginaBase(header, header, number, false, bold); };
  };
  constexpr std::int32_t kGrey = 0x404040;
  const std::string bars =
      box(567, 567, 10773, 578.34, kGrey) + box(567, 15309, 10773, 15320.3, kGrey) +
      box(567, 567, 578.34, 15309, kGrey) + box(10773, 567, 10784.3, 15309, kGrey);
  const std::string shown = text("abc", 7, false, true, 476.28, 793.8);
  const std::tuple<std::int32_t, std::function<void(Reporting&)>, std::string> cases[] = {
      {torPRINTER, session, "paper 9; page; end; "},
      // Everything but 2 is the form.
      {torFORM, session, "show; service; unload; "},
      {0, session, "show; service; unload; "},
      // Black fills nothing.
      {torPRINTER, boxOf(0), "paper 9; " + box(567, 1134, 1701, 2268)},
      {torPRINTER, boxOf(255), "paper 9; " + box(567, 1134, 1701, 2268, 255)},
      {torFORM, boxOf(255), box(396.9, 793.8, 1190.7, 1587.6, 255) + "service; "},
      // A place of 0 stays on the line of the text before.
      {torPRINTER, twoTexts,
       "paper 9; " + text("è", 10, true, false, 5670, 2835) +
           text("same line", 10, false, true, 567, 0)},
      {torFORM, twoTexts,
       text("è", 7, true, false, 3969, 1984.5) + "service; " +
           text("same line", 7, false, true, 396.9, 0) + "service; "},
      // The printed band ends where the text did, 300 twips from its start, and covers it.
      {torPRINTER, band,
       "paper 9; " + text("abc", 10, false, true, 680.4, 1134) + "x is 980.4; y is 1134; " +
           box(567, 1134, 980.4, 1417.5, 0x00FFFF)},
      {torFORM, band, shown + box(396.9, 793.8, 2460.78, 952.56, 0x00FFFF) + shown + "service; "},
      {torPRINTER, [](Reporting& report) { report.prtLayoutPaginaBase(); }, "paper 9; " + frame},
      {torPRINTER, framed(Missing{}, std::int32_t{3}, false),
       "paper 9; " + frame + text("Pagina: 3", 10, false, false, 9072, 15365.7)},
      {torPRINTER, framed(Text(u"ab"), Missing{}, std::int16_t{-1}),
       "paper 9; " + bars + box(567, 1134, 10773, 1145.34, kGrey) +
           text("ab", 14, true, false, 5726.7, 680.4) + box(567, 14742, 10773, 14753.3, kGrey) +
           text("ab", 12, true, false, 5726.7, 14855.4)},
  };
  for (const auto& [mode, draw, calls] : cases) EXPECT_EQ(asked(mode, draw), calls) << mode;
}

TEST(Reporting, HeadersAreCentredByTheirCharacters) {
  const auto withHeader = [](std::size_t length) {
    return asked(torPRINTER,
                 [&](Reporting& report) { report.prtLayoutPaginaBase(Text(length, u'm')); });
  };
  constexpr std::pair<std::size_t, double> kCases[] = {
      // twips of 2 cm + 0.3 cm a blank cell
      {6, 5386.5}, {5, 5556.6}, {7, 5216.4},  // halves go to the even neighbour
      {0, 5896.8}, {56, 1134},  {57, 1134},  {58, 963.9}, {59, 793.8},
  };
  for (const auto& [length, x] : kCases) {
    const std::string header(length, 'm');
    EXPECT_TRUE(withHeader(length).ends_with(text(header.c_str(), 14, true, false, x, 680.4)));
  }
  EXPECT_EQ(errorOf([&] { withHeader(32768); }), 6);
}

TEST(Reporting, TheDateStandsBelowTheFrame) {
  const ScopedLocale locale("it_IT");
  const auto minute = [] {
    const std::time_t now = std::time(nullptr);
    char date[20];
    std::strftime(date, sizeof date, "%d/%m/%Y  %H:%M", std::localtime(&now));
    return text(date, 10, false, false, 1134, 15365.7);
  };
  const std::string before = minute();
  const std::string calls = asked(torPRINTER, [](Reporting& report) {
    report.prtLayoutPaginaBase(Missing{}, Missing{}, Missing{}, true);
  });
  EXPECT_TRUE(calls.ends_with(before) || calls.ends_with(minute())) << calls;
}

TEST(Reporting, ErrorsReachTheCaller) {
  RecordingSurfaces surfaces;
  const auto errorOn = [&](typeOutputReport mode, const Variant& x, Variant points) {
    Reporting report(surfaces);
    report.setOutputMode(mode);
    return errorOf([&] {
      report.openReport();
      report.prtBoxWithTesto(x, 1.0, points, false, false, u"a", 255, 1.0);
      report.newPage();
      report.closeReport();
    });
  };
  EXPECT_EQ(errorOn(torFORM, Text(u"one"), 10.0), 13);
  EXPECT_EQ(errorOn(torFORM, 1.0, Null{}), 94);
  EXPECT_EQ(errorOn(torFORM, 1e40, 10.0), 6);
  for (const char* call : {"paper", "face", "size", "bold", "italic", "x", "y", "text", "x is",
                           "y is", "box", "page", "end"}) {
    surfaces.record.refused = call;
    EXPECT_EQ(errorOn(torPRINTER, 1.0, 10.0), 482) << call;
  }
  for (const char* call : {"show", "text", "box", "service", "unload"}) {
    surfaces.record.refused = call;
    EXPECT_EQ(errorOn(torFORM, 1.0, 10.0), 482) << call;
  }
}

TEST(FormattaStringa, CutsTheNextLine) {
  // A text, the length of a line, the line, and what is left.
  constexpr std::tuple<TextView, std::int16_t, TextView, TextView> kCases[] = {
      {u"ab cd ef", 4, u"ab", u"cd ef"},
      {u"abcdefgh", 3, u"abc", u"defgh"},
      {u"ab cd", 5, u"ab", u"cd"},  // it would fit, and is cut all the same
      {u"abcde", 5, u"abcde", u""},
      {u"ab", 3, u"ab", u""},
      {u"", 0, u"", u""},
      {u"ab cd", 2, u"ab", u"cd"},  // the space just after the line
      {u"ab  cd", 3, u"ab ", u"cd"},
      {u" abc", 2, u" a", u"bc"},  // the first character ends no line
      {u"abc", 0, u"", u"abc"},
  };
  Reporting report;
  for (const auto& [text, length, line, rest] : kCases) {
    Text left(text);
    EXPECT_EQ(report.formattaStringa(left, length), line) << toUtf8(text);
    EXPECT_EQ(left, rest) << toUtf8(text);
  }
  Text kept = u"ab";
  EXPECT_EQ(errorOf([&] { report.formattaStringa(kept, -1); }), 5);
  EXPECT_EQ(kept, u"ab");
}

}  // namespace
}  // namespace veltgeneral
