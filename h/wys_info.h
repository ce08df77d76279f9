// The library of primitive cells that the device offers by name.
#ifndef WYS_INFO_H
#define WYS_INFO_H

/// The answer for a cell that no library primitive explains.
constexpr int WYS_UNKNOWN = 496;

class WYS_INFO {
public:
  /// The number of the primitive of that name; this host has no device library, so every name is unknown to it.
  static int get_wysiwyg_type_for_string(const char* name);
};

#endif
