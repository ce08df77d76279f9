// How far a syntax error reaches: see the header.
#include "verilog/veri_recovery.h"

#include <algorithm>
#include <string_view>

namespace {

/// A construct that a word closes; several words may close one.
struct Pair {
  int opening;
  int closing;
};

constexpr Pair pairs[] = {
    {VERI_BEGIN, VERI_END},
    {VERI_CASE, VERI_ENDCASE},
    {VERI_CASEX, VERI_ENDCASE},
    {VERI_CASEZ, VERI_ENDCASE},
    {VERI_RANDCASE, VERI_ENDCASE},
    {VERI_FORK, VERI_JOIN},
    {VERI_FUNCTION, VERI_ENDFUNCTION},
    {VERI_TASK, VERI_ENDTASK},
    {VERI_GENERATE, VERI_ENDGENERATE},
    {VERI_SPECIFY, VERI_ENDSPECIFY},
    {VERI_TABLE, VERI_ENDTABLE},
    {VERI_PROPERTY, VERI_ENDPROPERTY},
    {VERI_SEQUENCE, VERI_ENDSEQUENCE},
    {VERI_CLASS, VERI_ENDCLASS},
    {VERI_CLOCKING, VERI_ENDCLOCKING},
    {VERI_COVERGROUP, VERI_ENDGROUP},
    {VERI_MODULE, VERI_ENDMODULE},
    {VERI_MACROMODULE, VERI_ENDMODULE},
    {VERI_PRIMITIVE, VERI_ENDPRIMITIVE},
    {VERI_INTERFACE, VERI_ENDINTERFACE},
    {VERI_PACKAGE, VERI_ENDPACKAGE},
    {VERI_PROGRAM, VERI_ENDPROGRAM},
    {VERI_CONFIG, VERI_ENDCONFIG},
};

/// What a word at the beginning of a line tells.
enum Role : unsigned {
  PLAIN = 0,
  ITEM = 1,        // begins an item of a module and never a statement
  DECLARATION = 2, // begins an item, and may stand in blocks, too
  STATEMENT = 4,   // begins a statement
  UNIT = 8,        // begins a design unit
  PROCESS = 16,    // what follows is a statement
  NET = 32,        // begins a declaration of nets
};

struct Word {
  int code;
  unsigned roles;
};

constexpr Word words[] = {
    {VERI_ALWAYS, ITEM | PROCESS},
    {VERI_ALWAYS_COMB, ITEM | PROCESS},
    {VERI_ALWAYS_FF, ITEM | PROCESS},
    {VERI_ALWAYS_LATCH, ITEM | PROCESS},
    {VERI_INITIAL, ITEM | PROCESS},
    {VERI_FINAL, ITEM | PROCESS},
    {VERI_FUNCTION, ITEM},
    {VERI_TASK, ITEM},
    {VERI_GENERATE, ITEM},
    {VERI_SPECIFY, ITEM},
    {VERI_DEFPARAM, ITEM},
    {VERI_GENVAR, ITEM},
    {VERI_MODPORT, ITEM},
    {VERI_WIRE, ITEM | NET},
    {VERI_TRI, ITEM | NET},
    {VERI_TRI0, ITEM | NET},
    {VERI_TRI1, ITEM | NET},
    {VERI_WAND, ITEM | NET},
    {VERI_WOR, ITEM | NET},
    {VERI_TRIAND, ITEM | NET},
    {VERI_TRIOR, ITEM | NET},
    {VERI_SUPPLY0, ITEM | NET},
    {VERI_SUPPLY1, ITEM | NET},
    {VERI_BUF, ITEM},
    {VERI_NAND, ITEM},
    {VERI_NOR, ITEM},
    {VERI_XOR, ITEM},
    {VERI_XNOR, ITEM},
    {VERI_BUFIF0, ITEM},
    {VERI_BUFIF1, ITEM},
    {VERI_INPUT, DECLARATION},
    {VERI_OUTPUT, DECLARATION},
    {VERI_INOUT, DECLARATION},
    {VERI_REG, DECLARATION},
    {VERI_INTEGER, DECLARATION},
    {VERI_REAL, DECLARATION},
    {VERI_REALTIME, DECLARATION},
    {VERI_TIME, DECLARATION},
    {VERI_EVENT, DECLARATION},
    {VERI_PARAMETER, DECLARATION},
    {VERI_LOCALPARAM, DECLARATION},
    {VERI_LOGIC, DECLARATION},
    {VERI_BIT, DECLARATION},
    {VERI_BYTE, DECLARATION},
    {VERI_INT, DECLARATION},
    {VERI_SHORTINT, DECLARATION},
    {VERI_LONGINT, DECLARATION},
    {VERI_TYPEDEF, DECLARATION},
    {VERI_IMPORT, DECLARATION},
    {VERI_ASSIGN, DECLARATION | STATEMENT},
    {VERI_IF, STATEMENT | PROCESS},
    {VERI_FOR, STATEMENT | PROCESS},
    {VERI_FOREACH, STATEMENT | PROCESS},
    {VERI_WHILE, STATEMENT | PROCESS},
    {VERI_REPEAT, STATEMENT | PROCESS},
    {VERI_FOREVER, STATEMENT | PROCESS},
    {VERI_WAIT, STATEMENT | PROCESS},
    {VERI_CASE, STATEMENT},
    {VERI_CASEX, STATEMENT},
    {VERI_CASEZ, STATEMENT},
    {VERI_UNIQUE, STATEMENT},
    {VERI_PRIORITY, STATEMENT},
    {VERI_RETURN, STATEMENT},
    {VERI_ELSE, PROCESS},
    {VERI_AT, PROCESS},
    {VERI_MODULE, UNIT},
    {VERI_MACROMODULE, UNIT},
    {VERI_PRIMITIVE, UNIT},
    {VERI_INTERFACE, UNIT},
    {VERI_PACKAGE, UNIT},
    {VERI_CONFIG, UNIT},
};

unsigned roles_of(int code) {
  for (const Word& word : words)
    if (word.code == code) return word.roles;
  return PLAIN;
}

/// The word that closes what this one opens; 0 when it opens nothing.
int closing_of(int opening) {
  for (const Pair& pair : pairs)
    if (pair.opening == opening) return pair.closing;
  return 0;
}

bool is_closing(int code) {
  return std::any_of(std::begin(pairs), std::end(pairs), [&](const Pair& pair) { return pair.closing == code; });
}

bool closes_unit(int code) {
  return std::any_of(std::begin(pairs), std::end(pairs),
                     [&](const Pair& pair) { return pair.closing == code && (roles_of(pair.opening) & UNIT); });
}

/// The words that close a parallel block are one.
int closing_word(int code) { return code == VERI_JOIN_ANY || code == VERI_JOIN_NONE ? VERI_JOIN : code; }

/// A design unit in another one.
bool can_be_nested(int code) {
  return VeriNode::IsSystemVerilog() && (code == VERI_MODULE || code == VERI_MACROMODULE || code == VERI_INTERFACE);
}

/// One letter too many, too few or another one, or two of them exchanged.
bool is_slip(std::string_view written, std::string_view meant) {
  if (written.size() > meant.size() + 1 || meant.size() > written.size() + 1) return false;
  size_t front = 0;
  while (front < written.size() && front < meant.size() && written[front] == meant[front]) front++;
  written.remove_prefix(front);
  meant.remove_prefix(front);
  while (!written.empty() && !meant.empty() && written.back() == meant.back()) {
    written.remove_suffix(1);
    meant.remove_suffix(1);
  }
  if (written.size() <= 1 && meant.size() <= 1) return true;
  return written.size() == 2 && meant.size() == 2 && written[0] == meant[1] && written[1] == meant[0];
}

/// The word of structure that an identifier was meant to be; 0 for none.
int meant_word(const char* text) {
  if (!text) return 0;
  for (const Pair& pair : pairs)
    for (const int code : {pair.opening, pair.closing})
      if (VeriNode::Dialect() >= veri_dialect_of_token(static_cast<unsigned>(code)) &&
          is_slip(text, veri_token_text(static_cast<unsigned>(code))))
        return code;
  return 0;
}

class Skipper {
public:
  Skipper(const VeriBreak& at, size_t kept, VeriTokenSource& source)
      : _at(at), _source(source), _open(at.open.begin(), at.open.begin() + static_cast<ptrdiff_t>(kept)),
        _dropped(at.open.begin() + static_cast<ptrdiff_t>(kept), at.open.end()), _now(at.token) {}

