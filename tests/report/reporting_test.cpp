// What the members ask of a surface, call by call.
#include <gtest/gtest.h>

#include <ctime>

#include "automation/locale.h"
#include "report/recording_surfaces.h"
#include "support/error_of.h"
#include "veltgeneral/reporting.h"

namespace veltgeneral {
namespace {

using Lines = std::vector<std::string>;

class ReportingTest : public testing::Test {
 protected:
  // What `action` asks of the surface that `mode` stands for.
  template <class Action>
  Lines asked(std::int32_t mode, Action&& action) {
    surfaces_.record.lines.clear();
    Reporting report(surfaces_);
    report.setOutputMode(static_cast<typeOutputReport>(mode));
    action(report);
    return surfaces_.record.lines;
  }
  // Only the boxes and texts of a printed page, each text with its place and font.
  template <class Action>
  Lines drawn(Action&& action) {
    Lines out;
    std::string font;
    for (const std::string& line : asked(torPRINTER, action)) {
      if (line.starts_with("box")) out.push_back(line);
      if (line.starts_with("face")) font.clear();
      if (line.starts_with("text")) out.push_back(line + " |" + font);
      for (const char* part : {"size", "bold", "x ", "y "})
        if (line.starts_with(part)) font.append(line, line.find(' '));
    }
    return out;
  }

  // The outline of a box, edge by edge.
  static Lines outline(const std::string& x1, const std::string& y1, const std::string& x2,
                       const std::string& y2) {
    const auto edge = [](const std::string& a, const std::string& b, const std::string& c,
                         const std::string& d) {
      return "box " + a + " " + b + " " + c + " " + d + " 0";
    };
    return {edge(x1, y1, x1, y2), edge(x1, y1, x2, y1), edge(x2, y1, x2, y2), edge(x1, y2, x2, y2)};
  }
  static Lines joined(std::initializer_list<Lines> parts) {
    Lines all;
    for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  }

