// The operations, what they find, and what is documented of them where a call fails.
#include "faults/operation.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <map>
#include <set>
#include <sstream>

#include "core/narrow_page.h"
#include "platform/registry.h"
#include "support/servers.h"
#include "veltgeneral/component.h"
#include "veltgeneral/file_utility.h"
#include "veltgeneral/funzioni.h"
#include "veltgeneral/reporting.h"
#include "veltgeneral/runtime_error.h"
#include "veltgeneral/velt_inet.h"
#include "veltgeneral/veltgeneral_c.h"

namespace veltgeneral::faults {
namespace {

using namespace std::string_view_literals;
using test::contentOf;

// What is documented of a call that failed.

// The run-time error, and nothing handed out.
bool runTime(const Outcome& got, const std::string&, int error) {
  static const std::map<int, std::int32_t> kNumbers{{EACCES, 70}, {EPERM, 70}, {ENOSPC, 61},
                                                    {EMFILE, 67}, {ENOMEM, 7}, {EIO, 57}};
  const auto row = kNumbers.find(error);
  return row != kNumbers.end() && got.number == row->second && got.kept;
}

// What fails is not told.
bool silent(const Outcome& got, const std::string& undisturbed, int) {
  return got.number == 0 && got.seen == undisturbed;
}

// A success that hands out nothing: with an empty result, or with emptied arguments.
bool empty(const Outcome& got, const std::string&, int) {
  return got.number == 0 && got.kept && got.seen.empty();
}
bool empties(const Outcome& got, const std::string&, int) {
  return got.number == 0 && !got.kept && (got.seen.empty() || got.seen == "0");
}

bool fails(const Outcome& got, const std::string&, int) { return got.number != 0; }

template <std::int32_t... kNumbers>
bool gives(const Outcome& got, const std::string&, int) {
  return ((got.number == kNumbers) || ...);
}

// What is told does not hang on every step.
bool anything(const Outcome&, const std::string&, int) { return true; }

// A setting that cannot be read is empty, and reading goes on.
bool lacksOne(const Outcome& got, const std::string&, int) {
  return got.number == 0 &&
         (got.seen == "adasecret" || got.seen == "orderssecret" || got.seen == "ordersada");
}

// Reading ends where it fails, and what came until then counts.
bool asFarAsItCame(const Outcome& got, const std::string& undisturbed, int) {
  return got.number == eiABORTED || (got.number == 0 && undisturbed.starts_with(got.seen));
}

// What operations find.

const File kText{kName, "one;1\r\ntwo;2\r\n"};
const File kReadOnly{kName, "one\r\n", 0444};
// With the record of another program, which holds a creation time.
const File kRecorded{kName, "", 0644, "\0\0\3\0\3\0\0\0\x11\0\0\0\x20\0\0\0\0\0\0\0\0\0\0\0"sv};
const File kRecords{kName, "aaaaaaaaaaaaaaaaaaaa\r\nbbbbbbbbbbbbbbbbbbbb"};
const File kHidden{"hidden.txt", "", 0644, "0x2"};
const File kLinked{"link.txt", "3.csv", S_IFLNK};
const File kDot{"dot.png",
                "\211PNG\r\n\032\n\0\0\0\rIHDR\0\0\0\001\0\0\0\001\010\0\0\0\0:~\233U\0\0\0\nIDATx"
                "\234c`\0\0\0\002\0\001H\257\244q\0\0\0\0IEND\256B`\202"sv};
const File kCommands{kName, "text 2 2 \"one {page} of {pages}\"\nimage \"dot.png\" 2 4 1\n"};
const File kOldPdf{"the-document-made.pdf", "before"};
const File kLog{kName, "\"[an earlier line]\"\r\n"};
const File kReadOnlyLog{kName, kLog.content, 0444};
const File kRotation{"registry/machine.reg", "\"SwitchDimension\"=\"10\"\n"};
const File kNoHive{"registry/machine.reg", "", 0};
const File kUserHive{"registry/user.reg", "REGEDIT4\n"};
const File kSettings{"registry/machine.reg",
                     "[HKEY_LOCAL_MACHINE\\SOFTWARE\\App\\DbAccess]\n"
                     "\"connectionDbName\"=\"orders\"\n"
                     "\"connectionUser\"=\"ada\"\n\"connectionPassword\"=\"secret\"\n"};
const File kIni{kName, "; kept\n[Main]\nkey=old\nother=1\n\n[Last]\na=b\n", 0666, "0x20", true};
const File kRealIni{"real.ini", kIni.content};
const File kLink{kName, "real.ini", S_IFLNK};
const File kDat{"log/Tarnview.dat", kIni.content};
const File kDatBeside{"logTarnview.dat", kIni.content};
const File kClosed{".", "", 0577};  // to its owner

// And may leave.

// A log that cannot be rotated goes on growing; no line is ever lost.
bool hasEveryLine() {
  const std::string all = contentOf(kName + ".old") + contentOf(kName);
  if (!all.starts_with(kLog.content)) return false;
  const std::string added = all.substr(kLog.content.size());
  return added.empty() || (added.starts_with("\"[") && added.ends_with("]\"\r\n"));
}

// Each entry of a placement is put for itself.
bool hasWholeEntries() {
  const std::set<std::string> whole{"",        "; kept", "[Main]",  "key=old",
                                    "other=1", "[Last]", "a=b",     "Maximised=0",
                                    "Left=1",  "Top=2",  "Width=3", "Height=4"};
  std::istringstream lines(contentOf(kName));
  for (std::string line; std::getline(lines, line);)
    if (!whole.contains(line)) return false;
  return true;
}

// Without the configured folder the file lies in the current one.
bool liesHere() { return contentOf("Tarnview.dat") == "[New]\r\n"; }

bool isWholePicture() { return contentOf("form.png").ends_with("IEND\256B`\202"); }

// What is no single member.

constexpr auto kMachine = platform::RegistryRoot::localMachine;
constexpr TextView kKey = u"SOFTWARE\\App\\DbAccess";
const Text kUserName = u"connectionUser";

Variant setValue() {
  platform::setRegistryValue(kMachine, kKey, u"a", {.text = u"b"}, narrowPage());
  return {};
}

Variant removeValue() {
  return platform::removeRegistryValue(kMachine, kKey, kUserName, narrowPage());
}

Variant removeKey() { return platform::removeRegistryKey(kMachine, kKey, narrowPage()); }

Variant importBoth() {
  platform::importRegistry(
      "REGEDIT4\n[HKEY_LOCAL_MACHINE\\A]\n\"a\"=\"b\"\n[HKEY_CURRENT_USER\\A]\n\"a\"=\"b\"\n",
      narrowPage());
  return {};
}

Variant exportKey() {
  return fromUtf8(platform::exportRegistry(kMachine, kKey, true, narrowPage()).value_or(""));
}

Variant registerServer() {
  if (const vg_status status = ::DllRegisterServer(); status != 0)
    throw RuntimeError(status, u"not registered");
  return {};
}

void check(const ErrInfo& result) {
  if (!result.isSuccess()) throw RuntimeError(result.numberInfo(), result.descriptionInfo());
}

Variant readInAnotherPage() {
  ::setenv("VELTGENERAL_CODEPAGE", "ISO-8859-15", 1);
  Text text;
  check(FileUtility().readFile(kPath, text));
  return text;
}

Variant makeFolders() {
  Text windows;
  Text system;
  check(Funzioni().getWinAndSistemDir(windows, system));
  return {};
}

template <typeOutputReport kMode>
Variant report() {
  Reporting reporting;
  reporting.setOutputMode(kMode);
  Variant size = 12;
  try {
    reporting.openReport();
    reporting.prtBox(1, 1, 19, 27, 0);
    reporting.prtTesto(2, 3, size, true, false, u"one line");
    reporting.closeReport();
  } catch (...) {
    // The form is one for the process, and stays until it is closed.
    if (kMode == torFORM) reporting.closeReport();
    throw;
  }
  return {};
}

Text serverUrl() {
  static test::ScriptedServer server([](const auto& connection, const std::string&) {
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 12\r\n\r\nwhole answer");
  });
  return fromUtf8(server.url());
}

Variant fetch() {
  VeltInet inet;
  std::int32_t session = 0;
  std::int32_t page = 0;
  Text url = serverUrl();
  Text body;
  check(inet.IOpen(session));
  ErrInfo result = inet.IOpenUrl(session, url, page);
  if (result.isSuccess()) result = inet.IReadFile(page, body);
  inet.IClose(page);
  inet.IClose(session);
  check(result);
  return body;
}

TextArray table() {
  TextArray cells(Bounds{1, 2}, Bounds{1, 2});
  cells.set(1, 1, u"one");
  cells.set(2, 2, u"two; \"2\"");
  return cells;
}

ObjectRef window() {
  ObjectRef form = makeRecord();
  std::int32_t number = 0;
  for (const TextView name : {u"WindowState", u"Left", u"Top", u"Width", u"Height"}) {
    Variant value = number++;
    form->call(name, CallKind::propertyPut, {&value, 1});
  }
  return form;
}

const Text kLonger = u"a much longer value than before";
const Text kPdf = u"./the-document-made.pdf";

constexpr auto kCold = Process::cold;
constexpr auto kFirst = Process::first;
constexpr auto kWarm = Process::warm;
constexpr auto kUser = Process::user;

}  // namespace

std::vector<Operation> operations() {
  serverUrl();  // one for all processes
  return {
      {"getKeyValue", {kSettings}, {std::int32_t(kMachine), Text(kKey), kUserName}, empty},
      {"getInfoForConnection", {kSettings}, {u"App", u"", u"", u""}, lacksOne},
      {"saveInfoForConnection",
       {kSettings},
       {u"App", u"db", u"bob", u"x"},
       gives<eiREGISTRYERROR>,
       3},
      {"isRegistryInWritePermission, new hive", {kNoHive}, {}, empty},
      {"getTarnviewConfValue", {kDat}, {u"Main", u"key", u"kept"}, empties, 1, kUser},
      {"setTarnviewConfValue", {kDat}, {u"Main", u"key", u"new"}, silent, 1, kUser},
      {"setTarnviewDatFileValue", {kDatBeside}, {u"[New]"}, runTime, kInPlace, kUser, liesHere},
      {"isTarnviewDatInWritePermission", {kDat}, {}, anything, 2, kUser},
      {"set a registry value, new hive", {kNoHive}, setValue, fails},
      {"remove a registry value", {kSettings}, removeValue, fails},
      {"remove a registry key", {kSettings}, removeKey, fails},
      {"import into two hives", {kUserHive}, importBoth, fails},
      {"export a registry key", {kSettings}, exportKey, empty},
      {"DllRegisterServer", {}, registerServer, fails},
      {"Value", {kIni}, {}, empty},
      {"Value=", {kIni}, {kLonger}, fails},
      {"Value=, new file", {}, {u"new"}, fails},
      {"Value=, through a link", {kRealIni, kLink}, {kLonger}, fails},
      {"Value=, in a closed folder", {kIni, kClosed}, {kLonger}, fails, kUndone, kUser},
      {"DeleteKey", {kIni}, {}, fails},
      {"DeleteSection", {kIni}, {}, fails},
      {"EnumerateAllSections", {kIni}, {TextArray(), -1}, empties},
      {"SaveFormPosition", {kIni}, {window()}, anything, 5, kCold, hasWholeEntries},
      {"numFileInDir",
       {{"1.txt"}, {"2.txt"}, kHidden, {"3.csv"}, kLinked},
       {u"*.txt", std::int16_t{-1}},
       runTime},
      {"writeFile, new", {}, {kPath, 3, u"new"}, runTime, kInPlace},
      {"writeFile, over a read-only one", {kReadOnly}, {kPath, 3, u"new"}, runTime, kInPlace},
      {"readFile", {kText}, {kPath, u"kept"}, runTime},
      {"read in another code page", {kText}, readInAnotherPage, gives<57, 67, 70, 5>},
      {"readBinaryFile", {kText}, {kPath, Empty()}, runTime},
      {"UpdateFileTime", {kRecorded}, {kPath, 2001, 2, 0, 3, 4, 5, 6}, gives<eiABORTED, 0>, 2},
      {"writeCsvFileFromArray", {kText}, {kPath, table(), 2, 2}, runTime, kInPlace},
      {"readAndLoadInArrayByCRLF", {kText}, {kPath, TextArray(), -1}, runTime},
      {"getArrayFromCsvFile", {kText}, {kPath, TextArray(), 2, -1}, gives<9>},  // no table
      {"ooReadFile", {kRecords}, {kPath, 20, 1, std::int16_t{2}, TextArray(Bounds{1, 2})}, runTime},
      {"writeLog, new", {}, {kPath}, silent, 2},
      {"writeLog, one line more", {kLog}, {kPath}, silent},
      {"writeLog, rotating", {kLog, kRotation}, {kPath}, silent, 3, kCold, hasEveryLine},
      {"writeLog, rotating a read-only one", {kReadOnlyLog, kRotation}, {kPath}, silent},
      {"getWinAndSistemDir", {}, makeFolders, fails},
      {"createPdfFile, first", {kDot, kCommands}, {kPath, kPdf}, fails, 1, kFirst},
      {"fetch, first", {}, fetch, asFarAsItCame, 1, kFirst},
      {"createPdfFile", {kDot, kCommands, kOldPdf}, {kPath, kPdf}, fails, 1, kWarm},
      {"createPdfStream", {}, {u"text 2 2 \"one\"", Empty()}, fails, kInPlace, kWarm},
      {"report to the printer", {}, report<torPRINTER>, fails, 1, kWarm},
      {"report on the form", {}, report<torFORM>, fails, 3, kWarm, isWholePicture},
      {"fetch", {}, fetch, asFarAsItCame, 1, kWarm},
  };
}

}  // namespace veltgeneral::faults
