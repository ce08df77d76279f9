// What pragma comments leave behind for the parser: pragmas that wait for the object that they stand before, and
// annotations that wait for their module. Static, like the scanner that fills them.
#ifndef KESTRIN_VERILOG_VERI_PRAGMA_H
#define KESTRIN_VERILOG_VERI_PRAGMA_H

#include <memory>

#include "containers/views.h"
#include "util/linefile.h"
#include "util/strings.h"

/// Pending pragmas in the order in which they came: pairs of name and value text.
class VeriPragmas {
public:
  /// A name that is pending already is overridden with a warning at `linefile`.
  static void Set(const char* name, const char* value, linefile_type linefile);
  /// Null when the pragma is not pending.
  static const char* Value(const char* name);
  static bool Empty();
  /// The pending pragmas, which are pending no more; null when there are none.
  static std::unique_ptr<VeriPragmas> Take();

  VeriPragmas();
  VeriPragmas(const VeriPragmas&) = delete;
  VeriPragmas& operator=(const VeriPragmas&) = delete;
  ~VeriPragmas();
  /// Null when there is none; both texts are of this object.
  Entries<const char*, const char*> All() const { return Entries<const char*, const char*>(_values); }

private:
  Map _values; // owned name -> owned value
};

/// Whether an attribute means something to elaboration alone: such names are known, though no object of the database
/// takes them.
bool veri_is_language_attribute(const char* name);

/// The annotations of a module, by the key that was in force: "module", or the name of a port.
class VeriAnnotations {
public:
  /// One key's lines, with the place of the first.
  struct Lines {
    linefile_type linefile = 0;
    ArrayOf<char> texts;
    ~Lines();
  };

  /// The key in force; null outside of annotations.
  static void SetKey(const char* key);
  static const char* Key();
  static void Add(const char* text, linefile_type linefile);
  /// The collected annotations, which are collected no more; null when there are none.
  static std::unique_ptr<VeriAnnotations> Take();

  VeriAnnotations();
  VeriAnnotations(const VeriAnnotations&) = delete;
  VeriAnnotations& operator=(const VeriAnnotations&) = delete;
  ~VeriAnnotations();
  const Lines* Find(const char* key) const;
  Entries<const char*, const Lines*> All() const { return Entries<const char*, const Lines*>(_lines); }

private:
  Map _lines; // owned key -> owned Lines
};

#endif
