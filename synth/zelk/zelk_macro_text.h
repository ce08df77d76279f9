// A macro as the project's settings spell it: NAME, NAME=TEXT, NAME(A,B) or NAME(A,B)=TEXT.
#ifndef ZELK_MACRO_TEXT_H
#define ZELK_MACRO_TEXT_H

#include <string>

struct ZELK_MACRO_TEXT {
  enum PROBLEM { NONE, BAD_PARAMETERS, BAD_CHARACTER };
  PROBLEM problem = NONE;
  char bad_character = 0; // of the name
  std::string name;
  bool has_text = false;
  std::string text;
  bool has_parameters = false;
  std::string parameters; // joined by commas, without white space; as written when they are bad
};

ZELK_MACRO_TEXT zelk_parse_macro_text(const std::string& text);

#endif
