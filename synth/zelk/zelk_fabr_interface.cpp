// Writes XML interface files of Verilog units.
#include "zelk_fabr_interface.h"

#include <fstream>

#include "acf.h"
#include "database/views.h"
#include "fio.h"
#include "gen.h"
#include "hdb_action_pt.h"
#include "htl.h"
#include "util/linefile.h"
#include "verilog/veri_tokens.h"
#include "verilog/veriexpression.h"
#include "verilog/verimodule.h"
#include "zelk_msg_handler.h"
#include "zelk_msgs.h"
#include "zelk_report.h"
#include "zelk_utility.h"

namespace {

constexpr const char* ROOT = "TESMARK_MAP_OUTPUT";
constexpr const char* MODULE_KEY = "module";

enum LEVEL { LEVEL_ROOT, LEVEL_FILE, LEVEL_MODULE, LEVEL_LIST, LEVEL_ITEM, LEVEL_DETAIL };

/// A message whose last argument is its place.
template <class MESSAGE>
void report_at(MESSAGE* (*function)(const char*, const char*), const char* name, unsigned long linefile) {
  std::string place = zelk_build_location_string(linefile);
  zelk_report_at(function(name, place.c_str()), LineFile::GetFileName(linefile),
                 static_cast<int>(LineFile::GetLineNo(linefile)));
}

} // namespace

ZELK_FABR_VERILOG_INTERFACE::ZELK_FABR_VERILOG_INTERFACE(std::ostream& stream, const std::string& input,
                                                         const std::string& language_version)
    : m_writer(stream) {
  stream << "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n";
  Header(input, language_version);
}

ZELK_FABR_VERILOG_INTERFACE::~ZELK_FABR_VERILOG_INTERFACE() { Footer(); }

void ZELK_FABR_VERILOG_INTERFACE::open(const char* name, unsigned level,
                                       const std::vector<std::pair<const char*, std::string>>& attributes) {
  m_writer.reset(name);
  for (const auto& [key, value] : attributes) m_writer.add_attribute(key, value);
  m_writer.start(level, /*empty=*/false);
}

void ZELK_FABR_VERILOG_INTERFACE::write_empty(const char* name, unsigned level,
                                              const std::vector<std::pair<const char*, std::string>>& attributes) {
  m_writer.reset(name);
  for (const auto& [key, value] : attributes) m_writer.add_attribute(key, value);
  m_writer.start(level, /*empty=*/true);
}

void ZELK_FABR_VERILOG_INTERFACE::Header(const std::string& input, const std::string& language_version) {
  FIO_PATH path(FIO_PATH(input).fullpath());
  open(ROOT, LEVEL_ROOT, {});
  write_empty("TESMARK", LEVEL_FILE, {{"version", gen_get_version()}, {"platform", gen_get_platform()}});
  open("FILE", LEVEL_FILE,
       {{"name", path.filename()},
        {"path", path.directory()},
        {"language", "Verilog"},
        {"languageversion", language_version}});
}

void ZELK_FABR_VERILOG_INTERFACE::Footer() {
  m_writer.end("FILE", LEVEL_FILE);
  m_writer.end(ROOT, LEVEL_ROOT);
}

bool ZELK_FABR_VERILOG_INTERFACE::write_interfaces(const std::vector<VeriModule*>& units) {
  bool is_good = true;
  for (VeriModule* unit : units) is_good &= write_interface(unit, nullptr);
  return is_good;
}