  test::RecordingSurfaces surfaces_;
  Variant size_ = 10.0;
};

TEST_F(ReportingTest, SessionOnBothTargets) {
  const auto session = [](Reporting& report) {
    report.openReport();
    report.newPage();
    report.closeReport();
  };
  const Lines form = {"show", "service", "unload"};
  const Lines printer = {"paper 9", "page", "end"};
  EXPECT_EQ(asked(torPRINTER, session), printer);
  // Everything but 2 is the form.
  for (const std::int32_t mode : {0, 1, 3, -2}) EXPECT_EQ(asked(mode, session), form) << mode;
}

TEST_F(ReportingTest, BoxesAreFilledUnlessBlackAndOutlinedInOrder) {
  const auto box = [](std::int32_t color) {
    return [color](Reporting& report) {
      report.prtBox(std::int16_t{1}, 2.0f, Text(u"3"), Currency{40000}, color);
    };
  };
  const Lines printed = outline("567", "1134", "1701", "2268");
  EXPECT_EQ(asked(torPRINTER, box(0)), joined({{"paper 9"}, printed}));
  EXPECT_EQ(asked(torPRINTER, box(255)),
            joined({{"paper 9", "box 567 1134 1701 2268 255"}, printed}));
  EXPECT_EQ(asked(torFORM, box(255)), joined({{"box 396.9 793.8 1190.7 1587.6 255"},
                                              outline("396.9", "793.8", "1190.7", "1587.6"),
                                              {"service"}}));
}

TEST_F(ReportingTest, TextsAreScaledOnTheFormOnly) {
  Variant size = std::int16_t{10};
  const auto text = [&](const Variant& y) {
    return [&size, y](Reporting& report) { report.prtTesto(10.0, y, size, true, false, u"è"); };
  };
  EXPECT_EQ(asked(torFORM, text(5.0)), (Lines{"face Courier New", "size 7", "bold 1", "italic 0",
                                              "x 3969", "y 1984.5", "text è", "service"}));
  EXPECT_EQ(asked(torPRINTER, text(5.0)), (Lines{"paper 9", "face Courier New", "size 10", "bold 1",
                                                 "italic 0", "x 5670", "y 2835", "text è"}));
  // Zero stays on the line of the text before.
  EXPECT_EQ(asked(torPRINTER, text(Empty{})), (Lines{"paper 9", "face Courier New", "size 10",
                                                     "bold 1", "italic 0", "x 5670", "text è"}));
  EXPECT_EQ(size, Variant(std::int16_t{10}));
}

TEST_F(ReportingTest, BandsDifferByTarget) {
  const auto band = [&](Reporting& report) {
    report.prtBoxWithTesto(1.2, 2.0, size_, false, true, u"abc", 0x00FFFF, 5.0);
  };
  const Lines text = {"face Courier New", "size 7",  "bold 0",  "italic 1",
                      "x 476.28",         "y 793.8", "text abc"};
  EXPECT_EQ(asked(torFORM, band), joined({text,
                                          {"box 396.9 793.8 2460.78 952.56 65535"},
                                          outline("396.9", "793.8", "2460.78", "952.56"),
                                          text,
                                          {"service"}}));
  // The band ends where the text did, 300 twips from its start, and covers it.
  EXPECT_EQ(asked(torPRINTER, band),
            joined({{"paper 9", "face Courier New", "size 10", "bold 0", "italic 1", "x 680.4",
                     "y 1134", "text abc", "x?", "y?", "box 567 1134 980.4 1417.5 65535"},
                    outline("567", "1134", "980.4", "1417.5")}));
}

TEST_F(ReportingTest, FramesThinAndBold) {
  EXPECT_EQ(drawn([](Reporting& report) { report.prtLayoutPaginaBase(); }),
            outline("567", "567", "10773", "15309"));
  const auto bold = [&](const Variant& isBold, const Variant& header) {
    Lines fills;
    for (const std::string& line : drawn([&](Reporting& report) {
           report.prtLayoutPaginaBase(header, header, Missing{}, Missing{}, isBold);
         }))
      if (!line.ends_with(" 0") || line.starts_with("text")) fills.push_back(line);
    return fills;
  };
  EXPECT_EQ(bold(false, Missing{}), Lines{});
  const Lines bars = {"box 567 567 10773 578.34 4210752", "box 567 15309 10773 15320.3 4210752",
                      "box 567 567 578.34 15309 4210752", "box 10773 567 10784.3 15309 4210752"};
  EXPECT_EQ(bold(true, Missing{}), bars);
  EXPECT_EQ(bold(std::int16_t{-1}, Text(u"ab")),
            joined({bars,
                    {"box 567 1134 10773 1145.34 4210752", "text ab | 14 1 5726.7 680.4",
                     "box 567 14742 10773 14753.3 4210752", "text ab | 12 1 5726.7 14855.4"}}));
}

TEST_F(ReportingTest, HeadersAreCentredByTheirCharacters) {
  struct Case {
    std::size_t length;
    const char* x;  // twips of 2 cm + 0.3 cm a blank cell
  };
  constexpr Case kCases[] = {
      {6, "5386.5"}, {5, "5556.6"}, {7, "5216.4"},  // halves go to the even neighbour
      {0, "5896.8"}, {56, "1134"},  {57, "1134"},  {58, "963.9"}, {59, "793.8"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.length);
    const Text header(c.length, u'm');
    const Lines lines = drawn([&](Reporting& report) { report.prtLayoutPaginaBase(header); });
    ASSERT_EQ(lines.size(), 9u);
    EXPECT_EQ(lines[8], std::string("text ") + toUtf8(header) + " | 14 1 " + c.x + " 680.4");
  }
  const auto tooLong = [](Reporting& report) { report.prtLayoutPaginaBase(Text(32768, u'm')); };
  EXPECT_EQ(errorOf([&] { drawn(tooLong); }), 6);
}

TEST_F(ReportingTest, PageNumberAndDate) {
  const ScopedLocale locale("it_IT");
  const auto below = [&](const Variant& number, const Variant& withDate) {
    Lines lines = drawn([&](Reporting& report) {
      report.prtLayoutPaginaBase(Missing{}, Missing{}, number, withDate);
    });
    lines.erase(lines.begin(), lines.begin() + 4);
    return lines;
  };
  EXPECT_EQ(below(std::int32_t{3}, false), Lines{"text Pagina: 3 | 10 0 9072 15365.7"});
  const auto minute = [] {
    const std::time_t now = std::time(nullptr);
    char text[80];
    return std::string(text,
                       std::strftime(text, sizeof text, "text %d/%m/%Y  %H:%M | 10 0 1134 15365.7",
                                     std::localtime(&now)));
  };
  const std::string before = minute();
  const Lines dated = below(Missing{}, true);
  EXPECT_TRUE(dated == Lines{before} || dated == Lines{minute()}) << before;
}

TEST_F(ReportingTest, ErrorsReachTheCaller) {
  const auto text = [&](const Variant& x, Variant points) {
    Reporting report(surfaces_);
    return errorOf([&] { report.prtTesto(x, 1.0, points, false, false, u"a"); });
  };
  EXPECT_EQ(text(Text(u"one"), size_), 13);
  EXPECT_EQ(text(1.0, Null{}), 94);
  EXPECT_EQ(text(1e40, size_), 6);
  const auto page = [](Reporting& report) {
    report.openReport();
    report.prtLayoutPaginaBase(Text(u"a"));
    report.newPage();
    report.closeReport();
  };
  for (const char* call : {"paper", "box", "text", "page", "end"}) {
    surfaces_.record.refused = call;
    EXPECT_EQ(errorOf([&] { asked(torPRINTER, page); }), 482) << call;
  }
}

TEST(FormattaStringa, CutsTheNextLine) {
  struct Case {
    TextView text;
    std::int16_t length;
    TextView line, rest;
  };
  constexpr Case kCases[] = {
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
  for (const Case& c : kCases) {
    Text text(c.text);
    const Text line = report.formattaStringa(text, c.length);
    EXPECT_EQ(toUtf8(line), toUtf8(c.line)) << toUtf8(c.text);
    EXPECT_EQ(toUtf8(text), toUtf8(c.rest)) << toUtf8(c.text);
  }
  Text kept = u"ab";
  EXPECT_EQ(errorOf([&] { report.formattaStringa(kept, -1); }), 5);
  EXPECT_EQ(kept, u"ab");
}

}  // namespace
}  // namespace veltgeneral