  VeriResumption Run() {
    LookAtOpen();
    LookAtDropped();
    LookAtMisspelt();
    if (!ResumesAtOnce()) Skip();
    Close();
    return std::move(_result);
  }

private:
  void LookAtOpen();
  void LookAtDropped();
  void LookAtMisspelt();
  bool ResumesAtOnce() const;
  void Skip();
  bool EndsBefore();
  bool EndsWith();
  bool EndsPart();
  bool SkipsElse();
  void LeaveOrphanedBlock();
  void LeaveCaseItem();
  int InnermostOpening() const;
  void Close();
  size_t BranchBlock() const;
  void CloseUpTo(size_t first);

  int Code() const { return _now.token.code; }
  void Read() {
    _last = Code();
    if (_last == VERI_ID) _name = _now.token.text;
    _now = _source.Next();
    _is_first = false;
  }
  bool IsOpen(int closing) const {
    return std::any_of(_open.begin(), _open.end(), [&](int part) { return closing_of(part) == closing; });
  }
  bool IsInList() const { return _open.empty() || _open.back() <= VERI_OPEN_LIST || closing_of(_open.back()) != 0; }
  bool BeginsBlock() const { return !_open.empty() && (_open.back() == VERI_BEGIN || _open.back() == VERI_OPEN_BODY); }
  bool IsAtTop() const { return !_has_unit; }
  bool Drops(int code) const { return std::find(_dropped.begin(), _dropped.end(), code) != _dropped.end(); }
  bool DropsOnlyName() const {
    const auto others =
        std::count_if(_dropped.begin(), _dropped.end(), [](int part) { return part != VERI_OPEN_OTHER; });
    return others == 1 && Drops(VERI_ID);
  }

