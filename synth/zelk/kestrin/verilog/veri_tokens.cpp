// Queries over the token list.
#include "verilog/veri_tokens.h"

#include <string_view>
#include <unordered_map>

namespace {

struct TokenFacts {
  const char* text;
  veri_token_type type;
  veri_dialect dialect;
};

constexpr TokenFacts facts[] = {
#define VERI_TOKEN(symbol, text, type, dialect) {text, type, dialect},
#include "verilog/veri_tokens.def"
};

const TokenFacts* facts_of(unsigned token) {
  return token >= VERI_FIRST_TOKEN && token < VERI_AFTER_LAST_TOKEN ? &facts[token - VERI_FIRST_TOKEN] : nullptr;
}

} // namespace

const char* veri_token_text(unsigned token) {
  const TokenFacts* token_facts = facts_of(token);
  return token_facts && *token_facts->text ? token_facts->text : nullptr;
}

veri_token_type veri_type_of_token(unsigned token) {
  const TokenFacts* token_facts = facts_of(token);
  return token_facts ? token_facts->type : VERI_TOKEN_NONE;
}

veri_dialect veri_dialect_of_token(unsigned token) {
  const TokenFacts* token_facts = facts_of(token);
  return token_facts ? token_facts->dialect : VERI_95;
}

unsigned veri_token_by_text(const char* text) {
  static const auto tokens = [] {
    std::unordered_map<std::string_view, unsigned> map;
    unsigned token = VERI_FIRST_TOKEN;
    for (const TokenFacts& token_facts : facts) {
      if (token_facts.type != VERI_TOKEN_VALUE) map.emplace(token_facts.text, token);
      token++;
    }
    map.emplace("^~", VERI_XNOR_OP);
    return map;
  }();
  if (!text) return 0;
  const auto found = tokens.find(text);
  return found == tokens.end() ? 0 : found->second;
}
