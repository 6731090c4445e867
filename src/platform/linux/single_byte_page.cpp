#include "platform/single_byte_page.h"

#include <iconv.h>

#include <cerrno>

namespace veltgeneral::platform {
namespace {

class Converter {
 public:
  explicit Converter(const std::string& from) : handle_(::iconv_open("UTF-16LE", from.c_str())) {}
  ~Converter() {
    if (known()) ::iconv_close(handle_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  // iconv_open says so with the only pointer that is -1.
  bool known() const noexcept { return reinterpret_cast<std::intptr_t>(handle_) != -1; }

  // The character of `byte`; `byte` itself where it has none; nothing where it is no character
  // alone.
  std::optional<char16_t> character(unsigned char byte) const {
    auto in = static_cast<char>(byte);
    std::array<unsigned char, 8> out{};
    char* from = &in;
    char* to = reinterpret_cast<char*>(out.data());
    std::size_t fromLeft = 1;
    std::size_t toLeft = out.size();
    ::iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    const bool converted =
        ::iconv(handle_, &from, &fromLeft, &to, &toLeft) != static_cast<std::size_t>(-1);
    if (!converted) return errno == EILSEQ ? std::optional<char16_t>(byte) : std::nullopt;
    if (out.size() - toLeft != 2) return std::nullopt;
    return static_cast<char16_t>(out[0] | (out[1] << 8));
  }

 private:
  iconv_t handle_;
};

}  // namespace

std::optional<std::array<char16_t, 256>> singleBytePage(const std::string& name) {
  if (name.empty()) return std::nullopt;  // iconv takes it for the process's own
  const Converter converter(name);
  if (!converter.known()) return std::nullopt;
  std::array<char16_t, 256> page{};
  for (unsigned i = 0; i < page.size(); ++i) {
    const auto found = converter.character(static_cast<unsigned char>(i));
    if (!found) return std::nullopt;
    page[i] = *found;
  }
  return page;
}

}  // namespace veltgeneral::platform
