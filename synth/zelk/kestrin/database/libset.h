// Libset: the root of the database, a set of libraries, which it owns; and Database, which frees all of it.
#ifndef KESTRIN_DATABASE_LIBSET_H
#define KESTRIN_DATABASE_LIBSET_H

#include "containers/map.h"
#include "database/designobj.h"

class Library;

/// A child with no name, or with a name that is in use, leads to a made-up name, at all three upper levels of the
/// database: "l%d" for libraries, "c%d" for cells, "v%d" for netlists. Of two children of one name the newer keeps it
/// and the older is renamed.
class Libset : public DesignObj {
public:
  explicit Libset(const char* name = nullptr);
  ~Libset() override;

  /// The one root, made at first use.
  static Libset* Global();

  db_object_type ObjectType() const override { return DB_LIBSET; }
  /// Takes ownership of a library without owner.
  void Add(Library* library);
  void Remove(Library* library);
  Library* GetLibrary(const char* name) const;
  unsigned NumOfLibraries() const { return _libraries.Size(); }
  const Map& Libraries() const { return _libraries; }
  /// A deep copy; instances in it refer to the views that the originals refer to.
  Libset* Copy() const;

private:
  friend class Database;
  Map _libraries;
  unsigned _auto_name = 0;
  static Libset* _global;
};

class Database {
public:
  /// Deletes the global Libset with all that hangs on it, and frees the tables of attributes and message ids.
  static void FreeStaticMemory();
  /// Lines "sizeof(Att)       = %d" and so on.
  static void PrintClassSizes();
};

#endif
