// The operations on files and documents, and the Internet: FileUtility, ErrInfo, Funzioni,
// Reporting and VeltInet.
#include "faults/documented.h"
#include "inet/servers.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/reporting.h"
#include "veltgeneral/velt_inet.h"

namespace veltgeneral::faults {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

// FileUtility

template <class Number>
Outcome filledCount(const Site& site, const std::function<ErrInfo(Number&)>& body) {
  return filled<Number>(site, -1, body, [](Number count) { return std::to_string(count); });
}

void text(const Site& site) { site.put("in.txt", "one;1\r\ntwo;2\r\n"); }

void readOnlyText(const Site& site) {
  text(site);
  fs::permissions(site.file("in.txt"), fs::perms(0444));
}

// With the record of another program, which holds a creation time.
void recordedText(const Site& site) {
  text(site);
  setAttribute(site, "in.txt", "user.DOSATTRIB",
               "\0\0\3\0\3\0\0\0\x11\0\0\0\x20\0\0\0\0\0\0\0\0\0\0\0"sv);
}

void manyFiles(const Site& site) {
  for (const char* name : {"1.txt", "2.txt", "hidden.txt", "3.csv"}) site.put(name, "x");
  setAttribute(site, "hidden.txt", "user.DOSATTRIB", "0x2");
  fs::create_symlink("3.csv", site.file("link.txt"));
}

void twoRecords(const Site& site) {
  site.put("in.txt", std::string(20, 'a') + "\r\n" + std::string(20, 'b'));
}

Outcome numFileInDir(const Site& site) {
  return filledCount<std::int16_t>(site, [&](std::int16_t& count) {
    return FileUtility().numFileInDir(site.text("*.txt"), count);
  });
}

Outcome writeFile(const Site& site) {
  return site.result([&] { return FileUtility().writeFile(site.text("in.txt"), 3, u"new"); });
}

Outcome readFile(const Site& site) {
  return filledText(site,
                    [&](Text& out) { return FileUtility().readFile(site.text("in.txt"), out); });
}

Outcome readInAnotherPage(const Site& site) {
  ::setenv("VELTGENERAL_CODEPAGE", "ISO-8859-15", 1);
  return readFile(site);
}

// A code page that the host cannot give now is error 5.
bool unknownCodePage(const Outcome& got, const Outcome& undisturbed, int error) {
  return runTime(got, undisturbed, error) || (got.number == 5 && got.seen == "kept");
}

Outcome readBinaryFile(const Site& site) {
  return filled<Variant>(
      site, Variant(),
      [&](Variant& out) { return FileUtility().readBinaryFile(site.text("in.txt"), out); },
      [](const Variant& out) {
        const auto& bytes = std::get<Bytes>(out);
        return std::string(bytes.begin(), bytes.end());
      });
}

Outcome updateFileTime(const Site& site) {
  std::array<Variant, 8> given{site.text("in.txt"), 2001, 2, 0, 3, 4, 5, 6};
  auto& [name, year, month, weekDay, day, hour, minute, second] = given;
  return site.result([&] {
    return FileUtility().UpdateFileTime(name, year, month, weekDay, day, hour, minute, second);
  });
}

// A time that cannot be set goes unreported.
bool cannotOpen(const Outcome& got, const Outcome&, int error) {
  return error != EINTR && (got.number == eiABORTED || got.number == 0);
}

Outcome writeTable(const Site& site) {
  TextArray cells(Bounds{1, 2}, Bounds{1, 2});
  cells.at(1, 1) = u"one";
  cells.at(2, 2) = u"two; \"2\"";
  return site.result(
      [&] { return FileUtility().writeCsvFileFromArray(site.text("in.txt"), cells, 2, 2); });
}

Outcome readLines(const Site& site) {
  TextArray rows;
  return filledCount<std::int32_t>(site, [&](std::int32_t& count) {
    return FileUtility().readAndLoadInArrayByCRLF(site.text("in.txt"), rows, count);
  });
}

Outcome readTable(const Site& site) {
  TextArray cells;
  std::int32_t count = 0;
  Outcome outcome = site.result(
      [&] { return FileUtility().getArrayFromCsvFile(site.text("in.txt"), cells, 2, count); });
  if (outcome.number == 0) outcome.seen += std::to_string(count) + toUtf8(cells.at(2, 2));
  return outcome;
}

Outcome readRecords(const Site& site) {
  TextArray records(Bounds{1, 2});
  std::int16_t count = 2;
  Outcome outcome = site.result(
      [&] { return FileUtility().ooReadFile(site.text("in.txt"), 20, 1, count, records); });
  outcome.seen += outcome.number == 0 ? toUtf8(records.at(2)) : "kept";
  return outcome;
}

// ErrInfo

constexpr std::string_view kEarlierLine = "\"[an earlier line]\"\r\n";

void log(const Site& site) { site.put("app.log", kEarlierLine); }

void longLog(const Site& site) {
  addToHive(site,
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Zoltra\\LogSystem]\n\"SwitchDimension\"=\"10\"\n");
  log(site);
}

void readOnlyLog(const Site& site) {
  longLog(site);
  fs::permissions(site.file("app.log"), fs::perms(0444));
}

Outcome writeLog(const Site& site) {
  const Variant file = site.text("app.log");
  ErrInfo failure(5, u"what went wrong", eiERRORTYPE, u"here");
  return site.result([&] { return failure.writeLog(file); });
}

// A log that cannot be rotated goes on growing; no line is ever lost.
bool hasEveryLine(const Site& site) {
  const std::string all = site.get("app.log.old") + site.get("app.log");
  if (!all.starts_with(kEarlierLine)) return false;
  const std::string added = all.substr(kEarlierLine.size());
  return added.empty() || (added.starts_with("\"[") && added.ends_with("]\"\r\n"));
}

