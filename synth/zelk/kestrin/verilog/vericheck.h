// Rules of the languages about whole constructs, which need names but no values: what may be driven where, what a
// subprogram and a process may hold, how instances are connected. Checked once, behind the resolve of a unit.
#ifndef KESTRIN_VERILOG_VERICHECK_H
#define KESTRIN_VERILOG_VERICHECK_H

class VeriDesignUnit;
class VeriModule;

/// Reports each broken rule at the construct that breaks it. The unit is resolved.
void veri_check_unit(VeriDesignUnit& unit);

/// Whether a list of ports holds more than names of ports (IEEE 1364-2005 12.3.3): what an instance connects are the
/// entries of the list then, and no longer the ports.
bool veri_has_port_expressions(const VeriModule& module);

#endif
