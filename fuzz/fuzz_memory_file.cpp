// Any text as a memory file, binary or hexadecimal as the first byte says, loaded into memories of two shapes.
#include "fuzz_input.h"
#include "verilog/veri_file.h"
#include "verilog/veridataflow.h"
#include "verilog/verimemoryfile.h"

namespace {

VeriModule* memories() {
  static VeriModule* module = [] {
    const FUZZ_FILE source("_memories.v");
    const std::string text = "module m; reg [7:0] up [2:33]; reg signed [70:0] down [3:0]; endmodule\n";
    source.write(reinterpret_cast<const uint8_t*>(text.data()), text.size());
    KernelServices::Set(nullptr);
    static veri_file file;
    if (!file.Analyze(source.path(), VERI_2K)) std::abort();
    return veri_file::GetLibrary("work")->GetModule("m");
  }();
  return module;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FUZZ_FILE file(".mem");
  VeriModule* module = memories();
  static FUZZ_SERVICES services(file);
  if (size < 3) return 0;
  file.write(data + 3, size - 3);
  if (auto words = VeriMemoryFile::ReadMemoryFile(file.path(), "m.mem", data[0] & 1, module)) {
    for (const char* name : {"up", "down"}) {
      VeriDataFlow flow(nullptr, /*is_initial=*/true);
      auto* memory = dynamic_cast<VeriVariable*>(module->GetScope()->Find(name));
      std::optional<int64_t> start;
      std::optional<int64_t> stop;
      if (data[0] & 2) start = static_cast<int8_t>(data[1]);
      if (data[0] & 4) stop = static_cast<int8_t>(data[2]);
      words->LoadMemory(memory, &flow, start, stop, module);
    }
  }
  Message::ClearErrorCount();
  return 0;
}
