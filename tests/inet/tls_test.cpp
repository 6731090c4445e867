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
  const auto openssl = [&](const std::string& arguments) {
    const std::string in = "cd '" + folder.path().string() + "' && openssl ";
    if (std::system((in + arguments + " 2>>openssl.log").c_str()) != 0)
      throw std::runtime_error(folder.get("openssl.log"));
  };
  const std::string request =
      "req -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -subj /CN=" + name +
      " -keyout " + name + ".key -out " + name;
  if (issuer.empty()) return openssl(request + ".pem -x509 -days " + days);
  openssl(request + ".csr");
  folder.put(name + ".ext", "subjectAltName=" + host);
  openssl("x509 -req -in " + name + ".csr -CA " + issuer + ".pem -CAkey " + issuer +
          ".key -CAcreateserial -days " + days + " -extfile " + name + ".ext -out " + name +
          ".pem");
}

std::string serverBlock(const std::string& name, int port, const std::string& inside = "") {
  return "server { listen 127.0.0.1:PORT" + std::to_string(port) + " ssl; ssl_certificate " + name +
         ".pem; ssl_certificate_key " + name + ".key; location / { return 200 secret; }" + inside +
         " }\n";
}

class Tls : public testing::Test {
 protected:
  enum Server : std::size_t { kGood = 1, kWrongName, kExpired, kUntrusted, kPlain };

  Tls() {
    certify(folder_, "authority");
    certify(folder_, "stranger");
    certify(folder_, "good", "authority", "IP:127.0.0.1");
    certify(folder_, "wrongname", "authority", "DNS:elsewhere.example");
    certify(folder_, "expired", "authority", "IP:127.0.0.1", "-1");
    certify(folder_, "untrusted", "stranger", "IP:127.0.0.1");
    ::setenv("CURL_CA_BUNDLE", (folder_ / "authority.pem").c_str(), 1);
    const std::string toPlain = "location /plain { return 302 http://127.0.0.1:PORT5/; }";
    nginx_.emplace(folder_,
                   serverBlock("good", kGood, toPlain) + serverBlock("wrongname", kWrongName) +
                       serverBlock("expired", kExpired) + serverBlock("untrusted", kUntrusted) + R"(
        server { listen 127.0.0.1:PORT5;
                 location / { return 200 open; }
                 location /good { return 302 https://127.0.0.1:PORT1/; }
                 location /wrongname { return 302 https://127.0.0.1:PORT2/; } })",
                   kPlain);
  }
  // "s" for HTTPS, in any case.
  std::optional<std::string> fetch(Session& session, Server server, const std::string& s = "s",
                                   const std::string& path = "/") {
    return session.fetch("http" + s + nginx_->url(path, server).substr(4));
  }

  TemporaryFolder folder_;
  std::optional<Nginx> nginx_;
  Session direct_;
};

TEST_F(Tls, TheChainCountsTheNameDoesNot) {
  const TinyProxy proxy(folder_);
  Session proxied(Variant(fromUtf8("https=" + proxy.address())));
  for (Session* session : {&direct_, &proxied}) {
    for (const Server server : {kGood, kWrongName})
      for (const char* s : {"s", "S"}) EXPECT_EQ(fetch(*session, server, s), "secret") << server;
    for (const Server server : {kExpired, kUntrusted, kPlain})
      EXPECT_EQ(fetch(*session, server), std::nullopt) << server;
  }
}

TEST_F(Tls, RedirectsKeepTheirWord) {
  EXPECT_EQ(fetch(direct_, kPlain, ""), "open");
  EXPECT_EQ(fetch(direct_, kPlain, "", "/good"), "secret");
  // Only an URL that asks for HTTPS itself waives the name.
  EXPECT_EQ(fetch(direct_, kPlain, "", "/wrongname"), std::nullopt);
  EXPECT_EQ(fetch(direct_, kGood, "s", "/plain"), std::nullopt);
}

}  // namespace
}  // namespace veltgeneral::test
