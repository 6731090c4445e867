#include "drawing/pdf_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/temporary_folder.h"

namespace veltgeneral::drawing {
namespace {

using namespace test;

namespace fs = std::filesystem;

TEST(PdfFile, AppearsWholeOrNotAtAll) {
  const TemporaryFolder folder;
  const std::string path = folder.put("a.pdf", "before");
  {
    PdfFile dropped(path, kA4);
    dropped.endPage();
  }
  EXPECT_EQ(contentOf(path), "before");
  EXPECT_EQ(folder.fileCount(), 1u);

  ::chmod(path.c_str(), 0640);
  fs::create_symlink("a.pdf", folder / "link.pdf");
  PdfFile kept(folder / "link.pdf", kA4);
  kept.endPage();
  kept.commit();
  const std::string bytes = contentOf(path);
  EXPECT_EQ(bytes.substr(0, 5), "%PDF-");
  EXPECT_EQ(bytes.substr(bytes.size() - 6), "%%EOF\n");
  EXPECT_TRUE(fs::is_symlink(folder / "link.pdf"));
  EXPECT_EQ(static_cast<int>(fs::status(path).permissions()), 0640);
  EXPECT_EQ(folder.fileCount(), 2u);
}

}  // namespace
}  // namespace veltgeneral::drawing
