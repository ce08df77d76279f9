// NameSpace: a map that makes identifiers legal and unique for an output language. The language is told by its illegal
// characters, its reserved words and its way to escape; spaces that share names are linked into a ring.
#ifndef KESTRIN_UTIL_NAMESPACE_H
#define KESTRIN_UTIL_NAMESPACE_H

#include <deque>
#include <string>

#include "containers/map.h"

/// Maps a name to its renamed form, or to null when it stayed as it was. Holds copies of all names.
class NameSpace : public Map {
public:
  explicit NameSpace(unsigned case_sensitive);
  NameSpace(const NameSpace&) = delete;
  NameSpace& operator=(const NameSpace&) = delete;
  /// Leaves the ring.
  ~NameSpace() override;

  // The language. All texts are copied. A replacement of 0 or null is none: such names are escaped.
  void SetIllegalChars(const char* chars, char replacement = 0);
  void SetIllegalStartChars(const char* chars, char replacement = 0);
  void SetIllegalEndChars(const char* chars, char replacement = 0);
  void SetIllegalSubstring(const char* substring, const char* replacement = nullptr);
  /// The characters around an escaped name; 0 is none.
  void EscapeWord(char open, char close);
  void AddReservedWord(const char* word, const char* replacement = nullptr);
  /// Joins the rings of both spaces: a name is then unique among all of them.
  void LinkSpace(NameSpace* other);

  /// Makes a name legal and unique, and remembers it. The result lives as long as the space; null for null.
  const char* InsertName(const char* name);
  /// The renamed form, or the name itself.
  const char* GetName(const char* name) const;

  // Steps of it. Results are kernel strings of the caller; null means that the name is fine as it is.
  /// Makes a name legal.
  char* ReName(const char* name) const;
  /// Null when the language has no escapes.
  char* Escape(const char* name) const;
  /// Another name, in place of one that is taken.
  char* Collision(const char* name) const;
  /// Makes a name different from all of the ring.
  char* ResolveCollision(const char* name) const;

  /// A space of the same language and names, linked to none. The caller owns it.
  virtual NameSpace* Copy() const;

private:
  struct IllegalChars {
    std::string chars;
    char replacement = 0;
    bool Contains(char c) const { return chars.find(c) != std::string::npos; }
  };
  enum RenameResult { NAME_FINE, NAME_FINAL, NAME_CHANGED };

  const char* Keep(const char* name);
  bool IsEscaped(const std::string& name) const;
  void EscapeInPlace(std::string& name) const;
  RenameResult RenameStep(std::string& name) const;
  RenameResult ReplaceAt(std::string& name, size_t pos, const IllegalChars& illegal) const;

  unsigned _case_sensitive;
  IllegalChars _illegal;
  IllegalChars _illegal_start;
  IllegalChars _illegal_end;
  std::string _illegal_substring;
  std::string _substring_replacement;
  Map* _reserved_words = nullptr; // name -> replacement or null
  char _escape_open = 0;
  char _escape_close = 0;
  NameSpace* _next = this; // ring of linked spaces
  std::deque<std::string> _names;
};

#endif
