// The passes of Polish as a table: what runs, dumps and checks them walks it, and so do tests of single passes.
#ifndef KESTRIN_DATABASE_POLISHPASS_H
#define KESTRIN_DATABASE_POLISHPASS_H

class Netlist;

enum class PolishGuard { ALWAYS, IF_SET, UNLESS_SET };

struct PolishPass {
  const char* name;              ///< the operation
  const char* dump_before;       ///< label of the dump, null for none
  bool (*run)(Netlist* netlist); ///< answers whether polishing goes on
  const char* dump_after;        ///< likewise, null for none
  PolishGuard guard;
  const char* flag; ///< of the guard

  bool IsWanted() const;
};

/// In their order.
struct PolishPasses {
  const PolishPass* first;
  const PolishPass* last;
  const PolishPass* begin() const { return first; }
  const PolishPass* end() const { return last; }
};
PolishPasses kestrin_polish_passes();

#endif
