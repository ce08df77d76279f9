// How fast a Verilog file becomes a tree, scanning included, as both dialects read it: modules of declarations,
// processes and instances, 0.2, 2 and 20 MB of them, made here.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "util/message.h"
#include "verilog/veri_file.h"

namespace {

constexpr size_t base_size = 200'000;

std::string module_source(unsigned number) {
  const std::string n = std::to_string(number);
  return "module lane_" + n + R"( #(parameter WIDTH = 32) (
    input wire clk, input wire rst_n, input wire [WIDTH-1:0] operand_a, operand_b, input wire [3:0] opcode,
    output reg [WIDTH-1:0] result, output wire overflow);
  reg [WIDTH-1:0] hold_value;
  wire [WIDTH:0] sum = {1'b0, operand_a} + {1'b0, operand_b};
  genvar bit_of;
  assign overflow = sum[WIDTH] & ~(opcode == 4'd0);
  generate
    for (bit_of = 0; bit_of < 4; bit_of = bit_of + 1) begin : bits
      wire tap = operand_a[bit_of] ^ operand_b[bit_of];
    end
  endgenerate
  always @(posedge clk or negedge rst_n)
    if (!rst_n) begin
      result <= {WIDTH{1'b0}};
      hold_value <= 32'hdead_beef;
    end else
      case (opcode)
        4'd0: result <= sum[WIDTH-1:0];
        4'd1: result <= operand_a - operand_b;
        4'd2, 4'd3: result <= (operand_a & operand_b) | (operand_a ^ ~operand_b);
        4'd4: result <= operand_a < operand_b ? operand_a << operand_b[4:0] : hold_value;
        default: hold_value <= result;
      endcase
  buffer_cell #(.WIDTH(WIDTH), .DEPTH(16)) u_buffer (.clk(clk), .rst_n(rst_n), .data_in(result), .data_out(), .full());
endmodule
)";
}

void ParseFile(benchmark::State& state) {
  const size_t size = static_cast<size_t>(state.range(0)) * base_size;
  const auto path = std::filesystem::temp_directory_path() / ("zelk_bench_parser_" + std::to_string(size) + ".v");
  std::string text;
  for (unsigned number = 0; text.size() < size; number++) text += module_source(number);
  std::ofstream(path) << text;
  for (auto iteration : state) {
    (void)iteration;
    veri_file file;
    if (!file.Analyze(path.c_str(), static_cast<veri_dialect>(state.range(1)))) state.SkipWithError("refused");
    veri_file::FreeStaticMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
  std::filesystem::remove(path);
}
BENCHMARK(ParseFile)->ArgsProduct({{1, 10, 100}, {VERI_2K, VERI_SV}})->Unit(benchmark::kMillisecond);

} // namespace
