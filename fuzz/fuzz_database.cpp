// Any bytes as a saved library: what is restored must be sound and can be saved, and what is refused leaves nothing.
#include "database/library.h"
#include "database/libset.h"
#include "database/netlistchecker.h"
#include "database/views.h"
#include "fuzz_input.h"
#include "util/linefile.h"
#include "util/saverestore.h"

namespace {

void check(Library* restored) {
  for (Cell* cell : CellsOf(restored))
    for (Netlist* netlist : NetlistsOf(cell)) {
      const std::string report = NetlistChecker(netlist).Report();
      if (report.empty()) continue;
      std::fprintf(stderr, "unsound netlist: %s\n", report.c_str());
      std::abort();
    }
  SaveRestore copy("/dev/null", 0);
  restored->Save(copy);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FUZZ_FILE file(".db");
  static FUZZ_SERVICES services(file);
  kestrin_set_report_handler([](const char*, const char*, int) {}); // damaged files are told as internal errors
  file.write(data, size);
  {
    SaveRestore stream(file.path(), 1);
    auto* library = new Library(stream);
    if ((library = library->InstallRestored(stream, Libset::Global()))) check(library);
  }
  Database::FreeStaticMemory();
  Message::ClearErrorCount();
  LineFile::FreeLineFileMaps();
  return 0;
}
