// Any text through the front end, elaboration and polish, in the dialect that the first byte chooses; the netlists that
// come of it must be sound. Loops are cut short, so that time goes into different inputs.
#include "database/libset.h"
#include "database/netlistchecker.h"
#include "database/views.h"
#include "fuzz_input.h"
#include "verilog/veri_file.h"

namespace {

class SHORT_LOOPS : public FUZZ_SERVICES {
public:
  using FUZZ_SERVICES::FUZZ_SERVICES;
  int Flag(const char* key) override { return std::strstr(key, "loop_limit") ? 20 : 0; }
};

void check_all() {
  for (Library* library : LibrariesOf(Libset::Global()))
    for (Cell* cell : CellsOf(library))
      for (Netlist* netlist : NetlistsOf(cell)) {
        const std::string report = NetlistChecker(netlist).Report();
        if (report.empty()) continue;
        std::fprintf(stderr, "unsound netlist: %s\n", report.c_str());
        std::abort();
      }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FUZZ_FILE source(".v");
  static SHORT_LOOPS services(source);
  if (!size) return 0;
  source.write(data + 1, size - 1);
  {
    veri_file file;
    if (file.Analyze(source.path(), static_cast<veri_dialect>(1 + data[0] % 3)) && veri_file::ElaborateAll())
      check_all();
  }
  veri_file::FreeStaticMemory();
  Database::FreeStaticMemory();
  Message::ClearErrorCount();
  return 0;
}
