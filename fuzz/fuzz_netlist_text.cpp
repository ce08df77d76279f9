// Any text as a netlist in the text language, polished and handed over as the flow would do it.
#include "fuzz_input.h"

#include "cdb_sgate.h"
#include "database/libset.h"
#include "database/netlistchecker.h"
#include "msg.h"
#include "zelk_netlist_creator.h"
#include "zelk_utility.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FUZZ_FILE file(".txt");
  static const bool is_connected = [] {
    zelk_connect_kernel();
    Message::SetConsoleOutput(0);
    return true;
  }();
  (void)is_connected;
  file.write(data, size);
  if (Netlist* netlist = ZELK_NETLIST_CREATOR(file.path()).create("n")) {
    const std::string report = NetlistChecker(netlist).Report();
    if (!report.empty()) {
      std::fprintf(stderr, "unsound netlist: %s\n", report.c_str());
      std::abort();
    }
  }
  Database::FreeStaticMemory();
  Message::ClearErrorCount();
  MSG_INTERNAL_ERROR::reset_count();
  return 0;
}
