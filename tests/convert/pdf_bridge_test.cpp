#include <gtest/gtest.h>

#include <set>

#include "automation/code_page.h"
#include "support/results.h"
#include "support/test_host.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

class PdfBridge : public ::testing::Test {
 protected:
  PdfBridge() {
    ::setenv("TMPDIR", work_.path().c_str(), 1);
    use(GENERATOR);
  }
  ~PdfBridge() override {
    ::unsetenv("TMPDIR");
    ::unsetenv("VELTGENERAL_PDF_LIBRARY");
  }

  static void use(const std::string& library) {
    ::setenv("VELTGENERAL_PDF_LIBRARY", library.c_str(), 1);
  }
  auto file(const char* commands) {
    host_.put("drive/doc.txt", commands);
    return test::fields(f_.createPdfFile(u"C:\\doc.txt", u"C:\\doc.pdf"));
  }

  test::TestHost host_;
  test::TemporaryFolder work_;
  Funzioni f_;
};

TEST_F(PdfBridge, FilesGoToTheGenerator) {
  EXPECT_EQ(file("copy this"), test::cleared());
  EXPECT_TRUE(host_.get("drive/doc.pdf").starts_with("copy this"));
  EXPECT_EQ(host_.logged(), 0);
  EXPECT_EQ(file("ended"), test::ofModule(eiABORTED, "perché", "createPdfFile"));
  EXPECT_EQ(file("full"), test::ofModule(eiABORTED, std::string(150, 'x'), "createPdfFile"));
  EXPECT_EQ(f_.createPdfFile(u"Q:\\doc.txt", u"C:\\doc.pdf").numberInfo(), 76);
  // A library that is none, or none of ours.
  use("/nowhere/generator.so");
  EXPECT_EQ(file(""), test::ofModule(53, "File not found", "createPdfFile"));
  use("libm.so.6");
  EXPECT_EQ(std::get<0>(file("")), 453);
  use(host_.put("text.so", "no library"));
  EXPECT_EQ(std::get<0>(file("")), 48);
  EXPECT_EQ(host_.logged(), 6);
  // Our own is the one unless another is chosen.
  use("");
  EXPECT_TRUE(std::get<1>(file("no such command")).starts_with("line 1: "));
}

TEST_F(PdfBridge, StreamsComeBackByteForByte) {
  Variant stream;
  EXPECT_EQ(test::fields(f_.createPdfStream(Text(u"copy è"), stream)), test::fresh());
  std::string expected = "copy \xE8\r\n";
  for (int byte = 0; byte < 256; ++byte) expected.push_back(static_cast<char>(byte));
  EXPECT_EQ(stream, Variant(fromBytes(expected)));

  // Both work files stay, with one number drawn and cut to four decimals between them.
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(work_.path()))
    names.insert(entry.path().filename());
  const std::string number = names.begin()->substr(3);
  EXPECT_EQ(names, (std::set<std::string>{"cmd" + number, "pdf" + number}));
  EXPECT_LE(number.size(), std::string(".7055").size());

  EXPECT_EQ(test::fields(f_.createPdfStream(Text(u"ended"), stream)),
            test::ofModule(eiABORTED, "perché", "createPdfStream"));
  EXPECT_EQ(f_.createPdfStream(Null{}, stream).numberInfo(), 94);
  EXPECT_EQ(host_.logged(), 2);
  // A write that fails is returned as it is.
  ::setenv("TMPDIR", "/nowhere", 1);
  EXPECT_EQ(test::fields(f_.createPdfStream(Text(u"copy"), stream)),
            test::failure(76, "Path not found", "writeFile", "FileUtility"));
  EXPECT_EQ(host_.logged(), 2);
  EXPECT_EQ(stream, Variant(fromBytes(expected)));
}

TEST_F(PdfBridge, FoldersAreThoseOfTheHost) {
  ::setenv("VELTGENERAL_SYSTEM_DIR", "/srv/sys/", 1);
  Text windows;
  Text system;
  EXPECT_EQ(test::fields(f_.getWinAndSistemDir(windows, system)), test::cleared());
  EXPECT_EQ(windows, host_.text("windows"));
  EXPECT_EQ(system, u"/srv/sys");

  // The system folder is asked first, and stays; a folder that fits no buffer is none.
  ::setenv("VELTGENERAL_SYSTEM_DIR", ("/" + std::string(254, 's')).c_str(), 1);
  ::setenv("VELTGENERAL_WINDOWS_DIR", ("/" + std::string(255, 'w')).c_str(), 1);
  EXPECT_EQ(test::fields(f_.getWinAndSistemDir(windows, system)),
            test::ofModule(eiABORTED, "", "getWinAndSistemDir"));
  EXPECT_EQ(windows, host_.text("windows"));
  EXPECT_EQ(system.size(), 255u);
  EXPECT_EQ(host_.logged(), 0);
  ::unsetenv("VELTGENERAL_SYSTEM_DIR");
}

}  // namespace
}  // namespace veltgeneral
