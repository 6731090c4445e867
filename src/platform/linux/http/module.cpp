// The module's door: the table of handles and the four operations on them.
#include "platform/linux/http/module.h"

#include <curl/curl.h>

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <variant>

#include "platform/internet.h"
#include "platform/linux/http/request_text.h"
#include "platform/linux/http/session.h"

namespace veltgeneral::platform::http {
namespace {

using SessionRef = std::shared_ptr<Session>;
using UrlRef = std::shared_ptr<OpenUrl>;
using Entry = std::variant<SessionRef, UrlRef>;
using Entries = std::map<std::int32_t, Entry>;

class HandleTable {
 public:
  std::int32_t add(SessionRef session) {
    const std::lock_guard lock(lock_);
    return insert(std::move(session));
  }

  // 0 where the session was closed meanwhile.
  std::int32_t add(UrlRef url, std::int32_t session) {
    const std::lock_guard lock(lock_);
    return entries_.contains(session) ? insert(std::move(url)) : 0;
  }

  // Null for a number that is no such handle.
  template <typename Ref>
  Ref find(std::int32_t handle) const {
    const std::lock_guard lock(lock_);
    const auto found = entries_.find(handle);
    if (found == entries_.end()) return nullptr;
    const Ref* ref = std::get_if<Ref>(&found->second);
    return ref != nullptr ? *ref : nullptr;
  }

  // Takes out the handle and what depends on it, without asking for memory: closing must not fail.
  Entries remove(std::int32_t handle) {
    Entries out;
    const std::lock_guard lock(lock_);
    const auto found = entries_.find(handle);
    if (found == entries_.end()) return out;
    const SessionRef* session = std::get_if<SessionRef>(&found->second);
    if (session != nullptr) {
      const auto isOfSession = [&](const auto& other) {
        const UrlRef* url = std::get_if<UrlRef>(&other.second);
        return url != nullptr && (*url)->session() == session->get();
      };
      for (auto next = entries_.begin(); next != entries_.end();) {
        const auto entry = next++;
        if (isOfSession(*entry)) out.insert(entries_.extract(entry));
      }
    }
    out.insert(entries_.extract(found));
    return out;
  }

 private:
  // Each number comes up once in 2^31 and looks like no other: a multiplication by an odd constant
  // permutes the counter's values.
  std::int32_t insert(Entry&& entry) {
    constexpr std::uint32_t kScatter = 0x9E3779B1;
    for (;;) {
      const auto handle = static_cast<std::int32_t>((++counter_ * kScatter) & 0x7FFFFFFF);
      if (handle != 0 && entries_.try_emplace(handle, std::move(entry)).second) return handle;
    }
  }

  mutable std::mutex lock_;
  Entries entries_;
  std::uint32_t counter_ = 0;
};

// What runs out of memory is a failure like any other.
template <typename Result>
Result orElse(Result failure, auto action) noexcept {
  try {
    return action();
  } catch (const std::exception&) {
    return failure;
  }
}

class CurlInternet final : public Internet {
 public:
  std::int32_t open(std::string_view agent, InternetAccess access,
                    std::string_view proxy) noexcept override {
    return orElse(0, [&] { return table_.add(std::make_shared<Session>(agent, access, proxy)); });
  }

  std::int32_t openUrl(std::int32_t session, std::string_view url, std::string_view headers,
                       std::uint32_t flags) noexcept override {
    return orElse(0, [&] {
      auto owner = table_.find<SessionRef>(session);
      auto checkedUrl = requestUrl(url);
      auto lines = headerLines(headers);
      if (owner == nullptr || !checkedUrl || !lines) return 0;
      const Request request{std::move(*checkedUrl), std::move(*lines), flags};
      const auto opened = std::make_shared<OpenUrl>(std::move(owner), request.url);
      // Known before it is started, so that closing the session from another thread ends it too.
      const std::int32_t handle = table_.add(opened, session);
      if (handle == 0) return 0;
      if (opened->transfer().start(request)) return handle;
      close(handle);
      return 0;
    });
  }

  InternetRead read(std::int32_t urlHandle, std::span<std::uint8_t> out) noexcept override {
    return orElse(InternetRead{0, false, 0}, [&]() -> InternetRead {
      const auto url = table_.find<UrlRef>(urlHandle);
      if (url == nullptr) return {0, false, 0};
      return url->transfer().read(out);
    });
  }

  bool close(std::int32_t handle) noexcept override {
    return orElse(false, [&] {
      // Released outside the table's lock: that may take its time.
      const Entries closed = table_.remove(handle);
      for (const auto& [number, entry] : closed) {
        if (const UrlRef* url = std::get_if<UrlRef>(&entry)) (*url)->transfer().stop();
      }
      return !closed.empty();
    });
  }

 private:
  HandleTable table_;
};

}  // namespace
}  // namespace veltgeneral::platform::http

extern "C" __attribute__((visibility("default"))) veltgeneral::platform::Internet*
veltgeneralInternet() noexcept {
  using veltgeneral::platform::http::CurlInternet;
  // Never destroyed: another thread may be reading while the process ends.
  static CurlInternet* const kInternet = [] {
    return curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK
               ? std::make_unique<CurlInternet>().release()
               : nullptr;
  }();
  return kInternet;
}
