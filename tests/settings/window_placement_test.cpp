#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <optional>

#include "settings/support.h"
#include "support/process.h"
#include "veltgeneral/c_ini_file.h"
#include "veltgeneral/runtime_error.h"

namespace veltgeneral {
namespace {

using namespace veltgeneral::testing;

class Window : public Object {
 public:
  Variant call(TextView name, CallKind kind, std::span<Variant> arguments) override {
    if (name == failing) throw RuntimeError(RunTime::memberNotSupported);
    if (kind == CallKind::method) {
      ++moves;
      constexpr TextView kNames[] = {u"Left", u"Top", u"Width", u"Height"};
      for (std::size_t i = 0; i < 4; ++i) properties[Text(kNames[i])] = arguments[i];
    } else if (kind == CallKind::propertyPut) {
      properties[Text(name)] = arguments[0];
    }
    return kind == CallKind::propertyGet ? properties.at(Text(name)) : Variant();
  }

  std::map<Text, Variant> properties{{u"WindowState", std::int16_t{0}},
                                     {u"Left", 1000.0f},
                                     {u"Top", 2000.0f},
                                     {u"Width", 5000.0f},
                                     {u"Height", 4000.0f}};
  Text failing = {};
  int moves = 0;
};

// A display of 800 by 600 pixels at 96 dots an inch: 12000 by 9000 twips, 4 pixels are 60.
class WindowPlacement : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    int ends[2] = {-1, -1};
    ASSERT_EQ(::pipe(ends), 0);
    display_.emplace(
        std::vector<std::string>{"Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0",
                                 "800x600x24", "-dpi", "96", "-nolisten", "tcp", "-noreset"},
        test::Process::Options{.output = {}, .unprivileged = false, .inherited = ends[1]});
    ::close(ends[1]);
    std::string number;
    for (char c = 0; ::read(ends[0], &c, 1) == 1 && c != '\n';) number += c;
    ::close(ends[0]);
    ASSERT_FALSE(number.empty()) << "Xvfb did not start";
    name_ = ":" + number;
  }
  static void TearDownTestSuite() { display_.reset(); }

  void SetUp() override {
    ::setenv("DISPLAY", name_.c_str(), 1);
    file_.setPath(u"C:\\w.ini");
    file_.setSection(u"win");
    file_.setKey(u"mine");
    file_.setDefault(u"keep");
  }

  void load(const std::string& entries, std::int32_t minWidth = 3000,
            std::int32_t minHeight = 3000) {
    setContent(path_, "[win]\n" + entries);
    window_.moves = 0;
    file_.LoadFormPosition(window_, minWidth, minHeight);
    EXPECT_EQ(file_.key(), u"mine");
    EXPECT_EQ(file_.Default(), u"keep");
  }
  std::vector<std::int32_t> placement() const {
    std::vector<std::int32_t> values;
    for (const Text name : {u"Left", u"Top", u"Width", u"Height"}) {
      const Variant& value = window_.properties.at(name);
      const auto* whole = std::get_if<std::int32_t>(&value);
      values.push_back(whole ? *whole : static_cast<std::int32_t>(std::get<float>(value)));
    }
    return values;
  }

  static inline std::optional<test::Process> display_;
  static inline std::string name_;
  TestHost host_;
  std::string path_ = host_ / "drive/w.ini";
  cInifile file_;
  Window window_;
};

TEST_F(WindowPlacement, IsFittedIntoTheScreen) {
  struct Case {
    std::string entries;
    std::vector<std::int32_t> placement;
    bool moved = true;
    std::int32_t minWidth = 3000;
  };
  const Case cases[] = {
      {"", {1000, 2000, 5000, 4000}},
      {"Left=300\nTop=x\nWidth=4000\nHeight=3500.5\n", {300, 2000, 4000, 3500}},
      {"Width=100\nHeight=-1\n", {1000, 2000, 3000, 3000}},
      {"Left=-5000\nTop=59\n", {60, 60, 5000, 4000}},
      {"Left=9000\nWidth=4000\n", {7940, 2000, 4000, 4000}},
      {"Left=9000\nWidth=40000\nTop=99999999\n", {60, 4940, 11880, 4000}},
      // No room for the minimum: the window stays.
      {"Left=500\n", {1000, 2000, 5000, 4000}, false, 11881},
      {"Left=500\n", {60, 2000, 11880, 4000}, true, 11880},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.entries);
    window_.properties = Window().properties;
    load(c.entries, c.minWidth);
    EXPECT_EQ(window_.moves, c.moved ? 1 : 0);
    EXPECT_EQ(placement(), c.placement);
    EXPECT_EQ(window_.properties[u"WindowState"], Variant(std::int16_t{0}));
  }
  for (const char* value : {"FAIL", "0", "", "1", "-7"}) {
    window_.properties = Window().properties;
    load(std::string("Maximised=") + value);
    const bool maximised = *value == '1' || *value == '-';
    EXPECT_EQ(window_.properties[u"WindowState"],
              Variant(static_cast<std::int16_t>(maximised ? 2 : 0)));
  }
}

TEST_F(WindowPlacement, IsSavedAsItsStateAllows) {
  file_.SaveFormPosition(window_);
  EXPECT_TRUE(file_.Success());
  EXPECT_EQ(file_.key(), u"mine");
  const std::string saved =
      "[win]\r\nMaximised=0\r\nLeft=1000\r\nTop=2000\r\nWidth=5000\r\nHeight=4000\r\n";
  EXPECT_EQ(contentOf(path_), saved);
  window_.properties[u"WindowState"] = std::int16_t{1};
  window_.properties[u"Left"] = 7.0f;
  file_.SaveFormPosition(window_);
  EXPECT_EQ(contentOf(path_), saved);
  window_.properties[u"WindowState"] = std::int16_t{2};
  file_.SaveFormPosition(window_);
  EXPECT_EQ(contentOf(path_), "[win]\r\nMaximised=1" + saved.substr(18));
}

TEST_F(WindowPlacement, ErrorsEndTheCallQuietly) {
  const auto expectFailure = [&](const auto& action) {
    Text any = u"1";
    file_.setValue(any);
    ASSERT_TRUE(file_.Success());
    action();
    EXPECT_FALSE(file_.Success());
    EXPECT_EQ(file_.key(), u"mine");
  };
  window_.failing = u"Top";
  expectFailure([&] { file_.SaveFormPosition(window_); });
  EXPECT_NE(contentOf(path_).find("Left=1000"), std::string::npos);
  expectFailure([&] { load(""); });
  window_.failing = u"Move";
  expectFailure([&] { load("Maximised=1\n"); });
  EXPECT_EQ(window_.properties[u"WindowState"], Variant(std::int16_t{0}));
  window_.failing.clear();
  expectFailure([&] { load("Left=2147483647\n"); });  // the sum does not fit
  EXPECT_EQ(window_.moves, 0);
  ::setenv("DISPLAY", ":54321", 1);
  expectFailure([&] { load("Left=300\n"); });
  EXPECT_EQ(window_.moves, 0);
}

}  // namespace
}  // namespace veltgeneral
