// Session: what its requests have in common, and the transfers that wait for the next one.
#pragma once

#include <curl/curl.h>

#include <array>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/internet.h"
#include "platform/linux/http/transfer.h"

namespace veltgeneral::platform::http {

class Session {
 public:
  // Throws std::bad_alloc.
  Session(std::string_view agent, InternetAccess access, std::string_view proxies);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // A transfer ready for `url`, an idle one where there is one. Throws std::bad_alloc.
  std::unique_ptr<Transfer> take(const std::string& url);
  void giveBack(std::unique_ptr<Transfer> transfer) noexcept;

 private:
  struct ShareCleanup {
    void operator()(CURLSH* share) const noexcept { curl_share_cleanup(share); }
  };

  const std::string agent_;
  const InternetAccess access_;
  const std::string proxies_;

  // One lock for each kind of shared data: libcurl may hold two at a time.
  std::array<std::mutex, CURL_LOCK_DATA_LAST> shareLocks_;
  std::unique_ptr<CURLSH, ShareCleanup> share_;

  std::mutex lock_;
  std::vector<std::unique_ptr<Transfer>> idle_;
};

// An open URL: a transfer on loan from its session.
class OpenUrl {
 public:
  OpenUrl(std::shared_ptr<Session> session, const std::string& url)
      : session_(std::move(session)), transfer_(session_->take(url)) {}
  OpenUrl(const OpenUrl&) = delete;
  OpenUrl& operator=(const OpenUrl&) = delete;
  ~OpenUrl() { session_->giveBack(std::move(transfer_)); }

  Transfer& transfer() noexcept { return *transfer_; }
  const Session* session() const noexcept { return session_.get(); }

 private:
  std::shared_ptr<Session> session_;
  std::unique_ptr<Transfer> transfer_;
};

}  // namespace veltgeneral::platform::http