  struct Enclosure {
    int opening;
    int closing;
    unsigned depth = 0;
  };
  void Enclose(int code);
  unsigned Depth() const { return _enclosures[0].depth + _enclosures[1].depth + _enclosures[2].depth; }
  unsigned Braces() const { return _enclosures[2].depth; }
  void ForgetEnclosures() {
    for (Enclosure& kind : _enclosures) kind.depth = 0;
  }

  const VeriBreak& _at;
  VeriTokenSource& _source;
  std::vector<int> _open;
  std::vector<int> _dropped;
  VeriReadToken _now;
  VeriResumption _result;

  bool _has_unit = false;
  bool _is_procedural = false; // statements are skipped
  bool _is_head = false;       // of a design unit
  bool _is_loop = false;       // semicolons may stand in parentheses
  bool _awaits_body = false;   // a statement belongs to what is skipped
  bool _is_orphaned = false;   // statements stand where items belong
  bool _has_surplus_end = false;
  bool _is_in_case = false;    // statements stand where items of a case belong
  const char* _name = nullptr; // the last one that was skipped
  bool _is_first = true;       // nothing is skipped yet
  unsigned _ifs = 0;           // that were skipped and may have an else
  Enclosure _enclosures[3] = {{VERI_OPAREN, VERI_CPAREN}, {VERI_OBRACKET, VERI_CBRACKET}, {VERI_OBRACE, VERI_CBRACE}};
  bool _is_structure = false; // semicolons may stand in braces
  int _last = 0;
  std::vector<int> _nest; // closing words of constructs that are skipped
  int _meant = 0;         // closing word that was misspelt
};

/// Counts parentheses, brackets and braces.
void Skipper::Enclose(int code) {
  for (Enclosure& kind : _enclosures) {
    if (code == kind.opening) kind.depth++;
    if (code == kind.closing && kind.depth) kind.depth--;
  }
  if (code == VERI_CBRACE && _is_structure && !Braces()) ForgetEnclosures();
}

void Skipper::LookAtOpen() {
  for (const int part : _open) {
    const unsigned roles = roles_of(part);
    if (roles & UNIT) {
      _has_unit = true;
      _is_procedural = false;
    }
    if ((roles & (ITEM | PROCESS)) == (ITEM | PROCESS) || part == VERI_FUNCTION || part == VERI_TASK)
      _is_procedural = true;
  }
  _awaits_body = !_open.empty() && (roles_of(_open.back()) & PROCESS);
  _is_head = !_open.empty() && (roles_of(_open.back()) & UNIT);
}

void Skipper::LookAtDropped() {
  const bool is_prototype = Drops(VERI_MODPORT) || Drops(VERI_IMPORT) || Drops(VERI_EXTERN) || Drops(VERI_EXPORT);
  int former = 0;
  for (const int part : _dropped) {
    const unsigned roles = roles_of(part);
    Enclose(part);
    if (part == VERI_IF) _ifs++;
    if (part == VERI_FOR) _is_loop = true;
    if (part == VERI_STRUCT) _is_structure = true;
    if (roles & PROCESS) _awaits_body = true;
    if ((roles & (ITEM | PROCESS)) == (ITEM | PROCESS)) _is_procedural = true;
    const bool is_asserted = part == VERI_PROPERTY && former == VERI_ASSERT;
    if (closing_of(part) && !(roles & UNIT) && !is_asserted && !is_prototype) _nest.push_back(closing_of(part));
    if (part != VERI_OPEN_OTHER) former = part;
  }
}

void Skipper::LookAtMisspelt() {
  const int before = _dropped.empty() ? 0 : meant_word(_at.before);
  const int called = _is_procedural && _dropped.size() > 1 && _dropped[1] == VERI_OPAREN ? meant_word(_at.called) : 0;
  const int itself = Code() == VERI_ID ? meant_word(_now.token.text) : 0;
  for (const int code : {called, before, itself}) {
    if (is_closing(code) && IsOpen(code)) _meant = code;
    if (closing_of(code) && (_is_procedural || !(roles_of(code) & STATEMENT))) _nest.push_back(closing_of(code));
  }
  if (_meant && _meant == itself) Read();
}

/// Only a semicolon is missing, or a misspelt word closes what is open.
bool Skipper::ResumesAtOnce() const {
  if (_at.is_second) return false;
  if (_meant) return true;
  if (_open.size() && _open.back() == VERI_MODULE && _at.token.token.code == VERI_OPAREN && _dropped.empty())
    return true;
  const bool is_word = veri_type_of_token(static_cast<unsigned>(Code())) == VERI_TOKEN_KEYWORD;
  return _at.wants_semicolon && _nest.empty() && !_dropped.empty() && !Depth() && (is_word || _now.begins_line);
}

/// The end of the skipped part lies in front of the present token.
bool Skipper::EndsBefore() {
  const int code = Code();
  if (code == VERI_END_OF_INPUT) return true;
  if (_is_first && _at.is_second) return false;
  const unsigned roles = roles_of(code);
  if (roles & UNIT) return IsAtTop() ? !_is_first && _now.begins_line : !_is_first || !can_be_nested(code);
  if (is_closing(closing_word(code))) {
    const bool is_skipped = std::find(_nest.begin(), _nest.end(), closing_word(code)) != _nest.end();
    return !is_skipped && IsOpen(closing_word(code));
  }
  if (code == VERI_ELSE && _is_first && IsInList()) return BranchBlock() < _open.size();
  if (!_now.begins_line || IsAtTop()) return false;
  if (code == VERI_FUNCTION || code == VERI_TASK) return _is_procedural || _nest.empty();
  if ((roles & NET) && _is_procedural && _is_first && BeginsBlock()) return false;
  if (roles & ITEM) return _nest.empty() ? !_is_head || !Depth() : _is_procedural;
  if (!_nest.empty() || (_is_head && Depth()) || (_is_structure && Braces())) return false;
  if (roles & DECLARATION) return !_is_procedural || !(_awaits_body && (roles & STATEMENT));
  return (roles & STATEMENT) && _is_procedural && !_awaits_body;
}

/// Takes the present token into what is skipped. Whether a part of it ends here.
bool Skipper::EndsWith() {
  const int code = Code();
  Enclose(code);
  if (code == VERI_IF && _nest.empty()) _ifs++;
  if (code == VERI_FOR && _nest.empty()) _is_loop = true;
  if (roles_of(code) & PROCESS) _awaits_body = true;
  // So is what follows an else without its process.
  if (_is_first && code == VERI_ELSE && !_is_procedural && !IsAtTop() && IsInList()) _is_orphaned = true;
  const bool assigns = code == VERI_LESS_EQ || code == VERI_ASSIGN_OP;
  if (assigns && !_is_procedural && !_is_head && !IsAtTop() && _nest.empty() && !Depth() && DropsOnlyName())
    _is_orphaned = true;

  const bool is_no_block = (code == VERI_FORK && (_last == VERI_DISABLE || _last == VERI_WAIT)) ||
                           (code == VERI_PROPERTY && _last == VERI_ASSERT) || code == VERI_SEQUENCE;
  if (closing_of(code) && !is_no_block) {
    _nest.push_back(closing_of(code));
    return false;
  }
  const int closing = closing_word(code);
  if (is_closing(closing)) {
    const auto match = std::find(_nest.rbegin(), _nest.rend(), closing);
    if (match != _nest.rend())
      _nest.erase(match.base() - 1, _nest.end());
    else if (IsAtTop())
      return closes_unit(code);
    else
      return code == VERI_END && !_is_procedural;
    if (_nest.empty()) ForgetEnclosures();
    return _nest.empty();
  }
  return code == VERI_SEMICOLON && _nest.empty();
}

/// Behind a token that may end the skipped part.
bool Skipper::EndsPart() {
  if (IsAtTop())
    return closes_unit(_last) || (_last == VERI_SEMICOLON && VeriNode::IsSystemVerilog() && !_dropped.empty());
  if (_is_structure && Braces()) return false;
  if (_last == VERI_SEMICOLON && Depth() && !_now.begins_line && (_is_loop || _is_head)) return false;
  if (_is_in_case) return Code() == VERI_END || Code() == VERI_ENDCASE || Code() == VERI_END_OF_INPUT;
  if (_is_orphaned) return _has_surplus_end || EndsBefore();
  return true;
}

/// The else of an if that is skipped, and one that belongs to none.
bool Skipper::SkipsElse() {
  if (Code() != VERI_ELSE) return false;
  if (_ifs)
    _ifs--;
  else if (!IsInList())
    return false;
  ForgetEnclosures();
  return true;
}

void Skipper::Skip() {
  const bool is_statement = (roles_of(Code()) & STATEMENT) || Code() == VERI_LESS_EQ || Code() == VERI_ASSIGN_OP;
  _is_in_case = is_statement && _is_procedural && InnermostOpening() == VERI_CASE && IsInList();
  while (!EndsBefore()) {
    const bool may_end = EndsWith();
    Read();
    if (!may_end || SkipsElse()) continue;
    if (!EndsPart()) continue;
    // What the dropped part had opened with another sign.
    while (Depth() && _last == VERI_SEMICOLON && _now.begins_line &&
           (Code() == VERI_CPAREN || Code() == VERI_CBRACE || Code() == VERI_CBRACKET)) {
      Enclose(Code());
      Read();
    }
    break;
  }
  if (_is_orphaned) LeaveOrphanedBlock();
  if (_is_in_case) LeaveCaseItem();
  if (Drops(VERI_TYPEDEF) && _last == VERI_SEMICOLON) _result.type_name = _name;
}

/// Statements in a generate block: the processes around them are missing, and so is all that the blocks held.
void Skipper::LeaveOrphanedBlock() {
  if (_has_surplus_end) return;
  while (Code() == VERI_END) {
    auto block = std::find_if(_open.rbegin(), _open.rend(), [](int part) { return closing_of(part) != 0; });
    Read();
    if (block == _open.rend() || *block != VERI_BEGIN) return;
    _result.closing.push_back(VERI_END);
    _open.erase(block.base() - 1, _open.end());
    while (Code() == VERI_ELSE) {
      _is_first = false;
      _ifs = 0;
      for (;;) {
        const bool may_end = EndsWith();
        Read();
        if (EndsBefore() || (may_end && !SkipsElse())) break;
      }
    }
  }
}

/// The place of the innermost open block when an `else` may follow its end; else the number of open parts.
size_t Skipper::BranchBlock() const {
  size_t block = _open.size();
  while (block && !closing_of(_open[block - 1])) block--;
  size_t head = block ? block - 1 : 0;
  while (head && _open[head - 1] == VERI_OPEN_OTHER) head--;
  // In front of it stands the condition, "if" "(" expression ")".
  const bool is_branch = head >= 4 && _open[head - 1] == VERI_CPAREN && _open[head - 4] == VERI_IF;
  return is_branch ? block - 1 : _open.size();
}

/// Statements of a case item without their begin: the end behind them belongs to the item, unless what follows is none.
void Skipper::LeaveCaseItem() {
  if (Code() != VERI_END) return;
  Read();
  const int code = Code();
  const unsigned roles = roles_of(code);
  const bool leaves_case = is_closing(closing_word(code)) ? code != VERI_ENDCASE : roles != PLAIN;
  if (!leaves_case) return;
  size_t block = _open.size();
  while (block && _open[block - 1] != VERI_BEGIN) block--;
  if (block) CloseUpTo(block - 1);
}

int Skipper::InnermostOpening() const {
  const auto block = std::find_if(_open.rbegin(), _open.rend(), [](int part) { return closing_of(part) != 0; });
  return block == _open.rend() ? 0 : *block;
}

/// Ends the constructs in the open parts from this one on.
void Skipper::CloseUpTo(size_t first) {
  while (_open.size() > first) {
    if (const int closing = closing_of(_open.back())) _result.closing.push_back(closing);
    _open.pop_back();
  }
}

void Skipper::Close() {
  const int last = _open.empty() ? 0 : _open.back();
  _result.is_declaration = last == VERI_OPEN_BODY || last == VERI_FORK || (last == VERI_BEGIN && _is_procedural);
  _result.next = _now;
  _result.is_at_end = Code() == VERI_END_OF_INPUT;
  const int closing = _meant ? _meant : closing_word(Code());
  const unsigned roles = roles_of(Code());
  size_t first = _open.size();
  if (is_closing(closing)) {
    while (first && closing_of(_open[first - 1]) != closing) first--;
    if (!first || _meant) first = first ? first - 1 : _open.size();
  } else if ((roles & UNIT) && !can_be_nested(Code())) {
    first = 0;
  } else if ((roles & (ITEM | UNIT)) && _is_procedural && _now.begins_line) {
    while (first && !(roles_of(_open[first - 1]) & ITEM)) first--;
    if (first) first--;
  } else if (Code() == VERI_ELSE && _is_first && IsInList()) {
    first = BranchBlock();
  }
  CloseUpTo(first);
  _result.begins = static_cast<unsigned>(std::count(_open.begin(), _open.end(), VERI_BEGIN));
}

} // namespace

bool veri_can_close(int code, const std::vector<int>& open) {
  if (!is_closing(code)) return true;
  const auto innermost = std::find_if(open.rbegin(), open.rend(), [](int part) { return closing_of(part) != 0; });
  return innermost != open.rend() && closing_of(*innermost) == code;
}

VeriResumption veri_resume(const VeriBreak& at, size_t kept, VeriTokenSource& source) {
  return Skipper(at, std::min(kept, at.open.size()), source).Run();
}
