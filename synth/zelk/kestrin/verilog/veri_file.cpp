// The face of the Verilog front end: analysis of files, the table of libraries, search directories, and the entries to
// elaboration.
#include "verilog/veri_file.h"

#include <filesystem>
#include <fstream>
#include <vector>

#include "database/library.h"
#include "database/libset.h"
#include "database/netlist.h"
#include "util/linefile.h"
#include "util/message.h"
#include "verilog/veri_actions.h"
#include "verilog/veri_lex.h"

namespace {

/// What belongs to the process. Directories and file names are owned copies.
struct State {
  Map libraries{HASH_STRING}; // name to VeriLibrary
  VeriLibrary* work = nullptr;
  std::vector<std::string> y_dirs;
  std::vector<std::string> include_dirs;
  Set newly_found;
  Set unresolved;
  Set dependent_files{HASH_STRING};
  std::vector<OwnedString> dependent_names;
};

State* state = nullptr;
unsigned (*interrupt_func)(unsigned long) = nullptr;
unsigned (*blackboxed_func)(const char*) = nullptr;

State& get_state() {
  if (!state) state = new State;
  return *state;
}

/// What the scanner finds goes to the unit or library whose scope the parser is in.
class ParseClient : public VeriScanClient {
public:
  bool IsBetweenDesignUnits() const override {
    const VeriScope* scope = VeriParser::PresentScope();
    return !scope || scope->Kind() == SCOPE_LIBRARY;
  }
  void AddToMacroSeq(const char* name, const char* args, const char* value, linefile_type linefile) override {
    VeriScope* scope = VeriParser::PresentScope();
    while (scope && scope->Kind() != SCOPE_UNIT && scope->Kind() != SCOPE_LIBRARY) scope = scope->Upper();
    if (scope && scope->GetOwner()) scope->GetOwner()->AddMacro(name, args, value, linefile);
  }
  void AddDependentFile(const char* name) override { veri_file::AddDependentFile(name); }
  void SetTimeScale(const char* text) override {
    const VeriScope* scope = VeriParser::PresentScope();
    VeriLibrary* library = scope ? scope->GetLibrary() : nullptr;
    if (!library) library = veri_file::WorkLibrary();
    if (library) library->SetTimeScale(text);
  }
  void SetDialect(veri_dialect dialect) override { VeriNode::SetDialect(dialect); }
};

} // namespace

// Analysis.

unsigned veri_file::Analyze(const char* file, veri_dialect dialect, const char* work_library) {
  Message::ClearErrorCount();
  NewlyFound().Reset();
  return Parse(file, dialect, work_library);
}

unsigned veri_file::Parse(const char* file, veri_dialect dialect, const char* work_library) {
  VeriDialectScope scope(dialect); // directives in the file end with it
  SetWorkLibrary(GetLibrary(work_library, /*create=*/1));
  ClearDependentFiles();
  ParseClient client;
  if (!VeriLex::StartFlex(file, dialect, &_macros, &client)) return 0;
  Message::PrintLine("Reading Verilog file ", file);
  VeriParser::Parse(WorkLibrary());
  VeriLex::EndFlex();
  if (Message::ErrorCount() == 0) return 1;
  Message::PrintLine("Verilog file ", file, " ignored due to errors");
  return 0;
}

Set& veri_file::NewlyFound() { return get_state().newly_found; }

Set& veri_file::UnresolvedDesignUnits() { return get_state().unresolved; }

void veri_file::ForgetDesignUnit(VeriDesignUnitId* id) {
  if (!state) return;
  state->newly_found.Remove(id);
  state->unresolved.Remove(id);
  if (id->GetDesignUnitToken() != VERI_PACKAGE) return;
  for (const VeriLibrary* library : ValuesOf<const VeriLibrary*>(&state->libraries))
    for (VeriDesignUnit* unit : library->Units()) unit->GetId()->RemoveDependent(id);
}

// Elaboration.

