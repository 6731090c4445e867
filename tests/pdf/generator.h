// Runs the generator in a folder of the test's own and reads its documents with independent tools.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "support/temporary_folder.h"

namespace veltgeneral::pdf {

constexpr double kCm = 72 / 2.54;

struct Result {
  std::int16_t number;
  std::string message;  // without the blanks that fill it
};

struct Word {
  int page;  // from 1
  double left, top, right, bottom;
  std::string text;
};

class Generator {
 public:
  // What the engine makes of `commands`, in <folder>/a.pdf.
  Result run(std::string_view commands) const {
    return runFiles(folder.put("a.txt", commands), folder / "a.pdf");
  }
  static Result runFiles(const std::string& commandFile, const std::string& pdfFile) {
    using Entry = std::int16_t(const char*, const char*, char*);
    static auto* entry =
        reinterpret_cast<Entry*>(::dlsym(::dlopen(PDF_MODULE, RTLD_NOW), "VBRavpdf"));
    std::string message(151, '#');
    const std::int16_t number = entry(commandFile.c_str(), pdfFile.c_str(), message.data());
    EXPECT_EQ(message.back(), '#') << "wrote beyond the buffer";
    message.pop_back();
    EXPECT_EQ(message.find('\0'), std::string::npos);
    message.erase(message.find_last_not_of(' ') + 1);
    return {number, message};
  }

  // The output of a shell command; %s stands for the document.
  std::string ask(std::string_view tool) const {
    std::string command(tool);
    command.replace(command.find("%s"), 2, folder / "a.pdf");
    std::FILE* pipe = ::popen(command.c_str(), "r");
    std::string out;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) out += static_cast<char>(c);
    EXPECT_EQ(::pclose(pipe), 0) << command;
    return out;
  }
  std::string info(const std::string& name) const {
    std::string all = '\n' + ask("pdfinfo %s");
    if (!skipBehind(all, '\n' + name + ':')) return "";
    all.erase(0, all.find_first_not_of(' '));
    return upTo(all, "\n");
  }
  // Every word of the document with its place in points, as a reader finds it.
  std::vector<Word> words() const {
    std::string all = ask("pdftotext -bbox %s - 2>/dev/null");
    std::vector<Word> words;
    for (int page = 1; skipBehind(all, "<page "); ++page) {
      std::string rest = upTo(all, "</page>");
      while (skipBehind(rest, "xMin=\"")) {
        Word& word = words.emplace_back(Word{page, std::stod(rest), 0, 0, 0, ""});
        for (double* edge : {&word.top, &word.right, &word.bottom})
          *edge = skipBehind(rest, "=\"") ? std::stod(rest) : -1;
        word.text = skipBehind(rest, ">") ? upTo(rest, "</word>") : "";
      }
    }
    return words;
  }
  // The words of a page in reading order, a blank between them.
  std::string pageText(int page) const {
    std::string text;
    for (const Word& word : words())
      if (word.page == page) text += (text.empty() ? "" : " ") + word.text;
    return text;
  }

  test::TemporaryFolder folder;

 private:
  // Drops what comes before `mark` and the mark; false, and nothing changed, where there is none.
  static bool skipBehind(std::string& text, std::string_view mark) {
    const std::size_t at = text.find(mark);
    if (at != std::string::npos) text.erase(0, at + mark.size());
    return at != std::string::npos;
  }
  static std::string upTo(const std::string& text, std::string_view mark) {
    return text.substr(0, text.find(mark));
  }
};

}  // namespace veltgeneral::pdf
