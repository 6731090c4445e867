// What stands on the pages of a PDF document, as another program reads it.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace veltgeneral::test {

// What a shell command writes.
inline std::string outputOf(const std::string& command) {
  std::FILE* pipe = ::popen(command.c_str(), "r");
  std::string out;
  for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) out += static_cast<char>(c);
  EXPECT_EQ(::pclose(pipe), 0) << command;
  return out;
}

// In points.
struct Word {
  int page = 0;  // from 1
  double left = 0, top = 0, right = 0, bottom = 0;
  std::string text;
};

struct PdfText {
  explicit PdfText(const std::string& file) {
    constexpr char kPage[] = " <page width=\"%lf\" height=\"%lf\"";
    constexpr char kWord[] = " <word xMin=\"%lf\" yMin=\"%lf\" xMax=\"%lf\" yMax=\"%lf\"";
    std::istringstream all(outputOf("pdftotext -bbox '" + file + "' - 2>/dev/null"));
    for (std::string line; std::getline(all, line);) {
      double x = 0, y = 0;
      Word w{static_cast<int>(pages.size()), 0, 0, 0, 0, {}};
      if (std::sscanf(line.c_str(), kPage, &x, &y) == 2)
        pages.push_back(std::to_string(std::lround(x)) + " x " + std::to_string(std::lround(y)));
      if (std::sscanf(line.c_str(), kWord, &w.left, &w.top, &w.right, &w.bottom) != 4) continue;
      w.text = line.substr(line.find('>') + 1);
      w.text.erase(w.text.find('<'));
      words.push_back(w);
    }
  }

  // The first of that text; none is on page 0.
  Word word(std::string_view text) const {
    for (const Word& each : words)
      if (each.text == text) return each;
    return {};
  }
  // The words of a page in reading order, a blank between them.
  std::string page(int number) const {
    std::string text;
    for (const Word& each : words)
      if (each.page == number) text += (text.empty() ? "" : " ") + each.text;
    return text;
  }

  std::vector<std::string> pages;  // "width x height" in whole points
  std::vector<Word> words;
};

}  // namespace veltgeneral::test
