// The form on real displays, seen by another client, and as a picture.
#include <cairo-xcb.h>
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "platform/report_surfaces.h"
#include "support/dots.h"
#include "support/error_of.h"
#include "support/temporary_folder.h"
#include "support/virtual_display.h"
#include "veltgeneral/reporting.h"

namespace veltgeneral {
namespace {

using test::Picture;

constexpr int kWidth = 539;  // 8085 and 11100 twips at 96 dots per inch
constexpr int kHeight = 740;
constexpr std::uint32_t kBlack = 0;
constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kOrange = 0xFF8200;

// The dot at a place in cm on the page, which is shown at 70 % of its size.
std::uint32_t at(const Picture& shot, double x, double y, int scale = 1) {
  const double dots = 567 * 0.7 / 15 * scale;
  return test::dotAt(shot.get(), static_cast<int>(std::lround(x * dots)),
                     static_cast<int>(std::lround(y * dots)));
}

// A display and another client of it, which meets no window but the form.
class Display : public test::VirtualDisplay {
  template <class Answer, class Cookie>
  auto reply(Answer* (*wait)(xcb_connection_t*, Cookie, xcb_generic_error_t**), Cookie c) const {
    return drawing::Handle<Answer, std::free>(wait(c_.get(), c, nullptr));
  }
  // Waits until the server has done it.
  void done(xcb_void_cookie_t) const {
    reply(xcb_get_input_focus_reply, xcb_get_input_focus(c_.get()));
  }

 public:
  explicit Display(const char* screen = "1280x1024x24")
      : VirtualDisplay(screen),
        c_(xcb_connect(nullptr, nullptr)),
        screen_(xcb_setup_roots_iterator(xcb_get_setup(c_.get())).data) {}

  // The form, 0 where there is none.
  xcb_window_t form() const {
    const auto tree = reply(xcb_query_tree_reply, xcb_query_tree(c_.get(), screen_->root));
    return tree->children_len == 0 ? 0 : *xcb_query_tree_children(tree.get());
  }
  bool formIsThere(bool there) const {
    return test::waitUntil([&] { return (form() != 0) == there; });
  }
  std::pair<int, int> formSize() const {
    const auto found = reply(xcb_get_geometry_reply, xcb_get_geometry(c_.get(), form()));
    return {found->width, found->height};
  }
  std::string property(xcb_atom_t name) const {
    const auto found = reply(xcb_get_property_reply,
                             xcb_get_property(c_.get(), 0, form(), name, XCB_ATOM_ANY, 0, 1000));
    return {static_cast<const char*>(xcb_get_property_value(found.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(found.get()))};
  }

  // What stands at its top-left corner, where the form is; black where there is none.
  Picture look(int scale = 1) const {
    auto depth = xcb_screen_allowed_depths_iterator(screen_);
    while (depth.data->depth != screen_->root_depth) xcb_depth_next(&depth);
    const Picture screen(cairo_xcb_surface_create(
        c_.get(), screen_->root, xcb_depth_visuals(depth.data), kWidth * scale, kHeight * scale));
    Picture shot = test::blackPicture(kWidth * scale, kHeight * scale);
    const test::Pen pen(cairo_create(shot.get()));
    cairo_set_source_surface(pen.get(), screen.get(), 0, 0);
    cairo_paint(pen.get());
    cairo_device_finish(cairo_surface_get_device(screen.get()));  // it remembers the connection
    return shot;
  }
  // What it shows once a place in cm on the page has that colour: the server takes its time.
  Picture lookWhen(double x, double y, std::uint32_t colour, int scale = 1) const {
    Picture shot;
    EXPECT_TRUE(test::waitUntil([&] { return at(shot = look(scale), x, y, scale) == colour; }));
    return shot;
  }

  // What a window manager does to close the window of a program that answers no messages.
  void cutOff() const { done(xcb_kill_client(c_.get(), form())); }
  void destroy() const { done(xcb_destroy_window(c_.get(), form())); }
  // Lets the server paint the form from what it has of it.
  void repaint() const { done(xcb_clear_area(c_.get(), 0, form(), 0, 0, 0, 0)); }
  // The user's resolution, as a desktop's settings keep it.
  void setResources(std::string_view text) const {
    done(xcb_change_property(c_.get(), XCB_PROP_MODE_REPLACE, screen_->root,
                             XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 8,
                             static_cast<std::uint32_t>(text.size()), text.data()));
  }

 private:
  drawing::Handle<xcb_connection_t, xcb_disconnect> c_;
  const xcb_screen_t* screen_;
};

void drawPage(Reporting& report) {
  Variant size = 14.0;
  report.prtTesto(2.0, 8.0, size, false, false, Text(10, u'\u2588'));
  report.prtBox(2.0, 4.0, 5.0, 6.0, 0x0082FF);
}

// A box with its outline, whose colour has red in the lowest byte and is one of 16 bits too, and
// ten full cells of 0.6 times 14 points.
void expectPage(const Picture& shot, int scale = 1) {
  constexpr std::tuple<double, double, std::uint32_t> kDots[] = {
      {1.92, 3.92, kWhite}, {2, 4, kBlack},       {2.08, 4.08, kOrange}, {4.92, 5.92, kOrange},
      {5, 6, kBlack},       {5.08, 6.08, kWhite}, {1.95, 8.3, kWhite},   {2.05, 8.3, kBlack},
      {4.82, 8.3, kBlack},  {5.01, 8.3, kWhite},  {3, 7.9, kWhite},      {3, 8.7, kWhite}};
  for (const auto& [x, y, dot] : kDots) EXPECT_EQ(at(shot, x, y, scale), dot) << x << ", " << y;
}

class FormTest : public testing::Test {
 protected:
  FormTest() { ::unsetenv("VELTGENERAL_FORM"); }
  ~FormTest() override {
    errorOf([] { Reporting().closeReport(); });
    ::unsetenv("VELTGENERAL_FORM");
  }

