// Loads the front end and holds its analyzer. The library is entered through its one entry point; everything else goes
// through the analyzer object.
#ifndef HOST_ANALYZER_LIBRARY_H
#define HOST_ANALYZER_LIBRARY_H

#include <memory>
#include <string>

#include "basex.h"

class ANALYZER_LIBRARY {
public:
  ANALYZER_LIBRARY() = default;
  /// Ends the analyzer and makes the library forget everything.
  ~ANALYZER_LIBRARY();
  ANALYZER_LIBRARY(const ANALYZER_LIBRARY&) = delete;
  ANALYZER_LIBRARY& operator=(const ANALYZER_LIBRARY&) = delete;

  /// Looks beside the running program, then in ../lib of it, then where the loader looks. False when the library or its
  /// entry point cannot be found, with the loader's words in `problem`.
  bool load(std::string& problem);
  /// The same from a given file.
  bool load_file(const std::string& path, std::string& problem);
  /// Takes an analyzer over that is part of the program already.
  void use(std::unique_ptr<BASEX_ANALYZER> analyzer) { m_analyzer = std::move(analyzer); }
  BASEX_ANALYZER* get_analyzer() const { return m_analyzer.get(); }

private:
  std::unique_ptr<BASEX_ANALYZER> m_analyzer;
};

#endif
