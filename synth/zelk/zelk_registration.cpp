// Design units of the kernel become units of the host's database, and the files of the project learn which others they
// depend on.
#include "basex.h"
#include "containers/views.h"
#include "fio.h"
#include "gen.h"
#include "util/linefile.h"
#include "util/message.h"
#include "verilog/veri_file.h"
#include "verilog/veriexpression.h"
#include "verilog/veriid.h"
#include "verilog/verilibrary.h"
#include "verilog/verimodule.h"
#include "zelk_analyzer_impl.h"
#include "zelk_elaborator.h"
#include "zelk_entity.h"
#include "zelk_utility.h"

namespace {

constexpr int NO_POSITION = -1;

MSG_TEXT_LOCATION_SCHEMA place_of(const VeriIdDef* id) {
  return {LineFile::GetFileName(id->Linefile()), static_cast<int>(LineFile::GetLineNo(id->Linefile())), NO_POSITION};
}

const char* file_of(const VeriDesignUnit* unit) { return LineFile::GetFileName(unit->GetId()->Linefile()); }

HDB_ENTITY::ROLE role_of(const VeriDesignUnit* unit) {
  if (unit->IsInterface()) return HDB_ENTITY::ROLE_INTERFACE;
  return unit->IsPrimitive() ? HDB_ENTITY::ROLE_PRIMITIVE : HDB_ENTITY::ROLE_MODULE;
}

const char* library_of(const VeriDesignUnit* unit) {
  const VeriLibrary* library = unit->GetLibrary();
  return library ? library->Name() : nullptr;
}

} // namespace

void ZELK_ANALYZER_IMPL::register_design_unit(VeriDesignUnit* du) {
  if (!du || !du->GetId()) {
    ZELK_INTERNAL_ERROR("du && du->Id()");
    return;
  }
  if (du->IsModule() || du->IsPrimitive() || du->IsInterface()) {
    register_module(du);
  } else if (du->IsPackage()) {
    register_package(du);
  } else {
    zelk_msg_debug("Found unknown SystemVerilog design unit %s in unit list", du->GetId()->Name());
    ZELK_INTERNAL_ERROR("Found unknown SystemVerilog design unit");
  }
}

void ZELK_ANALYZER_IMPL::add_to_entity_list(HDB_DESIGN_UNIT* unit) { m_info->entity_list.push_back(unit); }

/// A module may stand in an included file, which the project doesn't list: it gets a source file of its own.
HDB_SOURCE_FILE* ZELK_ANALYZER_IMPL::find_or_create_source_file(const char* filename, const char* library) {
  constexpr int USER_TYPE_INCLUDED = 8;
  constexpr unsigned FLAG_FOUND = 4;
  constexpr unsigned FLAG_NOT_STORED = 8;
  if (path_for_kernel(m_info->source_file) == filename) return m_info->source_file;
  HDB_ACTION_PT_INSTANCE* ap_inst = get_action_pt_inst();
  HDB_SOURCE_FILE* file = ap_inst->find_source_file(filename, library);
  if (!file) file = ap_inst->find_source_file(filename, nullptr);
  if (file) return file;
  zelk_msg_debug("Creating cap source file for 'included file (%s)", filename);
  file = ap_inst->create_source_file(filename, HDB_SOURCE_FILE::path_to_file_type(filename));
  file->set_fio_user_type(USER_TYPE_INCLUDED);
  file->set_flags(file->get_flags() | FLAG_FOUND | FLAG_NOT_STORED);
  return file;
}

void ZELK_ANALYZER_IMPL::register_module(VeriDesignUnit* v_module) {
  ZELK_ASSERT(v_module);
  if (!v_module) return;
  const VeriIdDef* id = v_module->GetId();
  zelk_msg_debug("Found module %s in unit list", id->Name());
  const char* library = library_of(v_module);
  const char* filename = file_of(v_module);
  HDB_SOURCE_FILE* file = filename ? find_or_create_source_file(filename, library) : m_info->source_file;
  auto* entity = new ZELK_ENTITY(file, place_of(id), v_module->FullName().c_str(), new ZELK_ELABORATOR,
                                 HDB_DESIGN_UNIT::TYPE_VERILOG_MODULE, {}, library);
  entity->set_role(role_of(v_module));
  add_to_entity_list(entity);
}

/// Names of packages are flat in the host: one in a user's library carries the name of the library.
void ZELK_ANALYZER_IMPL::register_package(VeriDesignUnit* v_package) {
  ZELK_ASSERT_TEXT(v_package && v_package->GetId(), "v_package && v_package->Id()");
  const VeriIdDef* id = v_package->GetId();
  zelk_msg_debug("Found SystemVerilog package %s in unit list", id->Name());
  const char* library = library_of(v_package);
  ZELK_ASSERT(library);
  std::string name = id->Name();
  if (library && gen_strcmp(library, "work") != 0) {
    name += library;
    zelk_msg_debug("Uniquified package name with user library setting - new name %s (SystemVerilog)", name.c_str());
  }
  add_to_entity_list(new HDB_VHDL_PACKAGE(m_info->source_file, place_of(id), name.c_str(), library));
}

namespace {

template <class HASH> void add_to(HASH& all, const char* name, const char* dependency) {
  ZELK_ASSERT(name && dependency);
  if (!name || !dependency || gen_strcmp(name, dependency) == 0) return;
  auto*& files = all[name];
  if (!files) files = new HTL_HASH_SET<std::string>;
  files->insert(dependency);
}

template <class HASH> void clear(HASH& all) {
  for (auto& [name, files] : all) delete files;
  all.clear();
}

} // namespace

