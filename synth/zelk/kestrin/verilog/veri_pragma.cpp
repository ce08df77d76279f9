// The stores of pending pragmas and annotations.
#include "verilog/veri_pragma.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "verilog/veri_message.h"

namespace {

std::unique_ptr<VeriPragmas> pending;
std::unique_ptr<VeriAnnotations> collected;
OwnedString annotation_key;

} // namespace

VeriPragmas::VeriPragmas() : _values(HASH_STRING, 8) {}

VeriPragmas::~VeriPragmas() {
  for (auto [name, value] : Entries<char*, char*>(_values)) {
    Strings::free_string(name);
    Strings::free_string(value);
  }
}

bool veri_is_language_attribute(const char* name) {
  static constexpr const char* names[] = {"full_case", "parallel_case", "synthesis_full_case", "norvel_loop_limit",
                                          "critical"};
  return std::any_of(std::begin(names), std::end(names),
                     [name](const char* known) { return Strings::compare(known, name) != 0; });
}

void VeriPragmas::Set(const char* name, const char* value, linefile_type linefile) {
  if (!pending) pending = std::make_unique<VeriPragmas>();
  if (MapItem* item = pending->_values.GetItem(name)) {
    veri_warning(linefile, "overriding existing value for attribute %s", name);
    Strings::free_string(FromWord<char*>(item->Value()));
    item->SetValue(Strings::save(value));
    return;
  }
  pending->_values.Insert(Strings::save(name), Strings::save(value));
}

const char* VeriPragmas::Value(const char* name) {
  return pending ? FromWord<const char*>(pending->_values.GetValue(name)) : nullptr;
}

bool VeriPragmas::Empty() { return !pending; }

std::unique_ptr<VeriPragmas> VeriPragmas::Take() { return std::exchange(pending, nullptr); }

VeriAnnotations::Lines::~Lines() {
  for (char* text : texts) Strings::free_string(text);
}

VeriAnnotations::VeriAnnotations() : _lines(HASH_STRING, 8) {}

VeriAnnotations::~VeriAnnotations() {
  for (auto [key, lines] : Entries<char*, Lines*>(_lines)) {
    Strings::free_string(key);
    delete lines;
  }
}

void VeriAnnotations::SetKey(const char* key) { annotation_key.reset(Strings::save(key)); }

const char* VeriAnnotations::Key() { return annotation_key.get(); }

void VeriAnnotations::Add(const char* text, linefile_type linefile) {
  if (!annotation_key) return;
  if (!collected) collected = std::make_unique<VeriAnnotations>();
  auto* lines = FromWord<Lines*>(collected->_lines.GetValue(annotation_key.get()));
  if (!lines) {
    lines = new Lines;
    lines->linefile = linefile;
    collected->_lines.Insert(Strings::save(annotation_key.get()), lines);
  }
  lines->texts.Insert(Strings::save(text));
}

std::unique_ptr<VeriAnnotations> VeriAnnotations::Take() { return std::exchange(collected, nullptr); }

const VeriAnnotations::Lines* VeriAnnotations::Find(const char* key) const {
  return FromWord<const Lines*>(_lines.GetValue(key));
}
