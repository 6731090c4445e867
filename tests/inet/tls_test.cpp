// HTTPS with certificates of every quality, from a private authority made for the test.
#include <gtest/gtest.h>

#include <cstdlib>

#include "fetch.h"
#include "servers.h"

namespace veltgeneral::test {
namespace {

// Makes NAME.pem and NAME.key in `folder`: an authority where `issuer` is empty.
void certify(const TemporaryFolder& folder, const std::string& name, const std::string& issuer = "",
             const std::string& host = "", const std::string& days = "30") {
  const std::string base = (folder.path() / name).string();
  std::vector<std::string> request{
      "openssl", "req",     "-newkey",     "ec",    "-pkeyopt",   "ec_paramgen_curve:prime256v1",
      "-nodes",  "-keyout", base + ".key", "-subj", "/CN=" + name};
  if (issuer.empty()) {
    request.insert(request.end(), {"-x509", "-days", days, "-out", base + ".pem"});
    return run(request);
  }
  request.insert(request.end(), {"-out", base + ".csr"});
  run(request);
  const std::string authority = (folder.path() / issuer).string();
  const std::string names = folder.put(name + ".ext", "subjectAltName=" + host);
  run({"openssl", "x509", "-req", "-in", base + ".csr", "-CA", authority + ".pem", "-CAkey",
       authority + ".key", "-CAcreateserial", "-days", days, "-extfile", names, "-out",
       base + ".pem"});
}

std::string serverBlock(const std::string& name, int port, const std::string& inside) {
  return "server { listen 127.0.0.1:PORT" + std::to_string(port) + " ssl; ssl_certificate " + name +
         ".pem; ssl_certificate_key " + name + ".key; " + inside + " }\n";
}

class Tls : public testing::Test {
 protected:
  Tls() {
    certify(folder_, "authority");
    certify(folder_, "stranger");
    certify(folder_, "good", "authority", "IP:127.0.0.1");
    certify(folder_, "wrongname", "authority", "DNS:elsewhere.example");
    certify(folder_, "expired", "authority", "IP:127.0.0.1", "-1");
    certify(folder_, "untrusted", "stranger", "IP:127.0.0.1");
    ::setenv("CURL_CA_BUNDLE", (folder_.path() / "authority.pem").c_str(), 1);
    const std::string ok = "location / { return 200 secret; }";
    const std::string text =
        serverBlock("good", 1, ok + "location /plain { return 302 http://127.0.0.1:PORT5/; }") +
        serverBlock("wrongname", 2, ok) + serverBlock("expired", 3, ok) +
        serverBlock("untrusted", 4, ok) + R"(
        server { listen 127.0.0.1:PORT5;
                 location / { return 200 open; }
                 location /good { return 302 https://127.0.0.1:PORT1/; }
                 location /wrongname { return 302 https://127.0.0.1:PORT2/; } })";
    nginx_.emplace(folder_, text, 5);
  }
  std::string url(const std::string& scheme, std::size_t server, const std::string& path = "/") {
    return scheme + "://127.0.0.1:" + std::to_string(nginx_->port(server)) + path;
  }

  TemporaryFolder folder_;
  std::optional<Nginx> nginx_;
};

TEST_F(Tls, TheChainCountsTheNameDoesNot) {
  Session session;
  for (const char* scheme : {"https", "HttpS"}) {
    for (const std::size_t server : {1, 2}) {  // the good one, and the wrong name
      EXPECT_EQ(session.fetch(url(scheme, server)), "secret") << scheme << server;
    }
  }
  for (const std::size_t server : {3, 4, 5}) {
    EXPECT_EQ(session.fetch(url("https", server)), std::nullopt) << server;
  }
}

TEST_F(Tls, RedirectsKeepTheirWord) {
  Session session;
  EXPECT_EQ(session.fetch(url("http", 5)), "open");
  EXPECT_EQ(session.fetch(url("http", 5, "/good")), "secret");
  // Only an URL that asks for HTTPS itself waives the name.
  EXPECT_EQ(session.fetch(url("http", 5, "/wrongname")), std::nullopt);
  EXPECT_EQ(session.fetch(url("https", 1, "/plain")), std::nullopt);
}

TEST_F(Tls, ThroughAProxy) {
  const TinyProxy proxy(folder_);
  Session session(Variant(fromUtf8("https=" + proxy.address())));
  EXPECT_EQ(session.fetch(url("https", 1)), "secret");
  EXPECT_EQ(session.fetch(url("https", 4)), std::nullopt);
}

}  // namespace
}  // namespace veltgeneral::test
