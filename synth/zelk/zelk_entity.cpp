// Entities of the library in the host's database.
#include "zelk_entity.h"

#include "zelk_elaborator.h"

bool ZELK_ENTITY::on_dbb_exit() {
  delete get_elaborator();
  set_elaborator(nullptr);
  return true;
}

HDB_ENTITY* ZELK_ENTITY::clone_entity(MEM_SEGMENT*) {
  std::string library;
  bool has_library = get_library(&library);
  auto* clone = new ZELK_ENTITY(get_file(), get_location(), get_name(), new ZELK_ELABORATOR, get_type(), {},
                                has_library ? library.c_str() : nullptr);
  clone->set_role(get_role());
  return clone;
}