namespace {

Library* netlist_library(const char* name) {
  Library* library = Libset::Global()->GetLibrary(name);
  if (library) return library;
  library = new Library(name);
  Libset::Global()->Add(library);
  return library;
}

Netlist* elaborate(VeriModule* module, const char* library, const Map* parameters) {
  module->GetLibrary()->ResolveGlobals();
  module->Resolve();
  if (Message::ErrorCount() != 0) return nullptr;
  return module->Elaborate(netlist_library(library), parameters);
}

} // namespace

unsigned veri_file::Read(const char* file, const char* work_library, veri_dialect dialect) {
  Message::ClearErrorCount();
  if (!Parse(file, dialect, work_library)) return 0;
  netlist_library(work_library);
  for (VeriDesignUnit* unit : WorkLibrary()->Units()) {
    if (!unit->IsModule()) continue;
    auto* module = static_cast<VeriModule*>(unit);
    if (module->IsElaborated()) elaborate(module, work_library, nullptr);
  }
  return Message::ErrorCount() == 0;
}

unsigned veri_file::ElaborateAll(const char* library) {
  Message::ClearErrorCount();
  netlist_library(library);
  const VeriLibrary* units = GetLibrary(library);
  if (!units) return 1;
  for (VeriDesignUnit* unit : units->Units()) {
    if (!unit->IsModule()) continue;
    auto* module = static_cast<VeriModule*>(unit);
    if (!module->IsElaborated()) elaborate(module, library, nullptr);
  }
  return Message::ErrorCount() == 0;
}

unsigned veri_file::Elaborate(const char* unit, const char* library, const Map* parameters) {
  Message::ClearErrorCount();
  const VeriLibrary* units = GetLibrary(library);
  VeriModule* module = units ? units->GetModule(unit) : nullptr;
  if (!module) {
    Message::PrintLine("module ", unit, " is not yet analyzed");
    return 0;
  }
  module->GetLibrary()->ResolveGlobals();
  module->Resolve();
  Map* actuals = parameters ? module->CreateActualParameters(parameters) : nullptr;
  Netlist* netlist = elaborate(module, library, actuals);
  if (netlist) netlist->SetPresentDesign();
  VeriModule::DeleteParams(actuals);
  return netlist && Message::ErrorCount() == 0;
}

// Units that were not analysed.

VeriModule* veri_file::FindUnknownModule(const char* name) {
  for (const std::string& directory : get_state().y_dirs) {
    const std::string path = directory + "/" + name + ".v";
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) continue;
    VeriLibrary* former = WorkLibrary();
    veri_file file;
    file.Analyze(path.c_str(), VERI_2K, "work");
    VeriModule* module = WorkLibrary() ? WorkLibrary()->GetModule(name) : nullptr;
    SetWorkLibrary(former);
    return module;
  }
  return nullptr;
}

VeriModule* veri_file::FindModule(const char* name, VeriLibrary* first) {
  VeriModule* module = first ? first->GetModule(name) : nullptr;
  if (module) return module;
  for (const VeriLibrary* library : ValuesOf<const VeriLibrary*>(&AllLibraries()))
    if ((module = library->GetModule(name))) return module;
  return nullptr;
}

VeriPackage* veri_file::FindPackage(const char* name, VeriLibrary* first) {
  VeriPackage* package = first ? first->GetPackage(name) : nullptr;
  if (package) return package;
  for (const VeriLibrary* library : ValuesOf<const VeriLibrary*>(&AllLibraries()))
    if ((package = library->GetPackage(name))) return package;
  return nullptr;
}

// Directories.

namespace {

void add_directory(std::vector<std::string>& directories, const char* directory) {
  directories.emplace_back(directory);
}

void remove_directory(std::vector<std::string>& directories, const char* directory) {
  std::erase(directories, directory);
}

} // namespace

void veri_file::AddYDir(const char* directory) { add_directory(get_state().y_dirs, directory); }
void veri_file::RemoveYDir(const char* directory) { remove_directory(get_state().y_dirs, directory); }
void veri_file::RemoveAllYDirs() { get_state().y_dirs.clear(); }
void veri_file::AddIncludeDir(const char* directory) { add_directory(get_state().include_dirs, directory); }
void veri_file::RemoveIncludeDir(const char* directory) { remove_directory(get_state().include_dirs, directory); }
void veri_file::RemoveAllIncludeDirs() { get_state().include_dirs.clear(); }

