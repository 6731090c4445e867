// Conversions of values beside what the C library does for the same, and rewriting of texts beside
// their copy and a loop of find-and-replace.
//
// Each measures its peer in the same run. "speedup" is the peer's time over ours, "ratio" ours over
// the peer's.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

#include "floor.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

using benchmark::DoNotOptimize;

constexpr int kCalls = 2000;  // in one timing of a small member

template <class Action>
auto repeated(Action action) {
  return [action] {
    for (int i = 0; i < kCalls; ++i) action();
  };
}

// Small members: nanoseconds of a call, and how many times the peer takes.
template <class Ours, class Peer>
void beside(benchmark::State& state, Ours ours, Peer peer) {
  std::vector<double> own;
  std::vector<double> theirs;
  for (auto _ : state) {
    theirs.push_back(bench::secondsOf(repeated(peer)));
    own.push_back(bench::secondsOf(repeated(ours)));
    state.SetIterationTime(own.back());
  }
  const double mine = bench::median(std::move(own)) / kCalls;
  const double other = bench::median(std::move(theirs)) / kCalls;
  state.counters["ns"] = mine * 1e9;
  state.counters["peer_ns"] = other * 1e9;
  state.counters["speedup"] = other / mine;
}

// Reads by one format and writes by another, the text that comes out of it; false where it cannot
// be read.
bool roundTrip(const char* text, const char* read, const char* write, std::array<char, 32>& out) {
  DoNotOptimize(text);
  std::tm time{};
  return ::strptime(text, read, &time) != nullptr &&
         std::strftime(out.data(), out.size(), write, &time) != 0;
}

template <auto Check>
void check(benchmark::State& state, const Text& text, const char* peerText, const char* format) {
  const Funzioni f;
  TextView view = text;
  beside(
      state,
      [&] {
        DoNotOptimize(view);
        DoNotOptimize((f.*Check)(view));
      },
      [=] {
        std::array<char, 32> out;
        DoNotOptimize(roundTrip(peerText, format, format, out) &&
                      std::strcmp(peerText, out.data()) == 0);
      });
}

void dayValid(benchmark::State& s) {
  check<&Funzioni::isDateYYYYMMDD>(s, u"20240315", "20240315", "%Y%m%d");
}
void dayInvalid(benchmark::State& s) {
  check<&Funzioni::isDateYYYYMMDD>(s, u"20241331", "20241331", "%Y%m%d");
}
void stampValid(benchmark::State& s) {
  check<&Funzioni::isDateYYYYMMDDHH24MISS>(s, u"20240315235959", "20240315235959", "%Y%m%d%H%M%S");
}
void stampInvalid(benchmark::State& s) {
  check<&Funzioni::isDateYYYYMMDDHH24MISS>(s, u"20240315246060", "20240315246060", "%Y%m%d%H%M%S");
}
void timeValid(benchmark::State& s) {
  check<&Funzioni::isTimeHH24MISS>(s, u"235959", "235959", "%H%M%S");
}
void timeInvalid(benchmark::State& s) {
  check<&Funzioni::isTimeHH24MISS>(s, u"245959", "245959", "%H%M%S");
}

void dateToXml(benchmark::State& state) {
  const Funzioni f;
  const Text digits = u"20240315235959";
  beside(
      state, [&] { DoNotOptimize(f.getDate2Xml(digits)); },
      [] {
        std::array<char, 32> out;
        DoNotOptimize(roundTrip("20240315235959", "%Y%m%d%H%M%S", "%Y-%m-%dT%H:%M:%S", out));
        DoNotOptimize(std::string(out.data()));
      });
}

void dateFromXml(benchmark::State& state) {
  const Funzioni f;
  const Text xml = u"2024-03-15T23:59:59";
  beside(
      state, [&] { DoNotOptimize(f.getDateFromXml(xml)); },
      [] {
        std::array<char, 32> out;
        DoNotOptimize(roundTrip("2024-03-15T23:59:59", "%Y-%m-%dT%H:%M:%S", "%Y%m%d%H%M%S", out));
        DoNotOptimize(std::string(out.data()));
      });
}

void durationToXml(benchmark::State& state) {
  const Funzioni f;
  Variant amount = 9015.0;
  beside(
      state,
      [&] {
        DoNotOptimize(amount);
        DoNotOptimize(f.getDur2Xml(amount));
      },
      [] {
        double total = 9015.0 * 6;
        DoNotOptimize(total);
        std::array<char, 64> out;
        const int hours = static_cast<int>(total / 3600);
        const int minutes = static_cast<int>((total - hours * 3600) / 60);
        DoNotOptimize(std::snprintf(out.data(), out.size(), "PT%dH%dM%.15gS", hours, minutes,
                                    total - hours * 3600 - minutes * 60));
        DoNotOptimize(out);
      });
}

void durationFromXml(benchmark::State& state) {
  const Funzioni f;
  Variant xml = Text(u"PT15H1M30S");
  beside(
      state,
      [&] {
        DoNotOptimize(xml);
        DoNotOptimize(f.getDurFromXml(xml));
      },
      [] {
        const char* text = "PT15H1M30S";
        DoNotOptimize(text);
        int hours = 0;
        int minutes = 0;
        double seconds = 0;
        DoNotOptimize(std::sscanf(text, "PT%dH%dM%lfS", &hours, &minutes, &seconds));
        DoNotOptimize((minutes * 60 + hours * 3600 + seconds) * 10 / 60);
      });
}

void dayNumber(benchmark::State& state) {
  const Funzioni f;
  TextView day = u"20240315";
  beside(
      state,
      [&] {
        DoNotOptimize(day);
        DoNotOptimize(f.getDayNumberFromYYYYMMDD(day));
      },
      [] {
        std::tm time{};
        const char* text = "20240315";
        DoNotOptimize(text);
        ::strptime(text, "%Y%m%d", &time);
        DoNotOptimize(time.tm_wday);
      });
}

