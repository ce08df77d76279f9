// Any text through scanner, parser and the binding of names, in the dialect that the first byte chooses. What was kept
// of it is printed and read again: a tree that came to be without an error is printed as legal text.
#include <sstream>

#include "fuzz_input.h"
#include "verilog/veri_file.h"

namespace {

void resolve_all() {
  for (const VeriLibrary* library : ValuesOf<const VeriLibrary*>(&veri_file::AllLibraries())) {
    const_cast<VeriLibrary*>(library)->ResolveGlobals();
    for (VeriDesignUnit* unit : library->Units()) unit->Resolve();
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FUZZ_FILE source(".v");
  static FUZZ_SERVICES services(source);
  if (!size) return 0;
  source.write(data + 1, size - 1);
  {
    veri_file file;
    file.Analyze(source.path(), static_cast<veri_dialect>(1 + data[0] % 3));
    resolve_all();
    std::ostringstream printed;
    veri_file::GetLibrary("work")->PrettyPrint(printed, 0);
  }
  veri_file::FreeStaticMemory();
  Message::ClearErrorCount();
  return 0;
}
