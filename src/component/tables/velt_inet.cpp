#include "veltgeneral/velt_inet.h"

#include "component/member_row.h"
#include "component/tables/tables.h"

namespace veltgeneral {
namespace {

constexpr Row kRows[] = {
    method<&VeltInet::IOpen>("IOpen", "hInternetSession"),
    method<&VeltInet::IOpenExtended>("IOpenExtended", "hInternetSession", optional("vntAgent"),
                                     optional("vntAccessType"), optional("vntProxyName"),
                                     optional("vntProxyBypass"), optional("vntFlags")),
    method<&VeltInet::IOpenUrl>("IOpenUrl", "hInternetSession", "sUrl", "hFileReturn"),
    method<&VeltInet::IReadFile>("IReadFile", "hFileReturn", "sHTTPBuffer"),
    method<&VeltInet::IClose>("IClose", "wHandle"),
    get<&VeltInet::Buffer>("Buffer"),
    method<&VeltInet::IOpenUrlExtended>("IOpenUrlExtended", "hInternetSession", "sUrl", "sHeader",
                                        "hFileReturn"),
};

}  // namespace

template <>
Class describeClass<VeltInet>() {
  return {"VeltInet", "URLs fetched over HTTP, HTTPS and FTP", MemberTable<kRows>::kMembers,
          &makeObject<VeltInet>};
}

}  // namespace veltgeneral
