// HTTPS with certificates of every quality, from a private authority made for the test.
#include <gtest/gtest.h>

#include <cstdlib>

#include "fetch.h"
#include "support/servers.h"

namespace veltgeneral::test {
namespace {

// Of each name a certificate NAME.pem and its NAME.key.
constexpr const char* kCertificates = R"(
  new="-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes"
  for name in authority stranger; do
    openssl req -x509 -days 30 $new -subj /CN=$name -keyout $name.key -out $name.pem
  done
  certify() {
    openssl req $new -subj /CN=$1 -keyout $1.key -out $1.csr
    echo subjectAltName=$3 >$1.ext
    openssl x509 -req -in $1.csr -CA $2.pem -CAkey $2.key -CAcreateserial -days $4 \
      -extfile $1.ext -out $1.pem
  }
  certify good authority IP:127.0.0.1 30
  certify wrongname authority DNS:elsewhere.example 30
  certify expired authority IP:127.0.0.1 -1
  certify untrusted stranger IP:127.0.0.1 30)";

enum Server : std::size_t { kGood = 1, kWrongName, kExpired, kUntrusted, kPlain };
constexpr const char* kServers = R"(
  server { listen 127.0.0.1:PORT1 ssl; ssl_certificate good.pem; ssl_certificate_key good.key;
           location / { return 200 secret; }
           location /plain { return 302 http://127.0.0.1:PORT5/; } }
  server { listen 127.0.0.1:PORT2 ssl; ssl_certificate wrongname.pem;
           ssl_certificate_key wrongname.key; return 200 secret; }
  server { listen 127.0.0.1:PORT3 ssl; ssl_certificate expired.pem;
           ssl_certificate_key expired.key; return 200 secret; }
  server { listen 127.0.0.1:PORT4 ssl; ssl_certificate untrusted.pem;
           ssl_certificate_key untrusted.key; return 200 secret; }
  server { listen 127.0.0.1:PORT5;
           location / { return 200 open; }
           location /good { return 302 https://127.0.0.1:PORT1/; }
           location /wrongname { return 302 https://127.0.0.1:PORT2/; } })";

TEST(Tls, TheChainCountsTheNameDoesNot) {
  const TemporaryFolder folder;
  const std::string script = "cd '" + folder.path().string() + "' && exec 2>log && set -e\n";
  ASSERT_EQ(std::system((script + kCertificates).c_str()), 0) << folder.get("log");
  ::setenv("CURL_CA_BUNDLE", (folder / "authority.pem").c_str(), 1);
  const Nginx nginx(folder, kServers, kPlain);
  // `scheme` is "http" or, in any case, "https".
  const auto fetch = [&](Session& session, const std::string& scheme, Server server,
                         const std::string& path = "/") {
    return session.fetch(scheme + nginx.url(path, server).substr(4)).value_or("refused");
  };
  const TinyProxy proxy(folder);
  Session direct, proxied(Variant(fromUtf8("https=" + proxy.address())));
  for (Session* session : {&direct, &proxied}) {
    for (const Server server : {kGood, kWrongName})
      for (const char* scheme : {"https", "HttpS"})
        EXPECT_EQ(fetch(*session, scheme, server), "secret") << server;
    for (const Server server : {kExpired, kUntrusted, kPlain})
      EXPECT_EQ(fetch(*session, "https", server), "refused") << server;
  }
  EXPECT_EQ(fetch(direct, "http", kPlain), "open");
  EXPECT_EQ(fetch(direct, "http", kPlain, "/good"), "secret");
  // Only an URL that asks for HTTPS itself waives the name, and stays with HTTPS.
  EXPECT_EQ(fetch(direct, "http", kPlain, "/wrongname"), "refused");
  EXPECT_EQ(fetch(direct, "https", kGood, "/plain"), "refused");
}

}  // namespace
}  // namespace veltgeneral::test
