// Att and the table of attributes: names, aliases, the form of the values, and which kinds of object take which one.
// It knows strings and containers; it owns its key and value and never reports a user's mistake by itself.
#ifndef KESTRIN_DATABASE_ATT_H
#define KESTRIN_DATABASE_ATT_H

#include <iosfwd>

class Map;

/// Known attributes. Those whose canonical name begins with a blank are set by the system only.
enum ATT_ENUM {
#define KESTRIN_ATT(symbol, canonical, form) symbol,
#include "database/att.def"
  ATT_GENERIC ///< any other name
};

/// An attribute: a key and a value. The key of a known attribute is always its canonical name, so that aliases
/// collapse.
class Att {
public:
  /// Copies both strings. A null value stays null.
  Att(const char* key, const char* value);
  /// A known attribute; ATT_GENERIC is an assertion.
  Att(ATT_ENUM type, const char* value);
  Att(const Att& other);
  Att& operator=(const Att&) = delete;
  ~Att();

  const char* Key() const { return _key; }
  const char* Value() const { return _value; }
  void SetValue(const char* value);
  ATT_ENUM Type() const { return Type(_key); }

  /// "true" or "on" without regard to case, or a positive number; no value is off.
  unsigned IsOn() const;
  /// Whether the value has the form that this attribute takes. System attributes take any value. Asking it for a
  /// generic attribute is an internal error ("Cannot check value of invalid attribute.") and gives 0.
  unsigned IsValid() const;
  /// Attributes by which the same source gives a different circuit.
  unsigned ChangesDesignFunctionality() const;

  /// The attribute of a name or alias, without regard to case; ATT_GENERIC for any other.
  static ATT_ENUM Type(const char* name);
  /// The canonical name; null for ATT_GENERIC and above.
  static const char* TypeToString(unsigned type);
  /// Frees the table of names, which the first look-up builds.
  static void FreeStaticMemory();

  /// "Attribute %s = %s".
  void Dump(std::ostream& out, unsigned indent = 0) const;

private:
  char* _key;
  char* _value;
  static Map* _types; // name or alias to type + 1
};

/// The kinds of object that have a list of attributes of their own.
enum att_supporter {
  ATT_ON_NET,
  ATT_ON_PORT,
  ATT_ON_BUFFER,
  ATT_ON_REGISTER,
  ATT_ON_OPERATOR,
  ATT_ON_MULTIPLIER,
  ATT_ON_RAM,
  ATT_ON_USER_INSTANCE,
  ATT_SUPPORTER_COUNT
};

/// Whether objects of a kind take an attribute of this type.
unsigned kestrin_att_supported(att_supporter kind, ATT_ENUM type);

#endif
