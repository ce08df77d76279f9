// Regular expressions (PCRE2), tokens, hashes of strings and profiling scopes.
#include "htl.h"

#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <cstring>

#include "gen.h"
#include "msg.h"
#include "profile.h"

unsigned HTL_CSTR_OPS::hash(const char* text) {
  constexpr unsigned FNV_OFFSET = 2166136261U;
  constexpr unsigned FNV_PRIME = 16777619U;
  unsigned value = FNV_OFFSET;
  for (; text && *text; text++) value = (value ^ static_cast<unsigned char>(*text)) * FNV_PRIME;
  return value;
}

HTL_TOKENIZER::HTL_TOKENIZER(const std::string& text, const char* separators) {
  size_t end = 0;
  for (size_t at = text.find_first_not_of(separators); at != std::string::npos;
       at = text.find_first_not_of(separators, end)) {
    end = text.find_first_of(separators, at);
    m_tokens.push_back(text.substr(at, end - at));
    if (end == std::string::npos) return;
  }
}

struct HTL_REGEXP::IMPL {
  pcre2_code* code = nullptr;
  pcre2_match_data* data = nullptr;
  IMPL(const char* expression, uint32_t options) {
    int error = 0;
    PCRE2_SIZE at = 0;
    code =
        pcre2_compile(reinterpret_cast<PCRE2_SPTR>(expression), PCRE2_ZERO_TERMINATED, options, &error, &at, nullptr);
    if (code) data = pcre2_match_data_create_from_pattern(code, nullptr);
  }
  ~IMPL() {
    pcre2_match_data_free(data);
    pcre2_code_free(code);
  }
  IMPL(const IMPL&) = delete;
  IMPL& operator=(const IMPL&) = delete;

  bool run(const char* text, uint32_t options, std::vector<std::string>* groups) const {
    if (!code) return false;
    int count = pcre2_match(code, reinterpret_cast<PCRE2_SPTR>(text), std::strlen(text), 0, options, data, nullptr);
    if (count < 0) return false;
    if (groups) fill(text, *groups);
    return true;
  }

private:
  void fill(const char* text, std::vector<std::string>& groups) const {
    const PCRE2_SIZE* bounds = pcre2_get_ovector_pointer(data);
    uint32_t count = pcre2_get_ovector_count(data);
    groups.clear();
    for (uint32_t i = 1; i < count; i++) {
      bool took_part = bounds[2 * i] != PCRE2_UNSET;
      groups.push_back(took_part ? std::string(text + bounds[2 * i], text + bounds[2 * i + 1]) : std::string());
    }
  }
};

HTL_REGEXP::HTL_REGEXP(const char* expression, CASE_ENUM letters)
    : m_impl(std::make_unique<IMPL>(expression, letters == CASE_IGNORED ? PCRE2_CASELESS : 0)) {
  if (!m_impl->code) MSG_INTERNAL_ERROR::report(expression, "HTL", __FILE__, __LINE__);
}

HTL_REGEXP::~HTL_REGEXP() = default;

bool HTL_REGEXP::match(const char* text, std::vector<std::string>* groups) const {
  return m_impl->run(text, PCRE2_ANCHORED | PCRE2_ENDANCHORED, groups);
}

bool HTL_REGEXP::search(const char* text, std::vector<std::string>* groups, size_t* first, size_t* length) const {
  if (!m_impl->run(text, 0, groups)) return false;
  const PCRE2_SIZE* bounds = pcre2_get_ovector_pointer(m_impl->data);
  if (first) *first = bounds[0];
  if (length) *length = bounds[1] - bounds[0];
  return true;
}

HTL_PROFILER::HTL_PROFILER(const char*, const std::string& name) : m_name(name), m_start(gen_get_tick_count()) {}

HTL_PROFILER::~HTL_PROFILER() { PROFILE::instance().add(m_name, gen_get_tick_count() - m_start); }
