1module ram_cases(input clk, input [1:0] op, input [3:0] a, b, input [7:0] d, output reg [7:0] q);
  reg [7:0] mem [0:15];
  always @(posedge clk)
    case (op)
      0: mem[a] <= d;
      1: mem[b] <= d + 8'd3;
      2: q <= mem[a];
      default: q <= mem[b];
    endcase
endmodule
