// A session against libcurl's own easy interface, which writes into a std::string and converts
// nothing. Both fetch the same bodies from the same server, turn by turn, and the best turn of each
// counts; "ratio" is our time over theirs.
#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

#include "support/servers.h"
#include "veltgeneral/velt_inet.h"

namespace {

using veltgeneral::Text;
using veltgeneral::VeltInet;
using veltgeneral::test::Nginx;
using veltgeneral::test::TemporaryFolder;

constexpr std::size_t kBig = 100'000'000;
constexpr int kRequests = 1000;

struct Server {
  TemporaryFolder folder;
  Nginx nginx{folder, "server { listen 127.0.0.1:PORT1; sendfile on; }"};
  Server() {
    ::setenv("VELTGENERAL_MODULE_DIR", MODULE_DIR, 0);
    folder.put("www/big", std::string(kBig, 'x'));
    folder.put("www/small", std::string(200, 'x'));
  }
};

Server& server() {
  static Server instance;
  return instance;
}

class Peer {
 public:
  std::size_t fetch(const std::string& url) {
    std::string body;
    curl_easy_setopt(easy_.get(), CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy_.get(), CURLOPT_WRITEFUNCTION, &Peer::append);
    curl_easy_setopt(easy_.get(), CURLOPT_WRITEDATA, &body);
    if (curl_easy_perform(easy_.get()) != CURLE_OK) throw std::runtime_error("peer");
    benchmark::DoNotOptimize(body.data());
    return body.size();
  }

 private:
  static std::size_t append(char* data, std::size_t size, std::size_t count, void* body) {
    static_cast<std::string*>(body)->append(data, size * count);
    return size * count;
  }
  struct Cleanup {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
  };
  std::unique_ptr<CURL, Cleanup> easy_{curl_easy_init()};
};

class Ours {
 public:
  Ours() { inet_.IOpen(session_); }
  Ours(const Ours&) = delete;
  Ours& operator=(const Ours&) = delete;
  ~Ours() { inet_.IClose(session_); }

  std::size_t fetch(Text& url) {
    Text body;
    std::int32_t handle = 0;
    if (!inet_.IOpenUrl(session_, url, handle).isSuccess()) throw std::runtime_error("ours");
    inet_.IReadFile(handle, body);
    inet_.IClose(handle);
    benchmark::DoNotOptimize(body.data());
    return body.size();
  }

 private:
  VeltInet inet_;
  std::int32_t session_ = 0;
};

double secondsOf(auto action) {
  const auto begin = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// Fetches `path` `times` times a turn.
void compare(benchmark::State& state, const std::string& path, int times, std::size_t size) {
  const std::string url = server().nginx.url(path);
  Text text(url.begin(), url.end());
  Peer peer;
  Ours ours;
  const auto turn = [&](auto& fetcher, auto& address) {
    return secondsOf([&] {
      for (int i = 0; i < times; ++i) {
        if (fetcher.fetch(address) != size) throw std::runtime_error("short body");
      }
    });
  };
  double best = std::numeric_limits<double>::infinity();
  double bestOfPeer = best;
  for (auto _ : state) {
    bestOfPeer = std::min(bestOfPeer, turn(peer, url));
    const double seconds = turn(ours, text);
    best = std::min(best, seconds);
    state.SetIterationTime(seconds);
  }
  state.counters["ratio"] = best / bestOfPeer;
  state.counters["best_ms"] = best * 1e3;
  state.counters["peer_ms"] = bestOfPeer * 1e3;
}

void BigBody(benchmark::State& state) { compare(state, "/big", 1, kBig); }
BENCHMARK(BigBody)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);

void SmallRequests(benchmark::State& state) { compare(state, "/small", kRequests, 200); }
BENCHMARK(SmallRequests)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);

}  // namespace
