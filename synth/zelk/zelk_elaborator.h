// The object that the host keeps in each design unit and asks for the unit's netlist.
#ifndef ZELK_ELABORATOR_H
#define ZELK_ELABORATOR_H

#include "basex.h"

class [[gnu::visibility("default")]] ZELK_ELABORATOR : public BASEX_ELABORATOR {
public:
  using BASEX_ELABORATOR::elaborate;
  /// Elaborates the unit that the info object names and hands the result over through it; always null.
  CDB_HIERARCHY_BASE* elaborate(BASEX_ELABORATE_INFO * info) override;
  BASEX_ELABORATOR* clone(MEM_SEGMENT * segment) override;
};

#endif
