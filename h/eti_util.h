// Third-party tools of the design flow, by number and by name.
#ifndef ETI_UTIL_H
#define ETI_UTIL_H

/// Formal verification tools; 0 is none.
enum ETI_TOOL_ENUM { ETI_TOOL_NONE = 0, ETI_TOOL_CONFORMAL = 1, ETI_TOOL_FORMALITY = 2, ETI_TOOL_CUSTOM_FORMAL = 3 };

class ETI_UTIL {
public:
  /// The tool of a setting's text, without regard to case; ETI_TOOL_NONE for null and for unknown texts.
  static int eda_tool_type_string_to_enum(const char* text);
  /// The name as shown to users; empty for ETI_TOOL_NONE.
  static const char* tool_enum_to_string(int tool);
};

#endif
