#include "database/libset.h"

#include "database/library.h"
#include "database/namedchildren.h"
#include "database/views.h"

Libset* Libset::_global = nullptr;

Libset::Libset(const char* name) : DesignObj(name), _libraries(HASH_STRING) {}

Libset::~Libset() {
  for (Library* library : LibrariesOf(this)) delete library;
  if (_global == this) _global = nullptr;
}

Libset* Libset::Global() {
  if (!_global) _global = new Libset("root");
  return _global;
}

void Libset::Add(Library* library) {
  KESTRIN_ASSERT(!library->Owner());
  AddNewestWins(
      _libraries, library, 'l', _auto_name, [](Library* child) { child->_owner = nullptr; },
      [this](Library* child) { child->_owner = this; });
}

void Libset::Remove(Library* library) {
  if (!library || library->_owner != this) return;
  _libraries.Remove(library->Name());
  library->_owner = nullptr;
}

Library* Libset::GetLibrary(const char* name) const {
  return name ? FromWord<Library*>(_libraries.GetValue(name)) : nullptr;
}

Libset* Libset::Copy() const {
  auto* copy = new Libset(Name());
  copy->CopyNames(*this);
  copy->CopyFrom(*this);
  for (Library* library : LibrariesOf(this)) copy->Add(library->Copy());
  copy->_auto_name = _auto_name;
  return copy;
}

void Database::FreeStaticMemory() {
  delete Libset::_global;
  Att::FreeStaticMemory();
  DesignObj::FreeMessageMap();
}
