// How fast the Verilog scanner turns a file into tokens, preprocessing included: sources of 0.2, 2 and 20 MB, made
// here. With ZELK_BENCH_SOURCE set, the largest source is left in that file, for a comparison with other tools.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "verilog/veri_lex.h"
#include "verilog/veri_pragma.h"

namespace {

constexpr size_t base_size = 200'000;

/// A module as people write them: header comment, ports, parameters, registers, a case statement, an instance, macros.
std::string module_source(unsigned number) {
  const std::string n = std::to_string(number);
  std::string text = R"(
// ---------------------------------------------------------------------------
// stage_@: one stage of the pipeline. Holds its result while the next stage
// stalls; the forwarding network sees it one cycle early.
// ---------------------------------------------------------------------------
module stage_@ #(parameter WIDTH = 32, parameter DEPTH = `DEFAULT_DEPTH) (
    input  wire              clk,
    input  wire              rst_n,
    input  wire              stall_in,
    input  wire [WIDTH-1:0]  operand_a,
    input  wire [WIDTH-1:0]  operand_b,
    input  wire [3:0]        opcode,
    output reg  [WIDTH-1:0]  result,
    output wire              overflow
);
    reg  [WIDTH-1:0] hold_value; /* synthesis keep */
    wire [WIDTH:0]   sum = {1'b0, operand_a} + {1'b0, operand_b};
    assign overflow = sum[WIDTH] & ~stall_in;
`ifdef WITH_CHECKS
    always @(posedge clk)
      if (overflow) $display("%m: overflow at %t", $time);
`else
    // no checks in this configuration
`endif
    always @(posedge clk or negedge rst_n) begin
        if (!rst_n) begin
            result     <= {WIDTH{1'b0}};
            hold_value <= 32'hdead_beef;
        end else if (!stall_in) begin
            case (opcode)
                4'd0:    result <= sum[WIDTH-1:0];
                4'd1:    result <= operand_a - operand_b;
                4'd2:    result <= operand_a & operand_b;
                4'b0011: result <= operand_a | operand_b;
                4'h4:    result <= operand_a ^ operand_b;
                4'd5:    result <= `SHIFTED(operand_a, operand_b[4:0]);
                4'd6:    result <= $signed(operand_a) >>> operand_b[4:0];
                4'd7:    result <= (operand_a < operand_b) ? `ONE : `ZERO;
                default: result <= hold_value; /* nothing to do: the
                                                  old value stays */
            endcase
        end
    end
    buffer_cell #(.WIDTH(WIDTH), .DEPTH(DEPTH)) u_buffer_@ (
        .clk(clk), .rst_n(rst_n), .data_in(result), .data_out(), .full(), .empty());
endmodule
)";
  for (size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at))
    // An event control keeps its sign.
    if (at + 1 < text.size() && text[at + 1] == '(' && at && text[at - 1] == ' ')
      at++;
    else
      text.replace(at, 1, n);
  return text;
}

std::string source(size_t size) {
  std::string text = "`timescale 1ns / 1ps\n`define DEFAULT_DEPTH 16\n`define ONE 32'd1\n`define ZERO 32'd0\n"
                     "`define SHIFTED(value, amount) ((value) << (amount))\n";
  for (unsigned number = 0; text.size() < size; number++) text += module_source(number);
  return text;
}

/// The source of a size, in a file that is removed at the end unless the caller wants to keep it.
class SourceFile {
public:
  explicit SourceFile(size_t size) {
    const char* kept = std::getenv("ZELK_BENCH_SOURCE");
    _is_kept = kept && size == 100 * base_size;
    _path = _is_kept ? std::filesystem::path(kept)
                     : std::filesystem::temp_directory_path() / ("zelk_bench_" + std::to_string(size) + ".v");
    std::ofstream(_path) << source(size);
  }
  SourceFile(const SourceFile&) = delete;
  SourceFile& operator=(const SourceFile&) = delete;
  ~SourceFile() {
    if (!_is_kept) std::filesystem::remove(_path);
  }
  const char* Path() const { return _path.c_str(); }
  size_t Size() const { return std::filesystem::file_size(_path); }

private:
  std::filesystem::path _path;
  bool _is_kept;
};

void ScanFile(benchmark::State& state) {
  const SourceFile file(static_cast<size_t>(state.range(0)) * base_size);
  size_t tokens = 0;
  for (auto iteration : state) {
    (void)iteration;
    VeriMacroTable macros;
    if (!VeriLex::StartFlex(file.Path(), VERI_2K, &macros, nullptr)) state.SkipWithError("cannot open the source");
    veri_token token;
    do {
      VeriLex::NextToken(&token);
      tokens++;
      if (token.code == VERI_SEMICOLON) { // what a parser does at the end of a declaration
        VeriLex::ClearSemicolonFlag();
        VeriPragmas::Take();
      }
    } while (token.code != VERI_END_OF_INPUT);
    VeriLex::EndFlex();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(file.Size()));
  state.SetItemsProcessed(static_cast<int64_t>(tokens));
}
BENCHMARK(ScanFile)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

} // namespace