  Reporting report_;
};

TEST_F(FormTest, ShowsThePageAndIsRepaintedByTheServer) {
  ::setenv("VELTGENERAL_FORM", "window", 1);
  const Display display;
  drawPage(report_);
  ASSERT_TRUE(display.formIsThere(true));
  EXPECT_EQ(at(display.look(), 1, 1), kBlack);  // unseen as yet
  report_.openReport();
  expectPage(display.lookWhen(3, 5, kOrange));
  display.repaint();
  expectPage(display.look());
  EXPECT_EQ(display.formSize(), std::pair(kWidth, kHeight));
  EXPECT_EQ(display.property(XCB_ATOM_WM_NAME), "Reporting Form");
  EXPECT_EQ(display.property(XCB_ATOM_WM_CLASS), std::string("veltgeneral\0VeltGeneral\0", 24));
  const std::string hints = display.property(XCB_ATOM_WM_NORMAL_HINTS);
  EXPECT_EQ(hints.substr(20, 8), hints.substr(28, 8));  // the smallest size is the largest
  // Another object draws on the same form; what was there stays.
  const xcb_window_t window = display.form();
  report_.newPage();
  Reporting().prtBox(2.0, 20.0, 3.0, 21.0, 0xFF0000);
  expectPage(display.lookWhen(2.5, 20.5, 0x0000FF));
  EXPECT_EQ(display.form(), window);
  report_.closeReport();
  EXPECT_TRUE(display.formIsThere(false));
}

TEST_F(FormTest, FollowsTheDisplaysColoursAndResolution) {
  constexpr std::tuple<const char*, const char*, int> kCases[] = {
      {"1280x1024x16", "", 1},
      {"1600x1600x24", "Xcursor.size:\t24\nXft.dpi:\t192\n", 2},
      {"1280x1024x24", "Xft.dpi:\tlarge\n", 1}};
  for (const auto& [screen, resources, scale] : kCases) {
    SCOPED_TRACE(screen);
    const Display display(screen);
    display.setResources(resources);
    report_.openReport();
    drawPage(report_);
    expectPage(display.lookWhen(3, 5, kOrange, scale), scale);
    EXPECT_EQ(display.formSize().second, kHeight * scale);
    report_.closeReport();
  }
}

TEST_F(FormTest, ItsUserMayCloseIt) {
  const Display display;
  for (const auto close : {&Display::cutOff, &Display::destroy}) {
    report_.openReport();
    drawPage(report_);
    ASSERT_TRUE(display.formIsThere(true));
    (display.*close)();
    EXPECT_TRUE(display.formIsThere(false));
    // A new form comes to be, unseen until it is shown, and does not know the old one's page.
    report_.prtBox(2.0, 20.0, 3.0, 21.0, 0xFF0000);
    ASSERT_TRUE(display.formIsThere(true));
    EXPECT_EQ(at(display.look(), 1, 1), kBlack);
    report_.openReport();
    EXPECT_EQ(at(display.lookWhen(2.5, 20.5, 0x0000FF), 3, 5), kWhite);
    // Hosts that work long let the form be closed meanwhile.
    (display.*close)();
    platform::serviceReportForm();
    report_.closeReport();
    EXPECT_TRUE(display.formIsThere(false));
  }
}

TEST_F(FormTest, ALostDisplayIsAnErrorAndNoMore) {
  {
    test::VirtualDisplay display;
    report_.openReport();
    display.end(SIGKILL);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(errorOf([&] { drawPage(report_); }), 57);
    report_.closeReport();
    EXPECT_EQ(errorOf([&] { report_.openReport(); }), 57);
  }
  {
    // It goes while a member draws: the next thing is a write to it.
    test::VirtualDisplay display;
    platform::ReportSurfaces& surfaces = platform::reportSurfaces();
    EXPECT_EQ(surfaces.form().drawBox(100, 100, 900, 900, 0), 0);
    display.end(SIGKILL);
    EXPECT_EQ(surfaces.serviceEvents(), 57);
  }
  const Display another;
  report_.openReport();
  EXPECT_TRUE(another.formIsThere(true));
}

TEST_F(FormTest, PicturesAppearWholeOrNotAtAll) {
  const test::TemporaryFolder folder;
  const std::string file = folder / "page.png";
  for (const auto& [place, error] :
       {std::pair{folder / "none/page.png", 76}, {folder / "", 75}, {file, 0}}) {
    ::setenv("VELTGENERAL_FORM", ("image:" + place).c_str(), 1);
    EXPECT_EQ(errorOf([&] { report_.openReport(); }), error) << place;
  }
  drawPage(report_);
  report_.closeReport();
  EXPECT_EQ(folder.fileCount(), 1u);
  const Picture picture(cairo_image_surface_create_from_png(file.c_str()));
  EXPECT_EQ(cairo_image_surface_get_width(picture.get()), kWidth);
  EXPECT_EQ(cairo_image_surface_get_height(picture.get()), kHeight);
  expectPage(picture);
}

}  // namespace
}  // namespace veltgeneral
