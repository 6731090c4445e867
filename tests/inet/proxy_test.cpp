// Which way a request goes, with a real proxy on it: that adds a Via header.
#include <gtest/gtest.h>

#include <cstdlib>

#include "fetch.h"
#include "servers.h"

namespace veltgeneral::test {
namespace {

TEST(Proxy, EachSessionGoesItsWay) {
  const TemporaryFolder folder;
  const Nginx nginx(folder, R"(
    server { listen 127.0.0.1:PORT1; location / { return 200 "via:$http_via"; } })");
  const TinyProxy proxy(folder);
  const std::string address = proxy.address();
  ::setenv("http_proxy", ("http://" + address).c_str(), 1);

  const auto way = [&](Session& session) {
    const std::string body = session.fetch(nginx.url("/")).value_or("failed");
    return body == "via:" ? "direct" : body.find("the-proxy") != body.npos ? "proxy" : body;
  };
  const auto named = [&](const std::string& name) {
    Session session(Variant(fromUtf8(name)));
    return way(session);
  };
  Session preconfigured, direct{Variant(Missing{})};
  EXPECT_EQ(way(preconfigured), "proxy");
  EXPECT_EQ(way(direct), "direct");
  ::setenv("no_proxy", "127.0.0.1", 1);
  EXPECT_EQ(way(preconfigured), "direct");
  EXPECT_EQ(named(address), "proxy");
  EXPECT_EQ(named("http=" + address + ";https=127.0.0.1:1"), "proxy");
  EXPECT_EQ(named("https=" + address), "direct");
  EXPECT_EQ(named("127.0.0.1:1"), "failed");
  // The field has 100 characters: what lies beyond them is cut off.
  EXPECT_EQ(named(std::string(100 - address.size(), ' ') + address + "9"), "proxy");
}

}  // namespace
}  // namespace veltgeneral::test
