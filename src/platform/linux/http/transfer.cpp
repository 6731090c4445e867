// One request over libcurl, driven from the caller's own calls.
#include "platform/linux/http/transfer.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <new>

#include "platform/linux/http/request_text.h"

namespace veltgeneral::platform::http {
namespace {

constexpr long kConnectSeconds = 60;
constexpr std::chrono::seconds kSilence{30};
// libcurl must be called now and then even if no socket moves: on the way to FTP's second
// connection some versions wait for an event that never comes.
constexpr int kLookHeadMilliseconds = 50;
constexpr int kLookBodyMilliseconds = 1000;
constexpr long kRedirects = 10;
constexpr std::size_t kHeadLimit = 1 << 20;
// libcurl receives at most this much at once, so a stash of the same size takes it all.
constexpr std::size_t kStash = 128 << 10;

void require(bool made) {
  if (!made) throw std::bad_alloc();
}

bool startsWithName(std::string_view line, std::string_view lowerName) {
  return line.size() >= lowerName.size() &&
         std::equal(lowerName.begin(), lowerName.end(), line.begin(), [](char a, char b) {
           return a == (b >= 'A' && b <= 'Z' ? static_cast<char>(b + ('a' - 'A')) : b);
         });
}

// The file of authorities that takes the place of the system's; null for those.
const char* authorities() {
  for (const char* name : {"CURL_CA_BUNDLE", "SSL_CERT_FILE"}) {
    const char* file = ::secure_getenv(name);
    if (file != nullptr && *file != 0) return file;
  }
  return nullptr;
}

}  // namespace

Transfer::Transfer(const std::string& agent, CURLSH* share)
    : multi_(curl_multi_init()),
      easy_(curl_easy_init()),
      stash_(std::make_unique_for_overwrite<char[]>(kStash)) {
  require(multi_ != nullptr && easy_ != nullptr);
  setConstantOptions(agent, share);
}

Transfer::~Transfer() { finish(); }

void Transfer::setConstantOptions(const std::string& agent, CURLSH* share) {
  CURL* easy = easy_.get();
  // No signal handler of the process is touched.
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy, CURLOPT_SHARE, share);
  curl_easy_setopt(easy, CURLOPT_USERAGENT, agent.c_str());
  // Version 2 would send ahead of the reader, a window of megabytes.
  curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});
  curl_easy_setopt(easy, CURLOPT_COOKIEFILE, "");
  curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(easy, CURLOPT_MAXREDIRS, kRedirects);
  curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
  curl_easy_setopt(easy, CURLOPT_SERVER_RESPONSE_TIMEOUT, long{kSilence.count()});
  curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, 1L);
  if (const char* file = authorities()) {
    curl_easy_setopt(easy, CURLOPT_CAINFO, file);
    curl_easy_setopt(easy, CURLOPT_CAPATH, nullptr);
  }
  curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, static_cast<long>(kStash));
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &Transfer::onHeader);
  curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Transfer::onBody);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(easy, CURLOPT_SOCKOPTFUNCTION, &Transfer::onSocket);
  curl_easy_setopt(easy, CURLOPT_SOCKOPTDATA, this);
  curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, &Transfer::onConnected);
  curl_easy_setopt(easy, CURLOPT_PREREQDATA, this);
}

void Transfer::setProxy(const char* proxy) {
  curl_easy_setopt(easy_.get(), CURLOPT_PROXY, proxy);
  // Without this a named proxy would still be passed by for the environment's no_proxy.
  curl_easy_setopt(easy_.get(), CURLOPT_NOPROXY, proxy == nullptr ? nullptr : "");
}

void Transfer::setRequestOptions(const Request& request) {
  CURL* easy = easy_.get();
  curl_easy_setopt(easy, CURLOPT_URL, request.url.c_str());
  setFlags(request.flags);
  headers_.reset();
  const auto add = [&](const char* line) {
    curl_slist* longer = curl_slist_append(headers_.get(), line);
    require(longer != nullptr);
    static_cast<void>(headers_.release());
    headers_.reset(longer);
  };
  for (const std::string& line : request.headers) add(line.c_str());
  if ((request.flags & kInternetReload) != 0) {
    if (!hasHeader(request.headers, "cache-control")) add("Cache-Control: no-cache");
    if (!hasHeader(request.headers, "pragma")) add("Pragma: no-cache");
  }
  curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers_.get());
}

// Seldom changes from one request to the next, and libcurl takes its time to read the schemes.
void Transfer::setFlags(std::uint32_t flags) {
  if (flags_ == flags) return;
  CURL* easy = easy_.get();
  const bool secure = (flags & kInternetSecure) != 0;
  const bool anyName = (flags & kInternetIgnoreCertName) != 0;
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, secure ? "https" : "http,https,ftp");
  curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, secure ? "https" : "http,https");
  curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, anyName ? 0L : 2L);
  flags_ = flags;
}

bool Transfer::start(const Request& request) {
  const std::lock_guard lock(busy_);
  setRequestOptions(request);
  headComplete_ = paused_ = done_ = redirecting_ = false;
  connecting_ = true;
  status_ = 0;
  result_ = CURLE_OK;
  headBytes_ = begin_ = end_ = 0;
  attached_ = curl_multi_add_handle(multi_.get(), easy_.get()) == CURLM_OK;
  if (!attached_) return false;
  driveUntil([this] { return headComplete_; });
  bodyLeft_ = announcedLength();
  // An FTP file may be empty; an HTTP answer without an end to its head is none.
  return headComplete_ || (status_ == 0 && done_ && result_ == CURLE_OK);
}

