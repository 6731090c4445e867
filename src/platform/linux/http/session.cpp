// What a session lends to its requests: agent, proxies, cookies, connections.
#include "platform/linux/http/session.h"

#include <sys/auxv.h>

#include <new>
#include <utility>

#include "platform/linux/http/request_text.h"

namespace veltgeneral::platform::http {
namespace {

using Locks = std::array<std::mutex, CURL_LOCK_DATA_LAST>;

constexpr std::size_t kMostIdle = 4;

void lockShare(CURL*, curl_lock_data data, curl_lock_access, void* locks) {
  (*static_cast<Locks*>(locks))[data].lock();
}

void unlockShare(CURL*, curl_lock_data data, void* locks) {
  (*static_cast<Locks*>(locks))[data].unlock();
}

// A process with more rights than its user must not let him choose its proxies.
InternetAccess trustedAccess(InternetAccess access) {
  const bool distrust = access == InternetAccess::preconfigured && ::getauxval(AT_SECURE) != 0;
  return distrust ? InternetAccess::direct : access;
}

}  // namespace

Session::Session(std::string_view agent, InternetAccess access, std::string_view proxies)
    : agent_(agent), access_(trustedAccess(access)), proxies_(proxies), share_(curl_share_init()) {
  if (share_ == nullptr) throw std::bad_alloc();
  curl_share_setopt(share_.get(), CURLSHOPT_LOCKFUNC, &lockShare);
  curl_share_setopt(share_.get(), CURLSHOPT_UNLOCKFUNC, &unlockShare);
  curl_share_setopt(share_.get(), CURLSHOPT_USERDATA, &shareLocks_);
  curl_share_setopt(share_.get(), CURLSHOPT_SHARE, int{CURL_LOCK_DATA_COOKIE});
  idle_.reserve(kMostIdle);
}

std::unique_ptr<Transfer> Session::take(const std::string& url) {
  std::unique_ptr<Transfer> transfer;
  {
    const std::lock_guard lock(lock_);
    if (!idle_.empty()) {
      transfer = std::move(idle_.back());
      idle_.pop_back();
    }
  }
  if (transfer == nullptr) transfer = std::make_unique<Transfer>(agent_, share_.get());
  if (access_ == InternetAccess::preconfigured) {
    transfer->setProxy(nullptr);
  } else {
    transfer->setProxy(proxyFor(proxies_, schemeOf(url)).c_str());
  }
  return transfer;
}

void Session::giveBack(std::unique_ptr<Transfer> transfer) noexcept {
  transfer->finish();
  const std::lock_guard lock(lock_);
  if (idle_.size() < kMostIdle) idle_.push_back(std::move(transfer));
}

}  // namespace veltgeneral::platform::http
