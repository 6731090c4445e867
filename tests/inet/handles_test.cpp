// Handles good and bad, and what the members say of them.
#include <gtest/gtest.h>

#include <future>

#include "fetch.h"
#include "support/results.h"
#include "support/servers.h"

namespace veltgeneral::test {
namespace {

// Answers every request with its path.
class Handles : public testing::Test {
 protected:
  std::string bodyOf(std::int32_t url) {
    Text body = u"old";
    EXPECT_TRUE(inet_.IReadFile(url, body).isSuccess());
    return toUtf8(body);
  }

  ScriptedServer server_{[](const auto& connection, std::string head) {
    connection.answerWithPaths(std::move(head));
  }};
  Text address_ = fromUtf8(server_.url());
  VeltInet inet_;
};

TEST_F(Handles, SuccessSaysNothing) {
  std::int32_t session = 0, url = 0;
  Text body;
  for (const ErrInfo& result :
       {inet_.IOpen(session), inet_.IOpenUrl(session, address_, url), inet_.IReadFile(url, body)})
    EXPECT_EQ(fields(result), fresh());
  EXPECT_EQ(body + inet_.Buffer(), u"/");
  const std::int32_t closed = session;
  EXPECT_EQ(inet_.IClose(session), 0);
  EXPECT_EQ(session, closed);
}

TEST_F(Handles, WhatIsNoHandleIsRefused) {
  Session open;
  std::int32_t url = open.open(server_.url() + "page");
  std::int32_t closed = open.open(server_.url());
  EXPECT_EQ(inet_.IClose(closed), 0);
  const auto httpError = [](const char* member) {
    return failure(eiABORTED, "HTTP Error", member, "VeltInet");
  };
  Text header;
  std::int32_t out = 77;
  for (std::int32_t wrong : {0, -1, 1, 12345, closed, url}) {
    EXPECT_EQ(fields(inet_.IOpenUrl(wrong, address_, out)), httpError("IOpenUrl")) << wrong;
    EXPECT_EQ(fields(inet_.IOpenUrlExtended(wrong, address_, header, out)),
              httpError("IOpenUrlExtended"));
    if (wrong == url) continue;
    EXPECT_EQ(bodyOf(wrong), "") << wrong;
    EXPECT_EQ(inet_.IClose(wrong), 0);
  }
  EXPECT_EQ(bodyOf(open.handle), "");
  EXPECT_EQ(bodyOf(url), "/page");
  // A proxy that is no text is a run-time error.
  const ErrInfo result = inet_.IOpenExtended(out, Missing{}, Missing{}, Null{});
  EXPECT_EQ(result.numberInfo(), 94);
  EXPECT_EQ(result.locationInfo(), u"IOpenExtended");
  EXPECT_EQ(out, 77);
}

TEST_F(Handles, ASessionTakesItsUrlsWithIt) {
  Session first, second;
  const std::int32_t mine = first.open(server_.url() + "mine");
  const std::int32_t other = second.open(server_.url() + "other");
  inet_.IClose(first.handle);
  EXPECT_EQ(bodyOf(mine), "");
  EXPECT_EQ(bodyOf(other), "/other");
  EXPECT_EQ(first.open(server_.url()), 0);
}

TEST_F(Handles, ThreadsShareASession) {
  Session session;
  std::vector<std::future<int>> wrong;
  for (int thread = 0; thread < 4; ++thread)
    wrong.push_back(std::async(std::launch::async, [&, thread] {
      int count = 0;
      for (int i = 0; i < 100; ++i) {
        const std::string path = std::to_string(thread) + "-" + std::to_string(i);
        if (session.fetch(server_.url() + path) != "/" + path) ++count;
      }
      return count;
    }));
  for (auto& each : wrong) EXPECT_EQ(each.get(), 0);
}

// A server that goes on with its body for as long as it is let, or says nothing at all. The body
// begins when its URL is open: that waits for the head only.
TEST(Handle, ClosingEndsAReadOrAnOpenInAnotherThread) {
  const struct {
    bool silent, wholeSession;
  } kCases[] = {{false, false}, {false, true}, {true, true}};
  for (const auto& c : kCases) {
    std::atomic<int> signs = 0;
    std::atomic<std::int32_t> url = 0;
    const ScriptedServer server([&](const auto& connection, const std::string&) {
      ++signs;
      if (c.silent) return static_cast<void>(connection.receiveHead());
      connection.send("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\n\r\n");
      for (waitUntil([&] { return url > 0; }, kPatience); connection.send("."); ++signs)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    });
    Session session;
    auto body = std::async(std::launch::async, [&] {
      url = session.open(server.url());
      Text text;
      VeltInet().IReadFile(url, text);
      return text;
    });
    EXPECT_TRUE(waitUntil([&] { return signs > (c.silent ? 0 : 4); }));
    std::int32_t closed = c.wholeSession ? session.handle : url.load();
    VeltInet().IClose(closed);
    ASSERT_EQ(body.wait_for(kPatience), std::future_status::ready);
    EXPECT_EQ(body.get().substr(0, 2), c.silent ? u"" : u"..");
    EXPECT_EQ(url == 0, c.silent);
  }
}

}  // namespace
}  // namespace veltgeneral::test