namespace {

/// Frees the actuals on all ways out.
struct ACTUALS {
  ~ACTUALS() {
    VeriModule::DeleteParams(expressions);
    for (Param* param : ValuesOf<Param*>(&texts)) delete param;
  }
  Map texts{HASH_STRING}; // name to Param
  Map* expressions = nullptr;
};

void report_format(const std::string& text) { zelk_report(MSG_ZELK::E::FABR_PARAMETER_FORMAT(text.c_str())); }

/// Reads "name=value;" one behind the other.
bool parse_parameters(const std::string& text, const VeriModule* unit, ACTUALS& actuals) {
  static const HTL_REGEXP chunk_form("(.+?;)", HTL_REGEXP::CASE_IGNORED);
  static const HTL_REGEXP value_form("(.+?)=(.+);", HTL_REGEXP::CASE_IGNORED);
  if (!text.empty() && unit->OverridableParams().empty()) {
    zelk_report(MSG_ZELK::E::FABR_MODULE_HAS_NO_PARAM(unit->Name()));
    return false;
  }
  for (std::string rest = text; !rest.empty();) {
    size_t first = 0;
    size_t length = 0;
    if (!chunk_form.search(rest.c_str(), nullptr, &first, &length)) {
      report_format(rest + " (missing semicolon)");
      return false;
    }
    std::string chunk = rest.substr(0, first + length);
    rest.erase(0, first + length);
    std::vector<std::string> groups;
    if (!value_form.match(chunk.c_str(), &groups)) {
      report_format(chunk);
      return false;
    }
    if (!unit->GetParam(groups[0].c_str())) {
      zelk_report(MSG_ZELK::E::FABR_PARAMETER_NAME_NOT_FOUND(groups[0].c_str()));
      return false;
    }
    auto param = std::make_unique<Param>(groups[0].c_str(), groups[1].c_str(), nullptr, ACF_VARIABLE_PARAMETER_STRING);
    if (actuals.texts.Insert(param->Name(), param.get())) param.release();
  }
  return true;
}

} // namespace

bool ZELK_FABR_VERILOG_INTERFACE::write_inst_interface(const std::vector<VeriModule*>& units,
                                                       const ZELK_FABR_REQUEST& request) {
  for (VeriModule* unit : units) {
    if (gen_stricmp(unit->Name(), request.entity.c_str()) != 0) continue;
    ACTUALS actuals;
    if (!parse_parameters(request.parameters, unit, actuals)) return false;
    actuals.expressions = unit->CreateActualParameters(&actuals.texts);
    m_is_inst_request = true;
    return write_interface(unit, actuals.expressions);
  }
  return false;
}

namespace {

/// Ports that are more than a name have no place in a description by names.
bool has_plain_ports(const VeriModule* unit) {
  for (const VeriExpression* port : ItemsOf<const VeriExpression*>(unit->PortExpressions()))
    if (port && (port->IsConcat() || port->GetClassId() == ID_VeriPortConnect)) return false;
  return true;
}

/// Libraries of the descriptions' own, gone with the description.
class SCRATCH_LIBRARY {
public:
  SCRATCH_LIBRARY() : m_library(new Library("work")) {}
  SCRATCH_LIBRARY(const SCRATCH_LIBRARY&) = delete;
  SCRATCH_LIBRARY& operator=(const SCRATCH_LIBRARY&) = delete;
  ~SCRATCH_LIBRARY() { delete m_library; }
  Library* get() const { return m_library; }

private:
  Library* m_library;
};

} // namespace

bool ZELK_FABR_VERILOG_INTERFACE::write_interface(VeriModule* unit, const Map* actuals) {
  if (!has_plain_ports(unit)) {
    report_at(MSG_ZELK::E::FABR_XML_UNSUPPORTED_LIST_OF_PORTS, unit->Name(), unit->Linefile());
    return false;
  }
  SCRATCH_LIBRARY library;
  const Netlist* view = unit->ElaborateBlackBox(library.get(), actuals);
  bool is_good = view != nullptr;
  open("MODULE", LEVEL_MODULE, {{"name", unit->Name()}});
  write_annotations(unit, MODULE_KEY, LEVEL_LIST);
  open("PORTS", LEVEL_LIST, {});
  if (view)
    for (const VeriVariable* port : unit->Ports()) is_good &= write_port(unit, port, view);
  m_writer.end("PORTS", LEVEL_LIST);
  is_good &= check_annotated_ports(unit);
  open("PARAMETERS", LEVEL_LIST, {});
  for (const VeriParamId* id : unit->OverridableParams()) is_good &= write_parameter(id, actuals);
  m_writer.end("PARAMETERS", LEVEL_LIST);
  m_writer.end("MODULE", LEVEL_MODULE);
  return is_good;
}

