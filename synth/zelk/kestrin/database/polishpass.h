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

/// Sees every netlist on its way through the passes.
class PolishObserver {
public:
  virtual ~PolishObserver() = default;
  virtual void BeforePolish(Netlist* netlist) = 0;
  virtual void AfterPass(Netlist* netlist, const PolishPass& pass) = 0;
};
/// The one that is told from now on, null for none; the caller keeps it.
void kestrin_observe_polish(PolishObserver* observer);

#endif
