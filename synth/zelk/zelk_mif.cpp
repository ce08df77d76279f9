// Writes memory initialisation files, each with a signature over its contents by which it knows its own files again.
#include "zelk_mif.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <vector>

#include "containers/views.h"
#include "fio.h"
#include "htl.h"
#include "util/services.h"
#include "util/strings.h"
#include "zelk_msgs.h"
#include "zelk_report.h"
#include "zelk_utility.h"

namespace {

constexpr const char* BEGIN_SIGNATURE = "-- begin_signature";
constexpr const char* END_SIGNATURE = "-- end_signature";

struct WORD_RANGE {
  unsigned long lo_addr;
  unsigned long hi_addr;
  const char* word;
};

/// Adjacent equal words in one range; words that are missing read as undefined.
std::vector<WORD_RANGE> fold_words(const MemoryContents& contents) {
  std::vector<WORD_RANGE> ranges;
  unsigned long address_index = 0;
  for (const char* entry : ItemsOf<const char*>(contents.words)) {
    ZELK_ASSERT_TEXT(entry && Strings::len(entry) == contents.width, "entry && Strings::len(entry) == width");
    if (!entry) continue;
    if (!ranges.empty() && !std::strcmp(ranges.back().word, entry)) {
      ZELK_ASSERT_TEXT(ranges.back().hi_addr + 1 == address_index, "address_index + 1 == lo_addr");
      ranges.back().hi_addr = address_index;
    } else {
      ranges.push_back({address_index, address_index, entry});
    }
    address_index++;
  }
  return ranges;
}

std::string make_body(const MemoryContents& contents) {
  std::string body = "WIDTH=" + std::to_string(contents.width) + ";\nDEPTH=" + std::to_string(contents.depth) + ";\n";
  body += contents.is_unsigned_address ? "ADDRESS_RADIX=UNS;\n" : "ADDRESS_RADIX=DEC;\n";
  body += "DATA_RADIX=BIN;\nCONTENT BEGIN\n";
  for (const WORD_RANGE& range : fold_words(contents)) {
    std::string place = std::to_string(range.lo_addr);
    if (range.hi_addr != range.lo_addr) place = "[" + place + ".." + std::to_string(range.hi_addr) + "]";
    body += place + " :\t" + range.word + ";\n";
  }
  return body + "END;\n";
}

/// FNV-1a of the text.
std::string make_signature(const std::string& body, const char* unique_name) {
  uint64_t hash = 0xcbf29ce484222325U;
  auto add = [&hash](const char* text) {
    for (; *text; text++) hash = (hash ^ static_cast<unsigned char>(*text)) * 0x100000001b3U;
  };
  add(unique_name);
  add(body.c_str());
  char text[17];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(hash));
  return text;
}

/// The signature of an existing file; empty for a file that has none.
std::string read_signature(const std::string& name) {
  std::ifstream stream(name);
  std::string begin;
  std::string signature;
  std::string end;
  bool is_ours = std::getline(stream, begin) && std::getline(stream, signature) && std::getline(stream, end) &&
                 begin == BEGIN_SIGNATURE && end == END_SIGNATURE && signature.compare(0, 3, "-- ") == 0;
  if (is_ours) return signature.substr(3);
  zelk_msg_debug("%s looks like a malformed MIF", name.c_str());
  return "";
}

bool can_take(const std::string& name, const std::string& signature) {
  if (!FIO_PATH(name).exists()) return true;
  std::string found = read_signature(name);
  if (found == signature) {
    zelk_msg_debug("Found existing MIF %s with the correct signature - it's safe to rewrite the file", name.c_str());
    return true;
  }
  zelk_msg_debug("Target MIF %s doesn't have the correct signature (%s/%s) -- need to hunt for alternative file",
                 name.c_str(), found.c_str(), signature.c_str());
  return false;
}

/// The name of a unit as part of a file's name: escaped names can hold anything and be of any length. The hash behind
/// it tells units apart.
std::string file_text(const char* name) {
  constexpr size_t MAX_LENGTH = 100;
  std::string text(name);
  text.resize(std::min(text.size(), MAX_LENGTH));
  for (char& c : text)
    if (c == '/' || c == '\\' || static_cast<unsigned char>(c) <= ' ') c = '_';
  return text;
}

std::string make_base_name(const MemoryContents& contents) {
  char hash[16];
  std::snprintf(hash, sizeof hash, "%x", HTL_CSTR_OPS::hash(contents.unique_name));
  return std::string(contents.path ? contents.path : "") + (contents.is_rom ? ".rom" : ".ram") +
         std::to_string(contents.number) + "_" + file_text(contents.entity_name) + "_" + hash;
}

std::string find_target(const MemoryContents& contents, const std::string& signature) {
  std::string base = make_base_name(contents);
  std::string name = base + ".hdl.mif";
  for (unsigned count = 0; !can_take(name, signature); count++) name = base + "_" + std::to_string(count) + ".hdl.mif";
  return name;
}

} // namespace

std::string zelk_generate_mif(const MemoryContents& contents) {
  ZELK_ASSERT_TEXT(contents.entity_name && contents.unique_name, "entity_name && unique_name");
  if (!contents.entity_name || !contents.unique_name) return "";
  std::string body = make_body(contents);
  std::string signature = make_signature(body, contents.unique_name);
  std::string name = find_target(contents, signature);
  zelk_msg_debug("Using %s for auto-generated MIF", name.c_str());
  FIO_OUTPUT_FILE file(name);
  if (file.is_open()) {
    file.write(std::string(BEGIN_SIGNATURE) + "\n-- " + signature + "\n" + END_SIGNATURE + "\n");
    file.write(body);
  }
  if (file.is_open() && file.commit()) return name;
  zelk_report(MSG_ZELK::E::CANT_OPEN_FILE(name.c_str()));
  return "";
}
