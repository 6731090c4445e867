// The class over the seam: flags, texts in the code page, results.
#include "veltgeneral/velt_inet.h"

#include <string>

#include "automation/code_page.h"
#include "automation/coerce.h"
#include "core/trap.h"
#include "inet/body.h"
#include "platform/internet.h"

namespace veltgeneral {
namespace {

using platform::Internet;
using platform::InternetAccess;

constexpr TextView kClass = u"VeltInet";
constexpr std::size_t kProxyField = 100;
constexpr std::uint32_t kPlainUrl = platform::kInternetReload;
constexpr std::uint32_t kSecureUrl = platform::kInternetReload | platform::kInternetNoCacheWrite |
                                     platform::kInternetSecure | platform::kInternetIgnoreCertName;

// Runs an opening step, which gives a handle, and hands the handle on if it is one.
template <class Step>
ErrInfo open(TextView member, std::int32_t& handle, Step step) {
  return trapped(member, kClass, [&] {
    Internet* internet = platform::internet();
    const std::int32_t opened = internet == nullptr ? 0 : step(*internet);
    if (opened < 1) return resultOf(eiABORTED, u"HTTP Error", eiERRORTYPE, member, kClass);
    handle = opened;
    return ErrInfo();
  });
}

bool isSecure(TextView url) {
  constexpr TextView kSecure = u"https";
  const auto lower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? c + (u'a' - u'A') : c; };
  if (url.size() < kSecure.size()) return false;
  for (std::size_t i = 0; i < kSecure.size(); ++i) {
    if (lower(url[i]) != kSecure[i]) return false;
  }
  return true;
}

ErrInfo openUrl(TextView member, std::int32_t session, TextView url, TextView header,
                std::int32_t& handle) {
  return open(member, handle, [&](Internet& internet) {
    return internet.openUrl(session, toBytes(url), toBytes(header),
                            isSecure(url) ? kSecureUrl : kPlainUrl);
  });
}

}  // namespace

ErrInfo VeltInet::IOpen(std::int32_t& hInternetSession) {
  return open(u"IOpen", hInternetSession, [](Internet& internet) {
    return internet.open("Prova di WinInet!", InternetAccess::preconfigured, {});
  });
}

ErrInfo VeltInet::IOpenExtended(std::int32_t& hInternetSession, const Variant&, const Variant&,
                                const Variant& vntProxyName, const Variant&, const Variant&) {
  return open(u"IOpenExtended", hInternetSession, [&](Internet& internet) {
    constexpr std::string_view kAgent = "WinInet!";
    if (kindOf(vntProxyName) == Kind::missing) {
      return internet.open(kAgent, InternetAccess::direct, {});
    }
    // A field of fixed width; the blanks that would fill it up mean nothing to its reader.
    const std::string proxy = toBytes(toText(vntProxyName).substr(0, kProxyField));
    return internet.open(kAgent, InternetAccess::proxy, proxy);
  });
}

ErrInfo VeltInet::IOpenUrl(std::int32_t& hInternetSession, Text& sUrl, std::int32_t& hFileReturn) {
  return openUrl(u"IOpenUrl", hInternetSession, sUrl, {}, hFileReturn);
}

ErrInfo VeltInet::IReadFile(std::int32_t hFileReturn, Text& sHTTPBuffer) {
  return trapped(u"IReadFile", kClass, [&] {
    sHTTPBuffer.clear();
    if (Internet* internet = platform::internet()) readBody(*internet, hFileReturn, sHTTPBuffer);
    return ErrInfo();
  });
}

std::int32_t VeltInet::IClose(std::int32_t& wHandle) {
  if (wHandle == 0) return 0;
  if (Internet* internet = platform::internet()) internet->close(wHandle);
  return 0;
}

ErrInfo VeltInet::IOpenUrlExtended(std::int32_t& hInternetSession, Text& sUrl, Text& sHeader,
                                   std::int32_t& hFileReturn) {
  return openUrl(u"IOpenUrlExtended", hInternetSession, sUrl, sHeader, hFileReturn);
}

}  // namespace veltgeneral
