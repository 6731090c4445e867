// Every way of looking at many characters together against a plain loop, over random texts: also
// the ways that this processor would not take.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "platform/ascii_copy.h"
#include "platform/digit_fields.h"
#include "platform/structural_scan.h"
#include "platform/unit_scan.h"

namespace veltgeneral::platform {
namespace {

using namespace std::string_literals;

constexpr int kTexts = 3000;

std::vector<std::uint32_t> places(const Text& text, auto&& wanted) {
  std::vector<std::uint32_t> all;
  for (std::uint32_t at = 0; at < text.size(); ++at)
    if (wanted(text[at])) all.push_back(at);
  return all;
}

class Scan : public testing::Test {
 protected:
  std::size_t below(std::size_t end) { return random_() % end; }
  // Mostly of `usual`, so that what is not stands anywhere; up to the size of some blocks.
  Text text(const Text& usual, const Text& rare) {
    Text out(below(300), u'\0');
    const std::size_t odds = 1 + below(400);
    for (char16_t& c : out) {
      const Text& from = below(odds) == 0 ? rare : usual;
      c = from[below(from.size())];
    }
    return out;
  }

  std::mt19937 random_{1};
};

TEST_F(Scan, AsciiIsCopiedBlockByBlock) {
  for (int i = 0; i < kTexts; ++i) {
    const Text units = text(u"\0 az\x7F"s, u"\x80\xFF\u0100\u7FFF\u8000\uFFFF");
    const std::size_t whole =
        std::min(units.find_first_not_of(u"\0 az\x7F"s), units.size()) / kAsciiBlock * kAsciiBlock;
    std::vector<std::uint8_t> bytes;
    for (const char16_t c : units) bytes.push_back(std::uint8_t(c > 0x7F ? c | 0x80 : c));
    for (const AsciiCopies& way : asciiCopies()) {
      Text wide(bytes.size(), u'?');
      ASSERT_EQ(way.widen(bytes, wide.data()), whole);
      ASSERT_EQ(wide.substr(0, whole), units.substr(0, whole));
      std::vector<std::uint8_t> narrow(units.size(), '?');
      ASSERT_EQ(way.narrow(units, narrow.data()), whole);
      ASSERT_TRUE(
          std::equal(narrow.begin(), narrow.begin() + std::ptrdiff_t(whole), bytes.begin()));
    }
  }
}

TEST_F(Scan, BytesAreFoundInOrder) {
  for (int i = 0; i < kTexts; ++i) {
    const Text units = text(u"\0a:<\xBB\xFF"s, u";\"\r");
    const std::vector<std::uint8_t> bytes(units.begin(), units.end());
    std::vector<std::uint32_t> found(bytes.size() + kScanSlack);
    for (const auto way : byteFinders()) {
      const auto all = std::span(found).first(way(bytes, ';', '"', '\r', found.data()));
      ASSERT_TRUE(std::ranges::equal(
          all, places(units, [](char16_t c) { return c == u';' || c == u'"' || c == u'\r'; })));
    }
  }
}

TEST_F(Scan, UnitsAreFoundByTheirSetAndShifted) {
  for (int i = 0; i < kTexts; ++i) {
    // Seven rows of sixteen at most, whose halves a set tells apart.
    std::bitset<256> members;
    for (std::size_t n = below(8); n > 0; --n) members.set(below(256));
    Text rare = u"@[\u0100\u7FFF\u8000\uFFFF\xFF\0"s;
    for (std::size_t c = 0; c < 256; ++c)
      if (members[c]) rare.push_back(static_cast<char16_t>(c));
    const Text units = text(u"AMZ", rare);
    const auto wanted = places(
        units, [&](char16_t c) { return members[c > 0x7FFF ? 0u : std::min<unsigned>(c, 0xFF)]; });
    const auto others = places(units, [](char16_t c) { return c < u'A' || c > u'Z'; });
    Text shifted = units;
    for (char16_t& c : shifted) c = static_cast<char16_t>(c + 32);
    for (const UnitScans& way : unitScans()) {
      UnitPositions found{};
      std::size_t count = way.find(units, UnitSet(members), found);
      ASSERT_TRUE(std::ranges::equal(std::span(found).first(count), wanted));
      Text after(units.size(), u'?');
      count = way.shift(units, after.data(), 32, u'A', u'Z', found);
      ASSERT_TRUE(std::ranges::equal(std::span(found).first(count), others));
      ASSERT_EQ(after, shifted);
    }
  }
}

TEST_F(Scan, FieldsAreDigitsWithinTheirRanges) {
  constexpr FieldRanges kOne = fieldRanges({19, 0, 1, 1}, {20, 99, 12, 31});
  constexpr FieldRanges kTwo = fieldRanges({1, 0, 0, 0}, {31, 23, 59, 59});
  const auto plain = [](const char16_t* text, const FieldRanges& ranges) {
    for (std::size_t i = 0; i < 8; i += 2) {
      if (text[i] < u'0' || text[i] > u'9' || text[i + 1] < u'0' || text[i + 1] > u'9')
        return false;
      const int field = (text[i] - u'0') * 10 + text[i + 1] - u'0';
      if (field < ranges.least[i] || field > ranges.least[i] + ranges.span[i]) return false;
    }
    return true;
  };
  int within = 0;
  for (int i = 0; i < 100 * kTexts; ++i) {
    // "20241231235959", a digit or two of it changed.
    Text t = u"20241231235959";
    for (std::size_t n = 1 + below(2); n > 0; --n)
      t[below(t.size())] = below(4) == 0 ? Text(u"/:\0\u0660\u3030\uFFFF", 6)[below(6)]
                                         : static_cast<char16_t>(u'0' + below(10));
    const char16_t *one = t.data(), *two = one + 6;
    const bool first = plain(one, kOne), second = plain(two, kTwo);
    within += first && second;
    Text spaced = t.substr(0, 4);
    for (std::size_t at = 4; at < 14; at += 2) spaced.append(u"x").append(t, at, 2);
    ASSERT_EQ(fieldsWithin(one, kOne), first);
    ASSERT_EQ(portably::fieldsWithin(one, kOne), first);
    ASSERT_EQ(fieldsWithin(one, kOne, two, kTwo), first && second);
    ASSERT_EQ(portably::fieldsWithin(one, kOne, two, kTwo), first && second);
    ASSERT_EQ(fieldsWithin(one, one + 4, kOne), first);
    ASSERT_EQ(portably::fieldsWithin(one, one + 4, kOne), first);
    for (const auto way : {gatherFields, portably::gatherFields}) {
      Text gathered(t.size(), u'?');
      ASSERT_EQ(way(spaced.data(), kOne, kTwo, gathered.data()), first && second);
      ASSERT_EQ(gathered, t);
    }
  }
  EXPECT_GT(within, kTexts);
}

}  // namespace
}  // namespace veltgeneral::platform
