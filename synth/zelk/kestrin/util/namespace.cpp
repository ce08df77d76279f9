#include "util/namespace.h"

#include "containers/views.h"
#include "util/strings.h"

namespace {

constexpr unsigned table_size = 191;
constexpr char collision_suffix[] = "_c";
// A replacement may bring back what it replaces; names are given up as they are then.
constexpr unsigned max_rename_steps = 64;

hash_type TableType(unsigned case_sensitive) { return case_sensitive ? HASH_STRING : HASH_STRING_NOCASE; }

} // namespace

NameSpace::NameSpace(unsigned case_sensitive)
    : Map(TableType(case_sensitive), table_size), _case_sensitive(case_sensitive) {}

NameSpace::~NameSpace() {
  NameSpace* previous = this;
  while (previous->_next != this) previous = previous->_next;
  previous->_next = _next;
  delete _reserved_words;
}

void NameSpace::SetIllegalChars(const char* chars, char replacement) { _illegal = {chars ? chars : "", replacement}; }

void NameSpace::SetIllegalStartChars(const char* chars, char replacement) {
  _illegal_start = {chars ? chars : "", replacement};
}

void NameSpace::SetIllegalEndChars(const char* chars, char replacement) {
  _illegal_end = {chars ? chars : "", replacement};
}

void NameSpace::SetIllegalSubstring(const char* substring, const char* replacement) {
  _illegal_substring = substring ? substring : "";
  _substring_replacement = replacement ? replacement : "";
}

void NameSpace::EscapeWord(char open, char close) {
  _escape_open = open;
  _escape_close = close;
}

void NameSpace::AddReservedWord(const char* word, const char* replacement) {
  if (!word) return;
  if (!_reserved_words) _reserved_words = new Map(TableType(_case_sensitive), table_size);
  _reserved_words->Insert(Keep(word), replacement ? Keep(replacement) : nullptr, /*force_overwrite=*/1);
}

void NameSpace::LinkSpace(NameSpace* other) {
  if (!other) return;
  for (NameSpace* space = this;;) {
    if (space == other) return;
    space = space->_next;
    if (space == this) break;
  }
  std::swap(_next, other->_next);
}

const char* NameSpace::Keep(const char* name) { return _names.emplace_back(name).c_str(); }

const char* NameSpace::InsertName(const char* name) {
  if (!name) return nullptr;
  OwnedString unique(ResolveCollision(name));
  if (OwnedString legal(ReName(unique ? unique.get() : name)); legal) {
    OwnedString unique_legal(ResolveCollision(legal.get()));
    unique = std::move(unique_legal ? unique_legal : legal);
  }
  if (!unique) {
    const char* kept = Keep(name);
    Insert(kept, nullptr);
    return kept;
  }
  const char* renamed = Keep(unique.get());
  Insert(Keep(name), renamed);
  Insert(renamed, nullptr);
  return renamed;
}

const char* NameSpace::GetName(const char* name) const {
  const auto* renamed = name ? FromWord<const char*>(GetValue(name)) : nullptr;
  return renamed ? renamed : name;
}

char* NameSpace::ReName(const char* name) const {
  if (!name || !*name) return nullptr;
  std::string changed = name;
  RenameResult result = RenameStep(changed);
  if (result == NAME_FINE) return nullptr;
  for (unsigned step = 0; result == NAME_CHANGED && step < max_rename_steps; step++) result = RenameStep(changed);
  return changed == name ? nullptr : Strings::save(changed.c_str());
}

// Mends the first thing that is wrong with a name.
NameSpace::RenameResult NameSpace::RenameStep(std::string& name) const {
  if (IsEscaped(name)) return NAME_FINE;
  if (name.find_first_of(_illegal.chars) != std::string::npos) {
    if (!_illegal.replacement || _illegal.Contains(_illegal.replacement)) return EscapeInPlace(name), NAME_FINAL;
    for (char& c : name)
      if (_illegal.Contains(c)) c = _illegal.replacement;
    return NAME_CHANGED;
  }
  if (_illegal_start.Contains(name.front())) {
    if (_illegal_start.replacement) return ReplaceAt(name, 0, _illegal_start);
    // Another end does not mend the start, so there is nothing more to try after it.
    if (_escape_open)
      EscapeInPlace(name);
    else
      name += collision_suffix;
    return NAME_FINAL;
  }
  if (_illegal_end.Contains(name.back())) {
    if (_illegal_end.replacement) return ReplaceAt(name, name.size() - 1, _illegal_end);
    return EscapeInPlace(name), NAME_FINAL;
  }
  if (!_illegal_substring.empty() && name.find(_illegal_substring) != std::string::npos) {
    if (_substring_replacement.empty()) return EscapeInPlace(name), NAME_FINAL;
    size_t pos = 0;
    while ((pos = name.find(_illegal_substring, pos)) != std::string::npos) {
      name.replace(pos, _illegal_substring.size(), _substring_replacement);
      pos += _substring_replacement.size();
    }
    return _substring_replacement.find(_illegal_substring) == std::string::npos ? NAME_CHANGED : NAME_FINAL;
  }
  const MapItem* reserved = _reserved_words ? _reserved_words->GetItem(name.c_str()) : nullptr;
  if (!reserved) return NAME_FINE;
  if (const auto* replacement = FromWord<const char*>(reserved->Value()))
    name = replacement;
  else if (_escape_open)
    EscapeInPlace(name);
  else
    name += collision_suffix;
  return NAME_FINAL;
}

NameSpace::RenameResult NameSpace::ReplaceAt(std::string& name, size_t pos, const IllegalChars& illegal) const {
  name[pos] = illegal.replacement;
  return illegal.Contains(illegal.replacement) ? NAME_FINAL : NAME_CHANGED;
}

bool NameSpace::IsEscaped(const std::string& name) const {
  return _escape_open && name.size() > 1 && name.front() == _escape_open &&
         name.back() == (_escape_close ? _escape_close : ' ');
}

void NameSpace::EscapeInPlace(std::string& name) const {
  if (OwnedString escaped(Escape(name.c_str())); escaped) name = escaped.get();
}

char* NameSpace::Escape(const char* name) const {
  if (!_escape_open || !name) return nullptr;
  char* escaped = Strings::save(" ", name, " ");
  escaped[0] = _escape_open;
  if (_escape_close) escaped[Strings::len(escaped) - 1] = _escape_close;
  return escaped;
}

char* NameSpace::Collision(const char* name) const { return Strings::save(name, collision_suffix); }

char* NameSpace::ResolveCollision(const char* name) const {
  if (!name) return nullptr;
  OwnedString changed;
  const char* current = name;
  for (const NameSpace* space = this;;) {
    if (space->GetItem(current)) {
      changed.reset(Collision(current));
      current = changed.get();
      space = this;
      continue;
    }
    space = space->_next;
    if (space == this) break;
  }
  return changed.release();
}

NameSpace* NameSpace::Copy() const {
  auto* copy = new NameSpace(_case_sensitive);
  copy->_illegal = _illegal;
  copy->_illegal_start = _illegal_start;
  copy->_illegal_end = _illegal_end;
  copy->_illegal_substring = _illegal_substring;
  copy->_substring_replacement = _substring_replacement;
  copy->EscapeWord(_escape_open, _escape_close);
  for (auto [word, replacement] : Entries<const char*, const char*>(_reserved_words))
    copy->AddReservedWord(word, replacement);
  for (auto [name, renamed] : Entries<const char*, const char*>(this))
    copy->Insert(copy->Keep(name), renamed ? copy->Keep(renamed) : nullptr);
  return copy;
}
