#include <gtest/gtest.h>

#include <map>

#include "automation/coerce.h"
#include "support/test_host.h"
#include "support/virtual_display.h"
#include "veltgeneral/c_ini_file.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

constexpr TextView kPlacement[] = {u"Left", u"Top", u"Width", u"Height"};

class Window : public Object {
 public:
  Variant call(TextView name, CallKind kind, std::span<Variant> arguments) override {
    if (name == failing) throw RuntimeError(RunTime::memberNotSupported);
    if (kind == CallKind::propertyGet) return properties.at(Text(name));
    if (kind == CallKind::propertyPut) properties[Text(name)] = arguments[0];
    if (kind != CallKind::method) return {};
    for (std::size_t i = 0; i < 4; ++i) properties[Text(kPlacement[i])] = arguments[i];
    return {};
  }

  std::map<Text, Variant> properties{{u"WindowState", 0},
                                     {u"Left", 1000.0f},
                                     {u"Top", 2000.0f},
                                     {u"Width", 5000.0f},
                                     {u"Height", 4000.0f}};
  Text failing = {};
};

// A display of 800 by 600 pixels at 96 dots an inch: 12000 by 9000 twips, 4 pixels are 60.
class WindowPlacement : public testing::Test {
 protected:
  WindowPlacement() {
    file_.setPath(u"C:\\w.ini");
    file_.setSection(u"win");
    file_.setKey(u"mine");
    file_.setDefault(u"keep");
  }

  void load(const std::string& entries, std::int32_t minWidth = 3000) {
    host_.put("drive/w.ini", "[win]\n" + entries);
    file_.LoadFormPosition(window_, minWidth, 3000);
    EXPECT_EQ(file_.key(), u"mine");
    EXPECT_EQ(file_.Default(), u"keep");
  }
  bool hasState(int state) { return toInt32(window_.properties[u"WindowState"]) == state; }

  const test::VirtualDisplay display_{"800x600x24"};
  const test::TestHost host_;
  cInifile file_;
  Window window_;
};

TEST_F(WindowPlacement, IsFittedIntoTheScreen) {
  const struct {
    std::string entries;
    std::array<std::int32_t, 4> placement;
    std::int32_t minWidth = 3000;
  } kCases[] = {
      {"", {1000, 2000, 5000, 4000}},
      {"Left=300\nTop=x\nWidth=4000\nHeight=3500.5\n", {300, 2000, 4000, 3500}},
      {"Width=100\nHeight=-1\n", {1000, 2000, 3000, 3000}},
      {"Left=-5000\nTop=59\n", {60, 60, 5000, 4000}},
      {"Left=7900\nWidth=4000\n", {7900, 2000, 4000, 4000}},
      {"Left=9000\nWidth=4000\n", {7940, 2000, 4000, 4000}},
      {"Left=9000\nWidth=40000\nTop=99999999\n", {60, 4940, 11880, 4000}},
      {"Left=500\n", {60, 2000, 11880, 4000}, 11880},
      // No room for the minimum: the window stays.
      {"Left=500\n", {1000, 2000, 5000, 4000}, 11881},
  };
  for (const auto& [entries, placement, minWidth] : kCases) {
    window_.properties = Window().properties;
    load(entries, minWidth);
    for (std::size_t i = 0; i < 4; ++i)
      EXPECT_EQ(toInt32(window_.properties.at(Text(kPlacement[i]))), placement[i]) << entries;
    EXPECT_TRUE(hasState(0));
  }
  for (const auto& [value, state] :
       {std::pair{"FAIL", 0}, {"0", 0}, {"", 0}, {"1", 2}, {"-7", 2}}) {
    window_.properties = Window().properties;
    load(std::string("Maximised=") + value);
    EXPECT_TRUE(hasState(state)) << value;
  }
}

TEST_F(WindowPlacement, IsSavedAsItsStateAllows) {
  // A minimised window changes nothing, a maximised one keeps its last normal placement.
  for (const auto& [state, maximised] : {std::pair{0, "0"}, {1, "0"}, {2, "1"}}) {
    window_.properties[u"WindowState"] = state;
    file_.SaveFormPosition(window_);
    EXPECT_TRUE(file_.Success());
    EXPECT_EQ(file_.key(), u"mine");
    EXPECT_EQ(host_.get("drive/w.ini"),
              std::string("[win]\r\nMaximised=") + maximised +
                  "\r\nLeft=1000\r\nTop=2000\r\nWidth=5000\r\nHeight=4000\r\n");
    window_.properties[u"Left"] = 7.0f;
  }
}

TEST_F(WindowPlacement, ErrorsEndTheCallQuietly) {
  const auto expectFailure = [&](TextView failing, const auto& action) {
    window_.failing = failing;
    Text any = u"1";
    file_.setValue(any);
    ASSERT_TRUE(file_.Success());
    action();
    EXPECT_FALSE(file_.Success());
    EXPECT_EQ(file_.key(), u"mine");
  };
  expectFailure(u"Top", [&] { file_.SaveFormPosition(window_); });
  EXPECT_NE(host_.get("drive/w.ini").find("Left=1000"), std::string::npos);
  expectFailure(u"Top", [&] { load(""); });
  expectFailure(u"Move", [&] { load("Maximised=1\n"); });
  EXPECT_TRUE(hasState(0));
  expectFailure(u"", [&] { load("Left=2147483647\n"); });  // the sum does not fit
  ::setenv("DISPLAY", ":54321", 1);
  expectFailure(u"", [&] { load("Left=300\n"); });
  EXPECT_EQ(window_.properties[u"Left"], Variant(1000.0f));
}

}  // namespace
}  // namespace veltgeneral
