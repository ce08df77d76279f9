// A memory as writers see it: words of one width, which is that of the narrowest port, and ports that take one or more
// of them at once.
#ifndef HOST_RAM_VIEW_H
#define HOST_RAM_VIEW_H

#include <string>

#include "cdb_sgate_ram.h"
#include "module_view.h"

struct RAM_READ_PORT {
  BITS address; // lowest bit first
  BITS data;
  unsigned words; // taken at once
};

/// Of two ports that write a word at the same edge the later one wins.
struct RAM_WRITE_PORT {
  BIT enable; // 1 where the lanes alone tell
  BITS address;
  BITS data;
  BITS lanes; // enables of equal parts of the data; empty without such
  unsigned words;
  /// The port writes at edges of this clock. Without one it writes while the enable is 1.
  bool is_clocked = false;
  BIT clock{};
  bool clock_falls = false;
  /// A reset in whose presence a clocked port does not write; 0 or 1 is none.
  BIT reset{BIT::ZERO};
  bool reset_is_low = false;

  bool has_reset() const { return reset.is_net(); }
  bool has_clock_of(const RAM_WRITE_PORT& other) const {
    return is_clocked == other.is_clocked && clock == other.clock && clock_falls == other.clock_falls;
  }
};

struct RAM_VIEW {
  RAM_VIEW(const MODULE_VIEW& view, const CDB_SGATE_ASYNCHRONOUS_RAM& ram);
  unsigned width = 1;
  unsigned long depth = 1; // in words
  std::vector<RAM_READ_PORT> reads;
  std::vector<RAM_WRITE_PORT> writes;
  /// What the words hold at first, by address, most significant bit first; empty without an initialisation file.
  std::vector<std::string> contents;

private:
  void read_contents(const std::string& file);
};

#endif
