// Configurations as nodes: what they own, and their source text.
#include "verilog/vericonfiguration.h"

#include <ostream>

#include "verilog/veriprint_util.h"

VeriUseClause::VeriUseClause(VeriName* name, bool is_config, unsigned long linefile)
    : VeriTreeNode(linefile), _name(Adopt(name)), _is_config(is_config) {}

VeriUseClause::~VeriUseClause() { delete _name; }

void VeriUseClause::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _name); }

void VeriUseClause::PrettyPrint(std::ostream& out, unsigned) const {
  out << "use ";
  _name->PrettyPrint(out, 0);
  if (_is_config) out << " : config";
}

VeriConfigRule::VeriConfigRule(VeriName* name, VeriNodes<VeriName>* liblist, VeriUseClause* use, unsigned long linefile)
    : VeriTreeNode(linefile), _name(Adopt(name)), _liblist(Adopt(liblist)), _use(Adopt(use)) {}

VeriConfigRule::~VeriConfigRule() {
  delete _name;
  delete _liblist;
  delete _use;
}

void VeriConfigRule::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _name);
  veri_visit(visitor, _liblist);
  veri_visit(visitor, _use);
}

void VeriConfigRule::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintLevel(out, level);
  out << PrintToken(Token()) << ' ';
  if (_name) {
    _name->PrettyPrint(out, 0);
    out << ' ';
  }
  if (_use) {
    _use->PrettyPrint(out, 0);
  } else {
    out << "liblist";
    for (const VeriName* library : ItemsOf<const VeriName*>(_liblist)) {
      out << ' ';
      library->PrettyPrint(out, 0);
    }
  }
  out << ";\n";
}

VeriConfiguration::VeriConfiguration(std::unique_ptr<VeriDesignUnitId> id, VeriNodes<VeriName>* design,
                                     VeriNodes<VeriConfigRule>* rules, unsigned long linefile)
    : VeriDesignUnit(std::move(id), nullptr, nullptr, linefile), _design(Adopt(design)), _rules(Adopt(rules)) {}

VeriConfiguration::~VeriConfiguration() {
  delete _design;
  delete _rules;
}

void VeriConfiguration::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _design);
  veri_visit(visitor, _rules);
}

void VeriConfiguration::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintStart(out, level);
  out << ";\n";
  PrintLevel(out, level + 1);
  out << "design";
  for (const VeriName* cell : *_design) {
    out << ' ';
    cell->PrettyPrint(out, 0);
  }
  out << ";\n";
  veri_print_lines(out, _rules, level + 1);
  PrintLevel(out, level);
  out << "endconfig\n";
}
