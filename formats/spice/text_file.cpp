#include "formats/spice/text_file.hpp"

#include <optional>

#include "formats/read_text.hpp"

namespace kinemo::formats::spice {

namespace {

/// Length of the UTF-8 sequence at `at`, 0 where there is none.
std::size_t sequence_length(const std::string& text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(i < text.size() ? text[i] : 0); };
  const unsigned char lead = byte(at);
  const std::size_t length = lead < 0x80                   ? 1
                             : lead >= 0xC2 && lead < 0xE0 ? 2
                             : lead >= 0xE0 && lead < 0xF0 ? 3
                             : lead >= 0xF0 && lead < 0xF5 ? 4
                                                           : 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) {
      return 0;
    }
  }
  const bool overlong = (lead == 0xE0 && byte(at + 1) < 0xA0) || (lead == 0xF0 && byte(at + 1) < 0x90);
  const bool no_character = (lead == 0xED && byte(at + 1) > 0x9F) || (lead == 0xF4 && byte(at + 1) > 0x8F);
  return overlong || no_character ? 0 : length;
}

bool is_utf8(const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = sequence_length(text, at);
    if (length == 0) {
      return false;
    }
    at += length;
  }
  return true;
}

std::string utf8_from_latin1(const std::string& text) {
  std::string result;
  result.reserve(text.size() + text.size() / 8);
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      result += c;
    } else {
      result += static_cast<char>(0xC0 | (byte >> 6));
      result += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return result;
}

}  // namespace

std::shared_ptr<const TextFile> make_text_file(std::string shown_name, std::filesystem::path location,
                                               std::string text) {
  if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) {
    text.erase(0, 3);
  }
  if (!is_utf8(text)) {
    text = utf8_from_latin1(text);
  }
  return std::make_shared<const TextFile>(TextFile{std::move(shown_name), std::move(location), std::move(text)});
}

bool looks_binary(const std::string& text) {
  return text.find('\0') != std::string::npos;
}

std::shared_ptr<const TextFile> TextFiles::load(const std::filesystem::path& path, const std::string& shown_name,
                                                std::string& reason) {
  std::error_code code;
  const std::filesystem::path key = std::filesystem::weakly_canonical(path, code);
  if (const auto found = m_loaded.find(key); !code && found != m_loaded.end()) {
    return found->second;
  }
  std::optional<std::string> text = read_text(path.string(), reason);
  if (!text) {
    return nullptr;
  }
  if (looks_binary(*text)) {
    reason = "it holds null bytes, so it isn't a text file";
    return nullptr;
  }
  return m_loaded[key] = make_text_file(shown_name, path, std::move(*text));
}

void TextFiles::add(const std::shared_ptr<const TextFile>& file) {
  std::error_code code;
  const std::filesystem::path key = std::filesystem::weakly_canonical(file->location, code);
  if (!code) {
    m_loaded.emplace(key, file);
  }
}

}  // namespace kinemo::formats::spice