InternetRead Transfer::read(std::span<std::uint8_t> out) {
  const std::lock_guard lock(busy_);
  if (stopped_) return {0, false, 0};
  if (begin_ == end_ && !done_) {
    begin_ = end_ = 0;
    if (paused_) {
      paused_ = false;
      // Delivers what libcurl held back, into onBody.
      const CURLcode resumed = curl_easy_pause(easy_.get(), CURLPAUSE_CONT);
      if (resumed != CURLE_OK) end(resumed);
    }
    driveUntil([this] { return end_ > 0; });
  }
  const std::size_t count = std::min(out.size(), end_ - begin_);
  std::memcpy(out.data(), stash_.get() + begin_, count);
  begin_ += count;
  bodyLeft_ -= std::min<std::uint64_t>(bodyLeft_, count);
  return {count, count > 0 || result_ == CURLE_OK, bodyLeft_};
}

std::uint64_t Transfer::announcedLength() const noexcept {
  curl_off_t length = -1;
  curl_easy_getinfo(easy_.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
  return length < 0 ? 0 : static_cast<std::uint64_t>(length);
}

void Transfer::stop() noexcept {
  stopped_ = true;
  // Whoever comes after the flag sees it; whoever was there before may be asleep.
  if (std::unique_lock lock(busy_, std::try_to_lock); !lock) curl_multi_wakeup(multi_.get());
}

void Transfer::finish() noexcept {
  if (attached_) curl_multi_remove_handle(multi_.get(), easy_.get());
  attached_ = false;
  stopped_ = false;
}

template <typename Condition>
void Transfer::driveUntil(Condition reached) {
  lastSign_ = Clock::now();
  while (!reached() && !done_) {
    if (stopped_) return end(CURLE_ABORTED_BY_CALLBACK);
    perform();
    if (!reached() && !done_) wait();
  }
}

void Transfer::perform() {
  int running = 0;
  if (curl_multi_perform(multi_.get(), &running) != CURLM_OK) return end(CURLE_FAILED_INIT);
  if (running != 0) return;
  int left = 0;
  const CURLMsg* message = curl_multi_info_read(multi_.get(), &left);
  end(message != nullptr ? message->data.result : CURLE_FAILED_INIT);
}

// While a connection is being made, libcurl's own limit holds.
void Transfer::wait() {
  int events = 0;
  const int most = headComplete_ ? kLookBodyMilliseconds : kLookHeadMilliseconds;
  if (curl_multi_poll(multi_.get(), nullptr, 0, most, &events) != CURLM_OK) {
    return end(CURLE_FAILED_INIT);
  }
  const Clock::time_point now = Clock::now();
  if (events > 0 || connecting_) {
    lastSign_ = now;
  } else if (now - lastSign_ >= kSilence) {
    end(CURLE_OPERATION_TIMEDOUT);
  }
}

void Transfer::end(CURLcode result) noexcept {
  done_ = true;
  result_ = result;
}

std::size_t Transfer::onHeader(char* data, std::size_t size, std::size_t count,
                               void* self) noexcept {
  const std::string_view line(data, size * count);
  return static_cast<Transfer*>(self)->keepHeader(line) ? line.size() : 0;
}

// Looks for the end of the final head: not of one that says "continue", and not of one that libcurl
// follows elsewhere. FTP has no such head; its answer begins with its first byte.
bool Transfer::keepHeader(std::string_view line) noexcept {
  headBytes_ += line.size();
  connecting_ = false;  // FTP opens a second connection behind onConnected's back
  if (headBytes_ > kHeadLimit) return false;
  if (startsWithName(line, "http/")) {
    const std::size_t digits = std::min(line.find(' '), line.size() - 1) + 1;
    status_ = 0;
    std::from_chars(line.data() + digits, line.data() + line.size(), status_);
    redirecting_ = false;
  } else if (startsWithName(line, "location:")) {
    redirecting_ = status_ / 100 == 3 && line.find_first_not_of(" \t\r\n", 9) != line.npos;
  } else if (status_ != 0 && (line == "\r\n" || line == "\n")) {
    headComplete_ = !redirecting_ && (status_ / 100 != 1 || status_ == 101);
  }
  return true;
}

std::size_t Transfer::onBody(char* data, std::size_t size, std::size_t count, void* self) noexcept {
  return static_cast<Transfer*>(self)->keepBody(data, size * count);
}

std::size_t Transfer::keepBody(const char* data, std::size_t bytes) noexcept {
  if (bytes > kStash - end_) {
    paused_ = true;
    return CURL_WRITEFUNC_PAUSE;
  }
  std::memcpy(stash_.get() + end_, data, bytes);
  end_ += bytes;
  headComplete_ = true;
  return bytes;
}

int Transfer::onSocket(void* self, curl_socket_t, curlsocktype) noexcept {
  static_cast<Transfer*>(self)->connecting_ = true;
  return CURL_SOCKOPT_OK;
}

int Transfer::onConnected(void* self, char*, char*, int, int) noexcept {
  static_cast<Transfer*>(self)->connecting_ = false;
  return CURL_PREREQFUNC_OK;
}

}  // namespace veltgeneral::platform::http
