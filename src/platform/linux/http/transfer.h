// Transfer: one request at a time over libcurl, its body pulled by the caller.
//
// libcurl runs only inside start() and read(), so nothing is received that nobody asks for: a
// caller that stops reading stops the server. A finished transfer keeps its connections for the
// next request.
#pragma once

#include <curl/curl.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/internet.h"

namespace veltgeneral::platform::http {

struct Request {
  std::string url;                   // as requestUrl() makes it
  std::vector<std::string> headers;  // as headerLines() makes them
  std::uint32_t flags = 0;           // kInternet...
};

class Transfer {
 public:
  // The session's share must outlive the transfer. Throws std::bad_alloc.
  Transfer(const std::string& agent, CURLSH* share);
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;
  ~Transfer();

  // Null: the environment's proxies. Empty: none.
  void setProxy(const char* proxy);

  // Sends the request and waits for the final head of its answer; false where none comes.
  bool start(const Request& request);
  InternetRead read(std::span<std::uint8_t> out);

  // From any thread: a start() or read() under way ends soon, a later one fails at once.
  void stop() noexcept;
  // Leaves the request as it stands. A body that was not read to its end costs the connection.
  void finish() noexcept;

 private:
  using Clock = std::chrono::steady_clock;
  template <auto release>
  struct Release {
    void operator()(auto* resource) const noexcept { release(resource); }
  };

  static std::size_t onHeader(char* data, std::size_t size, std::size_t count, void* self) noexcept;
  static std::size_t onBody(char* data, std::size_t size, std::size_t count, void* self) noexcept;
  static int onSocket(void* self, curl_socket_t socket, curlsocktype purpose) noexcept;
  static int onConnected(void* self, char*, char*, int, int) noexcept;

  void setConstantOptions(const std::string& agent, CURLSH* share);
  void setRequestOptions(const Request& request);
  void setFlags(std::uint32_t flags);
  bool keepHeader(std::string_view line) noexcept;
  std::size_t keepBody(const char* data, std::size_t bytes) noexcept;
  template <typename Condition>
  void driveUntil(Condition reached);
  void perform();
  void wait();
  void end(CURLcode result) noexcept;
  std::uint64_t announcedLength() const noexcept;

  std::unique_ptr<CURLM, Release<curl_multi_cleanup>> multi_;
  std::unique_ptr<CURL, Release<curl_easy_cleanup>> easy_;
  std::unique_ptr<curl_slist, Release<curl_slist_free_all>> headers_;

  std::optional<std::uint32_t> flags_;  // in force

  std::mutex busy_;  // held by whoever is in start() or read()
  std::atomic<bool> stopped_ = false;

  // The request under way.
  bool attached_ = false;
  bool headComplete_ = false;
  bool connecting_ = true;
  bool paused_ = false;
  bool done_ = false;
  bool redirecting_ = false;
  int status_ = 0;
  CURLcode result_ = CURLE_OK;
  std::size_t headBytes_ = 0;
  std::uint64_t bodyLeft_ = 0;  // as announced
  Clock::time_point lastSign_;

  // What was received and not yet read: [begin_, end_) of the stash.
  std::unique_ptr<char[]> stash_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

}  // namespace veltgeneral::platform::http
