#include "content_hash.h"

#include <xxhash.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <new>
#include <system_error>

#include "greycard/errors.h"
#include "greycard/files.h"

namespace greycard::batch {
namespace {

struct CloseStream {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

[[noreturn]] void refuse(const std::filesystem::path& file, const std::string& why) {
  throw FileError("can't read " + quoted(file) + ": " + why);
}

}  // namespace

struct Hash::State {
  struct Free {
    void operator()(XXH3_state_t* made) const { XXH3_freeState(made); }
  };
  std::unique_ptr<XXH3_state_t, Free> state{XXH3_createState()};
};

Hash::Hash() : m_state(std::make_unique<State>()) {
  if (!m_state->state || XXH3_128bits_reset(m_state->state.get()) == XXH_ERROR)
    throw std::bad_alloc();
}

Hash::~Hash() = default;

void Hash::add(std::string_view bytes) {
  XXH3_128bits_update(m_state->state.get(), bytes.data(), bytes.size());
}

void Hash::addText(std::string_view text) {
  add(std::to_string(text.size()) + ":");
  add(text);
}

std::string Hash::digits() const {
  XXH128_canonical_t canonical;
  XXH128_canonicalFromHash(&canonical, XXH3_128bits_digest(m_state->state.get()));
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const unsigned char byte : canonical.digest) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

std::string contentHash(const std::filesystem::path& file) {
  std::error_code error;
  const auto status = std::filesystem::status(file, error);
  if (std::filesystem::is_directory(status)) refuse(file, "it is a folder");
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
    refuse(file, "it is no plain file, which could be read again");
  const std::unique_ptr<std::FILE, CloseStream> stream(std::fopen(file.c_str(), "rb"));
  if (!stream) refuse(file, std::generic_category().message(errno));
  Hash hash;
  std::array<char, 65536> block;
  while (const std::size_t got = std::fread(block.data(), 1, block.size(), stream.get()))
    hash.add({block.data(), got});
  if (std::ferror(stream.get()) != 0) refuse(file, std::generic_category().message(errno));
  return hash.digits();
}

}  // namespace greycard::batch
