// A program that links the C++ library, and ends.
#include <string>

int main(int count, char**) {
  return std::u16string(static_cast<std::size_t>(count), u'a').empty();
}
