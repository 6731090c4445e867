#include <veltgeneral/component.h>
#include <veltgeneral/file_utility.h>

#include <cstdio>

using namespace veltgeneral;

// Writes and reads a file, once through the class and once by name.
int main(int /*argc*/, char** argv) {
  const Text path = fromUtf8(argv[1]);
  FileUtility files;
  if (!files.writeFile(path, 0, u"perché").isSuccess()) return 1;
  Variant arguments[] = {path, Text()};
  createObject(u"VeltGeneral.FileUtility")->call(u"readFile", CallKind::method, arguments);
  std::puts(toUtf8(std::get<Text>(arguments[1])).c_str());
  return 0;
}
