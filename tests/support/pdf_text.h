// What stands on the pages of a PDF document, as another program reads it.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
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

// Drops what comes before `mark` and the mark; false, and nothing changed, where there is none.
inline bool skipBehind(std::string& text, std::string_view mark) {
  const std::size_t at = text.find(mark);
  if (at != std::string::npos) text.erase(0, at + mark.size());
  return at != std::string::npos;
}

// In points.
struct Word {
  int page = 0;  // from 1
  double left = 0, top = 0, right = 0, bottom = 0;
  std::string text;
};

struct PdfText {
  explicit PdfText(const std::string& file) {
    std::string all = outputOf("pdftotext -bbox '" + file + "' - 2>/dev/null");
    while (skipBehind(all, "<page ")) {
      std::string rest = all.substr(0, all.find("</page>"));
      pages.push_back(size(rest));
      while (skipBehind(rest, "<word")) {
        Word& word = words.emplace_back();
        word.page = static_cast<int>(pages.size());
        for (double* edge : {&word.left, &word.top, &word.right, &word.bottom})
          *edge = skipBehind(rest, "=\"") ? std::stod(rest) : -1;
        if (skipBehind(rest, ">")) word.text = rest.substr(0, rest.find("</word>"));
      }
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

 private:
  static std::string size(std::string page) {
    std::string out;
    for (const char* between : {" x ", ""})
      if (skipBehind(page, "=\"")) out += std::to_string(std::lround(std::stod(page))) + between;
    return out;
  }
};

}  // namespace veltgeneral::test
