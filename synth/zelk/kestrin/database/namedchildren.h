// The naming rule of the three upper levels of the database, for their own use: made-up names for nameless children,
// and of two children of one name the newer keeps it.
#ifndef KESTRIN_DATABASE_NAMEDCHILDREN_H
#define KESTRIN_DATABASE_NAMEDCHILDREN_H

#include <string>

#include "containers/map.h"
#include "containers/views.h"

/// Gives a child that is in no table the first name "%c%d" that the table does not have.
template <class Child> void MakeUpName(const Map& table, Child* child, char prefix, unsigned& counter) {
  std::string name;
  do name = prefix + std::to_string(counter++);
  while (table.GetItem(name.c_str()));
  child->SetName(name.c_str());
}

/// Enters a child. `detach` and `attach` take its owner away and give it back, since an owned child renames itself in
/// the table.
template <class Child, class Detach, class Attach>
void AddNewestWins(Map& table, Child* child, char prefix, unsigned& counter, Detach detach, Attach attach) {
  if (!child->Name()) MakeUpName(table, child, prefix, counter);
  if (auto* older = FromWord<Child*>(table.GetValue(child->Name()))) {
    table.Remove(older->Name());
    detach(older);
    // The wanted name is taken before the older child looks for another.
    table.Insert(child->Name(), child);
    MakeUpName(table, older, prefix, counter);
    unsigned inserted = table.Insert(older->Name(), older);
    KESTRIN_ASSERT(inserted);
    attach(older);
  } else {
    unsigned inserted = table.Insert(child->Name(), child);
    KESTRIN_ASSERT(inserted);
  }
  attach(child);
}

#endif
