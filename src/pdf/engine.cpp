#include "pdf/engine.h"

#include <filesystem>

#include "drawing/error.h"
#include "drawing/pdf_file.h"
#include "pdf/command_error.h"
#include "pdf/command_file.h"
#include "pdf/commands.h"
#include "pdf/layout/document.h"

namespace veltgeneral::pdf {
namespace {

constexpr const char* kReading = "the command file cannot be read";
constexpr const char* kWriting = "the PDF file cannot be written";

// Runs `step`; its error becomes a failure of the named kind.
template <class Step>
auto named(Outcome outcome, const char* doing, const std::string& path, Step step) {
  try {
    return step();
  } catch (const drawing::Error& error) {
    // The reason comes first: a long name may be cut off.
    std::string message(doing);
    message.append(": ").append(error.what()).append(": ");
    message.append(std::filesystem::path(path).filename().string());
    throw Failure(outcome, message);
  }
}

class Generation {
 public:
  Generation(std::string commandFile, std::string pdfFile, const CodePage& codePage)
      : commandPath_(std::move(commandFile)),
        pdfPath_(std::move(pdfFile)),
        codePage_(codePage),
        commands_(named(Outcome::unreadable, kReading, commandPath_,
                        [&] { return CommandFile(commandPath_); })) {}

  void run() {
    const int pages = mentionsPageCount() ? layOut(nullptr, 0) : 0;
    named(Outcome::unwritable, kWriting, pdfPath_, [&] {
      drawing::PdfFile file(pdfPath_, drawing::kA4);
      layOut(&file, pages);
      file.commit();
    });
  }

 private:
  bool nextLine(std::string_view& line) {
    return named(Outcome::unreadable, kReading, commandPath_, [&] { return commands_.next(line); });
  }

  void rewind() {
    named(Outcome::unreadable, kReading, commandPath_, [&] { commands_.rewind(); });
  }

  bool mentionsPageCount() {
    std::string_view line;
    bool found = false;
    while (!found && nextLine(line)) found = line.find("{pages}") != std::string_view::npos;
    rewind();
    return found;
  }

  int layOut(drawing::PdfFile* file, int pageCount) {
    layout::Document document(file, pageCount, std::filesystem::path(commandPath_).parent_path());
    std::string_view line;
    while (nextLine(line))
      if (const auto command = parse(line)) document.execute(*command, commands_.lineNumber());
    rewind();
    return document.finish();
  }

  std::optional<Command> parse(std::string_view line) const {
    try {
      return parseCommand(line, codePage_);
    } catch (CommandError& error) {
      error.setLine(commands_.lineNumber());
      throw;
    }
  }

  std::string commandPath_;
  std::string pdfPath_;
  const CodePage& codePage_;
  CommandFile commands_;
};

}  // namespace

void generate(const std::string& commandFile, const std::string& pdfFile,
              const CodePage& codePage) {
  try {
    Generation(commandFile, pdfFile, codePage).run();
  } catch (const CommandError& error) {
    throw Failure(Outcome::badCommand, error.what());
  }
}

}  // namespace veltgeneral::pdf
