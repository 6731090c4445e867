// VeltInet: fetches URLs over HTTP, HTTPS and FTP into texts.
//
//   VeltInet inet;
//   std::int32_t session = 0, page = 0;
//   Text url = u"https://example.com/prices.txt", body;
//   if (inet.IOpen(session).isSuccess() && inet.IOpenUrl(session, url, page).isSuccess())
//     inet.IReadFile(page, body);
//   inet.IClose(page), inet.IClose(session);
//
// Handles are numbers that the caller keeps and closes; an object keeps none, so any object can
// work with any handle, and nothing ends with the object. They are known to the whole process and
// to any of its threads. A handle that is closed, made up or of the wrong kind is refused like a
// server that does not answer.
//
// Texts go out, and bodies come in, in the code page: one character a byte.
//
// An opening member that fails returns number eiABORTED, "HTTP Error", severity eiERRORTYPE, its
// own name and class and the module name, and leaves its handle argument as it was. On success the
// result is that of a new ErrInfo. No argument but the handle that a member returns, or the body,
// is ever changed.
#pragma once

#include <cstdint>

#include "veltgeneral/err_info.h"
#include "veltgeneral/export.h"
#include "veltgeneral/text.h"
#include "veltgeneral/variant.h"

namespace veltgeneral {

class VELTGENERAL_API VeltInet {
 public:
  // Opens a session that uses the proxies of the environment (http_proxy, https_proxy, no_proxy).
  // Connections and cookies are shared by the URLs of a session.
  ErrInfo IOpen(std::int32_t& hInternetSession);

  // Opens a session without any proxy, or with those that `vntProxyName` names:
  //
  //   vntProxyName  "host:port", or entries "scheme=host:port" between blanks or ";"; its first 100
  //                 characters count. A value that has no text is that run-time error as a result.
  //
  // The other optional arguments are accepted and say nothing.
  ErrInfo IOpenExtended(std::int32_t& hInternetSession, const Variant& vntAgent = Missing{},
                        const Variant& vntAccessType = Missing{},
                        const Variant& vntProxyName = Missing{},
                        const Variant& vntProxyBypass = Missing{},
                        const Variant& vntFlags = Missing{});

  // Sends a GET for an http, https or ftp URL, past any cache, and returns when the head of the
  // answer is there, whatever its status: a 404 has a body too. Up to 10 redirects are followed,
  // from a secure URL to secure ones only. A certificate must be trusted and in date; the host that
  // it names is not compared for an URL that begins with "https" (in any case). Trusted are the
  // authorities of the system, to which an administrator may add, or those in the file that
  // CURL_CA_BUNDLE or SSL_CERT_FILE names. Fails after 60 s without a connection, 30 s without a
  // sign of life.
  ErrInfo IOpenUrl(std::int32_t& hInternetSession, Text& sUrl, std::int32_t& hFileReturn);

  // Reads the rest of the body, in steps of 4096 bytes. Always a success: a connection that breaks,
  // or is silent for 30 s, ends the text early, and so does a text of 2^30 characters.
  ErrInfo IReadFile(std::int32_t hFileReturn, Text& sHTTPBuffer);

  // Closes a session with all its URLs, or an URL, from any thread: whoever is reading there then
  // stops. Any other number is let pass. Returns 0.
  std::int32_t IClose(std::int32_t& wHandle);

  // Always empty: bodies come through IReadFile's argument.
  Text Buffer() const { return {}; }

  // As IOpenUrl, with more headers.
  //
  //   sHeader  "Name: value" lines with CR LF between them. They replace the request's own of the
  //            same name. Fails where a line is no header, holds a control character, or is empty
  //            and followed by others. What would announce a body is left out.
  ErrInfo IOpenUrlExtended(std::int32_t& hInternetSession, Text& sUrl, Text& sHeader,
                           std::int32_t& hFileReturn);
};

}  // namespace veltgeneral