using Rewriter = ErrInfo (Funzioni::*)(TextView, Text&) const;

constexpr TextView kProse = u"Every box has quite a few jars of wine, and six of them went by, ";
constexpr TextView kLetters = u"abcdefghijklmnopqrst";  // ASCII before and after the cipher

struct Rewriting {
  const char* name;
  Rewriter call;
  TextView replaced{};  // one after the other, where every eighth character matches
  TextView words = kProse;
  Rewriter madeBy = nullptr;  // what makes the text of the words
};

const Rewriting kRewritings[] = {
    {"normStringForDb", &Funzioni::normStringForDb, u"'`\r\n"},
    {"normStringNoCRLF", &Funzioni::normStringNoCRLF, u"\r\n"},
    {"normStringOnlyAscii", &Funzioni::normStringOnlyAscii, u"\x01\x0B€“"},
    {"normStringOnlyApice", &Funzioni::normStringOnlyApice, u"'"},
    {"normStringForXML", &Funzioni::normStringForXML, u"&èéàùòì<>'"},
    {"simpleEncrypt/letters", &Funzioni::simpleEncrypt, {}, kLetters},
    {"simpleDecrypt/letters", &Funzioni::simpleDecrypt, {}, kLetters},
    {"simpleEncrypt/prose", &Funzioni::simpleEncrypt},
    {"simpleDecrypt/prose", &Funzioni::simpleDecrypt, {}, kProse, &Funzioni::simpleEncrypt},
};

Text textOf(const Rewriting& rewriting, std::size_t size) {
  Text text;
  while (text.size() < size) text.append(rewriting.words.substr(0, size - text.size()));
  text.back() = u'.';
  if (rewriting.madeBy != nullptr) (Funzioni().*rewriting.madeBy)(text, text);
  return text;
}

// As many runs as make a timing of some ten microseconds.
template <class Action>
auto often(std::size_t size, Action action) {
  return [action, runs = 64'000 / size] {
    for (std::size_t i = 0; i < runs; ++i) action();
  };
}

// "ratio" is against the bare copy, "ratio_returned" against one that also returns a result.
void untouched(benchmark::State& state, const Rewriting& rewriting) {
  const Funzioni f;
  const auto size = static_cast<std::size_t>(state.range(0));
  const Text text = textOf(rewriting, size);
  Text ignored;
  const ErrInfo done = (f.*rewriting.call)(text, ignored);
  std::vector<double> bare;
  std::vector<double> returned;
  for (auto _ : state) {
    const double copied = bench::secondsOf(often(size, [&] {
      Text out = text;
      DoNotOptimize(out.data());
    }));
    const double own = bench::secondsOf(often(size, [&] {
      Text out;
      DoNotOptimize((f.*rewriting.call)(text, out));
      DoNotOptimize(out.data());
    }));
    const double copiedAndReturned = bench::secondsOf(often(size, [&] {
      Text out = text;
      DoNotOptimize(ErrInfo(done));
      DoNotOptimize(out.data());
    }));
    state.SetIterationTime(own);
    bare.push_back(own / copied);
    returned.push_back(own / copiedAndReturned);
  }
  state.counters["ratio"] = bench::median(std::move(bare));
  state.counters["ratio_returned"] = bench::median(std::move(returned));
}

void replaceAll(Text& text, TextView what, TextView by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != Text::npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
}

void everyEighth(benchmark::State& state, const Rewriting& rewriting) {
  const Funzioni f;
  const auto size = static_cast<std::size_t>(state.range(0));
  Text text = textOf(rewriting, size);
  for (std::size_t i = 0; i < size; i += 8) {
    text[i] = rewriting.replaced[i / 8 % rewriting.replaced.size()];
  }
  // What the member makes of each character is what the loop puts in its place.
  std::vector<Text> by;
  for (const char16_t c : rewriting.replaced) {
    by.emplace_back();
    (f.*rewriting.call)(Text{c, u'.'}, by.back());
    by.back().pop_back();
  }
  bench::against(state,
                 often(size,
                       [&] {
                         Text out;
                         DoNotOptimize((f.*rewriting.call)(text, out));
                         DoNotOptimize(out.data());
                       }),
                 often(size, [&] {
                   Text out = text;
                   for (std::size_t i = 0; i < by.size(); ++i) {
                     replaceAll(out, rewriting.replaced.substr(i, 1), by[i]);
                   }
                   DoNotOptimize(out.data());
                 }));
}

[[maybe_unused]] const bool kRegistered = [] {
  for (const Rewriting& each : kRewritings) {
    const auto add = [&](const std::string& how, auto function) {
      benchmark::RegisterBenchmark((how + "/" + each.name).c_str(), function, each)
          ->Arg(1024)
          ->Arg(32000)
          ->UseManualTime();
    };
    add("untouched", untouched);
    if (!each.replaced.empty()) add("everyEighth", everyEighth);
  }
  return true;
}();

BENCHMARK(dayValid)->UseManualTime();
BENCHMARK(dayInvalid)->UseManualTime();
BENCHMARK(stampValid)->UseManualTime();
BENCHMARK(stampInvalid)->UseManualTime();
BENCHMARK(timeValid)->UseManualTime();
BENCHMARK(timeInvalid)->UseManualTime();
BENCHMARK(dateToXml)->UseManualTime();
BENCHMARK(dateFromXml)->UseManualTime();
BENCHMARK(durationToXml)->UseManualTime();
BENCHMARK(durationFromXml)->UseManualTime();
BENCHMARK(dayNumber)->UseManualTime();

}  // namespace
}  // namespace veltgeneral
