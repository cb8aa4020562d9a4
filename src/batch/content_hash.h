#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace greycard::batch {

/// XXH3 with 128 bits, of texts one after another.
class Hash {
 public:
  Hash();
  ~Hash();
  void add(std::string_view bytes);
  /// Likewise its length first, so that texts can't run into each other.
  void addText(std::string_view text);
  /// 32 hexadecimal digits, the high ones first.
  std::string digits() const;

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

/// Of a file's bytes. \throws FileError for what can't be read or is no plain file
std::string contentHash(const std::filesystem::path& file);

}  // namespace greycard::batch
