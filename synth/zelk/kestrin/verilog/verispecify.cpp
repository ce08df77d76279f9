// Specify blocks as nodes: what they own, and their source text.
#include "verilog/verispecify.h"

#include <ostream>

#include "verilog/veriprint_util.h"

// Blocks.

VeriSpecifyBlock::VeriSpecifyBlock(VeriModuleItems* items, std::unique_ptr<VeriScope> scope, unsigned long linefile)
    : VeriModuleItem(linefile), _items(Adopt(items)), _scope(std::move(scope)) {}

VeriSpecifyBlock::~VeriSpecifyBlock() { delete _items; }

void VeriSpecifyBlock::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _items); }

void VeriSpecifyBlock::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintFront(out, level);
  out << "specify\n";
  veri_print_lines(out, _items, level + 1);
  PrintLevel(out, level);
  out << "endspecify\n";
}

// Paths.

VeriPath::VeriPath(const Tokens& tokens, VeriExpressions* inputs, VeriExpressions* outputs, VeriExpression* data_source,
                   unsigned long linefile)
    : VeriTreeNode(linefile), _tokens(tokens), _inputs(Adopt(inputs)), _outputs(Adopt(outputs)),
      _data_source(Adopt(data_source)) {}

VeriPath::~VeriPath() {
  delete _inputs;
  delete _outputs;
  delete _data_source;
}

void VeriPath::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _inputs);
  veri_visit(visitor, _outputs);
  veri_visit(visitor, _data_source);
}

void VeriPath::PrettyPrint(std::ostream& out, unsigned) const {
  if (!_outputs) return veri_print_list(out, _inputs);
  out << '(';
  if (_tokens.edge) out << PrintToken(_tokens.edge) << ' ';
  veri_print_list(out, _inputs);
  out << ' ';
  if (_tokens.polarity) out << PrintToken(_tokens.polarity) << ' ';
  out << PrintToken(_tokens.arrow) << ' ';
  if (_data_source) out << '(';
  veri_print_list(out, _outputs);
  if (_data_source) {
    out << ' ' << PrintToken(_tokens.data_polarity) << ' ';
    _data_source->PrettyPrint(out, 0);
    out << ')';
  }
  out << ')';
}

VeriPathDecl::VeriPathDecl(unsigned token, VeriExpression* condition, VeriPath* path, VeriExpressions* delays,
                           unsigned long linefile)
    : VeriModuleItem(linefile), _token(token), _condition(Adopt(condition)), _path(Adopt(path)),
      _delays(Adopt(delays)) {}

VeriPathDecl::~VeriPathDecl() {
  delete _condition;
  delete _path;
  delete _delays;
}

void VeriPathDecl::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _condition);
  veri_visit(visitor, _path);
  veri_visit(visitor, _delays);
}

void VeriPathDecl::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintLevel(out, level);
  if (_token) out << PrintToken(_token) << ' ';
  if (_condition) {
    out << '(';
    _condition->PrettyPrint(out, 0);
    out << ") ";
  }
  _path->PrettyPrint(out, 0);
  if (_delays) {
    out << " = (";
    veri_print_list(out, _delays);
    out << ')';
  }
  out << ";\n";
}

// Checks.

VeriSystemTimingCheck::VeriSystemTimingCheck(const char* name, VeriExpressions* args, unsigned long linefile)
    : VeriModuleItem(linefile), _name(name), _args(Adopt(args)) {}

VeriSystemTimingCheck::~VeriSystemTimingCheck() { delete _args; }

void VeriSystemTimingCheck::VisitChildren(VeriVisitor& visitor) { veri_visit(visitor, _args); }

void VeriSystemTimingCheck::PrettyPrint(std::ostream& out, unsigned level) const {
  PrintLevel(out, level);
  out << _name << '(';
  veri_print_list(out, _args);
  out << ");\n";
}

VeriTimingCheckEvent::VeriTimingCheckEvent(unsigned edge, const char* descriptors, VeriExpression* terminal,
                                           VeriExpression* condition, unsigned long linefile)
    : VeriExpression(linefile), _edge(edge), _descriptors(descriptors ? descriptors : ""), _terminal(Adopt(terminal)),
      _condition(Adopt(condition)) {
  Deepen(terminal);
  Deepen(condition);
}

VeriTimingCheckEvent::~VeriTimingCheckEvent() {
  delete _terminal;
  delete _condition;
}

void VeriTimingCheckEvent::VisitChildren(VeriVisitor& visitor) {
  veri_visit(visitor, _terminal);
  veri_visit(visitor, _condition);
}

void VeriTimingCheckEvent::PrettyPrint(std::ostream& out, unsigned) const {
  if (_edge) out << PrintToken(_edge) << ' ';
  const char* before = "[";
  for (size_t i = 0; i + 1 < _descriptors.size(); i += 2) {
    out << before << _descriptors[i] << _descriptors[i + 1];
    before = ", ";
  }
  if (!_descriptors.empty()) out << "] ";
  _terminal->PrettyPrint(out, 0);
  if (!_condition) return;
  out << " &&& ";
  _condition->PrettyPrint(out, 0);
}
