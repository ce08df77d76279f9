// The kinds of views that the system itself defines: gates, storage, transistors, operators; and the kinds of buffers.
#ifndef KESTRIN_DATABASE_PRIMTYPE_H
#define KESTRIN_DATABASE_PRIMTYPE_H

/// X(name), in the order of their numbers from 0.
#define KESTRIN_PRIM_TYPES(X)                                                                                          \
  X(PRIM_NONE)                                                                                                         \
  X(PRIM_PWR)                                                                                                          \
  X(PRIM_GND)                                                                                                          \
  X(PRIM_X)                                                                                                            \
  X(PRIM_Z)                                                                                                            \
  X(PRIM_INV)                                                                                                          \
  X(PRIM_BUF)                                                                                                          \
  X(PRIM_AND)                                                                                                          \
  X(PRIM_NAND)                                                                                                         \
  X(PRIM_OR)                                                                                                           \
  X(PRIM_NOR)                                                                                                          \
  X(PRIM_XOR)                                                                                                          \
  X(PRIM_XNOR)                                                                                                         \
  X(PRIM_MUX)                                                                                                          \
  X(PRIM_PULLUP)                                                                                                       \
  X(PRIM_PULLDOWN)                                                                                                     \
  X(PRIM_TRI)                                                                                                          \
  X(PRIM_DLATCH)                                                                                                       \
  X(PRIM_DLATCHRS)                                                                                                     \
  X(PRIM_DFF)                                                                                                          \
  X(PRIM_DFFRS)                                                                                                        \
  X(PRIM_NMOS)                                                                                                         \
  X(PRIM_PMOS)                                                                                                         \
  X(PRIM_CMOS)                                                                                                         \
  X(PRIM_TRAN)                                                                                                         \
  X(PRIM_FADD)                                                                                                         \
  X(PRIM_PSL_ASSERTION)                                                                                                \
  X(PRIM_CLOCK)                                                                                                        \
  X(PRIM_INFER_POINT)                                                                                                  \
  X(OPER_ADDER)                                                                                                        \
  X(OPER_MULTIPLIER)                                                                                                   \
  X(OPER_DIVIDER)                                                                                                      \
  X(OPER_MODULO)                                                                                                       \
  X(OPER_SHIFT_LEFT)                                                                                                   \
  X(OPER_SHIFT_RIGHT)                                                                                                  \
  X(OPER_ROTATE_LEFT)                                                                                                  \
  X(OPER_ROTATE_RIGHT)                                                                                                 \
  X(OPER_REDUCE_AND)                                                                                                   \
  X(OPER_REDUCE_OR)                                                                                                    \
  X(OPER_REDUCE_XOR)                                                                                                   \
  X(OPER_REDUCE_NAND)                                                                                                  \
  X(OPER_REDUCE_NOR)                                                                                                   \
  X(OPER_REDUCE_XNOR)                                                                                                  \
  X(OPER_LESSTHAN)                                                                                                     \
  X(OPER_EQUAL)                                                                                                        \
  X(OPER_NTO1MUX)                                                                                                      \
  X(OPER_SELECTOR)                                                                                                     \
  X(OPER_DECODER)                                                                                                      \
  X(OPER_PRIO_SELECTOR)                                                                                                \
  X(OPER_DUAL_PORT_RAM)                                                                                                \
  X(OPER_LUT)

enum prim_type_enum {
#define KESTRIN_PRIM_SYMBOL(name) name,
  KESTRIN_PRIM_TYPES(KESTRIN_PRIM_SYMBOL)
#undef KESTRIN_PRIM_SYMBOL
      PRIM_ANY ///< any type, in searches
};

/// Why a buffer exists, and with that when it may go.
#define KESTRIN_BUFFER_TYPES(X) X(LOGICAL) X(STRUCTURAL) X(KEEP) X(USER_NET) X(CONSTANT) X(DIRECTIONAL) X(NONE)

enum buffer_type_enum {
#define KESTRIN_BUFFER_SYMBOL(name) name,
  KESTRIN_BUFFER_TYPES(KESTRIN_BUFFER_SYMBOL)
#undef KESTRIN_BUFFER_SYMBOL
};

/// Constant drivers.
inline bool kestrin_is_constant_type(prim_type_enum type) { return type >= PRIM_PWR && type <= PRIM_Z; }
/// Latches and registers.
inline bool kestrin_is_storage_type(prim_type_enum type) { return type >= PRIM_DLATCH && type <= PRIM_DFFRS; }
inline bool kestrin_is_register_type(prim_type_enum type) { return type == PRIM_DFF || type == PRIM_DFFRS; }

#endif
