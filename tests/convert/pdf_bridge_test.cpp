#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>

#include "automation/code_page.h"
#include "settings/support.h"
#include "support/results.h"
#include "veltgeneral/funzioni.h"

namespace veltgeneral {
namespace {

namespace fs = std::filesystem;
using test::contentOf;
using test::setContent;

class PdfBridge : public ::testing::Test {
 protected:
  void SetUp() override {
    ::setenv("TMPDIR", (host_ / "work").c_str(), 1);
    fs::create_directory(host_ / "work");
    fs::permissions(host_ / "work", fs::perms::owner_all);
    use(GENERATOR);
  }
  void TearDown() override {
    ::unsetenv("TMPDIR");
    ::unsetenv("VELTGENERAL_PDF_LIBRARY");
  }

  static void use(const char* library) { ::setenv("VELTGENERAL_PDF_LIBRARY", library, 1); }
  std::size_t logged() const {
    return static_cast<std::size_t>(
        std::ranges::count(contentOf(host_ / "home/tarnview.log"), '\n'));
  }

  test::TestHost host_;
  Funzioni f_;
};

TEST_F(PdfBridge, FilesGoToTheGenerator) {
  setContent(host_ / "drive/doc.txt", "copy this");
  EXPECT_EQ(test::fields(f_.createPdfFile(u"C:\\doc.txt", u"C:\\doc.pdf")), test::cleared());
  EXPECT_TRUE(contentOf(host_ / "drive/doc.pdf").starts_with("copy this"));
  EXPECT_EQ(logged(), 0u);

  setContent(host_ / "drive/doc.txt", "ended");
  EXPECT_EQ(test::fields(f_.createPdfFile(u"C:\\doc.txt", u"C:\\doc.pdf")),
            test::ofModule(eiABORTED, "perché", "createPdfFile"));
  setContent(host_ / "drive/doc.txt", "full");
  EXPECT_EQ(test::fields(f_.createPdfFile(u"C:\\doc.txt", u"C:\\doc.pdf")),
            test::ofModule(eiABORTED, std::string(150, 'x'), "createPdfFile"));
  EXPECT_EQ(f_.createPdfFile(u"Q:\\doc.txt", u"C:\\doc.pdf").numberInfo(), 76);
  EXPECT_EQ(logged(), 3u);
}

TEST_F(PdfBridge, ALibraryThatIsNoneIsReported) {
  const auto call = [&] { return test::fields(f_.createPdfFile(u"a", u"b")); };
  use("/nowhere/generator.so");
  EXPECT_EQ(call(), test::ofModule(53, "File not found", "createPdfFile"));
  use(NO_GENERATOR);
  EXPECT_EQ(std::get<0>(call()), 453);
  setContent(host_ / "text.so", "no library");
  use((host_ / "text.so").c_str());
  EXPECT_EQ(std::get<0>(call()), 48);
  Variant stream = 1.5;
  EXPECT_EQ(f_.createPdfStream(Text(u"copy"), stream).locationInfo(), u"createPdfStream");
  EXPECT_EQ(stream, Variant(1.5));
  EXPECT_EQ(logged(), 4u);
}

TEST_F(PdfBridge, StreamsComeBackByteForByte) {
  Variant stream;
  EXPECT_EQ(test::fields(f_.createPdfStream(Text(u"copy è"), stream)), test::fresh());
  std::string expected = "copy \xE8\r\n";
  for (int byte = 0; byte < 256; ++byte) expected.push_back(static_cast<char>(byte));
  ASSERT_EQ(kindOf(stream), Kind::text);
  EXPECT_EQ(toBytes(std::get<Text>(stream)), expected);

  // Both work files stay, with one number drawn and cut to four decimals between them.
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(host_ / "work")) {
    names.push_back(entry.path().filename());
  }
  std::ranges::sort(names);
  ASSERT_EQ(names.size(), 2u);
  EXPECT_TRUE(names[0].starts_with("cmd."));
  EXPECT_EQ("pdf" + names[0].substr(3), names[1]);
  EXPECT_LE(names[0].size(), std::string("cmd.7055").size());

  EXPECT_EQ(test::fields(f_.createPdfStream(Text(u"ended"), stream)),
            test::ofModule(eiABORTED, "perché", "createPdfStream"));
  EXPECT_EQ(f_.createPdfStream(Null{}, stream).numberInfo(), 94);
  EXPECT_EQ(toBytes(std::get<Text>(stream)), expected);
  EXPECT_EQ(logged(), 2u);
}

TEST_F(PdfBridge, AWriteThatFailsIsReturnedAsItIs) {
  ::setenv("TMPDIR", (host_ / "missing").c_str(), 1);
  Variant stream = Text(u"before");
  const ErrInfo result = f_.createPdfStream(Text(u"copy"), stream);
  EXPECT_EQ(test::fields(result), test::failure(76, "Path not found", "writeFile", "FileUtility"));
  EXPECT_EQ(stream, Variant(Text(u"before")));
  EXPECT_EQ(logged(), 0u);
}

TEST_F(PdfBridge, OurOwnGeneratorIsTheOneUnlessChosen) {
  ::unsetenv("VELTGENERAL_PDF_LIBRARY");
  Variant stream;
  const ErrInfo result = f_.createPdfStream(Text(u"no such command"), stream);
  EXPECT_EQ(result.numberInfo(), eiABORTED);
  EXPECT_TRUE(result.descriptionInfo().starts_with(u"line 1: "))
      << toUtf8(result.descriptionInfo());
  EXPECT_EQ(kindOf(stream), Kind::empty);
}

TEST_F(PdfBridge, FoldersAreThoseOfTheHost) {
  ::setenv("VELTGENERAL_SYSTEM_DIR", "/srv/sys/", 1);
  Text windows;
  Text system;
  EXPECT_EQ(test::fields(f_.getWinAndSistemDir(windows, system)), test::cleared());
  EXPECT_EQ(windows, fromUtf8(host_ / "windows"));
  EXPECT_EQ(system, u"/srv/sys");

  // The system folder is asked first, and stays; a folder that fits no buffer is none.
  windows = u"before";
  ::setenv("VELTGENERAL_SYSTEM_DIR", ("/" + std::string(254, 's')).c_str(), 1);
  ::setenv("VELTGENERAL_WINDOWS_DIR", ("/" + std::string(255, 'w')).c_str(), 1);
  EXPECT_EQ(test::fields(f_.getWinAndSistemDir(windows, system)),
            test::ofModule(eiABORTED, "", "getWinAndSistemDir"));
  EXPECT_EQ(windows, u"before");
  EXPECT_EQ(system.size(), 255u);
  EXPECT_EQ(logged(), 0u);
  ::unsetenv("VELTGENERAL_SYSTEM_DIR");
}

}  // namespace
}  // namespace veltgeneral
