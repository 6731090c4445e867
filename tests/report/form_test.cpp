// The form on real displays, seen by another client, and as a picture.
#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "drawing/handles.h"
#include "platform/report_surfaces.h"
#include "report/display.h"
#include "support/error_of.h"
#include "support/temporary_folder.h"
#include "veltgeneral/reporting.h"

namespace veltgeneral {
namespace {

using test::Observer;
using test::TemporaryFolder;
using test::VirtualDisplay;

constexpr char kTitle[] = "Reporting Form";
constexpr int kWidth = 539;  // 8085 and 11100 twips at 96 dots per inch
constexpr int kHeight = 740;

// The form's window, 0 where none comes to be.
xcb_window_t formOn(const Observer& observer) {
  xcb_window_t window = 0;
  test::waitUntil([&] { return (window = observer.find(kTitle)) != 0; });
  return window;
}

bool formGoes(const Observer& observer) {
  return test::waitUntil([&] { return observer.find(kTitle) == 0; });
}

struct Shot {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> dots;

  std::uint32_t at(int x, int y) const { return dots[static_cast<std::size_t>(y * width + x)]; }
  // The first and last column of a dark dot in rows `top` to `bottom`, within the frame.
  std::pair<int, int> ink(int top, int bottom) const {
    std::pair<int, int> found{-1, -1};
    for (int x = 28; x < 502; ++x)
      for (int y = top; y < bottom; ++y)
        if ((at(x, y) & 0xFF) < 0x80) {
          if (found.first < 0) found.first = x;
          found.second = x;
        }
    return found;
  }
};

bool comesToShow(const Observer& observer, const Shot& page) {
  return test::waitUntil([&] { return observer.look(kWidth, kHeight) == page.dots; });
}

// What the screen shows once the dot (x, y) has the colour `dot`: the server takes its time.
Shot screenWith(const Observer& observer, int x, int y, std::uint32_t dot, int width = kWidth,
                int height = kHeight) {
  Shot shot;
  EXPECT_TRUE(test::waitUntil([&] {
    shot = {width, height, observer.look(width, height)};
    return shot.at(x, y) == dot;
  }));
  return shot;
}

Shot picture(const std::string& file) {
  const drawing::Handle<cairo_surface_t, cairo_surface_destroy> image(
      cairo_image_surface_create_from_png(file.c_str()));
  Shot shot{
      cairo_image_surface_get_width(image.get()), cairo_image_surface_get_height(image.get()), {}};
  for (int y = 0; y < shot.height; ++y) {
    const auto* row = reinterpret_cast<const std::uint32_t*>(
        cairo_image_surface_get_data(image.get()) +
        static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(image.get()));
    for (int x = 0; x < shot.width; ++x) shot.dots.push_back(row[x] & 0xFFFFFF);
  }
  return shot;
}

void drawPage(Reporting& report) {
  Variant size = 14.0;
  report.prtLayoutPaginaBase(Text(u"Ordini"), Missing{}, std::int16_t{3});
  report.prtBox(2.0, 4.0, 5.0, 6.0, 0x0000FF);
  report.prtBox(6.0, 4.0, 9.0, 6.0, 0x00C000);
  report.prtTesto(2.0, 8.0, size, false, false, u"M|M|M|M|M|");
  report.prtBoxWithTesto(2.0, 10.0, size, true, false, u"però 10 €", 0x00FFFF, 8.0);
}

class FormTest : public testing::Test {
 protected:
  void SetUp() override { ::unsetenv("VELTGENERAL_FORM"); }
  void TearDown() override {
    errorOf([] { Reporting().closeReport(); });
    ::unsetenv("VELTGENERAL_FORM");
  }