void ZELK_FABR_VERILOG_INTERFACE::write_annotations(const VeriModule* unit, const char* key, unsigned level) {
  const VeriAnnotations::Lines* lines = unit->Annotations() ? unit->Annotations()->Find(key) : nullptr;
  if (!lines) return;
  for (const char* text : lines->texts) write_empty("ANNOTATION", level, {{"value", text}});
}

/// An annotation of a port that does not exist is a spelling mistake.
bool ZELK_FABR_VERILOG_INTERFACE::check_annotated_ports(const VeriModule* unit) const {
  if (!unit->Annotations()) return true;
  bool is_good = true;
  for (auto [key, lines] : unit->Annotations()->All()) {
    if (!gen_strcmp(key, MODULE_KEY) || unit->GetPort(key)) continue;
    std::string text = "mis-spelled port name:" + std::string(key);
    report_at(MSG_ZELK::E::VERI_FABR_ANNOTATION_FORMAT, text.c_str(), lines->linefile);
    is_good = false;
  }
  return is_good;
}

namespace {

const char* direction_of(const VeriVariable* port) {
  switch (port->Dir()) {
  case VERI_INPUT: return "input";
  case VERI_OUTPUT: return "output";
  case VERI_INOUT: return "inout";
  default: ZELK_INTERNAL_ERROR("unknown port direction processing HDL interface"); return "unknown";
  }
}

/// Made of literals only: the same for all instances.
bool is_static(const VeriExpression* bound) {
  if (!bound) return false;
  if (bound->IsConst()) return true;
  if (bound->GetClassId() == ID_VeriBinaryOperator) {
    const auto* binary = static_cast<const VeriBinaryOperator*>(bound);
    return is_static(binary->GetLeft()) && is_static(binary->GetRight());
  }
  if (bound->GetClassId() == ID_VeriUnaryOperator)
    return is_static(static_cast<const VeriUnaryOperator*>(bound)->GetOperand());
  return false;
}

bool has_static_bounds(const VeriVariable* port) {
  if (!port->Type() || !port->Type()->Ranges()) return true;
  for (const VeriRange* range : ItemsOf<const VeriRange*>(port->Type()->Ranges()))
    if (!is_static(range->GetLeft()) || !is_static(range->GetRight())) return false;
  return true;
}

} // namespace

bool ZELK_FABR_VERILOG_INTERFACE::write_port(const VeriModule* unit, const VeriVariable* port, const Netlist* view) {
  const PortBus* bus = view->GetPortBus(port->Name());
  bool is_supported = bus ? bus->PortBusLevel() == 0 : view->GetPort(port->Name()) != nullptr;
  if (!is_supported || (!m_is_inst_request && !has_static_bounds(port))) {
    std::string name = port->Name();
    if (is_supported) name += " (non-static)";
    report_at(MSG_ZELK::E::FABR_XML_UNSUPPORTED_PORT_TYPE, name.c_str(), port->Linefile());
    return false;
  }
  std::vector<std::pair<const char*, std::string>> attributes = {
      {"name", port->Name()}, {"direction", direction_of(port)}, {"type", bus ? "std_logic_vector" : "std_logic"}};
  if (bus) {
    attributes.emplace_back("rangeleft", std::to_string(bus->LeftIndex()));
    attributes.emplace_back("rangeright", std::to_string(bus->RightIndex()));
  }
  open("PORT", LEVEL_ITEM, attributes);
  write_annotations(unit, port->Name(), LEVEL_DETAIL);
  m_writer.end("PORT", LEVEL_ITEM);
  return true;
}

