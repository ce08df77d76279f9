// Prim and its classes: the views that the system itself defines: constants, gates, storage, transistors and the
// markers of elaboration. One netlist of each exists (of the buffer one per kind), in the library "Primitives"; all
// instances of all designs refer to it. The table primitives.def declares names, ports and roles.
#ifndef KESTRIN_DATABASE_PRIMITIVES_H
#define KESTRIN_DATABASE_PRIMITIVES_H

#include "database/netlist.h"

/// What a port is to its view: the getter of Netlist that answers with it.
enum prim_role {
  ROLE_INPUT,
  ROLE_INPUT1,
  ROLE_INPUT2,
  ROLE_OUTPUT,
  ROLE_CONTROL,
  ROLE_ASYNC_COND,
  ROLE_ASYNC_VAL,
  ROLE_SET,
  ROLE_RESET,
  ROLE_CLOCK,
  ROLE_Z,
  ROLE_ALOAD,
  ROLE_ADATA,
  ROLE_CIN,
  ROLE_COUT,
  ROLE_COUNT
};

class Prim : public Netlist {
public:
  ~Prim() override;

  /// The shared netlist of a primitive; null for any other type. Of the buffer it is the LOGICAL one.
  static Prim* Static(prim_type_enum type);

  /// A primitive of this type besides the shared one; the caller deletes it.
  static Prim* New(prim_type_enum type, buffer_type_enum buffer_type = LOGICAL);
  Prim* NewOfSameKind() const { return New(_type, BufferType()); }

  void Save(SaveRestore& stream) const override;
  unsigned SupportsAttribute(const Att* att) const override;
  unsigned IsPrimitive() const override { return 1; }
  prim_type_enum Type() const override { return _type; }
  Port* GetInput() const override { return _roles[ROLE_INPUT]; }
  Port* GetInput1() const override { return _roles[ROLE_INPUT1]; }
  Port* GetInput2() const override { return _roles[ROLE_INPUT2]; }
  Port* GetOutput() const override { return _roles[ROLE_OUTPUT]; }
  Port* GetControl() const override { return _roles[ROLE_CONTROL]; }
  Port* GetAsyncCond() const override { return _roles[ROLE_ASYNC_COND]; }
  Port* GetAsyncVal() const override { return _roles[ROLE_ASYNC_VAL]; }
  Port* GetSet() const override { return _roles[ROLE_SET]; }
  Port* GetReset() const override { return _roles[ROLE_RESET]; }
  Port* GetClock() const override { return _roles[ROLE_CLOCK]; }
  Port* GetZ() const override { return _roles[ROLE_Z]; }
  Port* GetALoad() const override { return _roles[ROLE_ALOAD]; }
  Port* GetAData() const override { return _roles[ROLE_ADATA]; }
  Port* GetCin() const override { return _roles[ROLE_CIN]; }
  Port* GetCout() const override { return _roles[ROLE_COUT]; }
  /// Merges instances whose inputs are on the same nets, port by port. Registers compare their data and then their
  /// secondaries with kestrin_compatible_secondaries.
  unsigned MergeCommonSubexpression(Instance* first, Instance* second) override;

protected:
  /// With the ports that the table gives to the type.
  Prim(prim_type_enum type, const char* name);

private:
  friend class Netlist;
  prim_type_enum _type;
  Port* _roles[ROLE_COUNT] = {};
};

class CombPrim : public Prim {
public:
  unsigned IsCombinational() const override { return 1; }

protected:
  using Prim::Prim;
};

class NonCombPrim : public Prim {
protected:
  using Prim::Prim;
};

/// Never removed as dangling.
class PrimAssertion : public Prim {
public:
  unsigned IsAssertion() const override { return 1; }

protected:
  using Prim::Prim;
};

/// Gates of two inputs that may be exchanged.
class PrimBinary : public CombPrim {
public:
  unsigned MergeCommonSubexpression(Instance* first, Instance* second) override;

protected:
  using CombPrim::CombPrim;
};

// NOLINTBEGIN(bugprone-macro-parentheses): names of classes take none
/// A primitive without behaviour of its own.
#define KESTRIN_PLAIN_PRIM(class_name, base, type)                                                                     \
  class class_name : public base {                                                                                     \
  public:                                                                                                              \
    explicit class_name(const char* name) : base(type, name) {}                                                        \
  }