// Funzioni

constexpr std::string_view kDot =
    "\211PNG\r\n\032\n\0\0\0\rIHDR\0\0\0\001\0\0\0\001\010\0\0\0\0:~\233U\0\0\0\nIDATx\234c`"
    "\0\0\0\002\0\001H\257\244q\0\0\0\0IEND\256B`\202"sv;

void commands(const Site& site) {
  site.put("dot.png", kDot);
  site.put("in.txt", "text 2 2 \"one {page} of {pages}\"\nimage \"dot.png\" 2 4 1\n");
  site.put("out.pdf", "before");
}

Outcome systemFolders(const Site& site) {
  Text windows;
  Text system;
  return site.result([&] { return Funzioni().getWinAndSistemDir(windows, system); });
}

Outcome createPdf(const Site& site) {
  return site.result(
      [&] { return Funzioni().createPdfFile(site.text("in.txt"), site.text("out.pdf")); });
}

Outcome createStream(const Site& site) {
  Variant pdf;
  const Variant given = Text(u"text 2 2 \"one\"");
  Outcome outcome = site.result([&] { return Funzioni().createPdfStream(given, pdf); });
  const Text* bytes = std::get_if<Text>(&pdf);
  outcome.seen += bytes != nullptr && bytes->starts_with(u"%PDF") ? "a document" : "";
  return outcome;
}

// The libraries that open fonts give up on a signal.
bool failsOnASignalToo(const Outcome& got, const Outcome&, int) { return got.number != 0; }

// Reporting

template <typeOutputReport kMode>
Outcome report(const Site& site) {
  Reporting reporting;
  reporting.setOutputMode(kMode);
  const Outcome outcome = site.tried([&] {
    reporting.openReport();
    Variant size = 12;
    reporting.prtBox(1, 1, 19, 27, 0);
    reporting.prtTesto(2, 3, size, true, false, u"one line");
    reporting.closeReport();
  });
  // The form is one for the process, and stays until it is closed.
  if (outcome.number != 0 && kMode == torFORM)
    Site{site.folder}.tried([&] { reporting.closeReport(); });
  return outcome;
}

bool isWholePicture(const Site& site) { return site.get("form.png").ends_with("IEND\256B`\202"); }

// VeltInet

// Started by the parent, before any trial.
const std::string& serverUrl() {
  static test::ScriptedServer server([](const auto& connection, const std::string&) {
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 12\r\n\r\nwhole answer");
  });
  static const std::string kUrl = server.url();
  return kUrl;
}

void startServer(const Site&) { serverUrl(); }

Outcome fetch(const Site& site) {
  VeltInet inet;
  std::int32_t session = 0;
  std::int32_t file = 0;
  Text url = fromUtf8(serverUrl());
  Text body;
  Outcome outcome = site.result([&] {
    ErrInfo result = inet.IOpen(session);
    if (result.isSuccess()) result = inet.IOpenUrl(session, url, file);
    if (result.isSuccess()) result = inet.IReadFile(file, body);
    inet.IClose(file);
    inet.IClose(session);
    return result;
  });
  outcome.seen += toUtf8(body);
  return outcome;
}

// Reading ends where it fails, and what came until then counts.
bool asFarAsItCame(const Outcome& got, const Outcome& undisturbed, int) {
  return got.number == eiABORTED || (got.number == 0 && undisturbed.seen.starts_with(got.seen));
}

constexpr int kInPlace = Operation::kInPlace;

// clang-format off
const Operation kRows[] = {
    {"numFileInDir", manyFiles, numFileInDir, runTime},
    {"writeFile, new", nothing, writeFile, runTime, kInPlace},
    {"writeFile, over a read-only one", readOnlyText, writeFile, runTime, kInPlace},
    {"readFile", text, readFile, runTime},
    {"readFile, in another code page", text, readInAnotherPage, unknownCodePage},
    {"readBinaryFile", text, readBinaryFile, runTime},
    {"UpdateFileTime", recordedText, updateFileTime, cannotOpen, 2},
    {"writeCsvFileFromArray", text, writeTable, runTime, kInPlace},
    {"readAndLoadInArrayByCRLF", text, readLines, runTime},
    {"getArrayFromCsvFile", text, readTable, failsWith<9>},  // no lines, and so no table
    {"ooReadFile", twoRecords, readRecords, runTime},
    {"writeLog, new", nothing, writeLog, silent, 2, Way::cold, false},
    {"writeLog, one line more", log, writeLog, silent, 1, Way::cold, false},
    {"writeLog, rotating", longLog, writeLog, silent, 3, Way::cold, false, hasEveryLine},
    {"writeLog, rotating a read-only one", readOnlyLog, writeLog, silent},
    {"getWinAndSistemDir", nothing, systemFolders, fails},
    {"createPdfFile, first", commands, createPdf, fails, 1, Way::first},
    {"fetch, first", startServer, fetch, asFarAsItCame, 1, Way::first},
    {"createPdfFile", commands, createPdf, failsOnASignalToo, 1, Way::warm},
    {"createPdfStream", nothing, createStream, failsOnASignalToo, kInPlace, Way::warm, false},
    {"report to the printer", nothing, report<torPRINTER>, failsOnASignalToo, 1, Way::warm},
    {"report on the form", nothing, report<torFORM>, failsOnASignalToo, 3, Way::warm, true, isWholePicture},
    {"fetch", startServer, fetch, asFarAsItCame, 1, Way::warm},
};
// clang-format on

}  // namespace

std::span<const Operation> fileOperations() { return kRows; }

}  // namespace veltgeneral::faults
