// Surfaces that write down what is asked of them, one line a call.
#pragma once

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "platform/report_surfaces.h"

namespace veltgeneral::test {

using platform::ErrorNumber;

struct Record {
  std::vector<std::string> lines;
  std::string refused;    // a call that begins so answers 482
  float textWidth = 100;  // twips that every character takes

  template <class... Words>
  ErrorNumber note(const Words&... words) {
    std::ostringstream line;
    const char* between = "";
    ((line << between << words, between = " "), ...);
    lines.push_back(line.str());
    return !refused.empty() && lines.back().starts_with(refused) ? 482 : 0;
  }
};

class RecordingSurface : public platform::ReportSurface {
 public:
  explicit RecordingSurface(Record& record) : record_(record) {}

  ErrorNumber setFontName(TextView face) noexcept override {
    return record_.note("face", toUtf8(face));
  }
  ErrorNumber setFontSize(float points) noexcept override { return record_.note("size", points); }
  ErrorNumber setFontBold(bool bold) noexcept override { return record_.note("bold", bold); }
  ErrorNumber setFontItalic(bool italic) noexcept override {
    return record_.note("italic", italic);
  }
  ErrorNumber setCurrentX(float twips) noexcept override { return record_.note("x", x_ = twips); }
  ErrorNumber setCurrentY(float twips) noexcept override { return record_.note("y", y_ = twips); }
  ErrorNumber getCurrentX(float& twips) noexcept override {
    twips = x_;
    return record_.note("x?");
  }
  ErrorNumber getCurrentY(float& twips) noexcept override {
    twips = y_;
    return record_.note("y?");
  }
  ErrorNumber printText(TextView text) noexcept override {
    x_ += record_.textWidth * static_cast<float>(text.size());
    return record_.note("text", toUtf8(text));
  }
  ErrorNumber drawBox(float x1, float y1, float x2, float y2,
                      std::int32_t color) noexcept override {
    return record_.note("box", x1, y1, x2, y2, color);
  }
  ErrorNumber newPage() noexcept override { return record_.note("page"); }
  ErrorNumber endDocument() noexcept override { return record_.note("end"); }
  ErrorNumber show() noexcept override { return record_.note("show"); }
  ErrorNumber unload() noexcept override { return record_.note("unload"); }

 private:
  Record& record_;
  float x_ = 0;
  float y_ = 0;
};

class RecordingSurfaces : public platform::ReportSurfaces {
 public:
  Record record;

  platform::ReportSurface& form() noexcept override { return form_; }
  ErrorNumber openPrinter(std::int16_t size,
                          std::unique_ptr<platform::ReportSurface>& printer) noexcept override {
    printer = std::make_unique<RecordingSurface>(record);
    return record.note("paper", size);
  }
  ErrorNumber serviceEvents() noexcept override { return record.note("service"); }

 private:
  RecordingSurface form_{record};
};

}  // namespace veltgeneral::test
