// Handles good and bad, and what the members say of them.
#include <gtest/gtest.h>

#include <future>

#include "fetch.h"
#include "servers.h"
#include "support/results.h"

namespace veltgeneral::test {
namespace {

void expectHttpError(const ErrInfo& result, const char* member) {
  EXPECT_EQ(fields(result), failure(eiABORTED, "HTTP Error", member, "VeltInet"));
}

// Answers every request with its path.
class Handles : public testing::Test {
 protected:
  ScriptedServer server_{[](const auto& connection, std::string head) {
    connection.answerWithPaths(std::move(head));
  }};
  VeltInet inet_;
};

TEST_F(Handles, SuccessSaysNothing) {
  std::int32_t session = 0, url = 0;
  Text address = fromUtf8(server_.url()), body = u"old";
  const ErrInfo results[] = {inet_.IOpen(session), inet_.IOpenUrl(session, address, url),
                             inet_.IReadFile(url, body)};
  for (const ErrInfo& result : results) {
    EXPECT_TRUE(result.isSuccess());
    EXPECT_EQ(result.getAttrEqualValue(), u"");
  }
  EXPECT_EQ(body, u"/");
  EXPECT_EQ(inet_.Buffer(), u"");
  const std::int32_t closed = session;
  EXPECT_EQ(inet_.IClose(session), 0);
  EXPECT_EQ(session, closed);
  std::int32_t none = 0;
  EXPECT_EQ(inet_.IClose(none), 0);
}

TEST_F(Handles, WhatIsNoHandleIsRefused) {
  Session open;
  std::int32_t url = open.open(server_.url() + "page");
  std::int32_t closed = open.open(server_.url());
  ASSERT_EQ(inet_.IClose(closed), 0);
  ASSERT_GT(url, 0);
  Text address = fromUtf8(server_.url()), header;
  for (std::int32_t wrong : {0, -1, 1, 12345, url, closed}) {
    SCOPED_TRACE(wrong);
    std::int32_t out = 77;
    expectHttpError(inet_.IOpenUrl(wrong, address, out), "IOpenUrl");
    expectHttpError(inet_.IOpenUrlExtended(wrong, address, header, out), "IOpenUrlExtended");
    EXPECT_EQ(out, 77);
  }
  for (std::int32_t wrong : {0, -1, 1, 12345, open.handle, closed}) {
    SCOPED_TRACE(wrong);
    Text body = u"old";
    EXPECT_TRUE(inet_.IReadFile(wrong, body).isSuccess());
    EXPECT_EQ(body, u"");
    if (wrong != open.handle) inet_.IClose(wrong);
  }
  Text body;
  inet_.IReadFile(url, body);
  EXPECT_EQ(body, u"/page");
}

TEST_F(Handles, AProxyThatIsNoTextIsARunTimeError) {
  std::int32_t session = 77;
  const ErrInfo result = inet_.IOpenExtended(session, Missing{}, Missing{}, Null{});
  EXPECT_EQ(result.numberInfo(), 94);
  EXPECT_EQ(result.locationInfo(), u"IOpenExtended");
  EXPECT_EQ(session, 77);
}

TEST_F(Handles, ASessionTakesItsUrlsWithIt) {
  Session first, second;
  const std::int32_t mine = first.open(server_.url() + "mine");
  const std::int32_t other = second.open(server_.url() + "other");
  inet_.IClose(first.handle);
  Text body;
  inet_.IReadFile(mine, body);
  EXPECT_EQ(body, u"");
  inet_.IReadFile(other, body);
  EXPECT_EQ(body, u"/other");
  EXPECT_EQ(first.open(server_.url()), 0);
}

TEST_F(Handles, ThreadsShareASession) {
  Session session;
  std::vector<std::future<int>> wrong;
  for (int thread = 0; thread < 4; ++thread) {
    wrong.push_back(std::async(std::launch::async, [&, thread] {
      int count = 0;
      for (int i = 0; i < 100; ++i) {
        const std::string path = std::to_string(thread) + "-" + std::to_string(i);
        if (session.fetch(server_.url() + path) != "/" + path) ++count;
      }
      return count;
    }));
  }
  for (auto& each : wrong) EXPECT_EQ(each.get(), 0);
}

TEST(Handle, ClosingItEndsAReadInAnotherThread) {
  std::atomic<int> drops = 0;
  const ScriptedServer server([&](const auto& connection, const std::string&) {
    connection.send("HTTP/1.1 200 OK\r\n\r\n");
    while (connection.send(".")) {
      ++drops;
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  });
  for (const bool wholeSession : {false, true}) {
    Session session;
    std::int32_t url = session.open(server.url());
    drops = 0;
    auto body = std::async(std::launch::async, [&] {
      Text text;
      VeltInet().IReadFile(url, text);
      return text;
    });
    EXPECT_TRUE(eventually([&] { return drops > 3; }));
    VeltInet().IClose(wholeSession ? session.handle : url);
    ASSERT_EQ(body.wait_for(std::chrono::seconds(kPatienceSeconds)), std::future_status::ready);
    EXPECT_EQ(body.get().substr(0, 2), u"..");
  }
}

TEST(Handle, ClosingTheSessionEndsAnOpenInAnotherThread) {
  std::atomic<bool> asked = false;
  const ScriptedServer server([&](const auto& connection, const std::string&) {
    asked = true;
    connection.waitForEnd();  // says nothing
  });
  Session session;
  auto opened = std::async(std::launch::async, [&] { return session.open(server.url()); });
  EXPECT_TRUE(eventually([&] { return asked.load(); }));
  VeltInet().IClose(session.handle);
  ASSERT_EQ(opened.wait_for(std::chrono::seconds(kPatienceSeconds)), std::future_status::ready);
  EXPECT_EQ(opened.get(), 0);
}

}  // namespace
}  // namespace veltgeneral::test