  Reporting report_;
};

void expectPage(const Shot& shot) {
  // 1 cm on the page is 26.46 dots on the form.
  constexpr std::uint32_t kBlack = 0;
  constexpr std::uint32_t kWhite = 0xFFFFFF;
  const auto at = [](double centimetres) {
    return static_cast<int>(std::lround(centimetres * 567 * 0.7 / 15));
  };
  for (const double x : {1.0, 19.0})
    for (const double y : {1.0, 27.0})
      for (const int beside : {-2, 0, 2})
        EXPECT_EQ(shot.at(at(x) + beside, at(y) + beside), beside == 0 ? kBlack : kWhite);
  EXPECT_EQ(shot.at(at(10), at(2)), kBlack);        // the rule under the header
  EXPECT_EQ(shot.at(at(3), at(5)), 0xFF0000u);      // red has the lowest byte
  EXPECT_EQ(shot.at(at(7), at(5)) & 0xFF00FF, 0u);  // green
  EXPECT_EQ(shot.at(at(2), at(5)), kBlack);         // a filled box has its outline too
  EXPECT_EQ(shot.at(at(9), at(10.3)), 0xFFFF00u);   // the band, 8 cm from the text's start
  EXPECT_EQ(shot.at(at(10.3), at(10.3)), kWhite);
  // Ten cells of 0.6 em of 9.8 points from 2 cm on; the last bar stands in the last cell's middle.
  const double cell = 1229.0 / 2048 * 14 * 0.7 * 96 / 72;
  const auto [first, last] = shot.ink(at(8), at(8.6));
  EXPECT_NEAR(first, at(2), 1);
  EXPECT_NEAR(last, 52.9 + 9.5 * cell, 1.5);
  // Its letters stand between the top of the line and the next one.
  EXPECT_EQ(shot.ink(at(8) - 6, at(8)), (std::pair{-1, -1}));
  EXPECT_EQ(shot.ink(at(8.6), at(8.6) + 6), (std::pair{-1, -1}));
}

TEST_F(FormTest, ShowsThePageAndIsRepaintedByTheServer) {
  const TemporaryFolder folder;
  const std::string file = folder / "page.png";
  ::setenv("VELTGENERAL_FORM", ("image:" + file).c_str(), 1);
  report_.openReport();
  drawPage(report_);
  report_.closeReport();
  const Shot expected = picture(file);
  EXPECT_EQ(std::pair(expected.width, expected.height), std::pair(kWidth, kHeight));
  expectPage(expected);

  ::setenv("VELTGENERAL_FORM", "window", 1);
  const VirtualDisplay display;
  const Observer observer;
  drawPage(report_);
  const xcb_window_t window = formOn(observer);
  ASSERT_NE(window, 0u);
  EXPECT_FALSE(observer.visible(window));
  report_.openReport();
  EXPECT_TRUE(test::waitUntil([&] { return observer.visible(window); }));
  EXPECT_EQ(observer.size(window), std::pair(kWidth, kHeight));
  EXPECT_EQ(observer.property(window, XCB_ATOM_WM_CLASS),
            std::string("veltgeneral\0VeltGeneral\0", 24));
  const std::string hints = observer.property(window, XCB_ATOM_WM_NORMAL_HINTS);
  ASSERT_EQ(hints.size(), 72u);
  EXPECT_EQ(hints.substr(20, 8), hints.substr(28, 8));  // the smallest size is the largest
  EXPECT_TRUE(comesToShow(observer, expected));
  observer.coverForAMoment();
  EXPECT_TRUE(comesToShow(observer, expected));

  report_.newPage();
  EXPECT_TRUE(comesToShow(observer, expected));
  // Another object draws on the same form; what was there stays.
  Reporting().prtBox(2.0, 20.0, 3.0, 21.0, 0xFF0000);
  EXPECT_EQ(formOn(observer), window);
  const Shot more = screenWith(observer, 66, 542, 0x0000FF);
  EXPECT_EQ(more.at(80, 132), 0xFF0000u);
  report_.closeReport();
  EXPECT_TRUE(formGoes(observer));
}

TEST_F(FormTest, FollowsTheDisplaysColoursAndResolution) {
  struct Case {
    const char* screen;
    const char* resources;
    int width, height;
  };
  constexpr Case kCases[] = {
      {"1280x1024x16", "", kWidth, kHeight},
      {"1600x1600x24", "Xcursor.size:\t24\nXft.dpi:\t192\n", 1078, 1480},
      {"1280x1024x24", "Xft.dpi:\tlarge\n", kWidth, kHeight},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.screen);
    const VirtualDisplay display(c.screen);
    const Observer observer;
    observer.setResolution(c.resources);
    report_.openReport();
    drawPage(report_);
    EXPECT_EQ(observer.size(formOn(observer)), std::pair(c.width, c.height));
    const Shot shot = screenWith(observer, c.width * 238 / kWidth, c.height * 273 / kHeight,
                                 0xFFFF00, c.width, c.height);
    if (c.width == kWidth) expectPage(shot);
    report_.closeReport();
  }
}

TEST_F(FormTest, ItsUserMayCloseIt) {
  const VirtualDisplay display;
  const Observer observer;
  for (const auto close : {&Observer::cutOff, &Observer::destroy}) {
    report_.openReport();
    drawPage(report_);
    const xcb_window_t before = formOn(observer);
    (observer.*close)(before);
    EXPECT_TRUE(formGoes(observer));
    // A new form comes to be, unseen until it is shown, and does not know the old one's page.
    report_.prtBox(2.0, 20.0, 3.0, 21.0, 0xFF0000);
    const xcb_window_t after = formOn(observer);
    ASSERT_NE(after, 0u);
    EXPECT_FALSE(observer.visible(after));
    report_.openReport();
    const Shot shot = screenWith(observer, 66, 542, 0x0000FF);
    EXPECT_EQ(shot.at(80, 132), 0xFFFFFFu);
    // Hosts that work long let the form be closed meanwhile.
    (observer.*close)(after);
    platform::serviceReportForm();
    report_.closeReport();
    EXPECT_TRUE(formGoes(observer));
  }
}

TEST_F(FormTest, ALostDisplayIsAnErrorAndNoMore) {
  {
    VirtualDisplay display;
    report_.openReport();
    drawPage(report_);
    display.end(SIGKILL);
    EXPECT_EQ(errorOf([&] { drawPage(report_); }), 57);
    EXPECT_EQ(errorOf([&] { drawPage(report_); }), 57);
    report_.closeReport();
  }
  EXPECT_EQ(errorOf([&] { report_.openReport(); }), 57);
  {
    // It goes while a member draws: the next thing is a write to it.
    VirtualDisplay display;
    platform::ReportSurfaces& surfaces = platform::reportSurfaces();
    EXPECT_EQ(surfaces.form().drawBox(100, 100, 900, 900, 0), 0);
    display.end(SIGKILL);
    EXPECT_EQ(surfaces.serviceEvents(), 57);
  }
  const VirtualDisplay another;
  report_.openReport();
  EXPECT_NE(formOn(Observer()), 0u);
}

TEST_F(FormTest, PicturesAppearWholeOrNotAtAll) {
  const TemporaryFolder folder;
  for (const auto& [file, error] :
       {std::pair{folder / "none/page.png", 76}, {folder / "", 75}, {folder / "page.png", 0}}) {
    ::setenv("VELTGENERAL_FORM", ("image:" + file).c_str(), 1);
    EXPECT_EQ(errorOf([&] { report_.openReport(); }), error) << file;
    EXPECT_EQ(errorOf([&] { report_.closeReport(); }), 0) << file;
  }
  EXPECT_EQ(folder.fileCount(), 1u);
  EXPECT_EQ(picture(folder / "page.png").at(100, 100), 0xFFFFFFu);
}

}  // namespace
}  // namespace veltgeneral