bool ZELK_FABR_VERILOG_INTERFACE::write_parameter(const VeriParamId* id, const Map* actuals) {
  const VeriTypeDef* type = id->Type();
  const char* word = type && type->Type() ? VeriTreeNode::PrintToken(type->Type()) : nullptr;
  bool is_simple = !id->NumUnpacked() && (!type || type->GetClassId() == ID_VeriPrimitiveTypeDef);
  if (!is_simple) {
    report_at(MSG_ZELK::E::FABR_XML_UNSUPPORTED_PARAM_TYPE, id->Name(), id->Linefile());
    return false;
  }
  const auto* actual = actuals ? FromWord<const VeriExpression*>(actuals->GetValue(id->Name())) : nullptr;
  const VeriExpression* value = actual ? actual : id->InitialValue();
  write_empty("PARAMETER", LEVEL_ITEM,
              {{"name", id->Name()}, {"value", value ? value->Image() : ""}, {"type", word ? word : "un-specified"}});
  return true;
}

namespace {

std::string option_text(HDB_ACTION_PT_INSTANCE* ap_inst, int variable) {
  const HDB_OPTION* option = zelk_get_string_option(ap_inst, ACF_SECTION_HDL_INPUT, variable);
  return option ? option->get_string() : "";
}

/// The shorter of the name as it was given and its relative form.
FIO_PATH shorter_path(const HDB_SOURCE_FILE* file) {
  FIO_PATH given(file->get_unmodified_filename());
  FIO_PATH relative = FIO_PATH(given.fullpath()).get_relative_to(FIO_PATH(FIO_PATH(".").fullpath()));
  return relative.levels() < given.levels() ? relative : given;
}

FIO_PATH output_path(HDB_ACTION_PT_INSTANCE* ap_inst, const HDB_SOURCE_FILE* file, const ZELK_FABR_REQUEST& request) {
  FIO_PATH output = shorter_path(file);
  std::string asked = option_text(ap_inst, ACF_VARIABLE_HDL_INTERFACE_OUTPUT_PATH);
  if (!asked.empty()) {
    std::string name = output.filename();
    output = FIO_PATH(asked);
    if (!request.entity.empty() || output.filename().empty()) output.filename(name);
  }
  output.extension("xml");
  return output;
}

} // namespace

bool create_xml_interface_file(HDB_ACTION_PT_INSTANCE* ap_inst, const HDB_SOURCE_FILE* file,
                               const std::string& language_version, const std::vector<VeriModule*>& units) {
  ZELK_FABR_REQUEST request{option_text(ap_inst, ACF_VARIABLE_HDL_INTERFACE_ENTITY),
                            option_text(ap_inst, ACF_VARIABLE_HDL_INTERFACE_INSTANCE),
                            option_text(ap_inst, ACF_VARIABLE_HDL_INTERFACE_PARAMETERS)};
  const char* source = file->get_unmodified_filename();
  if (request.entity.empty()) {
    zelk_msg_debug("About to generate HDL interface for all entities in %s", source);
  } else {
    zelk_msg_debug("About to generate HDL interface for instance %s of entity %s", request.instance.c_str(),
                   request.entity.c_str());
    zelk_msg_debug("Parameters = %s", request.parameters.empty() ? "(none)" : request.parameters.c_str());
  }
  std::string output = output_path(ap_inst, file, request).get_path();
  zelk_msg_debug("XML output file = %s", output.c_str());
  bool is_good = FIO_FILE_SYSTEM::touch(output);
  if (is_good) {
    std::ofstream stream(output);
    ZELK_FABR_VERILOG_INTERFACE document(stream, source, language_version);
    is_good = request.entity.empty() ? document.write_interfaces(units) : document.write_inst_interface(units, request);
  } else {
    zelk_report(MSG_ZELK::E::FABR_CANT_CREATE_PATH(output.c_str()));
  }
  if (!is_good) zelk_report_at(MSG_ZELK::E::FABR_CANT_CREATE_INTERFACE_FOR_FILE(source), source, 1);
  return is_good;
}