void ZELK_ANALYZER_IMPL::AddDependency(const char* name, const char* dependency) {
  add_to(m_dependencies, name, dependency);
}

void ZELK_ANALYZER_IMPL::AddReverseDependency(const char* name, const char* dependency) {
  add_to(m_reverse_dependencies, name, dependency);
}

void ZELK_ANALYZER_IMPL::ClearDependencyHashes() {
  clear(m_dependencies);
  clear(m_reverse_dependencies);
}

void ZELK_ANALYZER_IMPL::create_basic_verilog_dependencies(const char* file) {
  for (const char* included : KeysOf<const char*>(&veri_file::DependentFiles())) AddDependency(file, included);
}

void ZELK_ANALYZER_IMPL::create_implicit_verilog_dependencies(VeriDesignUnit* unit) {
  const char* du_filename = file_of(unit);
  ZELK_ASSERT(du_filename);
  if (!du_filename) return;
  for (const char* file : KeysOf<const char*>(unit->Dependencies())) AddDependency(du_filename, file);
}

void ZELK_ANALYZER_IMPL::create_implicit_verilog_dependencies(VeriLibrary* library, const Set& items) {
  ZELK_ASSERT(library);
  for (VeriModuleItem* item : KeysOf<VeriModuleItem*>(&items)) {
    const Set* files = library->GetDependentFiles(item);
    if (!files) continue;
    const char* item_filename = LineFile::GetFileName(item->Linefile());
    ZELK_ASSERT(item_filename);
    if (!item_filename) continue;
    for (const char* file : KeysOf<const char*>(files)) AddDependency(item_filename, file);
  }
}

namespace {

bool is_encrypted(HDB_ACTION_PT_INSTANCE* ap_inst, const VeriDesignUnit* unit) {
  const char* filename = file_of(unit);
  const HDB_SOURCE_FILE* file = ap_inst && filename ? ap_inst->find_source_file(filename, nullptr) : nullptr;
  return file && file->is_encrypted();
}

HDB_ENTITY::PARAMETERS parameters_of(const VeriModule* module) {
  HDB_ENTITY::PARAMETERS parameters;
  for (const VeriParamId* id : module->OverridableParams())
    parameters.push_back({id->Name(), "parameter", id->InitialValue() ? id->InitialValue()->Image() : ""});
  return parameters;
}

/// The macros of the module and of all packages that it depends on, which become dependents of its own.
HDB_ENTITY::PARAMETERS macros_of(const VeriModule* module) {
  VeriDesignUnitId* id = module->GetId();
  Set dependents;
  VeriDesignUnitId::CollectDependents(id, dependents);
  HDB_ENTITY::PARAMETERS macros;
  for (VeriDesignUnitId* dependent : KeysOf<VeriDesignUnitId*>(&dependents)) {
    if (dependent != id) id->AddDependent(dependent);
    for (const VeriMacroNode& macro : *dependent->GetMacros())
      macros.push_back({macro.key, macro.value, macro.location});
  }
  return macros;
}

/// The host learns which parameters an instance can set: name, keyword, default value; and what macros the text uses.
void tell_entity(HDB_ACTION_PT_INSTANCE* ap_inst, const VeriModule* module) {
  HDB_ENTITY* entity = ap_inst->find_entity(module->FullName().c_str(), 1, library_of(module), nullptr);
  if (!entity) return;
  entity->set_parameters(parameters_of(module));
  entity->set_macros(macros_of(module));
}

} // namespace

bool ZELK_ANALYZER_IMPL::resolve_all_design_units(HDB_ACTION_PT_INSTANCE* ap_inst, std::vector<std::string>* files,
                                                  std::vector<std::string>* dependencies) {
  bool shows_encrypted = ap_inst && zelk_is_option_on(zelk_get_bool_option(ap_inst, ACF_SECTION_HDL_INPUT,
                                                                           ACF_VARIABLE_SHOW_ENCRYPTED_MESSAGES));
  Set done;
  for (VeriLibrary* library : ValuesOf<VeriLibrary*>(&veri_file::AllLibraries())) {
    library->ResolveGlobals(&done);
    create_implicit_verilog_dependencies(library, done);
  }
  for (VeriDesignUnitId* id : KeysOf<VeriDesignUnitId*>(&veri_file::UnresolvedDesignUnits())) {
    if (Message::ErrorCount() != 0) break;
    VeriDesignUnit* unit = id->GetDesignUnit();
    if (is_encrypted(ap_inst, unit) && !shows_encrypted) Message::CriticalMessagesOnly();
    unit->Resolve();
    create_implicit_verilog_dependencies(unit);
    Message::ShowAllMessages();
    if (ap_inst && unit->IsModule()) tell_entity(ap_inst, static_cast<const VeriModule*>(unit));
  }
  if (Message::ErrorCount() != 0) return false;
  if (files && dependencies) {
    append_dependencies(m_dependencies, *files, *dependencies);
    append_dependencies(m_reverse_dependencies, *dependencies, *files);
  }
  return true;
}

void ZELK_ANALYZER_IMPL::append_dependencies(const DEPENDENCIES& all, std::vector<std::string>& from,
                                             std::vector<std::string>& to) {
  for (const auto& [name, names] : all) {
    for (const std::string& other : *names) {
      from.push_back(name);
      to.push_back(other);
    }
  }
}