OwnedString veri_file::IncludeFileName(const char* name) {
  std::error_code error;
  if (std::filesystem::is_regular_file(name, error)) return OwnedString(Strings::save(name));
  for (const std::string& directory : get_state().include_dirs) {
    const std::string path = directory + "/" + name;
    if (std::filesystem::is_regular_file(path, error)) return OwnedString(Strings::save(path.c_str()));
  }
  return nullptr;
}

// Libraries.

VeriLibrary* veri_file::GetLibrary(const char* name, unsigned create, unsigned case_sensitive) {
  Map& libraries = get_state().libraries;
  auto* library = FromWord<VeriLibrary*>(libraries.GetValue(name));
  if (library) return library;
  if (!case_sensitive)
    for (VeriLibrary* candidate : ValuesOf<VeriLibrary*>(&libraries))
      if (Strings::compare_nocase(candidate->Name(), name)) return candidate;
  if (!create) return nullptr;
  library = new VeriLibrary(name);
  libraries.Insert(library->Name(), library);
  return library;
}

VeriLibrary* veri_file::WorkLibrary() { return get_state().work; }
void veri_file::SetWorkLibrary(VeriLibrary* library) { get_state().work = library; }
const Map& veri_file::AllLibraries() { return get_state().libraries; }

void veri_file::RemoveLibrary(const char* name) {
  VeriLibrary* library = GetLibrary(name);
  if (!library) return;
  if (WorkLibrary() == library) SetWorkLibrary(nullptr);
  get_state().libraries.Remove(library->Name());
  delete library;
}

void veri_file::RemoveAllLibraries() {
  std::vector<std::string> names;
  for (const VeriLibrary* library : ValuesOf<const VeriLibrary*>(&AllLibraries())) names.emplace_back(library->Name());
  for (const std::string& name : names) RemoveLibrary(name.c_str());
}

// Callbacks.

void veri_file::RegisterInterrupt(unsigned (*function)(unsigned long)) { interrupt_func = function; }
void veri_file::RegisterBlackboxed(unsigned (*function)(const char*)) { blackboxed_func = function; }

unsigned veri_file::CheckForInterrupt(unsigned long linefile) {
  if (Message::ErrorCount() != 0) return 1;
  if (!interrupt_func || !interrupt_func(linefile)) return 0;
  constexpr auto format = "Verilog reader: User Interrupt. Cleaning up....";
  Message::Msg(MSG_ERROR, VeriNode::GetMessageId(format), linefile, format);
  return 1;
}

unsigned veri_file::Blackboxed(const char* name) { return blackboxed_func ? blackboxed_func(name) : 0; }

// Files that an analysed file depends on.

void veri_file::AddDependentFile(const char* name) {
  if (!name || get_state().dependent_files.Contains(name)) return;
  get_state().dependent_names.emplace_back(Strings::save(name));
  get_state().dependent_files.Insert(get_state().dependent_names.back().get());
}

const Set& veri_file::DependentFiles() { return get_state().dependent_files; }

void veri_file::ClearDependentFiles() {
  get_state().dependent_files.Reset();
  get_state().dependent_names.clear();
}

unsigned veri_file::PrettyPrint(const char* file, const char* unit, const char* library) {
  const VeriLibrary* units = GetLibrary(library);
  const VeriTreeNode* printed = units;
  if (units && unit) printed = units->GetDefinition(unit);
  if (units && unit && !printed) printed = units->GetPackage(unit);
  if (!printed) return 0;
  std::ofstream out(file);
  if (!out) return 0;
  printed->PrettyPrint(out, 0);
  return out.good();
}

void veri_file::FreeStaticMemory() {
  RemoveAllLibraries();
  delete state;
  state = nullptr;
  VeriLex::RegisterMsgDirectives(nullptr);
  VeriParser::FreeStaticMemory();
  VeriLex::FreeStaticMemory();
  VeriTreeNode::FreeStaticMemory();
}