/// A primitive that folds by its inputs.
#define KESTRIN_FOLDING_PRIM(class_name, base, type)                                                                   \
  class class_name : public base {                                                                                     \
  public:                                                                                                              \
    explicit class_name(const char* name) : base(type, name) {}                                                        \
    unsigned Propagate(Instance* inst) override;                                                                       \
  }
// NOLINTEND(bugprone-macro-parentheses)

KESTRIN_PLAIN_PRIM(PrimPwr, CombPrim, PRIM_PWR);
KESTRIN_PLAIN_PRIM(PrimGnd, CombPrim, PRIM_GND);
KESTRIN_PLAIN_PRIM(PrimX, CombPrim, PRIM_X);
KESTRIN_PLAIN_PRIM(PrimZ, CombPrim, PRIM_Z);
KESTRIN_FOLDING_PRIM(PrimAnd, PrimBinary, PRIM_AND);
KESTRIN_FOLDING_PRIM(PrimNand, PrimBinary, PRIM_NAND);
KESTRIN_FOLDING_PRIM(PrimOr, PrimBinary, PRIM_OR);
KESTRIN_FOLDING_PRIM(PrimNor, PrimBinary, PRIM_NOR);
KESTRIN_FOLDING_PRIM(PrimXor, PrimBinary, PRIM_XOR);
KESTRIN_FOLDING_PRIM(PrimXnor, PrimBinary, PRIM_XNOR);
KESTRIN_FOLDING_PRIM(PrimMux, CombPrim, PRIM_MUX);
KESTRIN_FOLDING_PRIM(PrimFadd, CombPrim, PRIM_FADD);
KESTRIN_PLAIN_PRIM(PrimPullup, NonCombPrim, PRIM_PULLUP);
KESTRIN_PLAIN_PRIM(PrimPulldown, NonCombPrim, PRIM_PULLDOWN);
KESTRIN_PLAIN_PRIM(PrimTristate, NonCombPrim, PRIM_TRI);
KESTRIN_PLAIN_PRIM(PrimDlatch, NonCombPrim, PRIM_DLATCH);
KESTRIN_PLAIN_PRIM(PrimDlatchrs, NonCombPrim, PRIM_DLATCHRS);
KESTRIN_PLAIN_PRIM(PrimDff, NonCombPrim, PRIM_DFF);
KESTRIN_FOLDING_PRIM(PrimDffrs, NonCombPrim, PRIM_DFFRS);
KESTRIN_PLAIN_PRIM(PrimNmos, NonCombPrim, PRIM_NMOS);
KESTRIN_PLAIN_PRIM(PrimPmos, NonCombPrim, PRIM_PMOS);
KESTRIN_PLAIN_PRIM(PrimCmos, NonCombPrim, PRIM_CMOS);
KESTRIN_PLAIN_PRIM(PrimTran, NonCombPrim, PRIM_TRAN);
KESTRIN_PLAIN_PRIM(PrimClock, NonCombPrim, PRIM_CLOCK);
KESTRIN_PLAIN_PRIM(PrimPslAssertion, PrimAssertion, PRIM_PSL_ASSERTION);
KESTRIN_PLAIN_PRIM(PrimInferPoint, Prim, PRIM_INFER_POINT);

class PrimInv : public CombPrim {
public:
  explicit PrimInv(const char* name) : CombPrim(PRIM_INV, name) {}
  unsigned Propagate(Instance* inst) override;
  unsigned MergeCommonSubexpression(Instance* first, Instance* second) override;
};

class PrimBuf : public CombPrim {
public:
  explicit PrimBuf(const char* name, buffer_type_enum type = LOGICAL) : CombPrim(PRIM_BUF, name), _buffer_type(type) {}
  ~PrimBuf() override;

  /// The shared buffer of a kind. An unknown kind is an internal error and gives null.
  static PrimBuf* Static(unsigned type);
  buffer_type_enum BufferType() const override { return _buffer_type; }

private:
  buffer_type_enum _buffer_type;
};

#undef KESTRIN_PLAIN_PRIM
#undef KESTRIN_FOLDING_PRIM

#endif
