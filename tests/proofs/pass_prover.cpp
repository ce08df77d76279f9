// Polishes netlists and writes each as Verilog before and after each pass that changes it, for independent tools.
//
// usage: pass_prover FOLDER random FIRST LAST      random netlists of these seeds
//        pass_prover FOLDER sources FILE...        all modules of the files
//
// The folder gets stages.v with all stages, and pairs.json with what to compare: a line for each pass that changed
// something, with the terminals of both sides. What is polished is polished again and must not change.
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "database/libset.h"
#include "database/netlistchecker.h"
#include "database/polishpass.h"
#include "database/random_design.h"
#include "support/step_verilog.h"
#include "verilog/veri_file.h"

namespace {

std::string DumpOf(const Netlist* netlist) {
  std::ostringstream text;
  netlist->Dump(text);
  return text.str();
}

/// Writes the stages of all netlists that are polished while it lives.
class StageWriter : public PolishObserver {
public:
  explicit StageWriter(const std::string& folder) : _stages(folder + "/stages.v"), _pairs(folder + "/pairs.json") {
    kestrin_observe_polish(this);
  }
  ~StageWriter() override { kestrin_observe_polish(nullptr); }

  void BeforePolish(Netlist* netlist) override {
    _cuts.clear();
    _last = Write(netlist);
  }
  void AfterPass(Netlist* netlist, const PolishPass& pass) override {
    const std::string faults = NetlistChecker(netlist).Report();
    if (!faults.empty()) Complain(std::string(pass.name) + ": " + faults);
    StepModule now = Write(netlist);
    if (now.text == _last.text) return;
    const std::string gold = Emit(_last);
    const std::string gate = Emit(now);
    _pairs << "{\"pass\": " << Quoted(pass.name) << ", \"netlist\": " << Quoted(name)
           << ", \"gold\": " << Terminals(gold, _last) << ", \"gate\": " << Terminals(gate, now)
           << ", \"two_states\": " << (_last.has_two_states && now.has_two_states ? "true" : "false")
           << ", \"fault\": " << Quoted(_last.fault.empty() ? now.fault : _last.fault) << "}\n";
    _last = std::move(now);
  }
  void Complain(const std::string& what) {
    std::cerr << name << ": " << what << "\n";
    failed = true;
  }

  std::string name;
  bool failed = false;

private:
  StepModule Write(const Netlist* netlist) { return StepVerilog::Write(netlist, "STAGE", _cuts); }
  /// Writes a stage with a name of its own, once.
  std::string Emit(const StepModule& stage) {
    if (stage.text == _emitted) return "s" + std::to_string(_num_emitted);
    _emitted = stage.text;
    const std::string module = "s" + std::to_string(++_num_emitted);
    _stages << std::string(stage.text).replace(stage.text.find("STAGE"), 5, module);
    return module;
  }
  static std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (char c : text) {
      if (c == '"' || c == '\\') quoted += '\\';
      quoted += c;
    }
    return quoted + "\"";
  }
  static std::string List(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : ", ") + Quoted(name);
    return "[" + list + "]";
  }
  static std::string Terminals(const std::string& module, const StepModule& stage) {
    return "{\"module\": " + Quoted(module) + ", \"inputs\": " + List(stage.inputs) +
           ", \"bidirectional\": " + List(stage.bidirectional) + ", \"outputs\": " + List(stage.outputs) + "}";
  }

  std::ofstream _stages;
  std::ofstream _pairs;
  StepVerilog::CutNumbers _cuts;
  StepModule _last;
  std::string _emitted;
  size_t _num_emitted = 0;
};

void PolishRandom(StageWriter& writer, unsigned first, unsigned last) {
  for (unsigned seed = first; seed <= last; seed++)
    for (bool floats : {false, true}) {
      RandomDesign design(seed, floats);
      writer.name = "seed " + std::to_string(seed) + (floats ? " floating" : "");
      design.n->Polish();
    }
}

void PolishSources(StageWriter& writer, char** first, char** last) {
  writer.name = *first;
  veri_file file;
  for (char** source = first; source != last; source++) {
    const std::string path = *source;
    const bool is_system_verilog = path.size() > 3 && path.compare(path.size() - 3, 3, ".sv") == 0;
    file.Analyze(*source, is_system_verilog ? VERI_SV : VERI_2K, "work");
  }
  veri_file::ElaborateAll("work");
  kestrin_observe_polish(nullptr); // what has been polished changes no more
  Message::ClearErrorCount();
  for (Cell* cell : CellsOf(Libset::Global()->GetLibrary("work")))
    for (Netlist* netlist : NetlistsOf(cell)) {
      if (netlist->NumOfInsts() == 0) continue;
      const std::string polished = DumpOf(netlist);
      netlist->Polish();
      if (DumpOf(netlist) != polished && !Message::ErrorCount())
        writer.Complain(std::string(cell->Name()) + " changes when it is polished again");
      Message::ClearErrorCount();
    }
}

} // namespace

int main(int argc, char** argv) {
  if (argc < 4) return 2;
  Message::SetConsoleOutput(0);
  StageWriter writer(argv[1]);
  if (std::string(argv[2]) == "random")
    PolishRandom(writer, static_cast<unsigned>(std::stoul(argv[3])), static_cast<unsigned>(std::stoul(argv[4])));
  else
    PolishSources(writer, argv + 3, argv + argc);
  veri_file::FreeStaticMemory();
  Database::FreeStaticMemory();
  return writer.failed;
}
