// Rules of the languages about whole constructs, which need names but no values: what may be driven where, what a
// subprogram and a process may hold, how instances are connected. Checked once, behind the resolve of a unit.
#ifndef KESTRIN_VERILOG_VERICHECK_H
#define KESTRIN_VERILOG_VERICHECK_H

class VeriDesignUnit;

/// Reports each broken rule at the construct that breaks it. The unit is resolved.
void veri_check_unit(VeriDesignUnit& unit);

#endif
